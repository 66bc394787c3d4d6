#include "string_hash.h"

#include <kevacore.h>
#include <stdlib.h>
#include <string.h>

VLIBCSzHash *VLIBCSzHashAlloc(int size) {
    (void)size;
    return calloc(1, sizeof(VLIBCSzHash));
}

static int find(const VLIBCSzHash *hash, const char *key) {
    int index;
    for (index = 0; index < hash->count; ++index) {
        if (strcmp(hash->pairs[index].key, key) == 0) return index;
    }
    return -1;
}

const char *VLIBCSzHashGetValue(const VLIBCSzHash *hash, const char *key) {
    const int index = hash && key ? find(hash, key) : -1;
    return index >= 0 ? hash->pairs[index].value : NULL;
}

static int add(VLIBCSzHash *hash, const char *key, char *value) {
    void *pairs = realloc(hash->pairs, sizeof *hash->pairs * ((size_t)hash->count + 1));
    char *copy = strdup(key);
    if (pairs) hash->pairs = pairs;
    if (!pairs || !copy) {
        free(copy);
        free(value);
        return -1;
    }
    hash->pairs[hash->count].key = copy;
    hash->pairs[hash->count].value = value;
    ++hash->count;
    return 0;
}

int VLIBCSzHashSetValue(VLIBCSzHash **hash, const char *key, const char *value) {
    int index;
    char *copy;
    if (!hash || !*hash || !key || !value) return -1;
    copy = strdup(value);
    if (!copy) return -1;
    index = find(*hash, key);
    if (index < 0) return add(*hash, key, copy);
    free((*hash)->pairs[index].value);
    (*hash)->pairs[index].value = copy;
    return 0;
}

void VLIBCHashRemoveAll(VLIBCSzHash *hash) {
    while (hash && hash->count > 0) {
        --hash->count;
        free(hash->pairs[hash->count].key);
        free(hash->pairs[hash->count].value);
    }
}

void VLIBCSzHashFree(VLIBCSzHash *hash) {
    VLIBCHashRemoveAll(hash);
    if (hash) free(hash->pairs);
    free(hash);
}
