#include "fault/working_node.h"

#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "kevacore.h"
#include "support/queue_end.h"
#include "zor_core.h"
#include "zor_filelock.h"
#include "zor_status.h"
#include "zor_webapi_core.h"

namespace fs = std::filesystem;

namespace {

constexpr char kStatus[] =
    "is_local_handler_ready=\"yes\"\n"
    "local_role=\"1\"\n"
    "remote_role=\"2\"\n"
    "local_boot_stage=\"3\"\n"
    "remote_boot_stage=\"3\"\n"
    "ha_runtime_status=\"1\"\n"
    "is_remote_alive_by_net=\"yes\"\n"
    "is_remote_alive_by_expander_hb=\"yes\"\n"
    "is_remote_handler_ready=\"yes\"\n"
    "remote_boot_done_status=\"1\"\n"
    "is_hwevd_ready=\"yes\"\n"
    "local_host_ifname=\"eth0,bond0:eth1:eth2\"\n"
    "local_host_IP=\"10.0.0.1,10.0.0.2\"\n"
    "local_if_has_static_ip=\"yes,yes\"\n"
    "local_host_if_speed=\"1000,1000,1000,1000\"\n"
    "remote_host_if_speed=\"1000,1000,1000,1000\"\n"
    "local_host_if_status=\"up,up\"\n"
    "monitor_service_status=\"running,none,none\"\n"
    "system_disk_list=\"sda,sdb\"\n"
    "service_changed=\"yes\"\n"
    "enc_link_status=\"1\"\n"
    "healthy_status=\"10\"\n"
    "failed_local_interfaces=\"eth0\"\n"
    "failed_local_services=\"samba\"\n";

constexpr char kConf[] =
    "sn_ha=\"CLUSTER\"\n"
    "sn_ha_custom=\"CLUSTERC\"\n"
    "sn0=\"NODE0001\"\n"
    "sn1=\"NODE0002\"\n"
    "sn0_custom=\"CUSTOM01\"\n"
    "sn1_custom=\"CUSTOM02\"\n"
    "mac_all_ha=\"001132000001,001132000002\"\n"
    "monitor_if=\"yes,yes,no,no,no,no,no,no,no\"\n"
    "monitor_service=\"yes,no,no,no,no,no,no,no,no,no,no,no,no,no,no,no\"\n";

constexpr char kConstraints[] =
    "failed_services_NODE0001=\"samba\"\n"
    "failed_services_NODE0002=\"nfsd\"\n";

std::string Enclosure(const std::string &serial) {
    return "[ENCLOSURE_" + serial + "]\n\tModelID=4\n\tMaxDisk=2\n\tEncSN=" + serial +
           "\n\tDiskTypes=1,2\n\tFanStatus=1,1,1,1,1,1,1,1\n\tPowerStatus=1,1\n\tTempStatus=1\n";
}

std::string Hardware() {
    return "[LOCAL_HOST]\n\tMemory=8192\n\tHostType=8\n\tEncListLength=2\n\tEncListStatus=1\n"
           "\tEncListStatusLastCorretPos=2\n\tEncList=E1,E2\n"
           "[REMOTE_HOST]\n\tMemory=8192\n\tHostType=16\n\tEncListLength=2\n\tEncListStatus=1\n"
           "\tEncListStatusLastCorretPos=2\n\tEncList=E1,E2\n" +
           Enclosure("E1") + Enclosure("E2") + Enclosure("OLD") +
           "[COMMON]\n\tCrashedSpaces=0\n\tAllEnclosure=E1,E2,OLD\n";
}

constexpr uint32_t kAskNodeCommand = 33;
constexpr uint32_t kLoadUICommand = 50;
constexpr uint32_t kHaltCheckCommand = 60;
constexpr uint32_t kCheckHealthCommand = 63;

// What senders expect: nothing, but for two commands.
std::string AnswerOf(uint32_t command) {
    constexpr size_t kNodeAnswerSize = 56;
    if (command == kAskNodeCommand) return std::string(kNodeAnswerSize, '\0');
    if (command != kHaltCheckCommand) return "";
    ZORHaltCheck check = {};
    check.local.blocked = 1;
    strcpy(check.local.tasks, "rebuild");
    return {reinterpret_cast<const char *>(&check), sizeof check};
}

void Grant(const ZORMgrMessage &request) {
    if (request.commandId == kCheckHealthCommand) {
        unlink("/tmp/zor/.zor.healthy.status.need.update");
        VLIBCFileTouch("/tmp/zor/.zor.healthy.status.update.done");
    }
    if (request.commandId == kLoadUICommand) {
        int32_t type;
        memcpy(&type, request.payload, sizeof type);
        ZORUILoadUI(type);
    }
    if (request.wait == 0) return;
    queue_end::TryPut(queue_end::kAnswers,
                      queue_end::AnswerTo(request, 1, AnswerOf(request.commandId)));
}

}  // namespace

void MakeWorkingNode() {
    for (const std::string &path : TemporaryFiles()) fs::remove(path);
    for (const char *folder : {kRuntimeFolder, "/usr/keva/etc/kevazor", "/var/lib/zor"}) {
        for (const fs::directory_entry &entry : fs::directory_iterator(folder)) {
            if (entry.path().filename() != ".msg_queue_key_file") fs::remove_all(entry.path());
        }
    }
    fs::create_directories(kCacheFolder);
    WriteText(kStatusFile, kStatus);
    WriteText(kConfFile, kConf);
    WriteText(kConstraintFile, kConstraints);
    WriteText(kHardwareFile, Hardware());
    WriteText(kFlashVersionFile, "flash_version=\"6.1-1000\"\nother=\"kept\"\n");
    fs::create_directories("/etc.defaults");
    WriteText("/etc.defaults/VERSION", "majorversion=\"6\"\nminorversion=\"1\"\n");
    fs::create_directories("/usr/keva/kevazor/bin");
    if (!Exists("/usr/keva/kevazor/bin/kevazor"))
        fs::copy_file("/bin/true", "/usr/keva/kevazor/bin/kevazor");
    setenv("SERVER_ADDR", "10.0.0.1", 1);
    for (const int queue : {queue_end::kRequests, queue_end::kAnswers}) {
        while (queue_end::Take(queue)) {
        }
    }
}

void GrantRequests() {
    virtual_time::Start([](int) {
        while (const auto request = queue_end::Take()) Grant(*request);
    });
}

std::vector<std::string> HeldLocks() {
    std::vector<std::string> held;
    for (const ZORFileLockEntry &entry : rgsaalckList) {
        FILE *handle = nullptr;
        if (ZORFileLock(entry.id, 0, &handle) != 0)
            held.emplace_back(entry.path);
        else
            ZORFileUnlock(&handle);
    }
    return held;
}

std::vector<std::string> TemporaryFiles() {
    std::vector<std::string> found;
    for (const char *folder :
         {kRuntimeFolder, kCacheFolder, "/usr/keva/etc/kevazor", "/var/lib/zor", "/"}) {
        std::error_code absent;
        for (const fs::directory_entry &entry : fs::directory_iterator(folder, absent)) {
            if (entry.path().extension() == ".temp") found.push_back(entry.path());
        }
    }
    return found;
}

void BePassive() {
    ASSERT_EQ(ZORSetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_ROLE, "2"), 0);
}
