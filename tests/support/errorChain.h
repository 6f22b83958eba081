#pragma once

#include <string>
#include <vector>

#include "foundation/Error.h"

namespace tsr::test {

// The texts of the error that `action` raises and of its causes, outermost first; empty where it comes back.
template <typename Action>
std::vector<std::string> chainRaisedBy(const Action& action) {
    std::vector<std::string> texts;
    try {
        action();
    } catch (const Error& error) {
        for (const Error* link = &error; link != nullptr; link = link->cause().get())
            texts.push_back(errorText(*link));
    }
    return texts;
}

} // namespace tsr::test
