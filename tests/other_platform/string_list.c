#include "string_list.h"

#include <kevacore.h>
#include <stdlib.h>
#include <string.h>

VLIBCSzList *VLIBCSzListAlloc(int size) {
    (void)size;
    return calloc(1, sizeof(VLIBCSzList));
}

const char *VLIBCSzListGet(const VLIBCSzList *list, int index) {
    return list && index >= 0 && index < list->count ? list->items[index] : NULL;
}

int VLIBCSzListFind(const VLIBCSzList *list, const char *text) {
    int index;
    for (index = 0; list && text && index < list->count; ++index) {
        if (strcmp(list->items[index], text) == 0) return index;
    }
    return -1;
}

static int insert(VLIBCSzList *list, int index, char *text) {
    char **items = text ? realloc(list->items, sizeof *items * ((size_t)list->count + 1)) : NULL;
    if (!items) {
        free(text);
        return -1;
    }
    list->items = items;
    if (index < 0) index = 0;
    if (index > list->count) index = list->count;
    memmove(items + index + 1, items + index, sizeof *items * (size_t)(list->count - index));
    items[index] = text;
    ++list->count;
    return 0;
}

int VLIBCSzListPush(VLIBCSzList **list, const char *text) {
    return list && *list && text ? insert(*list, (*list)->count, strdup(text)) : -1;
}

int VLIBCSzListInsert(VLIBCSzList **list, int index, const char *text) {
    return list && *list && text ? insert(*list, index, strdup(text)) : -1;
}

void VLIBCSzListRemoveAll(VLIBCSzList *list) {
    while (list && list->count > 0) free(list->items[--list->count]);
}

int VLIBCSzListDump2Str(const VLIBCSzList *list, const char *separator, char *buffer,
                        unsigned int size) {
    unsigned int length = 0;
    int index;
    if (!list || !separator || !buffer || size == 0) return -1;
    buffer[0] = '\0';
    for (index = 0; index < list->count; ++index) {
        const char *parts[2];
        int part;
        parts[0] = index > 0 ? separator : "";
        parts[1] = list->items[index];
        for (part = 0; part < 2; ++part) {
            const size_t more = strlen(parts[part]);
            if (more >= size - length) return -1;
            strcpy(buffer + length, parts[part]);
            length += (unsigned int)more;
        }
    }
    return (int)length;
}

void VLIBCSzListFree(VLIBCSzList *list) {
    VLIBCSzListRemoveAll(list);
    if (list) free(list->items);
    free(list);
}

int VLIBCStrSep(const char *text, const char *separator, VLIBCSzList **list) {
    int items = 0;
    if (!text || !separator || !*separator || !list || !*list) return -1;
    for (;;) {
        const char *end = strstr(text, separator);
        const size_t length = end ? (size_t)(end - text) : strlen(text);
        if (insert(*list, (*list)->count, strndup(text, length)) != 0) return -1;
        ++items;
        if (!end) return items;
        text = end + strlen(separator);
    }
}
