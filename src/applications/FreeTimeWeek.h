#pragma once

#include <bitset>
#include <cstdint>

#include "device/PalmRecordBuffer.h"
#include "foundation/Date.h"

namespace tsr {

// One person's free time in one week, and the record that holds it on the handheld:
//
//   offset  size  field
//   0       4     record id of the person's record
//   4       2     first day of the week, packed date
//   6       84    672 slots of 15 minutes, 96 a day; the lowest index in the most significant bit of a byte
//
// A week starts on the day whose Julian day number is a multiple of 7, a Monday. A set bit is free time.
struct FreeTimeWeek {
    static constexpr std::uint32_t slotMinutes = 15;
    static constexpr std::size_t slotsPerDay = 96;
    static constexpr std::size_t slotCount = 7 * slotsPerDay;
    static constexpr std::uint32_t unknownCrc = 0xFFFFFFFF;

    Date start;
    std::bitset<slotCount> slots;
    std::uint32_t crc = unknownCrc; // of the record as the handheld has it
    std::uint32_t recordId = 0;     // 0 when it has none

    void writeTo(PalmRecordBuffer& buffer, std::uint32_t userId) const;
};

} // namespace tsr
