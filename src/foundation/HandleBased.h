#pragma once

#include "foundation/CountedPtr.h"
#include "foundation/HandleState.h"

namespace tsr {

// Owns a handle of the operating system. A copy shares it; each copy closes it as it goes, and where another
// has done so before, the close fails quietly. On Windows a number that was closed is soon given to another
// object, which a later copy then closes: copies must go together.
class HandleBased {
public:
    explicit HandleBased(platform::KernelHandle handle); // takes the handle over, also when it throws
    HandleBased(const HandleBased&) = default;
    HandleBased& operator=(const HandleBased&) = delete; // would drop a handle without closing it
    ~HandleBased();

    // Throws Win32Error where the handle isn't open.
    virtual void closeHandle();

    platform::KernelHandle handle() const { return state_->handle; }

private:
    CountedPtr<HandleState> state_;
};

} // namespace tsr
