// What the debug log tells of the exchange.

#include <filesystem>
#include <fstream>

#include "conduit/PipelineTest.h"
#include "foundation/ServerRequestError.h"
#include "platform/module.h"
#include "platform/moduleName.h"
#include "support/environment.h"

namespace tsr {
namespace {

using test::pipelineItem;
using testing::ElementsAre;

class ReplicatorTrace : public test::PipelineTest {
protected:
    ReplicatorTrace() { std::filesystem::remove(path); }
    ~ReplicatorTrace() override { std::filesystem::remove(path); }

    // The lines of one session between those of reading and rewriting the state, without the time of day
    // where they have one.
    std::vector<std::string> trace() {
        std::filesystem::remove(path);
        run();
        std::vector<std::string> lines;
        bool inside = false;
        std::ifstream file(path);
        for (std::string line; std::getline(file, line);) {
            if (line.starts_with(time)) line.erase(0, time.size());
            if (line.starts_with("--- Start rewrite")) inside = false;
            if (inside) lines.push_back(line);
            if (line.starts_with("--- Finished reading")) inside = true;
        }
        return lines;
    }

    const std::string path = platform::moduleDirectory(moduleName) + "TsrTest.log";
    const std::string time = "13:34:56 ";
    const test::ScopedVariable zone{"TZ", "CET-1CEST,M3.5.0,M10.5.0/3"};
    const test::ScopedVariable on{"TSR_DEBUG_LOG", "1"};
};

TEST_F(ReplicatorTrace, TellsOfNewRecords) {
    add("Milk");
    add("Bread");
    EXPECT_THAT(
        trace(),
        ElementsAre("Getting modified application records ...", "Sending new record uid=1 to server ... ",
                    "Marking modification stub for removal: UID=1", "Sending new record uid=2 to server ... ",
                    "Marking modification stub for removal: UID=2",
                    "Sending replication information (0 modified, 2 non-modified) ...",
                    "There are 0 anomalies to send", "There are 0 items to send",
                    "There are 0 items to receive", "There are 0 items to delete from the handheld"));
}

TEST_F(ReplicatorTrace, TellsOfChangesAndOfDeletionsThatNotesDidNotTake) {
    add("Milk");
    add("Bread");
    add("Butter");
    run();
    edit(1, "Cream");
    ASSERT_TRUE(database.deleteRecord(2));
    edit(3, "Cheese");
    script.keepsDeletions = true;
    script.wanted = {pipelineItem(1)};
    script.anomalies = {pipelineItem(3)};
    EXPECT_THAT(trace(),
                ElementsAre("Getting modified application records ...", "Delete: UID=2",
                            "Sending 1 deletions to server ...",
                            "Notes item UNID=00000000000000000000000000000002 could not be deleted",
                            "** Need to flag for the replication list",
                            "** Need to flag for the replication list",
                            "Sending replication information (2 modified, 1 non-modified) ...",
                            "There are 1 anomalies to send", "Marking modification stub for removal: UID=3",
                            "There are 1 items to send", "Marking modification stub for removal: UID=1",
                            "There are 0 items to receive", "There are 0 items to delete from the handheld"));
    script.keepsDeletions = false;
    script.wanted.clear();
    script.anomalies.clear();
    script.deletedInNotes = {pipelineItem(1)};
    EXPECT_THAT(trace(),
                ElementsAre("Getting modified application records ...", "Delete: UID=2",
                            "Sending 1 deletions to server ...", "Marking deletion stub for removal: UID=2",
                            "Sending replication information (0 modified, 2 non-modified) ...",
                            "There are 0 anomalies to send", "There are 0 items to send",
                            "There are 0 items to receive", "There are 1 items to delete from the handheld"));
}

TEST_F(ReplicatorTrace, TellsOfARecordThatIsReadByItsId) {
    add("Milk");
    script.onSend = [](const std::string& event) {
        if (event.starts_with("new")) throw ServerRequestError(9, 9, "Not today");
    };
    run();
    script.onSend = [](const std::string&) {};
    script.offers = {{.version = ItemVersion(pipelineItem(7), 4), .parts = {{0, "Bread"}}}};
    EXPECT_THAT(
        trace(),
        ElementsAre("Getting modified application records ...", "Sending new record uid=1 to server ... ",
                    "Getting application record with uid=1", "Marking modification stub for removal: UID=1",
                    "Sending replication information (0 modified, 1 non-modified) ...",
                    "There are 0 anomalies to send", "There are 0 items to send",
                    "There are 1 items to receive", "There are 0 items to delete from the handheld"));
}

TEST_F(ReplicatorTrace, ShowsTheBytesOfAnUnreadableRecordOnALineOfTheirOwn) {
    put(database, 0xAB, 0, "4D C4", HandheldRecord::dirty); // no NUL
    const std::vector<std::string> lines = trace();
    ASSERT_GE(lines.size(), 4U);
    EXPECT_EQ(lines[1], "** Unable to read record with uid=000000ab from the device.");
    EXPECT_EQ(lines[2], "**** Null terminator not found in string.");
    EXPECT_EQ(lines[3], "4dc4");
}

} // namespace
} // namespace tsr
