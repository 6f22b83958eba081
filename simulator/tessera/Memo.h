#pragma once

namespace tsr {

// A journal entry, kept as a document of the kind "memo" in the user's journal:
//
//   Subject   one line
//   Body      the text, lines ended by LF
//   Category  the names of its categories
inline constexpr char memoKind[] = "memo";
inline constexpr char memoDatabaseKind[] = "journal";

} // namespace tsr
