#include "replication/RecordingHost.h"

#include "handheld/pdbFile.h"

namespace tsr::test {

SessionRecord RecordingHost::run(Handheld& handheld, const SessionOrder& order) {
    SessionPicture picture;
    picture.record = host_->run(handheld, order);
    picture.wire = tap_.take();
    for (const auto& [name, database] : handheld.databases) picture.databases[name] = toPdb(database);
    picture.preferences = handheld.preferences;
    pictures_.push_back(std::move(picture));
    return pictures_.back().record;
}

} // namespace tsr::test
