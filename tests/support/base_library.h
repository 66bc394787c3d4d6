// The base library between the library under test and its own: this program's
// versions of its operations pass every call on, until one is told to fail. A
// real base library fails where a stand-in cannot be brought to it.
#pragma once

namespace base_library {

enum class Call {
    kListAlloc,
    kListInsert,
    kStrSep,
    kHashAlloc,
    kHashSetValue,
    kGetSection,
    kSetSection,
    kAddSection,
    kRemoveSection,
    kGetSectionValue,
    kSetSectionValue,
    kCount
};

// Makes the nth call from now on fail, and no other.
void Fail(Call call, int nth = 1);

// Undoes every Fail; true when each of them was reached.
bool Reset();

}  // namespace base_library
