/*
 * A handler of the web interface that serves the cluster's page: the snapshot is at
 * most twelve seconds old, and asking for it has the manager build the next one.
 */
#include <stdio.h>
#include <stdlib.h>
#include <zor_webapi_core.h>

static const char *status_word(int32_t status) {
    switch (status) {
        case 1:
            return "normal";
        case 3:
            return "warning";
        case 4:
            return "error";
        case 13:
            return "busy";
        default:
            return "unknown"; /* never a default that looks real */
    }
}

int main(void) {
    /* 68 KiB: too much for the stack of some handlers. */
    ZORUIInfo *info = calloc(1, sizeof *info);
    int32_t index;
    if (!info || KEVAZORGetZORInfoCached(info, 1) != 1) {
        printf("Status: 503\nContent-Type: text/plain\n\nno picture of the cluster yet\n");
        free(info);
        return 1;
    }
    printf("Content-Type: text/plain\n\ncluster: %s\n", status_word(info->status));
    for (index = 0; index < info->descCount; ++index)
        printf("  %s %s\n", info->desc[index].key, info->desc[index].detail);
    free(info);
    return 0;
}
