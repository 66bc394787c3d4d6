// The files of a node that the measured operations work on.
#pragma once

constexpr char kStatusFile[] = "/tmp/zor/ha.status";
constexpr char kStatusTemporary[] = "/tmp/zor/.ha.status.floor";
constexpr char kStatusLock[] = "/tmp/zor/.zor.ha.status.lock";
constexpr char kChangeFlag[] = "/tmp/zor/.zor.status.changed";
constexpr char kConfFile[] = "/usr/keva/etc/kevazor/ha.conf";
constexpr char kConfLock[] = "/tmp/zor/.zor.ha.conf.lock";
constexpr char kConfCache[] = "/tmp/zor/ha.info.cache";
constexpr char kKeyFile[] = "/tmp/zor/.msg_queue_key_file";
constexpr char kSerialFile[] = "/proc/sys/kernel/keva_serial";

// The entry that is read and written; it stands in the middle of the file.
constexpr char kEntry[] = "local_host_IP";

constexpr char kSnapshotFile[] = "/tmp/zor/ui/.bench.cache";
constexpr char kSnapshotTemporary[] = "/tmp/zor/ui/.bench.floor.temp";

constexpr char kHardwareFile[] = "/tmp/zor/hw_info";
constexpr char kHardwareLock[] = "/tmp/zor/.zor.ha.hwinfo.lock";

// Writes a hardware file in which both nodes have this many enclosures: 5 KB for
// fifteen.
void SetUpHardware(int enclosures);

// Writes a status file of 44 entries and about 2.4 KB, a configuration and its
// cache, the key file, and the change flag. Ends the program when this is no private node.
void SetUpNode();
