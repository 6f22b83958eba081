#pragma once

#include <compare>
#include <cstdint>
#include <string>

#include "foundation/ItemId.h"
#include "foundation/numbers.h"

namespace tsr {

// A Notes item at one state of its life: every change of the item raises its sequence number.
class ItemVersion {
public:
    ItemVersion() = default;
    ItemVersion(const std::string& dbidText, const std::string& unidText, const std::string& sequenceText)
        : id_(dbidText, unidText), sequenceNumber_(parseUnsigned(sequenceText)) {}
    ItemVersion(const ItemId& id, std::uint32_t sequenceNumber) : id_(id), sequenceNumber_(sequenceNumber) {}

    const ItemId& id() const { return id_; }
    std::uint32_t sequenceNumber() const { return sequenceNumber_; }

    auto operator<=>(const ItemVersion&) const = default;

private:
    ItemId id_;
    std::uint32_t sequenceNumber_ = 0;
};

} // namespace tsr
