// The fixed paths of the node.
#pragma once

constexpr char kRuntimeFolder[] = "/tmp/zor";  // there while the manager runs
constexpr char kConsoleDevice[] = "/dev/console";

constexpr char kStatusFile[] = "/tmp/zor/ha.status";
constexpr char kStatusChangeFlag[] = "/tmp/zor/.zor.status.changed";

constexpr char kMsgQueueKeyFile[] = "/tmp/zor/.msg_queue_key_file";

constexpr char kFactorySerialFile[] = "/proc/sys/kernel/keva_serial";
constexpr char kCustomSerialFile[] = "/proc/sys/kernel/keva_custom_serial";
