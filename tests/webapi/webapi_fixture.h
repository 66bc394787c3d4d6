// A node whose management interface is asked, for the tests of its data. The test
// plays the manager.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <cstring>
#include <map>
#include <string>

#include "support/base_library.h"
#include "support/node_test.h"
#include "support/queue_end.h"
#include "zor_webapi_core.h"

constexpr char kClusterCache[] = "/tmp/zor/ui/.ui.zorinfo.cache";
constexpr char kLocalCache[] = "/tmp/zor/ui/.ui.zornode.local.cache";
constexpr char kRemoteCache[] = "/tmp/zor/ui/.ui.zornode.remote.cache";
constexpr const char *kFlags[] = {"/tmp/zor/ui/.ui.zorinfo.flag",
                                  "/tmp/zor/ui/.ui.zornode.local.flag",
                                  "/tmp/zor/ui/.ui.zornode.remote.flag"};
constexpr char kHardwareFile[] = "/tmp/zor/hw_info";

class WebapiTest : public NodeTest {
  protected:
    // An active node with a heartbeat link and one interface; its peer is there.
    WebapiTest() {
        queue_end::RemoveAll();
        conf_ = {{"sn0", "NODE0001"},
                 {"sn1", "NODE0002"},
                 {"monitor_if", "yes,yes,no,no,no,no,no,no,no"}};
        status_ = {{"is_local_handler_ready", "yes"},
                   {"local_role", "1"},
                   {"local_boot_stage", "3"},
                   {"ha_runtime_status", "1"},
                   {"is_remote_alive_by_net", "yes"},
                   {"is_remote_alive_by_expander_hb", "yes"},
                   {"is_remote_handler_ready", "yes"},
                   {"remote_boot_done_status", "1"},
                   {"local_host_ifname", "eth0"},
                   {"local_host_IP", "10.0.0.1"},
                   {"local_if_has_static_ip", "yes"},
                   {"local_host_if_speed", "1000,1000"},
                   {"remote_host_if_speed", "1000,1000"},
                   {"healthy_status", "0"}};
        Write();
        WriteText(kHardwareFile,
                  "[LOCAL_HOST]\n\tMemory=1\n\tHostType=8\n\tEncListStatus=1\n"
                  "[REMOTE_HOST]\n\tMemory=1\n\tHostType=16\n\tEncListStatus=1\n");
    }
    ~WebapiTest() override {
        queue_end::RemoveAll();
        EXPECT_TRUE(base_library::Reset()) << "a failure was not reached";
    }

    // Brings the files up to date with status_ and conf_.
    void Write() {
        WriteText(kStatusFile, Render(status_));
        WriteText(kConfFile, Render(conf_));
    }
    void Set(const std::string &name, const std::string &value) {
        status_[name] = value;
        Write();
    }
    void Unset(const std::string &name) {
        status_.erase(name);
        Write();
    }

    // Every request is answered with this during the sleep of its sender.
    void AnswerWith(const std::string &payload, uint32_t result = 1) {
        virtual_time::Start([this, payload, result](int) {
            const auto request = queue_end::Take();
            if (!request) return;
            request_ = *request;
            queue_end::Put(queue_end::kAnswers, queue_end::AnswerTo(request_, result, payload));
        });
    }

    static void SetAge(const std::string &path, double seconds) {
        struct timespec now;
        clock_gettime(CLOCK_REALTIME, &now);
        const double then =
            static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9 - seconds;
        const auto whole = static_cast<time_t>(then);
        const struct timespec times[2] = {
            {whole, static_cast<long>((then - static_cast<double>(whole)) * 1e9)},
            {whole, static_cast<long>((then - static_cast<double>(whole)) * 1e9)}};
        ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
    }

    template <typename Record>
    static Record ReadRecord(const std::string &path) {
        Record record = {};
        const std::string bytes = ReadText(path);
        EXPECT_EQ(bytes.size(), sizeof record);
        memcpy(&record, bytes.data(), std::min(bytes.size(), sizeof record));
        return record;
    }

    template <typename Record>
    static std::string Bytes(const Record &record) {
        return {reinterpret_cast<const char *>(&record), sizeof record};
    }

    static std::string Error(const std::string &function, const std::string &message) {
        return "ERROR zor_webapi_core(" + function + "): " + message;
    }
    static std::string Notice(const std::string &function, const std::string &message) {
        return "NOTICE zor_webapi_core(" + function + "): " + message;
    }

    std::map<std::string, std::string> status_;
    std::map<std::string, std::string> conf_;
    ZORMgrMessage request_ = {};

  private:
    static std::string Render(const std::map<std::string, std::string> &entries) {
        std::string text;
        for (const auto &[name, value] : entries) text += name + "=\"" + value + "\"\n";
        return text;
    }
};
