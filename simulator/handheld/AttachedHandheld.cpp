#include "handheld/AttachedHandheld.h"

#include <exception>

namespace tsr {

void AttachedHandheld::attach(Handheld& handheld) {
    manager_.reset();
    folder_.reset();
    manager_.emplace(handheld);
}

bool AttachedHandheld::openFolder(const std::string& path) {
    return guarded([&] {
        HandheldFolder folder = HandheldFolder::open(path);
        manager_.reset();
        folder_.emplace(std::move(folder));
        manager_.emplace(folder_->handheld());
        manager_->setSave([this] { return save(); });
    });
}

bool AttachedHandheld::endSession() {
    if (manager_) manager_->closeAll();
    return save();
}

bool AttachedHandheld::detach() {
    const bool saved = endSession();
    manager_.reset();
    folder_.reset();
    return saved;
}

bool AttachedHandheld::save() {
    return !folder_ || guarded([this] { folder_->save(); });
}

template <typename Work>
bool AttachedHandheld::guarded(Work work) {
    try {
        work();
        return true;
    } catch (const std::exception& error) {
        error_ = error.what();
        return false;
    }
}

AttachedHandheld& attachedHandheld() {
    static auto* const attached = new AttachedHandheld;
    return *attached;
}

} // namespace tsr
