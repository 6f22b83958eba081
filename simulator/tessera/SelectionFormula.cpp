#include "tessera/SelectionFormula.h"

#include <algorithm>
#include <functional>
#include <vector>

#include "tessera/RequestRefused.h"
#include "tessera/unicode.h"

namespace tsr {

namespace {

using Texts = std::vector<std::string>;

// Everybody waits while one formula is worked out, for some seconds at most.
constexpr std::uint64_t mostWork = 1'000'000'000; // bytes
constexpr std::uint64_t bytesPerText = 16;        // a short one takes its time too

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

std::uint64_t bytesOf(const Texts& texts) {
    std::uint64_t bytes = 0;
    for (const std::string& text : texts) bytes += text.size();
    return bytes;
}

// One message, and what looking at it takes.
class Evaluation {
public:
    Evaluation(const Properties& message, std::uint64_t& work) : message_(message), work_(work) {}

    bool holds(const FormulaNode& node) {
        const auto partHolds = [this](const FormulaNode& part) { return holds(part); };
        switch (node.kind) {
        case FormulaNode::Or: return std::any_of(node.parts.begin(), node.parts.end(), partHolds);
        case FormulaNode::And: return std::all_of(node.parts.begin(), node.parts.end(), partHolds);
        case FormulaNode::Not: return !partHolds(node.parts[0]);
        case FormulaNode::Contains:
            return anyFits(node, [](const std::string& text, const std::string& part) {
                return text.find(part) != std::string::npos;
            });
        default: return anyFits(node, std::equal_to<>());
        }
    }

private:
    Texts textsOf(const FormulaNode& node) {
        Texts texts;
        if (node.kind == FormulaNode::Text) {
            texts = {node.text};
        } else if (node.kind == FormulaNode::Field) {
            const auto found = message_.find(node.text);
            texts = found == message_.end() ? Texts{""} : found->second;
        } else {
            texts = textsOf(node.parts[0]);
            std::transform(texts.begin(), texts.end(), texts.begin(), toLowerCase);
        }
        spend(bytesPerText * texts.size() + bytesOf(texts));
        return texts;
    }

    // Whether any pair of the two texts' values fits.
    template <typename Fits>
    bool anyFits(const FormulaNode& node, Fits fits) {
        const Texts left = textsOf(node.parts[0]);
        const Texts right = textsOf(node.parts[1]);
        // At worst each place of a text holds nearly all of the other, of which many bytes are compared at
        // once.
        spend(bytesPerText * left.size() * right.size() + bytesOf(left) * right.size()
              + bytesOf(left) * bytesOf(right) / 64);
        return std::any_of(left.begin(), left.end(), [&](const std::string& a) {
            return std::any_of(right.begin(), right.end(), [&](const std::string& b) { return fits(a, b); });
        });
    }

    void spend(std::uint64_t bytes) {
        work_ += bytes;
        if (work_ > mostWork)
            throw RequestRefused(ResultCode::BadRequest,
                                 "The selection formula takes too long for these messages.");
    }

    const Properties& message_;
    std::uint64_t& work_;
};

} // namespace

SelectionFormula::SelectionFormula(const std::string& text) : root_(parseFormula(text)) {
    nameProperties(root_, fields_);
}

bool SelectionFormula::selects(const Properties& message) { return Evaluation(message, work_).holds(root_); }

} // namespace tsr
