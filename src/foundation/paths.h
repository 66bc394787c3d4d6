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

constexpr char kHealthNeedUpdateFlag[] = "/tmp/zor/.zor.healthy.status.need.update";
constexpr char kHealthUpdateDoneFlag[] = "/tmp/zor/.zor.healthy.status.update.done";
constexpr char kRebootFlag[] = "/tmp/zor/reboot";
constexpr char kPoweroffFlag[] = "/tmp/zor/poweroff";
constexpr char kBiosUpgradeFlag[] = "/tmp/zor/bios_upgrade";

constexpr char kFlashVersionFile[] = "/.flash_version";
constexpr char kFlashVersionBackup[] = "/tmp/zor/.flash_version_backup";
constexpr char kSystemConfFile[] = "/etc/kevainfo.conf";
constexpr char kVersionFile[] = "/etc.defaults/VERSION";

// Where the cluster's programs live when they have a root of their own.
constexpr char kOtherRoot[] = "/dual_glibc";

constexpr char kClusterTool[] = "/usr/keva/kevazor/bin/kevazor";
constexpr char kManagerProgram[] = "/usr/keva/kevazor/bin/keva_zor_mgr_daemon";
constexpr char kKillallProgram[] = "/usr/bin/killall";
constexpr char kChrootProgram[] = "/usr/sbin/chroot";

// The line of an entry in a key/value file.
constexpr char kKeyValueLine[] = "%s=\"%s\"\n";

// The line of a pair in a sectioned file.
constexpr char kSectionLine[] = "\t%s=%s\n";
