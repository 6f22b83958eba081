#pragma once

#include "foundation/CountedPtr.h"
#include "foundation/HandleBased.h"
#include "foundation/Runnable.h"

namespace tsr {

// A thread that runs as soon as it is built. Copies share its handle, which the last one closes; the thread
// itself goes on. Counted pointers are not safe to share between threads: nothing that the caller and the
// body both reach may hold one.
class Thread {
public:
    // `runnable` must outlive the thread's run. Throws Win32Error where no thread can be started.
    explicit Thread(Runnable& runnable);

    // Waits for the end of the run. Throws Win32Error.
    void join();

private:
    struct Handle final : HandleBased { // final, as it is deleted through a pointer
        explicit Handle(Runnable& runnable);
    };

    CountedPtr<Handle> handle_;
};

} // namespace tsr
