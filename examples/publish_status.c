/*
 * A daemon that publishes status: it stores an entry of ha.status whenever its value
 * changes, and tells readers by the change flag. This one watches the load average.
 *
 * Usage: publish_status ROUNDS
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>
#include <zor_status.h>

/* The manager makes the folder that everything lies in, and removes it when it stops. */
static int is_manager_running(void) {
    return ZORIsTmpPathExist();
}

/* 0, or -1 with the reason in the system log. */
static int publish(const char *value) {
    char present[64] = "";
    if (ZORGetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_VERSION, present, sizeof present) == 1 &&
        strcmp(present, value) == 0)
        return 0;
    return ZORSetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_VERSION, value);
}

int main(int argc, char **argv) {
    int rounds = argc > 1 ? atoi(argv[1]) : 1;
    char value[64];
    while (rounds-- > 0) {
        if (!is_manager_running()) {
            fprintf(stderr, "publish_status: the manager is not running\n");
            return 1;
        }
        snprintf(value, sizeof value, "6.1-%d", rounds);
        if (publish(value) != 0) {
            fprintf(stderr, "publish_status: see the system log\n");
            return 1;
        }
        if (rounds > 0) sleep(1);
    }
    printf("published %s\n", value);
    return 0;
}
