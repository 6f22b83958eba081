#pragma once

#include <string>
#include <vector>

#include "tessera/Document.h"

namespace tsr {

// A journal entry, kept as a document of the kind "memo" in its owner's journal with the properties of the
// Memo Pad:
//
//   Subject   one line
//   Body      the text
//   Category  the names of its categories; a memo of the handheld without one has one empty name
struct Memo {
    std::string subject;
    std::string body;
    std::vector<std::string> categories; // none of them empty
};

inline constexpr char memoKind[] = "memo";
inline constexpr char journalKind[] = "journal"; // of the database

Memo toMemo(const Document& document);

// The properties of a new document. Raises TesseraError for a subject of several lines.
Properties toProperties(const Memo& memo);

// Sets the properties that a Memo knows and leaves the others; raises as toProperties.
void setMemo(Properties& properties, const Memo& memo);

// The document that `sent`, a version of the handheld, makes of `kept`, the one that it was given; of an
// empty document for a new one. The handheld speaks for the properties above alone.
Properties adoptMemo(const Properties& kept, const Properties& sent);

} // namespace tsr
