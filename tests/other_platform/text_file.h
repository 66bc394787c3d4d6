/* A small file as one text: read whole, replaced whole. */
#ifndef TEXT_FILE_H
#define TEXT_FILE_H

#include <stddef.h>

/* The content with a NUL behind it, to be freed; *found 0 and an empty text when there
 * is no file; null on a failure. */
char *text_file_read(const char *path, int *found);

/* 0, or -1 with the old file as it was. */
int text_file_replace(const char *path, const char *head, size_t head_length, const char *middle,
                      const char *tail);

/* Whether a text can stand in a line. */
int is_one_line(const char *text);

/* Copies at most size - 1 bytes and ends the text. */
void copy_cut(char *buffer, unsigned int size, const char *text, size_t length);

/* The line of a key and a value, to be freed. */
char *format_line(const char *format, const char *key, const char *value);

#endif
