#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tessera/Application.h"
#include "tessera/Exchange.h"
#include "tessera/RequestContext.h"

namespace tsr {

// What the replication requests of all applications have in common.

// How a handheld names an item that is new: zeros.
extern const ItemName newItemName;

UserDatabase databaseOf(const Application& application, const RequestContext& context);

// The document of this application in the user's own database.
std::optional<Document> findItem(const Application& application, const RequestContext& context,
                                 const UserDatabase& database, const ItemName& name);
[[noreturn]] void raiseNoDocument(const std::string& unid);

// What the handheld lists it has noted, unless it came in this session: then it may still forget it.
void confirmKnown(const Application& application, const RequestContext& context, const UserDatabase& database,
                  const std::vector<KnownItem>& known);

// The properties that begin with string `first`. Names that begin with '#' are the client's notes to itself.
Properties sentProperties(const RequestContext& context, std::size_t first);

// When a session breaks off, the handheld forgets what it was told in it and sends the same once more in the
// next: the document of then, with the version that it had, or empty for what didn't come before.
std::optional<DocumentVersion> takenBefore(const Application& application, const RequestContext& context,
                                           const UserDatabase& database, const Properties& properties);

// That document, or a new one for what the handheld sends as new. The server adds `besides`.
DocumentVersion newDocument(const Application& application, const RequestContext& context,
                            const UserDatabase& database, const Properties& properties,
                            const Properties& besides = {});

// Deletes those that are there. All of them are gone behind it.
void deleteItems(const Application& application, const RequestContext& context, const UserDatabase& database,
                 const std::vector<ItemName>& names);

// Refuses what the handheld's version may not replace any more.
void raiseIfChanged(const Exchange& exchange, const Document& document);
void noteChange(Exchange& exchange, const Document& changed); // by the handheld

// Returns whether it wasn't to be received already.
bool receiveToo(Exchange& exchange, const std::string& unid);

} // namespace tsr
