#include "tessera/SelectionFormula.h"

#include <algorithm>
#include <functional>
#include <vector>

#include "tessera/unicode.h"

namespace tsr {

namespace {

using Texts = std::vector<std::string>;

struct FieldName {
    const char* field; // in lower case
    const char* property;
};
constexpr FieldName fieldNames[] = {
    {"bcc", "Bcc"},
    {"blindcopyto", "Bcc"},
    {"body", "Body"},
    {"cc", "Cc"},
    {"copyto", "Cc"},
    {"date", "Date"},
    {"from", "From"},
    {"importance", "Importance"},
    {"noticebody", "NoticeBody"},
    {"posteddate", "Date"},
    {"replyto", "ReplyTo"},
    {"room", "Room"},
    {"sendto", "To"},
    {"subject", "Subject"},
    {"to", "To"},
};

std::string propertyOf(const std::string& field) {
    const std::string lower = toLowerCase(field);
    for (const FieldName& name : fieldNames) {
        if (lower == name.field) return name.property;
    }
    return field;
}

void nameProperties(FormulaNode& node, std::set<std::string>& fields) {
    if (node.kind == FormulaNode::Field) {
        node.text = propertyOf(node.text);
        fields.insert(node.text);
    }
    for (FormulaNode& part : node.parts) nameProperties(part, fields);
}

Texts textsOf(const FormulaNode& node, const Properties& message) {
    if (node.kind == FormulaNode::Text) return {node.text};
    if (node.kind == FormulaNode::Field) {
        const auto found = message.find(node.text);
        return found == message.end() ? Texts{""} : found->second;
    }
    Texts texts = textsOf(node.parts[0], message);
    std::transform(texts.begin(), texts.end(), texts.begin(), toLowerCase);
    return texts;
}

// Whether any pair of the two texts' values fits.
template <typename Fits>
bool anyFits(const FormulaNode& node, const Properties& message, Fits fits) {
    const Texts left = textsOf(node.parts[0], message);
    const Texts right = textsOf(node.parts[1], message);
    return std::any_of(left.begin(), left.end(), [&](const std::string& a) {
        return std::any_of(right.begin(), right.end(), [&](const std::string& b) { return fits(a, b); });
    });
}

bool holds(const FormulaNode& node, const Properties& message) {
    const auto partHolds = [&message](const FormulaNode& part) { return holds(part, message); };
    switch (node.kind) {
    case FormulaNode::Or: return std::any_of(node.parts.begin(), node.parts.end(), partHolds);
    case FormulaNode::And: return std::all_of(node.parts.begin(), node.parts.end(), partHolds);
    case FormulaNode::Not: return !partHolds(node.parts[0]);
    case FormulaNode::Contains:
        return anyFits(node, message, [](const std::string& text, const std::string& part) {
            return text.find(part) != std::string::npos;
        });
    default: return anyFits(node, message, std::equal_to<>());
    }
}

} // namespace

SelectionFormula::SelectionFormula(const std::string& text) : root_(parseFormula(text)) {
    nameProperties(root_, fields_);
}

bool SelectionFormula::selects(const Properties& message) const { return holds(root_, message); }

} // namespace tsr
