#include <memory>
#include <ostream>

#include "tessera/TesseraError.h"
#include "tessera/commands/DocumentForm.h"
#include "tessera/commands/Table.h"
#include "tessera/commands/documentChoice.h"
#include "tessera/commands/shown.h"

namespace tsr {

namespace {

using Json = DocumentForm::Json;

struct DocumentOptions {
    std::string user;
    std::string id;
};

// The store with the database that a command works in.
struct DocumentPlace {
    DocumentPlace(const TesseraCommandLine& line, const DocumentForm& form, const DocumentOptions& options)
        : words(form.words()), store(line.openStore()), user(namedUser(store, options.user)),
          databaseId(store.database(user.id, words.databaseKind).id) {}

    Document chosen(const std::string& id) {
        return chosenDocument(store, databaseId, words.documentKind, id, words.noun, user.name);
    }

    const DocumentForm::Words& words;
    Store store;
    User user;
    std::int64_t databaseId;
};

void addDocument(const TesseraCommandLine& line, const DocumentForm& form, const DocumentOptions& options) {
    DocumentPlace place(line, form, options);
    Document document;
    form.apply(line, document);
    document = place.store.addDocument(place.databaseId, place.words.documentKind, document.properties);
    line.out << "added " << place.words.noun << " " << shortId(document) << "\n";
}

void editDocument(const TesseraCommandLine& line, const DocumentForm& form, const DocumentOptions& options) {
    DocumentPlace place(line, form, options);
    SqliteTransaction transaction = place.store.transaction();
    Document document = place.chosen(options.id);
    form.apply(line, document);
    place.store.changeDocument(place.databaseId, document.unid, document.properties);
    transaction.commit();
    line.out << "changed " << place.words.noun << " " << shortId(document) << "\n";
}

void deleteDocument(const TesseraCommandLine& line, const DocumentForm& form,
                    const DocumentOptions& options) {
    DocumentPlace place(line, form, options);
    const Document document = place.chosen(options.id);
    place.store.deleteDocument(place.databaseId, document.unid);
    line.out << "deleted " << place.words.noun << " " << shortId(document) << "\n";
}

Json documentJson(const DocumentForm& form, const Document& document) {
    Json json = {{"id", document.unid}, {"sequence", document.sequence}};
    json.update(form.toJson(document));
    return json;
}

void listDocuments(const TesseraCommandLine& line, const DocumentForm& form, const DocumentOptions& options) {
    DocumentPlace place(line, form, options);
    std::vector<std::string> columns = form.columns();
    columns.insert(columns.begin(), "ID");
    Table table(columns);
    Json list = Json::array();
    for (const Document& document : place.store.documents(place.databaseId, place.words.documentKind)) {
        list.push_back(documentJson(form, document));
        std::vector<std::string> row = form.row(document);
        row.insert(row.begin(), shortId(document));
        table.add(row);
    }
    if (line.json) {
        line.out << list.dump(2) << "\n";
    } else {
        line.out << table;
    }
}

void showDocument(const TesseraCommandLine& line, const DocumentForm& form, const DocumentOptions& options) {
    DocumentPlace place(line, form, options);
    const Document document = place.chosen(options.id);
    if (line.json) {
        line.out << documentJson(form, document).dump(2) << "\n";
        return;
    }
    Table table({"Id", document.unid});
    table.add({"Sequence", std::to_string(document.sequence)});
    for (const auto& [name, value] : form.details(document)) table.add({name, value});
    line.out << table;
    const std::string text = form.text(document);
    if (!text.empty()) line.out << "\n" << shownText(text) << "\n";
}

using DocumentWork = void (*)(const TesseraCommandLine&, const DocumentForm&, const DocumentOptions&);

} // namespace

void addDocumentCommands(TesseraCommandLine& line, DocumentForm& form) {
    const auto options = std::make_shared<DocumentOptions>();
    const DocumentForm::Words& words = form.words();
    const std::string noun = words.noun;

    const auto command = [&](const char* group, const std::string& name, const std::string& purpose,
                             DocumentWork work) -> CLI::App& {
        CLI::App& added = line.command(*line.app.get_subcommand(group), name, purpose,
                                       [&line, &form, options, work] { work(line, form, *options); });
        added.add_option("--user", options->user, std::string("Whose ") + words.place)->required();
        return added;
    };
    const auto commandOfOne = [&](const char* group, const std::string& purpose,
                                  DocumentWork work) -> CLI::App& {
        CLI::App& added = command(group, noun, purpose, work);
        added.add_option("ID", options->id, "The " + noun + ": its identity or the first digits of it")
            ->required();
        return added;
    };

    line.addJsonOption(
        command("list", words.plural, std::string("Lists the ") + words.place + " of a user", listDocuments));
    line.addJsonOption(commandOfOne("show", "Shows one " + noun + " with its text", showDocument));

    CLI::App& add = command("add", noun, "Adds a " + noun + " to a user's " + words.place, addDocument);
    add.footer(words.addExample);
    if (CLI::Option* const needed = form.addSettings(add)) needed->required();

    CLI::App& edit = commandOfOne("edit", "Changes what is named and leaves the rest", editDocument);
    edit.footer(words.editExample);
    form.addSettings(edit);

    commandOfOne("delete", "Deletes a " + noun, deleteDocument);
}

} // namespace tsr
