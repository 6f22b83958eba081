#pragma once

#include "handheld/HandheldDatabase.h"
#include "replication/ItemKind.h"

namespace tsr::test {

// The messages of both sides in the folders that replicate, sorted: "Inbox * Lunch | Max, Kim | Hi", with a
// star before one that is unread and "-" before others. A body is shown without line feeds at its end, which
// the conduit adds and never takes away, and without what stands behind that of a notice.
Strings mailOnDevice(const HandheldDatabase& database);
Strings mailInNotes(const std::vector<Document>& documents);

} // namespace tsr::test
