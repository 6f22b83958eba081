#pragma once

#include <cstdint>
#include <vector>

namespace tsr {

// One record of a handheld's database.
struct HandheldRecord {
    // Attributes as the Sync Manager shows them. A deleted record has no data any more. An archived one keeps
    // its data and shows 0x08 without 0x80: a conduit that looks for deleted records first would else take it
    // for one.
    static constexpr std::uint8_t deleted = 0x80;
    static constexpr std::uint8_t dirty = 0x40;
    static constexpr std::uint8_t busy = 0x20;
    static constexpr std::uint8_t secret = 0x10;
    static constexpr std::uint8_t archived = 0x08;

    static constexpr std::uint32_t maxId = 0xFFFFFF;
    static constexpr std::size_t maxBytes = 65535;
    static constexpr std::uint8_t categories = 16;

    std::uint32_t id = 0; // 1 to maxId
    std::uint8_t attributes = 0;
    std::uint8_t category = 0; // 0 to 15
    std::vector<std::uint8_t> data;

    bool isGone() const { return (attributes & (deleted | archived)) != 0; }
    bool isModified() const { return (attributes & (deleted | dirty | archived)) != 0; }

    bool operator==(const HandheldRecord&) const = default;
};

} // namespace tsr
