#include "node_setup.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "zornode/private_node.h"

namespace fs = std::filesystem;

void SetUpHardware(int enclosures) {
    std::string serials;
    std::string sections;
    for (int number = 0; number < enclosures; ++number) {
        const std::string serial = "ENCLOSURE2140QLN0000" + std::to_string(10 + number);
        serials += (number == 0 ? "" : ",") + serial;
        sections += "[ENCLOSURE_" + serial + "]\n\tModelID=4\n\tMaxDisk=15\n\tEncSN=" + serial +
                    "\n\tDiskTypes=1,1,1,1,1,1,1,1,1,1,1,1,1,1,1\n\tTempStatus=1\n"
                    "\tFanStatus=1,1,1,1,1,1,1,1\n\tPowerStatus=1,1\n";
    }
    const std::string length = std::to_string(enclosures);
    const std::string values =
        "\tVisibleDisk=24\n\tUsedDisk=20\n\tHostType=8\n\tMemory=8192\n"
        "\tEncListStatus=1\n\tEncListLength=" +
        length + "\n\tEncListStatusLastCorretPos=" + length + "\n\tEncList=" + serials + "\n";
    std::ofstream(kHardwareFile) << "[LOCAL_HOST]\n"
                                 << values << "[REMOTE_HOST]\n"
                                 << values << "[COMMON]\n\tAllEnclosure=" << serials << "\n"
                                 << sections;
}

void SetUpNode() {
    if (!IsInPrivateNode()) {
        fprintf(stderr, "kevazor_bench: run me in a private node: scripts/bench\n");
        exit(2);
    }
    fs::create_directories("/tmp/zor/ui");
    std::ofstream(kKeyFile).flush();
    std::ofstream(kChangeFlag).flush();
    std::ofstream status(kStatusFile);
    status << "local_role=\"1\"\nlocal_host_ifname=\"eth0,eth1,bond1:eth2:eth3\"\n"
           << "local_if_has_static_ip=\"yes,no,yes\"\n"
           << "local_host_if_speed=\"1000,1000,1000,0:10000:10000\"\n"
           << "remote_host_if_speed=\"1000,1000,1000,10000,10000\"\n";
    status << "local_boot_stage=\"3\"\nis_remote_alive_by_net=\"yes\"\n"
           << "is_remote_alive_by_expander_hb=\"yes\"\nis_remote_handler_ready=\"yes\"\n"
           << "remote_boot_done_status=\"1\"\nhealthy_status=\"0\"\n";
    for (int number = 0; number < 31; ++number) {
        if (number == 16) status << kEntry << "=\"10.0.0.1,10.0.0.2\"\n";
        status << "some_entry_of_the_status_" << number << "=\"" << std::string(28, 'v') << "\"\n";
    }
    status << "is_local_handler_ready=\"yes\"\n";
    std::ofstream conf(kConfFile);
    conf << "sn_ha=\"CLUSTER00000001\"\nsn0=\"LEFT0000000001\"\nsn1=\"RIGHT000000001\"\n"
         << "monitor_if=\"yes,yes,yes,yes,yes,no,no,no,no\"\n";
    std::ofstream(kConfCache) << "sn_ha=\"CLUSTER00000001\"\n";
}
