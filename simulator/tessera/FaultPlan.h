#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "tessera/FaultOrders.h"

namespace tsr {

// Counts what happens until it is the turn of an order.
class FaultPlan {
public:
    FaultPlan() = default;
    explicit FaultPlan(FaultOrders orders) : orders_(std::move(orders)) {}

    void startRequest() { ++requests_; }
    bool failsRequest() const { return orders_.failedRequests.contains(requests_); } // the one just started
    bool losesAnswer() const { return orders_.lostAnswers.contains(requests_); }     // to the same one

    // One more item was sent.
    bool refusesItem() { return orders_.refusedItems.contains(++items_); }

    bool refusesMail(const std::string& subject) const { return orders_.refusedSubjects.contains(subject); }

private:
    FaultOrders orders_;
    std::uint64_t requests_ = 0;
    std::uint64_t items_ = 0;
};

} // namespace tsr
