// kevazor_bench: what the library's hot operations cost over their floors.

#include <fcntl.h>
#include <kevacore.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "call_count.h"
#include "floor.h"
#include "manager_hop.h"
#include "node_setup.h"
#include "paired_loop.h"
#include "peer.h"
#include "section_lock.h"
#include "webapi/ui_cache.h"
#include "zor_conf.h"
#include "zor_core.h"
#include "zor_hwinfo_core.h"
#include "zor_status.h"
#include "zor_webapi_core.h"

namespace {

constexpr int kRounds = 401;

void Expect(bool condition, const char *what) {
    if (condition) return;
    fprintf(stderr, "kevazor_bench: %s failed\n", what);
    exit(1);
}

// --- The operations of the library, and the same without it

void ReadByLibrary() {
    char value[180];
    Expect(ZORGetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IP, value, sizeof value) == 1, "read");
}

void ReadByBaseLibrary() {
    char value[180];
    Expect(VLIBCFileGetKeyValue(kStatusFile, kEntry, value, sizeof value, 0) == 1, "read");
}

void WriteByLibrary() {
    Expect(ZORSetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IP, "10.0.0.1,10.0.0.3") == 0, "write");
}

void WriteByBaseLibrary() {
    const int lock = open(kStatusLock, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    flock(lock, LOCK_EX | LOCK_NB);
    Expect(VLIBCFileSetKeyValue(kStatusFile, kEntry, "10.0.0.1,10.0.0.3", "%s=\"%s\"\n") == 1,
           "write");
    flock(lock, LOCK_UN);
    close(lock);
    VLIBCFileTouch(kChangeFlag);
}

void ReadCachedByLibrary() {
    char value[36];
    Expect(ZORGetHAConf(ZOR_HOST_CLUSTER, ZOR_CONF_SN, value, sizeof value) == 1, "cached read");
}

void ReadCachedByBaseLibrary() {
    char value[36];
    Expect(VLIBCFileGetKeyValue(kConfCache, "sn_ha", value, sizeof value, 0) == 1, "cached read");
}

void ReadSettingByLibrary() {
    char value[144];
    Expect(ZORGetHAConf(ZOR_HOST_CLUSTER, ZOR_CONF_MONITOR_IF, value, sizeof value) == 1,
           "setting");
}

void ReadSettingByBaseLibrary() {
    char value[144];
    const int lock = open(kConfLock, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    flock(lock, LOCK_EX | LOCK_NB);
    Expect(VLIBCFileGetKeyValue(kConfFile, "monitor_if", value, sizeof value, 0) == 1, "setting");
    flock(lock, LOCK_UN);
    close(lock);
}

void BuildInterfacesByLibrary() {
    ZORIfInfo info;
    Expect(ZORGetConfIfInfo(&info) == 0, "interface record");
}

// The reads and the lists of the record, and nothing made of them.
void BuildInterfacesByBaseLibrary() {
    constexpr const char *kEntries[] = {"local_role", "local_host_ifname", "local_if_has_static_ip",
                                        "local_host_if_speed", "remote_host_if_speed"};
    VLIBCSzList *lists[7];
    for (VLIBCSzList *&list : lists) list = VLIBCSzListAlloc(1024);
    ReadSettingByBaseLibrary();
    VLIBCStrSep("yes,yes,yes,yes,yes,no,no,no,no", ",", &lists[0]);
    for (int entry = 0; entry < 5; ++entry) {
        char value[306];
        Expect(VLIBCFileGetKeyValue(kStatusFile, kEntries[entry], value, sizeof value, 0) == 1,
               kEntries[entry]);
        if (entry > 0) VLIBCStrSep(value, ",", &lists[entry]);
    }
    VLIBCStrSep("bond1:eth2:eth3", ":", &lists[5]);
    VLIBCStrSep("0:10000:10000", ":", &lists[6]);
    for (VLIBCSzList *list : lists) {
        for (int index = 0; VLIBCSzListGet(list, index); ++index) {
        }
        VLIBCSzListRemoveAll(list);
        VLIBCSzListFree(list);
    }
}

void ReadEnclosuresByLibrary() {
    static ZORHWHostInfo local, remote;
    Expect(ZORHWGetEncListCached(&local, &remote) == 0, "enclosure lists");
}

void SplitValue(VLIBCSzHash *hash, const char *key, VLIBCSzList **list) {
    const char *value = VLIBCSzHashGetValue(hash, key);
    if (!value) return;
    VLIBCSzListRemoveAll(*list);
    const int count = VLIBCStrSep(value, ",", list);
    for (int index = 0; index < count; ++index) VLIBCSzListGet(*list, index);
}

void ReadSectionByBaseLibrary(const char *section) {
    constexpr const char *kLists[] = {"EncList", "DiskTypes", "FanStatus", "PowerStatus"};
    VLIBCSzHash *hash = VLIBCSzHashAlloc(1024);
    VLIBCSzList *list = VLIBCSzListAlloc(1024);
    Expect(VLIBCFileGetSection(kHardwareFile, section, &hash) > 0, section);
    for (const char *key : kLists) SplitValue(hash, key, &list);
    VLIBCSzHashFree(hash);
    VLIBCSzListFree(list);
}

// The sections and the lists of the records, and nothing made of them.
void ReadEnclosuresByBaseLibrary() {
    const int lock = open(kHardwareLock, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    flock(lock, LOCK_EX | LOCK_NB);
    for (const char *host : {"LOCAL_HOST", "REMOTE_HOST"}) {
        ReadSectionByBaseLibrary(host);
        for (int number = 10; number < 10 + ZOR_ENC_TABLE_SIZE; ++number) {
            char section[64];
            snprintf(section, sizeof section, "ENCLOSURE_ENCLOSURE2140QLN0000%d", number);
            ReadSectionByBaseLibrary(section);
        }
    }
    flock(lock, LOCK_UN);
    close(lock);
}

void ReadSnapshotByLibrary() {
    static ZORUIInfo info;
    Expect(readObject(kSnapshotFile, &info, sizeof info) == 1, "snapshot");
}

void WriteSnapshotByLibrary() {
    static const ZORUIInfo info = {};
    Expect(writeObject(kSnapshotFile, &info, sizeof info) == 0, "snapshot");
}

void BuildSnapshotByLibrary() {
    Expect(ZORUIGetZORInfo() == 0, "cluster snapshot");
}

void RequestByLibrary() {
    ZORMgrRequest request = {};
    request.commandId = 1000;
    request.wait = 1;
    Expect(ZORSendReqToMgr(&request) == 0, "request");
    free(request.outputData);
}

// --- The report

void PrintRatio(const char *name, const PairedTimes &times, const char *target) {
    printf("%-44s %6.3f   %8.2f us over %8.2f us   target %s\n", name, times.ratio, times.first_us,
           times.second_us, target);
    fflush(stdout);
}

void PrintCount(const char *name, long count, const char *target) {
    printf("%-44s %6ld   %36s target %s\n", name, count, "", target);
    fflush(stdout);
}

void MeasureRead() {
    PrintRatio("R  read one entry / floor",
               TimePaired(ReadByLibrary, floors::ReadEntry, kRounds, 200), "<= 1.15");
    PrintRatio("   the library's part: / base-library call",
               TimePaired(ReadByLibrary, ReadByBaseLibrary, kRounds, 200), "<= 1.05");
    const CallCount count = CountCalls(ReadByLibrary, true);
    PrintCount("   system calls", count.system_calls, "3");
    PrintCount("   instructions", count.instructions, "<= 2000");
}

double HoldTime(void (*operation)()) {
    ResetHoldTimes();
    for (int number = 0; number < 20000; ++number) operation();
    return MedianHoldTime();
}

void MeasureWrite() {
    PrintRatio("W  set one entry / floor",
               TimePaired(WriteByLibrary, floors::WriteEntry, kRounds, 50), "<= 1.05");
    PrintRatio("   the library's part: / base-library calls",
               TimePaired(WriteByLibrary, WriteByBaseLibrary, kRounds, 50), "<= 1.05");
    PrintRatio("   (the floor with a look at mode and owner / floor)",
               TimePaired(floors::WriteEntryLookingAtOwner, floors::WriteEntry, kRounds, 50), "");
    PrintRatio("   (a writer with stdio / floor)",
               TimePaired(peers::WriteEntryWithStdio, floors::WriteEntry, kRounds, 50), "");
    PrintCount("   system calls", CountCalls(WriteByLibrary, false).system_calls, "12 to 13");
    const double library = HoldTime(WriteByLibrary);
    const double plain = HoldTime(floors::WriteEntryInPlainOrder);
    const double floor = HoldTime(floors::WriteEntry);
    PrintRatio("   lock held / plain order", {library, plain, library / plain}, "<= 0.55");
    PrintRatio("   (lock held by the floor / plain order)", {floor, plain, floor / plain}, "");
    const double looking = HoldTime(floors::WriteEntryLookingAtOwner);
    PrintRatio("   (and by the one that looks at mode and owner)",
               {looking, plain, looking / plain}, "");
}

void MeasureConf() {
    PrintRatio("C  read a cached setting / floor",
               TimePaired(ReadCachedByLibrary, floors::ReadCachedSetting, kRounds, 200), "");
    PrintRatio("   the library's part: / base-library call",
               TimePaired(ReadCachedByLibrary, ReadCachedByBaseLibrary, kRounds, 200), "<= 1.05");
    PrintRatio("U  read a setting under its lock / floor",
               TimePaired(ReadSettingByLibrary, floors::ReadSetting, kRounds, 200), "");
    PrintRatio("   the library's part: / base-library call",
               TimePaired(ReadSettingByLibrary, ReadSettingByBaseLibrary, kRounds, 200), "<= 1.05");
    PrintRatio("I  build the interface record / floor",
               TimePaired(BuildInterfacesByLibrary, floors::ReadInterfaceLists, kRounds, 50), "");
    PrintRatio("   the library's part: / base-library calls",
               TimePaired(BuildInterfacesByLibrary, BuildInterfacesByBaseLibrary, kRounds, 50),
               "<= 1.05");
}

void MeasureHardware() {
    constexpr int kSizes[] = {0, 1, 5, 10, ZOR_ENC_TABLE_SIZE};
    for (const int enclosures : kSizes) {
        SetUpHardware(enclosures);
        char name[64];
        snprintf(name, sizeof name, "H  both lists of %2d enclosures / floor and scan", enclosures);
        PrintRatio(name,
                   TimePaired(
                       ReadEnclosuresByLibrary,
                       [enclosures] { floors::ReadEnclosureLists(enclosures); }, kRounds, 20),
                   "");
    }
    const auto floor = [] { floors::ReadEnclosureLists(ZOR_ENC_TABLE_SIZE); };
    const auto calls = [] { floors::OpenEnclosureLists(ZOR_ENC_TABLE_SIZE); };
    PrintRatio("   the library's part: / base-library calls",
               TimePaired(ReadEnclosuresByLibrary, ReadEnclosuresByBaseLibrary, kRounds, 20),
               "<= 1.05");
    PrintRatio("   (a std::map for each section / floor and scan)",
               TimePaired(peers::ReadEnclosureListsWithMaps, floor, kRounds, 20), "");
    PrintRatio("   both lists of 15 enclosures / floor",
               TimePaired(ReadEnclosuresByLibrary, calls, kRounds, 20), "<= 1.25");
    PrintRatio("   (a std::map for each section / floor)",
               TimePaired(peers::ReadEnclosureListsWithMaps, calls, kRounds, 20), "");
    PrintCount("   system calls", CountCalls(ReadEnclosuresByLibrary, false).system_calls, "");
}

void MeasureSnapshots() {
    WriteSnapshotByLibrary();
    // Read for less than the seconds that it stays fresh.
    PrintRatio("S  read a snapshot / floor",
               TimePaired(ReadSnapshotByLibrary, floors::ReadSnapshot, kRounds, 50), "<= 1.05");
    PrintCount("   system calls", CountCalls(ReadSnapshotByLibrary, false).system_calls, "4");
    PrintRatio("SW write a snapshot / floor",
               TimePaired(WriteSnapshotByLibrary, floors::WriteSnapshot, kRounds, 50), "<= 1.05");
    PrintCount("   system calls", CountCalls(WriteSnapshotByLibrary, false).system_calls, "5");
    PrintRatio("B  build the cluster snapshot / floors",
               TimePaired(BuildSnapshotByLibrary, floors::BuildSnapshot, kRounds, 20), "<= 1.25");
    PrintCount("   system calls", CountCalls(BuildSnapshotByLibrary, false).system_calls, "");
}

void MeasureRequest() {
    StartManagerHop();
    PrintRatio("Q  one request and its answer / floor",
               TimePaired(RequestByLibrary, floors::SendRequest, kRounds, 50), "<= 1.1");
    PrintCount("   system calls", CountCalls(RequestByLibrary, false).system_calls, "21");
    StopManagerHop();
}

struct Measurement {
    const char *letter;  // of its first row
    void (*measure)();
};

constexpr Measurement kMeasurements[] = {
    {"R", MeasureRead},     {"W", MeasureWrite},     {"C", MeasureConf},
    {"H", MeasureHardware}, {"S", MeasureSnapshots}, {"Q", MeasureRequest},
};

}  // namespace

// The arguments choose measurements by their letters; without any, all are made.
int main(int argc, char **argv) {
    SetUpNode();
    bool is_any_chosen = false;
    for (const auto &[letter, measure] : kMeasurements) {
        const bool is_chosen =
            argc == 1 || std::any_of(argv + 1, argv + argc, [letter = letter](const char *choice) {
                return strcmp(letter, choice) == 0;
            });
        if (is_chosen) measure();
        is_any_chosen = is_any_chosen || is_chosen;
    }
    if (is_any_chosen) return 0;
    fprintf(stderr, "kevazor_bench: choose from R W C H S Q\n");
    return 64;
}
