// A zeroed message on the heap, freed at the end of its scope.
#pragma once

#include <cstdlib>
#include <memory>

#include "zor_core.h"

struct HeapMessageFree {
    void operator()(ZORMgrMessage *message) const { free(message); }
};

using HeapMessage = std::unique_ptr<ZORMgrMessage, HeapMessageFree>;

// Null when memory is short.
inline HeapMessage NewHeapMessage() {
    return HeapMessage(static_cast<ZORMgrMessage *>(calloc(1, sizeof(ZORMgrMessage))));
}
