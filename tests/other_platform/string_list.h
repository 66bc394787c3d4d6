/* Strings in an array. */
#ifndef STRING_LIST_H
#define STRING_LIST_H

struct VLIBCSzList {
    char **items;
    int count;
};

#endif
