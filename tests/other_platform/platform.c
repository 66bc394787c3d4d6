/* The rest of the base library: error codes, file tests, processes, the model. */
#include <errno.h>
#include <fcntl.h>
#include <kevacore.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

enum {
    MOST_ARGUMENTS = 64
};

static __thread int error_code;

void VLIBCErrSetEx(int code, const char *source, int line) {
    (void)source;
    (void)line;
    error_code = code;
}

int VLIBCErrGet(void) {
    return error_code;
}

int VLIBCFileExist(const char *path) {
    struct stat status;
    return path && stat(path, &status) == 0;
}

int VLIBCFileCheckDir(const char *path) {
    struct stat status;
    return path && stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

int VLIBCFileTouch(const char *path) {
    int file;
    if (!path) return -1;
    if (utimensat(AT_FDCWD, path, NULL, AT_SYMLINK_NOFOLLOW) == 0) return 0;
    file = open(path, O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0644);
    if (file < 0) return -1;
    close(file);
    return 0;
}

static int run(char *const arguments[]) {
    int status;
    const pid_t child = fork();
    if (child < 0) return -1;
    if (child == 0) {
        close_range(3, ~0U, 0);
        execv(arguments[0], arguments);
        _exit(127);
    }
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) return -1;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) != 127 ? WEXITSTATUS(status) : -1;
}

static int run_list(const char *path, va_list list) {
    char *arguments[MOST_ARGUMENTS];
    int count = 0;
    if (!path) return -1;
    arguments[count++] = (char *)(size_t)path;
    while (count < MOST_ARGUMENTS && (arguments[count] = va_arg(list, char *)) != NULL) ++count;
    return count < MOST_ARGUMENTS ? run(arguments) : -1;
}

int VLIBCExec(const char *path, ...) {
    va_list list;
    int result;
    va_start(list, path);
    result = run_list(path, list);
    va_end(list);
    return result;
}

int VLIBCExecl(int options, const char *path, ...) {
    va_list list;
    int result;
    (void)options;
    va_start(list, path);
    result = run_list(path, list);
    va_end(list);
    return result;
}

int VLIBCProcOomScoreSet(int score) {
    FILE *file = fopen("/proc/self/oom_score_adj", "we");
    int is_written;
    if (!file) return -1;
    is_written = fprintf(file, "%d", score) > 0;
    return fclose(file) == 0 && is_written ? 0 : -1;
}

/* The tests say that a model does not support two nodes by a setting. */
int VLIBCSupportDualhead(void) {
    return !VLIBCFileCheckKeyValue("/usr/keva/etc/kevacore-stand-in.conf", "support_dualhead", "no",
                                   0);
}
