// The same operations as they are usually written, to compare with.
#pragma once

namespace peers {

// Lock, the lines read and written with stdio, rename, unlock, touch.
void WriteEntryWithStdio();

// Lock, one read of the file and a std::map for each host and each of its
// enclosures, and the records filled from them; unlock.
void ReadEnclosureListsWithMaps();

}  // namespace peers
