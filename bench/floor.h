// The least that each operation can be done with: exactly these system calls,
// and nothing around them.
#pragma once

namespace floors {

// open, read, close, and a scan of the lines.
void ReadEntry();

// Lock, read, create, writev, rename, unlock, touch: 12 calls.
void WriteEntry();

// With a look at the mode and owner of the old file and of the new one, the least
// that keeping them takes.
void WriteEntryLookingAtOwner();

// The same calls in the order that comes to mind: everything that belongs to
// the write is done before the lock is released.
void WriteEntryInPlainOrder();

// open, read, close of the configuration's cache.
void ReadCachedSetting();

// Lock, open, read, close, unlock.
void ReadSetting();

// The five status entries and the one setting of the interface record.
void ReadInterfaceLists();

// Lock, an open, read, close and scan of the lines for each host and each of its
// enclosures, unlock.
void ReadEnclosureLists(int enclosures);

// The same calls and no scan.
void OpenEnclosureLists(int enclosures);

// lstat, open, read, close of the cluster's snapshot.
void ReadSnapshot();

// lstat, open, write, rename, close of it.
void WriteSnapshot();

// What the snapshot is built from, read, and the snapshot written: fifteen
// entries of the status file and one setting under its lock.
void BuildSnapshot();

// All the calls of a request and its answer, with the manager's two.
void SendRequest();

}  // namespace floors
