#pragma once

#include "replication/ItemKind.h"
#include "tessera/mailDocument.h"

namespace tsr::test {

// Messages. They lie in folders in the place of categories; mailboxes.h compares them.
class MailItems : public ReplicatedKind {
public:
    const KnownApplication& application() const override { return *findApplication("mail"); }
    const char* title() const override { return "Mail"; }
    const char* databaseKind() const override { return mailDatabaseKind; }
    const char* documentKind() const override { return mailKind; }
};

} // namespace tsr::test
