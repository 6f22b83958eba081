#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tsr {

// A word of a selection formula.
struct FormulaToken {
    enum Kind { Text, Field, Function, Sign, End };

    Kind kind = End;
    std::string text;       // without quotation marks, a function without its @, a sign as one character
    std::size_t offset = 0; // of its first byte
};

// The last one is of the kind End. Raises RequestRefused for what is none of them.
std::vector<FormulaToken> formulaTokens(const std::string& formula);

// Refuses the formula, for a reason that is told as a sentence without its end, and tells where: at the
// character behind so many bytes.
[[noreturn]] void raiseUnreadableFormula(const std::string& formula, std::size_t offset,
                                         const std::string& reason);

} // namespace tsr
