#include "foundation/Thread.h"

#include "foundation/Win32Error.h"

namespace tsr {

namespace {

std::uint32_t TSR_THREAD_CALL runThread(void* runnable) { return static_cast<Runnable*>(runnable)->run(); }

platform::KernelHandle startThread(Runnable& runnable) {
    const platform::KernelHandle thread = platform::startThread(&runThread, &runnable);
    if (thread == 0 || thread == ~platform::KernelHandle{0}) throw Win32Error("_beginthreadex");
    return thread;
}

} // namespace

Thread::Handle::Handle(Runnable& runnable) : HandleBased(startThread(runnable)) {}

Thread::Thread(Runnable& runnable) : handle_(makeCounted<Handle>(runnable)) {}

void Thread::join() {
    const std::uint32_t result = platform::waitFor(handle_->handle(), platform::infinitely);
    if (result != platform::waitSignalled) throw Win32Error("WaitForSingleObject");
}

} // namespace tsr
