#pragma once

#include <string>
#include <vector>

namespace tsr {

// A part of a selection formula: a text, or a condition.
struct FormulaNode {
    enum Kind { Text, Field, LowerCase, Contains, Equals, Not, And, Or };

    Kind kind = Text;
    std::string text{}; // of Text, and the name of a Field
    std::vector<FormulaNode> parts{};

    bool isCondition() const { return kind >= Contains; }
};

//   formula    conditions with "|" or "&" between them, of which "&" binds closer
//   condition  "!" condition, text "=" text, @Contains(text;text), or a formula in parentheses
//   text       "..." in quotation marks, the name of a field, @LowerCase(text), or a text in parentheses
//
// Upper and lower case of a to z are one in the names of functions. Raises RequestRefused, with the reason
// and the place, for what isn't a condition, and for one that is too long or too deep to be a filter.
FormulaNode parseFormula(const std::string& formula);

} // namespace tsr
