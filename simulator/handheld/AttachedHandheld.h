#pragma once

#include <optional>
#include <string>

#include "handheld/HandheldFolder.h"
#include "handheld/SyncManager.h"

namespace tsr {

// The handheld behind the Sync Manager library: one in memory, one in a folder, or none.
class AttachedHandheld {
public:
    void attach(Handheld& handheld);
    bool openFolder(const std::string& path);
    bool endSession();
    bool detach();

    SyncManager* manager() { return manager_ ? &*manager_ : nullptr; } // null when there is no handheld
    SyncCalls* calls() { return manager_ ? &manager_->calls() : nullptr; }
    const std::string& error() const { return error_; }

private:
    bool save();
    // Runs `work`, and answers whether it came to its end; otherwise the reason is in error_.
    template <typename Work>
    bool guarded(Work work);

    std::optional<HandheldFolder> folder_;
    std::optional<SyncManager> manager_;
    std::string error_;
};

// The one of this library. Never destroyed: a caller may come back as the process ends.
AttachedHandheld& attachedHandheld();

} // namespace tsr
