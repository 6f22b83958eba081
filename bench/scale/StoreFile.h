#pragma once

#include <string>

#include "tessera/Store.h"

namespace tsr::bench {

// The file of a store that goes with it. The first one is filled by `fill`, and all others are copies of what
// it was then: the identities of their documents are the same, too.
class StoreFile {
public:
    explicit StoreFile(void (*fill)(Store& store));
    StoreFile(const StoreFile&) = delete;
    StoreFile& operator=(const StoreFile&) = delete;
    ~StoreFile();

    const std::string& name() const { return name_; }

private:
    std::string name_;
};

} // namespace tsr::bench
