#include <kevacore.h>
#include <stdlib.h>
#include <string.h>

#include "text_file.h"

/* The first line of a key; *value and *length are what stands between its quotes. */
static char *find_line(char *text, const char *key, char **value, size_t *length) {
    const size_t key_length = strlen(key);
    char *line = text;
    while (*line) {
        size_t size = strcspn(line, "\n");
        if (strncmp(line, key, key_length) == 0 && line[key_length] == '=') {
            *value = line + key_length + 1;
            *length = size - key_length - 1;
            if (*length > 0 && (*value)[*length - 1] == '\r') --*length;
            if (*length > 1 && **value == '"' && (*value)[*length - 1] == '"') {
                ++*value;
                *length -= 2;
            }
            return line;
        }
        line += size + (line[size] == '\n');
    }
    return NULL;
}

static int refuse(void) {
    VLIBCErrSetEx(VLIBC_ERR_BAD_PARAMETER, "key_value", __LINE__);
    return -1;
}

int VLIBCFileGetKeyValue(const char *path, const char *key, char *buffer, unsigned int size,
                         int flags) {
    int found;
    char *text, *value;
    size_t length;
    (void)flags;
    if (!path || !key || !buffer || size == 0) return refuse();
    text = text_file_read(path, &found);
    if (!text) return -1;
    found = find_line(text, key, &value, &length) != NULL;
    if (found) copy_cut(buffer, size, value, length);
    free(text);
    return found;
}

int VLIBCFileCheckKeyValue(const char *path, const char *key, const char *value, int flags) {
    int found;
    char *text, *present;
    size_t length;
    (void)flags;
    if (!path || !key || !value) return 0;
    text = text_file_read(path, &found);
    found = text && find_line(text, key, &present, &length) && strlen(value) == length &&
            memcmp(value, present, length) == 0;
    free(text);
    return found;
}

int VLIBCFileSetKeyValue(const char *path, const char *key, const char *value, const char *format) {
    int found, result;
    char *text, *line, *end, *present, *new_line;
    size_t length;
    if (!path || !key || !value || !format || !is_one_line(key) || !is_one_line(value))
        return refuse();
    text = text_file_read(path, &found);
    new_line = format_line(format, key, value);
    if (!text || !new_line) {
        free(text);
        free(new_line);
        return -1;
    }
    line = find_line(text, key, &present, &length);
    if (line) {
        end = line + strcspn(line, "\n");
        end += *end == '\n';
    } else {
        line = end = text + strlen(text);
    }
    result = text_file_replace(path, text, (size_t)(line - text), new_line, end);
    free(new_line);
    free(text);
    return result == 0 ? 1 : -1;
}

int VLIBCFileRemoveKey(const char *path, const char *key) {
    int found, result = 0;
    char *text, *line, *value;
    size_t length;
    if (!path || !key) return refuse();
    text = text_file_read(path, &found);
    if (!text) return -1;
    while (result >= 0 && (line = find_line(text, key, &value, &length)) != NULL) {
        const size_t size = strcspn(line, "\n");
        memmove(line, line + size + (line[size] == '\n'),
                strlen(line + size) + 1 - (line[size] == '\n'));
        result = 1;
    }
    if (result > 0 && text_file_replace(path, text, strlen(text), "", "") != 0) result = -1;
    free(text);
    return result;
}
