#pragma once

#include <cstdint>

namespace tsr {

// The kinds of record in a sync database, told apart by their Palm category (docs/sync-database.md).
namespace SyncCategory {
inline constexpr std::int16_t unidBlock = 1;
inline constexpr std::int16_t seqNumBlock = 2;
inline constexpr std::int16_t pendingRecord = 3;
inline constexpr std::int16_t crcBlock = 4;
inline constexpr std::int16_t stubBlock = 5;
inline constexpr std::int16_t fixup = 6;
inline constexpr std::int16_t status = 7;
inline constexpr std::int16_t archivedCopy = 8;
} // namespace SyncCategory

// How far the last rewrite of a sync database went.
namespace PersistStatus {
inline constexpr std::uint8_t begun = 0;
inline constexpr std::uint8_t finished = 9;
} // namespace PersistStatus

// The types of a stub.
namespace StubType {
inline constexpr std::uint8_t deletion = 1;
inline constexpr std::uint8_t modification = 2;
inline constexpr std::uint8_t archive = 3;
} // namespace StubType

} // namespace tsr
