/* Pairs in an array, in the order in which their keys came. */
#ifndef STRING_HASH_H
#define STRING_HASH_H

struct VLIBCSzHash {
    struct {
        char *key;
        char *value;
    } * pairs;
    int count;
};

#endif
