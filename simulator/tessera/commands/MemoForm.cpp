#include "tessera/commands/MemoForm.h"

#include "tessera/Memo.h"
#include "tessera/commands/inputText.h"

namespace tsr {

const DocumentForm::Words& MemoForm::words() const {
    static constexpr Words words{
        .databaseKind = journalKind,
        .documentKind = memoKind,
        .noun = "memo",
        .plural = "memos",
        .place = "journal",
        .addExample =
            "  tessera office.db add memo --user \"Pat Lee\" --subject Shopping --body \"Milk, bread\"\n"
            "  tessera office.db add memo --user \"Pat Lee\" --subject Minutes --file minutes.txt \\\n"
            "      --category Business --category Weekly",
        .editExample =
            "  tessera office.db edit memo --user \"Pat Lee\" 94515958 --body \"Milk, bread, eggs\"",
    };
    return words;
}

std::vector<std::string> MemoForm::row(const Document& document) const {
    const Memo memo = toMemo(document);
    return {memo.subject, joinedCategories(memo.categories)};
}

std::vector<std::pair<std::string, std::string>> MemoForm::details(const Document& document) const {
    const Memo memo = toMemo(document);
    return {{"Subject", memo.subject}, {"Categories", joinedCategories(memo.categories)}};
}

std::string MemoForm::text(const Document& document) const { return toMemo(document).body; }

CLI::Option* MemoForm::addSettings(CLI::App& command) {
    CLI::Option* subject = command.add_option("--subject", subject_, "What it is about, in one line");
    CLI::Option* body = command.add_option("--body", body_, "The text");
    command.add_option("--file", file_, "A file with the text; - is the standard input")->excludes(body);
    categories_.addTo(command);
    return subject;
}

void MemoForm::apply(const TesseraCommandLine& line, Document& document) const {
    Memo memo = toMemo(document);
    if (subject_) memo.subject = *subject_;
    if (body_) memo.body = *body_;
    if (file_) memo.body = inputText(line, *file_);
    categories_.apply(memo.categories);
    setMemo(document.properties, memo);
}

DocumentForm::Json MemoForm::toJson(const Document& document) const {
    const Memo memo = toMemo(document);
    return {{"subject", memo.subject}, {"body", memo.body}, {"categories", memo.categories}};
}

Properties MemoForm::fromJson(const Json& json) const {
    return toProperties(Memo{json.value("subject", ""), json.value("body", ""),
                             json.value("categories", std::vector<std::string>())});
}

} // namespace tsr
