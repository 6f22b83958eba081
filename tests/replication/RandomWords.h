#pragma once

#include <string>
#include <vector>

#include "support/RandomText.h"

namespace tsr::test {

// What the edits of a history are made of. A seed always makes the same. Texts are UTF-8.
class RandomWords : public RandomText {
public:
    using RandomText::RandomText;

    std::string word() {
        static constexpr const char* words[] = {"Milk", "Bread", "Lunch at noon", "a=b", "M\u00FCller", "x"};
        return words[below(6)];
    }

    // Never the same again in a history.
    std::string serial() { return '#' + std::to_string(++serial_); }

    std::string linesOfText() { return word() + '\n' + word() + serial(); }

    // Of a document. None of the names is the device's word for no category.
    std::vector<std::string> categories() {
        static constexpr const char* names[] = {"Business", "Garden", "Home", "Attic",
                                                "A name that is too long"};
        std::vector<std::string> result;
        for (std::uint32_t left = below(3); left > 0; --left) result.emplace_back(names[below(5)]);
        return result;
    }

private:
    std::uint32_t serial_ = 0;
};

} // namespace tsr::test
