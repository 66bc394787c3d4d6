// zorctl disks: the disks that hold the system, on the active node.

#include <cstdio>
#include <memory>
#include <string>

#include "command.h"
#include "exit_code.h"
#include "library_log.h"
#include "output.h"
#include "zor_core.h"

namespace {

constexpr int kListAllocation = 1024;

using DiskList = std::unique_ptr<VLIBCSzList, decltype(&VLIBCSzListFree)>;

DiskList NewList() {
    return {VLIBCSzListAlloc(kListAllocation), VLIBCSzListFree};
}

int List(bool json) {
    VLIBCSzList *disks = NewList().release();
    const int32_t result = KEVAZORGetSystemDiskList(&disks);
    const DiskList owner(disks, VLIBCSzListFree);
    if (result != 0) {
        ReportFailure("cannot read the system disks");
        return kExitFailure;
    }
    Json output = Json::array();
    for (int index = 0; const char *disk = VLIBCSzListGet(disks, index); ++index)
        output.push_back(disk);
    if (json) {
        PrintJson({{"disks", output}});
        return kExitSuccess;
    }
    for (const Json &disk : output) puts(disk.get<std::string>().c_str());
    return kExitSuccess;
}

int Set(const std::vector<std::string> &names) {
    VLIBCSzList *disks = NewList().release();
    bool is_filled = disks != nullptr;
    for (const std::string &name : names)
        is_filled = is_filled && VLIBCSzListPush(&disks, name.c_str()) >= 0;
    const DiskList owner(disks, VLIBCSzListFree);
    if (is_filled && KEVAZORSetSystemDiskList(disks) == 0) return kExitSuccess;
    ReportFailure("cannot set the system disks");
    return kExitFailure;
}

}  // namespace

void AddDisksCommand(const Verb &app) {
    const Verb disks = app.Add("disks", "the disks that hold the system");
    disks.NeedsVerb();
    const Verb list = disks.Add("list", "their names");
    list.AddJsonFlag();
    list.Runs([=] { return List(list.PrintsJson()); });

    const auto names = std::make_shared<std::vector<std::string>>();
    const Verb set = disks.Add("set", "store their names", "sda sdb");
    set.AddOption("disk", *names, "names of disks").Required();
    set.Runs([=] { return Set(*names); });
}
