#include "text_file.h"

#include <errno.h>
#include <fcntl.h>
#include <kevacore.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

/* Keeps the reason of a failure for whoever asks. */
static void *fail(int error) {
    VLIBCErrSetEx(error ? error : EIO, "text_file", __LINE__);
    return NULL;
}

char *text_file_read(const char *path, int *found) {
    struct stat status;
    char *text = NULL;
    FILE *file = NULL;
    *found = 0;
    if (lstat(path, &status) != 0) return errno == ENOENT ? calloc(1, 1) : fail(errno);
    if (!S_ISREG(status.st_mode)) return fail(EINVAL);
    /* A writer may have put a new file in place since: the stream's own size counts. */
    file = fopen(path, "re");
    if (!file) return errno == ENOENT ? calloc(1, 1) : fail(errno);
    if (fstat(fileno(file), &status) == 0) {
        text = calloc(1, (size_t)status.st_size + 1);
        if (text && fread(text, 1, (size_t)status.st_size, file) != (size_t)status.st_size) {
            free(text);
            text = NULL;
        }
    }
    fclose(file);
    *found = text != NULL;
    return text ? text : fail(errno);
}

/* The folder of the target gets the new file, so that the rename stays in it. */
static int make_temporary(const char *path, char *name, size_t size) {
    if (snprintf(name, size, "%s.XXXXXX", path) >= (int)size) return -1;
    return mkostemp(name, O_CLOEXEC);
}

int text_file_replace(const char *path, const char *head, size_t head_length, const char *middle,
                      const char *tail) {
    char name[4096];
    struct stat status;
    const int is_old = lstat(path, &status) == 0;
    int descriptor;
    FILE *file;
    int is_written;
    if (is_old && !S_ISREG(status.st_mode)) return -1;
    descriptor = make_temporary(path, name, sizeof name);
    if (descriptor < 0) return -1;
    file = fdopen(descriptor, "w");
    if (!file) {
        close(descriptor);
        unlink(name);
        return -1;
    }
    is_written = fwrite(head, 1, head_length, file) == head_length && fputs(middle, file) >= 0 &&
                 fputs(tail, file) >= 0 &&
                 fchmod(descriptor, is_old ? status.st_mode & 07777 : 0644) == 0;
    if (fclose(file) != 0 || !is_written || rename(name, path) != 0) {
        unlink(name);
        return -1;
    }
    return 0;
}

int is_one_line(const char *text) {
    return strchr(text, '\n') == NULL;
}

void copy_cut(char *buffer, unsigned int size, const char *text, size_t length) {
    const size_t kept = length < size ? length : size - 1;
    memcpy(buffer, text, kept);
    buffer[kept] = '\0';
}

char *format_line(const char *format, const char *key, const char *value) {
    const char *first = strstr(format, "%s");
    const char *second = first ? strstr(first + 2, "%s") : NULL;
    char *line = NULL;
    if (second && asprintf(&line, "%.*s%s%.*s%s%s", (int)(first - format), format, key,
                           (int)(second - first - 2), first + 2, value, second + 2) < 0)
        line = NULL;
    return line;
}
