// The hardware file of a node, for the tests of its readers and writers.
#pragma once

#include <cstring>
#include <string>

#include "support/base_library.h"
#include "support/node_test.h"
#include "zor_filelock.h"
#include "zor_hwinfo_core.h"
#include "zor_status.h"

constexpr char kHardwareFile[] = "/tmp/zor/hw_info";
constexpr char kHardwareLockFile[] = "/tmp/zor/.zor.ha.hwinfo.lock";

class HardwareTest : public NodeTest {
  protected:
    ~HardwareTest() override { EXPECT_TRUE(base_library::Reset()) << "a failure was not reached"; }

    static std::string Error(const std::string &function, const std::string &message) {
        return "ERROR zor_hwinfo_core(" + function + "): " + message;
    }
    static std::string Notice(const std::string &function, const std::string &message) {
        return "NOTICE zor_hwinfo_core(" + function + "): " + message;
    }

    // A section of the file: its name, and a line for each "key=value".
    static std::string Section(const std::string &name, const Lines &pairs) {
        std::string text = "[" + name + "]\n";
        for (const std::string &pair : pairs) text += "\t" + pair + "\n";
        return text;
    }

    // An enclosure that is in order.
    static std::string Enclosure(const std::string &serial,
                                 const std::string &fans = "1,1,1,1,1,1,1,1",
                                 const std::string &power = "1,1") {
        return Section("ENCLOSURE_" + serial,
                       {"ModelID=4", "MaxDisk=2", "EncSN=" + serial, "DiskTypes=1,2",
                        "FanStatus=" + fans, "PowerStatus=" + power, "TempStatus=1"});
    }

    static void WriteHardware(const std::string &text) { WriteText(kHardwareFile, text); }

    // Whether somebody can have the hardware lock at once.
    static bool IsLockFree() {
        FILE *handle = nullptr;
        if (ZORFileLock(ZOR_LOCK_HW_INFO, 0, &handle) != 0) return false;
        return ZORFileUnlock(&handle) == 0;
    }

    static std::string Repeat(const std::string &item, int count) {
        std::string list = item;
        for (int number = 1; number < count; ++number) list += "," + item;
        return list;
    }

    ZORHWHostInfo host_ = {};
    ZORHWHostInfo other_ = {};
};

// Holds the hardware lock against the library.
class HeldHardwareLock {
  public:
    HeldHardwareLock() { EXPECT_EQ(ZORHWWaitAndLock(&handle_), 0); }
    ~HeldHardwareLock() { ZORHWUnlock(&handle_); }

  private:
    FILE *handle_ = nullptr;
};
