#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <ostream>

#include <nlohmann/json.hpp>

#include "tessera/Memo.h"
#include "tessera/TesseraError.h"
#include "tessera/commands/Table.h"
#include "tessera/commands/TesseraCommandLine.h"
#include "tessera/commands/documentChoice.h"
#include "tessera/commands/shown.h"

namespace tsr {

namespace {

using Json = nlohmann::ordered_json;

struct MemoOptions {
    std::string user;
    std::string id;
    std::optional<std::string> subject;
    std::optional<std::string> body;
    std::optional<std::string> file;
    std::vector<std::string> categories;
    bool noCategory = false;
};

// The store with the journal that a command works in.
struct Journal {
    Journal(const TesseraCommandLine& line, const MemoOptions& options)
        : store(line.openStore()), user(namedUser(store, options.user)),
          databaseId(store.database(user.id, journalKind).id) {}

    Document chosen(const std::string& id) {
        return chosenDocument(store, databaseId, memoKind, id, "memo", user.name);
    }

    Store store;
    User user;
    std::int64_t databaseId;
};

std::string readText(const TesseraCommandLine& line, const std::string& name) {
    std::ifstream file;
    if (name != "-") {
        file.open(name, std::ios::binary);
        if (!file) throw TesseraError("cannot read '" + name + "'");
    }
    std::istream& input = name == "-" ? line.in : file;
    return {std::istreambuf_iterator<char>(input), {}};
}

void apply(const TesseraCommandLine& line, const MemoOptions& options, Memo& memo) {
    if (options.subject) memo.subject = *options.subject;
    if (options.body) memo.body = *options.body;
    if (options.file) memo.body = readText(line, *options.file);
    if (options.noCategory || !options.categories.empty()) memo.categories = options.categories;
}

void addMemo(const TesseraCommandLine& line, const MemoOptions& options) {
    Journal journal(line, options);
    Memo memo;
    apply(line, options, memo);
    const Document document = journal.store.addDocument(journal.databaseId, memoKind, toProperties(memo));
    line.out << "added memo " << shortId(document) << "\n";
}

void editMemo(const TesseraCommandLine& line, const MemoOptions& options) {
    Journal journal(line, options);
    SqliteTransaction transaction = journal.store.transaction();
    Document document = journal.chosen(options.id);
    Memo memo = toMemo(document);
    apply(line, options, memo);
    setMemo(document.properties, memo);
    journal.store.changeDocument(journal.databaseId, document.unid, document.properties);
    transaction.commit();
    line.out << "changed memo " << shortId(document) << "\n";
}

void deleteMemo(const TesseraCommandLine& line, const MemoOptions& options) {
    Journal journal(line, options);
    const Document document = journal.chosen(options.id);
    journal.store.deleteDocument(journal.databaseId, document.unid);
    line.out << "deleted memo " << shortId(document) << "\n";
}

std::string joined(const std::vector<std::string>& texts) {
    std::string text;
    for (const std::string& part : texts) text += (text.empty() ? "" : ", ") + part;
    return text;
}

Json toJson(const Document& document) {
    const Memo memo = toMemo(document);
    return {{"id", document.unid},
            {"sequence", document.sequence},
            {"subject", memo.subject},
            {"body", memo.body},
            {"categories", memo.categories}};
}

void listMemos(const TesseraCommandLine& line, const MemoOptions& options) {
    Journal journal(line, options);
    Table table({"ID", "SUBJECT", "CATEGORIES"});
    Json list = Json::array();
    for (const Document& document : journal.store.documents(journal.databaseId, memoKind)) {
        const Memo memo = toMemo(document);
        list.push_back(toJson(document));
        table.add({shortId(document), memo.subject, joined(memo.categories)});
    }
    if (line.json) {
        line.out << list.dump(2) << "\n";
    } else {
        line.out << table;
    }
}

void showMemo(const TesseraCommandLine& line, const MemoOptions& options) {
    Journal journal(line, options);
    const Document document = journal.chosen(options.id);
    if (line.json) {
        line.out << toJson(document).dump(2) << "\n";
        return;
    }
    const Memo memo = toMemo(document);
    Table table({"Id", document.unid});
    table.add({"Sequence", std::to_string(document.sequence)});
    table.add({"Subject", memo.subject});
    table.add({"Categories", joined(memo.categories)});
    line.out << table;
    if (!memo.body.empty()) line.out << "\n" << shownText(memo.body) << "\n";
}

void addUserOption(CLI::App& command, MemoOptions& options) {
    command.add_option("--user", options.user, "Whose journal")->required();
}

void addIdOption(CLI::App& command, MemoOptions& options) {
    command.add_option("ID", options.id, "The memo: its identity or the first digits of it")->required();
}

CLI::Option* addSettingOptions(CLI::App& command, MemoOptions& options) {
    CLI::Option* subject = command.add_option("--subject", options.subject, "What it is about, in one line");
    CLI::Option* body = command.add_option("--body", options.body, "The text");
    command.add_option("--file", options.file, "A file with the text; - is the standard input")
        ->excludes(body);
    CLI::Option* category =
        command.add_option("--category", options.categories, "A category that it is in, for all that it had");
    category->allow_extra_args(false)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    command.add_flag("--no-category", options.noCategory, "Takes it out of all its categories")
        ->excludes(category);
    return subject;
}

} // namespace

void addMemoCommands(TesseraCommandLine& line) {
    const auto options = std::make_shared<MemoOptions>();

    CLI::App& list = line.command(*line.app.get_subcommand("list"), "memos", "Lists the journal of a user",
                                  [&line, options] { listMemos(line, *options); });
    addUserOption(list, *options);
    line.addJsonOption(list);

    CLI::App& show = line.command(*line.app.get_subcommand("show"), "memo", "Shows one memo with its text",
                                  [&line, options] { showMemo(line, *options); });
    addUserOption(show, *options);
    addIdOption(show, *options);
    line.addJsonOption(show);

    CLI::App& add = line.command(*line.app.get_subcommand("add"), "memo", "Adds a memo to a journal",
                                 [&line, options] { addMemo(line, *options); });
    add.footer("  tessera office.db add memo --user \"Pat Lee\" --subject Shopping --body \"Milk, bread\"\n"
               "  tessera office.db add memo --user \"Pat Lee\" --subject Minutes --file minutes.txt \\\n"
               "      --category Business --category Weekly");
    addUserOption(add, *options);
    addSettingOptions(add, *options)->required();

    CLI::App& edit =
        line.command(*line.app.get_subcommand("edit"), "memo", "Changes what is named and leaves the rest",
                     [&line, options] { editMemo(line, *options); });
    edit.footer("  tessera office.db edit memo --user \"Pat Lee\" 94515958 --body \"Milk, bread, eggs\"");
    addUserOption(edit, *options);
    addIdOption(edit, *options);
    addSettingOptions(edit, *options);

    CLI::App& remove = line.command(*line.app.get_subcommand("delete"), "memo", "Deletes a memo",
                                    [&line, options] { deleteMemo(line, *options); });
    addUserOption(remove, *options);
    addIdOption(remove, *options);
}

} // namespace tsr
