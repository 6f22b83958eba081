#pragma once

#include <string>

#include "records/NotesMailRecord.h"
#include "records/PalmMailRecord.h"

namespace tsr {

// Between the two forms of a message.

// The device's category for a replication class, "Inbox" or "Drafts". Raises InvalidClassName.
std::uint8_t mailFolder(const std::string& className);

PalmMailRecord toPalmMailRecord(const NotesMailRecord& notes); // raises InvalidClassName

// Addresses stand on lines of their own on the device, and with commas between them in Notes. The body gains
// a tail of two line feeds at least, and more with each that it had.
NotesMailRecord toNotesMailRecord(const PalmMailRecord& palm);

// The same for a message that is sent off: it may answer another, or get the user's signature.
NotesMailRecord toOutgoingMail(const PalmMailRecord& palm, const std::string& signature);

} // namespace tsr
