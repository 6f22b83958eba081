#pragma once

#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "tessera/Document.h"
#include "tessera/commands/TesseraCommandLine.h"

namespace tsr {

// How documents of one kind are shown and edited on the command line, and how they stand in JSON. The options
// of `add` and `edit` are kept in it until they are applied.
class DocumentForm {
public:
    using Json = nlohmann::ordered_json;

    struct Words {
        const char* databaseKind;
        const char* documentKind;
        const char* noun;   // "memo"
        const char* plural; // "memos"; their list in JSON, too
        const char* place;  // "journal"
        const char* addExample;
        const char* editExample;
    };

    virtual ~DocumentForm() = default;

    virtual const Words& words() const = 0;

    virtual std::vector<std::string> columns() const = 0; // of the list, behind the identity
    virtual std::vector<std::string> row(const Document& document) const = 0;
    // Named lines and the text below them.
    virtual std::vector<std::pair<std::string, std::string>> details(const Document& document) const = 0;
    virtual std::string text(const Document& document) const = 0;

    // Gives the option that a new document can't do without; null when any will do.
    virtual CLI::Option* addSettings(CLI::App& command) = 0;
    virtual void apply(const TesseraCommandLine& line, Document& document) const = 0;

    // Raises TesseraError, and an exception of the JSON library for a value of another type.
    virtual Json toJson(const Document& document) const = 0;
    virtual Properties fromJson(const Json& json) const = 0;

protected:
    DocumentForm() = default;
};

using DocumentForms = std::vector<DocumentForm*>;

// Adds the commands of one kind to the groups `list`, `show`, `add`, `edit` and `delete`. The form must
// outlive the line.
void addDocumentCommands(TesseraCommandLine& line, DocumentForm& form);

// Adds the commands `import` and `export`; as above.
void addTesseraFileCommands(TesseraCommandLine& line, const DocumentForms& forms);

} // namespace tsr
