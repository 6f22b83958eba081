#include "replication/RecordingHost.h"

#include "handheld/pdbFile.h"

namespace tsr::test {

SessionRecord RecordingHost::run(Handheld& handheld, std::uint32_t creator, bool slow,
                                 std::uint64_t failedCall) {
    SessionRecord record = host_->run(handheld, creator, slow, failedCall);
    SessionPicture picture;
    picture.log = record.log;
    picture.wire = tap_.take();
    for (const auto& [name, database] : handheld.databases) picture.databases[name] = toPdb(database);
    pictures_.push_back(std::move(picture));
    return record;
}

} // namespace tsr::test
