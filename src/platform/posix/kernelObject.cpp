#include "platform/kernelObject.h"

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>

namespace tsr::platform {

namespace {

// Something that is signalled or not, and that threads wait for.
class KernelObject {
public:
    explicit KernelObject(bool staysSignalled) : staysSignalled_(staysSignalled) {}

    void signal() {
        const std::lock_guard lock(mutex_);
        signalled_ = true;
        changed_.notify_all(); // under the lock: the object may go as soon as a waiter sees the signal
    }

    std::uint32_t wait(std::uint32_t milliseconds) {
        std::unique_lock lock(mutex_);
        const auto signalled = [this] { return signalled_; };
        if (milliseconds == infinitely) {
            changed_.wait(lock, signalled);
        } else if (!changed_.wait_for(lock, std::chrono::milliseconds(milliseconds), signalled)) {
            return waitTimedOut;
        }
        signalled_ = staysSignalled_;
        return waitSignalled;
    }

private:
    const bool staysSignalled_;
    bool signalled_ = false;
    std::mutex mutex_;
    std::condition_variable changed_;
};

struct OpenHandle {
    std::shared_ptr<KernelObject> object;
    bool isEvent;
};

// The open handles of the process. Numbers are never given twice, so that closing one a second time fails and
// closes nobody else's.
class HandleTable {
public:
    KernelHandle add(OpenHandle opened) {
        const std::lock_guard lock(mutex_);
        handles_.emplace(++last_, std::move(opened));
        return last_;
    }

    OpenHandle find(KernelHandle handle) {
        const std::lock_guard lock(mutex_);
        const auto found = handles_.find(handle);
        return found == handles_.end() ? OpenHandle{nullptr, false} : found->second;
    }

    bool remove(KernelHandle handle) {
        const std::lock_guard lock(mutex_);
        return handles_.erase(handle) == 1;
    }

private:
    std::mutex mutex_;
    std::map<KernelHandle, OpenHandle> handles_;
    KernelHandle last_ = 0;
};

HandleTable& handles() {
    static HandleTable table;
    return table;
}

bool failWith(int code) {
    errno = code;
    return false;
}

} // namespace

KernelHandle createEvent(bool manualReset) {
    return handles().add({std::make_shared<KernelObject>(manualReset), true});
}

bool setEvent(KernelHandle event) {
    const OpenHandle opened = handles().find(event);
    if (!opened.isEvent) return failWith(EBADF);
    opened.object->signal();
    return true;
}

std::uint32_t waitFor(KernelHandle object, std::uint32_t milliseconds) {
    const OpenHandle opened = handles().find(object);
    if (opened.object) return opened.object->wait(milliseconds);
    errno = EBADF;
    return waitFailed;
}

KernelHandle startThread(ThreadEntry entry, void* argument) {
    const auto ended = std::make_shared<KernelObject>(true);
    const KernelHandle handle = handles().add({ended, false}); // nothing may fail once the thread runs
    try {
        std::thread([entry, argument, ended] {
            entry(argument);
            ended->signal();
        }).detach();
    } catch (const std::system_error& error) {
        handles().remove(handle);
        errno = error.code().value();
        return 0;
    } catch (...) {
        handles().remove(handle);
        throw;
    }
    return handle;
}

bool closeHandle(KernelHandle object) { return handles().remove(object) || failWith(EBADF); }

} // namespace tsr::platform
