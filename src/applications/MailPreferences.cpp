#include "applications/MailPreferences.h"

#include "foundation/GeneralError.h"

namespace tsr {

namespace {

std::uint32_t readFilterType(PalmRecordBuffer& buffer) {
    const std::uint32_t type = buffer.readByte();
    if (type > MailPreferences::Unread) throw GeneralError(Message::InvalidMailFilter) << Tag('n') << type;
    return type;
}

void addClause(std::string& formula, const char* field, const std::string& term) {
    if (term.empty()) return;
    if (!formula.empty()) formula += '|';
    formula += std::string("@Contains(@LowerCase(") + field + ");@LowerCase(\"" + term + "\"))";
}

} // namespace

MailPreferences::MailPreferences(PalmRecordBuffer& buffer) : filterType(readFilterType(buffer)) {
    getHigh = buffer.readByte() != 0;
    filterContaining = buffer.readByte() != 0;
    buffer.readByte();
    truncateLength = buffer.readWord();
    filterTo = buffer.readString();
    filterFrom = buffer.readString();
    filterSubject = buffer.readString();
}

std::string MailPreferences::selectionFormula() const {
    if (filterType != Filter) return {};
    std::string formula;
    addClause(formula, "Subject", filterSubject);
    addClause(formula, "SendTo", filterTo);
    addClause(formula, "From", filterFrom);
    if (formula.empty()) return {};
    if (!filterContaining) formula = "!(" + formula + ")";
    if (getHigh) formula = "Importance=\"1\"|(" + formula + ")";
    return formula;
}

} // namespace tsr
