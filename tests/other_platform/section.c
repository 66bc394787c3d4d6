#include <kevacore.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "string_hash.h"
#include "text_file.h"

/* A file with the place of a section in it. */
struct place {
    char *text;
    char *header; /* null when the section is not there */
    char *body;
    char *end;
};

static int is_header_of(const char *line, const char *section) {
    const size_t length = strlen(section);
    return line[0] == '[' && strncmp(line + 1, section, length) == 0 && line[length + 1] == ']';
}

static char *next_line(char *line) {
    line += strcspn(line, "\n");
    return line + (*line == '\n');
}

/* 0, or -1 when the file cannot be read. */
static int open_place(struct place *place, const char *path, const char *section) {
    int found;
    char *line;
    memset(place, 0, sizeof *place);
    place->text = text_file_read(path, &found);
    if (!place->text) return -1;
    for (line = place->text; *line && !is_header_of(line, section);) line = next_line(line);
    place->header = *line ? line : NULL;
    place->body = next_line(line);
    for (line = place->body; *line && *line != '[';) line = next_line(line);
    place->end = line;
    return 0;
}

/* Takes the pair at *line apart, and goes to the next. 0 at the end of the section. */
static int next_pair(const struct place *place, char **line, char **key, size_t *key_length,
                     char **value, size_t *value_length) {
    while (*line < place->end) {
        char *start = *line + strspn(*line, "\t");
        const size_t length = strcspn(start, "\n");
        char *equals = memchr(start, '=', length);
        *line = next_line(start);
        if (!equals) continue;
        *key = start;
        *key_length = (size_t)(equals - start);
        *value = equals + 1;
        *value_length = length - *key_length - 1;
        return 1;
    }
    return 0;
}

/* Replaces a part of the file and lets it go. 1, or -1. */
static int finish(struct place *place, const char *path, const char *begin, const char *middle,
                  const char *end) {
    const int result =
        middle ? text_file_replace(path, place->text, (size_t)(begin - place->text), middle, end)
               : -1;
    free(place->text);
    return result == 0 ? 1 : -1;
}

/* The lines of a hash behind a first line, to be freed; null when one cannot stand in a file. */
static char *render(const char *first, const VLIBCSzHash *hash, const char *format) {
    char *text = strdup(first);
    int index;
    for (index = 0; text && index < hash->count; ++index) {
        const char *key = hash->pairs[index].key;
        const char *value = hash->pairs[index].value;
        const int is_fine = is_one_line(key) && !strchr(key, '=') && *key && is_one_line(value);
        char *line = is_fine ? format_line(format, key, value) : NULL;
        char *longer = NULL;
        if (!line || asprintf(&longer, "%s%s", text, line) < 0) longer = NULL;
        free(line);
        free(text);
        text = longer;
    }
    return text;
}

int VLIBCFileGetSection(const char *path, const char *section, VLIBCSzHash **hash) {
    struct place place;
    char *line, *key, *value;
    size_t key_length, value_length;
    int result;
    if (!path || !section || !hash || !*hash) return -1;
    if (open_place(&place, path, section) != 0) return -1;
    result = place.header != NULL;
    for (line = place.body;
         result > 0 && next_pair(&place, &line, &key, &key_length, &value, &value_length);) {
        char *own_key = strndup(key, key_length);
        char *own_value = strndup(value, value_length);
        if (!own_key || !own_value || VLIBCSzHashSetValue(hash, own_key, own_value) < 0)
            result = -1;
        free(own_key);
        free(own_value);
    }
    free(place.text);
    return result;
}

int VLIBCFileSetSection(const char *path, const char *section, int flags, VLIBCSzHash *hash,
                        const char *format) {
    struct place place;
    char *text;
    int result;
    (void)flags;
    if (!path || !section || !hash || !format) return -1;
    if (open_place(&place, path, section) != 0) return -1;
    if (!place.header) {
        free(place.text);
        return 0;
    }
    text = render("", hash, format);
    result = finish(&place, path, place.body, text, place.end);
    free(text);
    return result;
}

int VLIBCFileAddSection(const char *path, const char *section, VLIBCSzHash *hash,
                        const char *format) {
    struct place place;
    char header[512];
    char *text;
    int result;
    if (!path || !section || !hash || !format || strpbrk(section, "]\n")) return -1;
    if (open_place(&place, path, section) != 0) return -1;
    if (place.header) {
        free(place.text);
        return -1;
    }
    snprintf(header, sizeof header, "[%s]\n", section);
    text = render(header, hash, format);
    result = finish(&place, path, place.text + strlen(place.text), text, "");
    free(text);
    return result;
}

int VLIBCFileRemoveSection(const char *path, const char *section) {
    struct place place;
    if (!path || !section) return -1;
    if (open_place(&place, path, section) != 0) return -1;
    if (!place.header) {
        free(place.text);
        return 0;
    }
    return finish(&place, path, place.header, "", place.end);
}

int VLIBCFileGetSectionValue(const char *path, const char *section, const char *key, char *buffer,
                             unsigned int size) {
    struct place place;
    char *line, *found, *value;
    size_t key_length, value_length;
    int result = 0;
    if (!path || !section || !key || !buffer || size == 0) return -1;
    if (open_place(&place, path, section) != 0) return -1;
    for (line = place.body;
         !result && next_pair(&place, &line, &found, &key_length, &value, &value_length);) {
        if (key_length != strlen(key) || memcmp(found, key, key_length) != 0) continue;
        copy_cut(buffer, size, value, value_length);
        result = 1;
    }
    free(place.text);
    return result;
}

int VLIBCFileSetSectionValue(const char *path, const char *section, const char *key,
                             const char *value) {
    struct place place;
    char *line, *found, *old, *text = NULL;
    size_t key_length, old_length;
    char *begin;
    int result;
    if (!path || !section || !key || !value || !is_one_line(value) || strpbrk(section, "]\n"))
        return -1;
    if (open_place(&place, path, section) != 0) return -1;
    begin = place.end;
    for (line = place.body;
         begin == place.end && next_pair(&place, &line, &found, &key_length, &old, &old_length);) {
        if (key_length == strlen(key) && memcmp(found, key, key_length) == 0) {
            begin = found;
            while (begin > place.body && begin[-1] != '\n') --begin;
            place.end = line;
        }
    }
    if (place.header ? asprintf(&text, "\t%s=%s\n", key, value) < 0
                     : asprintf(&text, "[%s]\n\t%s=%s\n", section, key, value) < 0)
        text = NULL;
    result = finish(&place, path, begin, text, place.end);
    free(text);
    return result;
}
