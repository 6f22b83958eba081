#include "tessera/FormulaToken.h"

#include <algorithm>
#include <string_view>

#include "tessera/RequestRefused.h"

namespace tsr {

namespace {

constexpr std::string_view spaces = " \t\r\n";
constexpr std::string_view signs = "=|&!();";
constexpr std::size_t mostShown = 30; // characters

bool isNameCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$';
}

bool beginsCharacter(char byte) { return (byte & 0xC0) != 0x80; }

std::string shownFrom(const std::string& text, std::size_t offset) {
    std::size_t end = offset;
    for (std::size_t characters = 0; end < text.size(); ++end) {
        if (beginsCharacter(text[end]) && characters++ == mostShown)
            return text.substr(offset, end - offset) + "...";
    }
    return text.substr(offset);
}

class Reader {
public:
    explicit Reader(const std::string& formula) : formula_(formula) {}

    FormulaToken next() {
        start_ = std::min(formula_.find_first_not_of(spaces, end_), formula_.size());
        end_ = start_;
        if (start_ == formula_.size()) return {FormulaToken::End, "", start_};
        const char first = formula_[start_];
        if (first == '"') return text();
        if (first == '@') return function();
        if (isNameCharacter(first)) return {FormulaToken::Field, name(), start_};
        if (signs.find(first) == std::string_view::npos)
            raiseUnreadableFormula(formula_, start_, "nothing begins like this");
        ++end_;
        return {FormulaToken::Sign, std::string(1, first), start_};
    }

private:
    // No character stands for another in it: what a user types into a filter comes as it is.
    FormulaToken text() {
        const std::size_t close = formula_.find('"', start_ + 1);
        if (close == std::string::npos)
            raiseUnreadableFormula(formula_, start_, "the closing quotation mark is missing");
        end_ = close + 1;
        return {FormulaToken::Text, formula_.substr(start_ + 1, close - start_ - 1), start_};
    }

    FormulaToken function() {
        ++end_;
        const std::string word = name();
        if (word.empty()) raiseUnreadableFormula(formula_, start_, "a function has a name");
        return {FormulaToken::Function, word, start_};
    }

    std::string name() {
        const std::size_t begin = end_;
        while (end_ < formula_.size() && isNameCharacter(formula_[end_])) ++end_;
        return formula_.substr(begin, end_ - begin);
    }

    const std::string& formula_;
    std::size_t start_ = 0;
    std::size_t end_ = 0;
};

} // namespace

std::vector<FormulaToken> formulaTokens(const std::string& formula) {
    Reader reader(formula);
    std::vector<FormulaToken> tokens;
    do tokens.push_back(reader.next());
    while (tokens.back().kind != FormulaToken::End);
    return tokens;
}

void raiseUnreadableFormula(const std::string& formula, std::size_t offset, const std::string& reason) {
    const auto before = formula.begin() + static_cast<std::ptrdiff_t>(offset);
    const auto characters = std::count_if(formula.begin(), before, beginsCharacter);
    const std::string place = offset == formula.size() ? "its end"
                                                       : "character " + std::to_string(characters + 1) + ", '"
                                                             + shownFrom(formula, offset) + "'";
    throw RequestRefused(ResultCode::BadRequest,
                         "Cannot read the selection formula at " + place + ": " + reason + ".");
}

} // namespace tsr
