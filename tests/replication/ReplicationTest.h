#pragma once

#include <memory>

#include "replication/Replica.h"
#include "support/AttachedHandheldTest.h"
#include "support/testClock.h"

#include "gmock/gmock.h"

namespace tsr::test {

// Whole HotSyncs between a handheld and a server, both with all that they are made of.
class ReplicationTest : public AttachedHandheldTest {
protected:
    ReplicationTest() {
        setClock(noon);
        connectAfresh();
    }

    // A new handheld that knows nothing, and an empty office for it.
    void connectAfresh();
    void replaceHandheld(); // by a new one for the office that there is

    // The one that the handheld is configured for.
    virtual std::string serverPort() { return office->port(); }

    std::unique_ptr<Office> office;
};

// With the items of one application. A class of items is handed over as `Kind`, and how they are compared as
// `Base`.
template <typename Kind, typename Base = ItemReplica>
class ApplicationTest : public ReplicationTest, protected Base {
protected:
    using Base::configure;

    ApplicationTest() : Base(kindOfItems(), handheld, office) { configure(NextReplication::Normal); }

    void startAfresh(char conflictRule = 'C') {
        connectAfresh();
        configure(NextReplication::Normal, conflictRule);
    }

private:
    static const Kind& kindOfItems() {
        static const Kind kind;
        return kind;
    }
};

} // namespace tsr::test
