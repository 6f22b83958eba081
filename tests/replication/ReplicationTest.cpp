#include "replication/ReplicationTest.h"

#include "handheld/ConfigurationDatabase.h"
#include "handheld/standardDatabases.h"

namespace tsr::test {

void ReplicationTest::connectAfresh() {
    office = std::make_unique<Office>();
    replaceHandheld();
}

void ReplicationTest::replaceHandheld() {
    handheld = Handheld();
    handheld.clock = static_cast<std::uint32_t>(noon);
    addStandardDatabases(handheld);
    const ConnectionChoice connection{.userName = "Max",
                                      .password = "pw",
                                      .serverName = {},
                                      .serverAddress = "127.0.0.1",
                                      .serverPort = serverPort()};
    ConfigurationDatabase(handheld).setConnection(connection);
}

} // namespace tsr::test
