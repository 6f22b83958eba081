#pragma once

#include <string>

#include "tessera/Application.h"
#include "tessera/RequestContext.h"

namespace tsr {

// What the requests of mail have in common. They name the mail database in their first string, and most of
// them no token.

extern const Application mailApplication;

UserDatabase namedDatabase(const RequestContext& context); // which must be the user's own
std::string namedFolder(const RequestContext& context, std::size_t index);

std::string folderOf(const Document& document);

// A message of the folders that replicate. Raises RequestRefused where there is none.
Document requiredMail(const RequestContext& context, const UserDatabase& database, const std::string& unid);

// A client that goes on has had the answer to the mail that it sent, and won't send that again.
void confirmSentMail(const RequestContext& context);

// The same behind its last one. What an earlier session took without its answer has come again by now, or the
// client did have the answer: another mail of the same words is a new one. After a refusal nobody knows.
void endOutbox(const RequestContext& context);

std::string dateText(std::int64_t moment); // in seconds since 1993, as the property has it

} // namespace tsr
