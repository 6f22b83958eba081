#include "tessera/MailSelection.h"

#include "tessera/RequestRefused.h"
#include "tessera/mailDocument.h"
#include "tessera/numbers.h"

namespace tsr {

namespace {

// Days before 1993 come as days of the next century: such a window has no start.
std::int64_t windowStart(std::uint32_t seconds, std::int64_t localNow) {
    const std::int64_t start = firstNotesSecond + seconds;
    return start > localNow ? firstNotesSecond : start;
}

bool unreadOption(const RequestContext& context, std::size_t index) {
    const std::string& options = context.strings[index];
    if (options.size() < 2 || (options[1] != 'Y' && options[1] != 'N'))
        throw RequestRefused(ResultCode::BadRequest, context.quoted(index) + " are not options of mail.");
    return options[1] == 'N';
}

std::optional<SelectionFormula> formulaOf(const RequestContext& context, std::size_t index) {
    if (context.strings[index] == "0") return std::nullopt;
    if (context.strings[index] != "1")
        throw RequestRefused(ResultCode::BadRequest, context.quoted(index) + " does not tell of a formula.");
    context.expectAtLeast(index + 2);
    return SelectionFormula(context.strings[index + 1]);
}

} // namespace

MailSelection::MailSelection(const RequestContext& context, std::size_t first)
    : zone_(context.user().zone), start_(windowStart(context.number(first), zone_.toLocal(context.now))),
      unreadAlone_(unreadOption(context, first + 1)), formula_(formulaOf(context, first + 2)) {}

bool MailSelection::selects(const Properties& message) {
    const Mail mail = toMail(message);
    if (zone_.toLocal(mail.date) < start_ || (unreadAlone_ && !mail.unread)) return false;
    return !formula_ || formula_->selects(message);
}

std::set<std::string> MailSelection::fields() const {
    std::set<std::string> fields{mailProperties::date, mailProperties::unread};
    if (formula_) fields.insert(formula_->fields().begin(), formula_->fields().end());
    return fields;
}

} // namespace tsr
