#pragma once

#include <vector>

#include "tessera/Document.h"

namespace tsr {

// What becomes of a document when a handheld tells what it has changed in it, not how it is.
struct Differences {
    bool killed = false;               // the document is to be deleted
    Properties changed{};              // it, otherwise
    std::vector<Properties> besides{}; // new documents, for what was changed on both sides
};

} // namespace tsr
