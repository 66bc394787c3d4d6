// The development manager of one node.
#pragma once

#include <chrono>
#include <csignal>
#include <memory>

#include "bonding_plan.h"
#include "hardware_publisher.h"
#include "health_publisher.h"
#include "manager_queues.h"
#include "peer.h"
#include "pending_answers.h"
#include "runtime_folder.h"
#include "status_publisher.h"

class Manager {
  public:
    Manager(int role, std::unique_ptr<Peer> peer, const std::string &chassis_path);

    // Serves until the flag is set.
    void Run(const volatile std::sig_atomic_t &stop);

  private:
    void Serve(const ZORMgrMessage &request);
    void Answer(const ZORMgrMessage &request, const ZORMgrMessage &answer);
    bool IsToldToStop() const;
    void WorkEverySecond();
    void ExchangeWithPeer();

    // In this order: the queues need the key file, and go before it.
    RuntimeFolder folder_;
    ManagerQueues queues_;
    std::unique_ptr<Peer> peer_;
    BondingPlan bonding_;
    StatusPublisher publisher_;
    HardwarePublisher hardware_;
    HealthPublisher health_;
    std::string upgrade_;
    PendingAnswers pending_;
    std::chrono::steady_clock::time_point next_work_;
};
