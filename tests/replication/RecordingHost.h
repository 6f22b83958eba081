#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "replication/SessionHost.h"
#include "replication/WireTap.h"

namespace tsr::test {

// All that a session leaves for others to see.
struct SessionPicture {
    SessionRecord record;
    std::string wire;                                           // see WireTap
    std::map<std::string, std::vector<std::uint8_t>> databases; // by name, as the files that they would be
    std::map<PreferenceKey, Preference> preferences;
};

// Has another host do the work and takes a picture of each session. From the first to the last day of its
// life all sessions go through it.
class RecordingHost : public ISessionHost {
public:
    RecordingHost(std::unique_ptr<ISessionHost> host, WireTap& tap) : host_(std::move(host)), tap_(tap) {
        setSessionHost(this);
    }
    ~RecordingHost() override { setSessionHost(nullptr); }

    SessionRecord run(Handheld& handheld, const SessionOrder& order) override;

    const std::vector<SessionPicture>& pictures() const { return pictures_; }

private:
    std::unique_ptr<ISessionHost> host_;
    WireTap& tap_;
    std::vector<SessionPicture> pictures_;
};

} // namespace tsr::test
