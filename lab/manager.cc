#include "manager.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>
#include <thread>

#include "appliance_programs.h"
#include "behaviour.h"
#include "command_table.h"
#include "node_conf.h"
#include "zor_conf.h"
#include "zor_filelock.h"
#include "zor_status.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;

constexpr milliseconds kPollPause{20};
constexpr seconds kWorkPause{1};
constexpr uint32_t kTooLong = ZOR_PAYLOAD_SIZE + 1;

// What a caller asks for with a flag file.
struct PowerFlag {
    const char *path;
    const char *action;
};

constexpr PowerFlag kPowerFlags[] = {{"/tmp/zor/reboot", "restart"},
                                     {"/tmp/zor/poweroff", "power off"}};

// A line of the manager's own log, on standard output.
void Tell(const std::string &text) {
    char now[16];
    const time_t seconds_now = time(nullptr);
    struct tm local;
    strftime(now, sizeof now, "%H:%M:%S", localtime_r(&seconds_now, &local));
    printf("%s zorlab: %s\n", now, text.c_str());
    fflush(stdout);
}

// The program of a sender, less its arguments and folder.
std::string SenderOf(const ZORMgrMessage &request) {
    const std::string name(request.processName,
                           strnlen(request.processName, sizeof request.processName));
    return name.substr(name.rfind('/') + 1);
}

std::string Describe(const ZORMgrMessage &request) {
    const Command *command = FindCommand(request.commandId);
    return "command " + std::to_string(request.commandId) +
           (command ? std::string(" (") + command->name + ")" : "") + " of " + SenderOf(request);
}

ZORMgrMessage AnswerTo(const ZORMgrMessage &request, const Outcome &outcome) {
    ZORMgrMessage answer = {};
    answer.identity = request.identity;
    answer.kind = request.kind;
    answer.result = outcome.is_done ? 1 : 0;
    answer.commandId = request.commandId;
    answer.sendTime = request.sendTime;
    memcpy(answer.serialNumber, request.serialNumber, sizeof answer.serialNumber);
    const size_t length = std::min(outcome.payload.size(), sizeof answer.payload);
    memcpy(answer.payload, outcome.payload.data(), length);
    answer.payloadLength = static_cast<uint32_t>(length);
    return answer;
}

// Commands of one lock group are carried out one at a time on this node.
Outcome HandleInItsGroup(const ZORMgrMessage &request, CommandContext &context) {
    FILE *lock = nullptr;
    if (ZORChkIfLockAndLock(request.commandId, 0, &lock) < 0)
        return {false, "", "another command of its group is under way"};
    Outcome outcome = Handle(request, context);
    ZORChkIfUnlockAndUnlock(request.commandId, &lock);
    return outcome;
}

}  // namespace

Manager::Manager(int role, std::unique_ptr<Peer> peer, const std::string &chassis_path)
    : peer_(std::move(peer)),
      publisher_(role, *peer_, bonding_),
      hardware_(ChassisFile(chassis_path), *peer_, Tell),
      health_(publisher_) {
    InstallAppliancePrograms();
    if (hardware_.Publish()) publisher_.PublishHardware();
    publisher_.Publish();
    KeepConf(role, peer_->Serial());
    ExchangeWithPeer();
    health_.Publish();
    publisher_.AnnounceReady();
    next_work_ = steady_clock::now() + kWorkPause;
    Tell("the node is served, role " + std::to_string(role));
}

void Manager::Run(const volatile std::sig_atomic_t &stop) {
    const auto request = std::make_unique<ZORMgrMessage>();
    while (!stop && !IsToldToStop()) {
        while (queues_.TakeRequest(request.get())) Serve(*request);
        pending_.TakeDue([this](const ZORMgrMessage &answer) { queues_.SendAnswer(answer); });
        WorkEverySecond();
        std::this_thread::sleep_for(kPollPause);
    }
    Tell("stopping");
}

void Manager::Serve(const ZORMgrMessage &request) {
    CommandContext context = {pending_, bonding_, *peer_, health_, upgrade_};
    const bool is_told_to_refuse = BehaviourOf(request.commandId).conduct == Conduct::kRefuse;
    const Outcome outcome = is_told_to_refuse ? Outcome{false, "", "told to refuse"}
                                              : HandleInItsGroup(request, context);
    Tell(Describe(request) + ": " + (outcome.is_done ? "done" : "refused") +
         (outcome.note.empty() ? "" : ", " + outcome.note));
    if (request.wait) Answer(request, AnswerTo(request, outcome));
}

// As the command has been told to behave.
void Manager::Answer(const ZORMgrMessage &request, const ZORMgrMessage &answer) {
    const Behaviour behaviour = BehaviourOf(request.commandId);
    ZORMgrMessage changed = answer;
    switch (behaviour.conduct) {
        case Conduct::kOrdinary:
        case Conduct::kRefuse:
            queues_.SendAnswer(answer);
            break;
        case Conduct::kDelay:
            pending_.Delay(answer, seconds(behaviour.delay_s));
            Tell("  answer delayed by " + std::to_string(behaviour.delay_s) + " s");
            break;
        case Conduct::kDrop:
            pending_.Drop(answer);
            Tell("  answer dropped");
            break;
        case Conduct::kTwice:
            queues_.SendAnswer(answer);
            queues_.SendAnswer(answer);
            Tell("  answered twice");
            break;
        case Conduct::kWrongTime:
            changed.sendTime -= 1;
            queues_.SendAnswer(changed);
            queues_.SendAnswer(answer);
            Tell("  answered with another send time first");
            break;
        case Conduct::kOversized:
            changed.payloadLength = kTooLong;
            queues_.SendAnswer(changed);
            Tell("  answered with " + std::to_string(kTooLong) + " bytes claimed");
            break;
    }
}

void Manager::WorkEverySecond() {
    const auto now = steady_clock::now();
    if (now < next_work_) return;
    next_work_ = now + kWorkPause;
    if (hardware_.Publish()) publisher_.PublishHardware();
    publisher_.Publish();
    ExchangeWithPeer();
    health_.Publish();
}

// By a flag file of the library's. The node itself is the manager here.
bool Manager::IsToldToStop() const {
    for (const PowerFlag &flag : kPowerFlags) {
        if (access(flag.path, F_OK) != 0) continue;
        unlink(flag.path);
        Tell(std::string("the node is to ") + flag.action + ": it stops");
        return true;
    }
    return false;
}

// The status both ways, and the configuration when it has changed.
void Manager::ExchangeWithPeer() {
    ZORSyncStatus status = {};
    if (ZORGetSyncHAStatus(ZOR_HOST_LOCAL, &status) == 0) peer_->SendStatus(status);
    if (peer_->TakeStatus(&status)) ZORSetSyncHAStatus(ZOR_HOST_REMOTE, &status);
    ZORSyncConf conf = {};
    if (!ZORIsConfChanged() || ZORGetLocalRole() != ZOR_ROLE_ACTIVE) return;
    if (ZORGetSyncHAConf(&conf) != 0 || !peer_->SendConf(conf)) return;
    ZORCleanConfChangeFlag();
    Tell("the configuration went to the peer " + peer_->Serial());
}
