// The fixed paths of the node, and the forms of the lines in its files.
#pragma once

constexpr char kRuntimeFolder[] = "/tmp/zor";  // there while the manager runs
constexpr char kConsoleDevice[] = "/dev/console";

constexpr char kStatusFile[] = "/tmp/zor/ha.status";
constexpr char kStatusChangeFlag[] = "/tmp/zor/.zor.status.changed";

constexpr char kConfFile[] = "/usr/keva/etc/kevazor/ha.conf";
constexpr char kConfCacheFile[] = "/tmp/zor/ha.info.cache";
constexpr char kConfChangeFlag[] = "/tmp/zor/.zor.conf.changed";
constexpr char kNetChangingFlag[] = "/tmp/zor/.zor.net.conf.changing";

constexpr char kConstraintFile[] = "/var/lib/zor/zor.constraint";

constexpr char kHardwareFile[] = "/tmp/zor/hw_info";

constexpr char kMsgQueueKeyFile[] = "/tmp/zor/.msg_queue_key_file";

constexpr char kFactorySerialFile[] = "/proc/sys/kernel/keva_serial";
constexpr char kCustomSerialFile[] = "/proc/sys/kernel/keva_custom_serial";

// The line of an entry in a key/value file.
constexpr char kKeyValueLine[] = "%s=\"%s\"\n";

// The line of a pair in a sectioned file.
constexpr char kSectionLine[] = "\t%s=%s\n";
