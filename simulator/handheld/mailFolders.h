#pragma once

#include <cstdint>

namespace tsr {

inline constexpr char mailDatabase[] = "MailDB";

// The categories of MailDB.
inline constexpr std::uint8_t mailInbox = 0;
inline constexpr std::uint8_t mailOutbox = 1;
inline constexpr std::uint8_t mailDrafts = 4;

} // namespace tsr
