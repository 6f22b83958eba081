#include <iomanip>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>

#include "handheld/CategoryTable.h"
#include "handheld/HandheldFolder.h"
#include "handheld/commands/CommandLine.h"
#include "handheld/commands/databaseName.h"
#include "handheld/commands/handheldText.h"

namespace tsr {

namespace {

struct CategoryOptions {
    std::string database;
    std::optional<std::uint8_t> category;
    std::optional<std::string> name;
    bool remove = false;
};

struct ListedCategory {
    unsigned number;
    std::string name; // UTF-8
    std::size_t records;
};

// Those that have a name or a record.
std::vector<ListedCategory> listedCategories(HandheldDatabase& database) {
    const CategoryTable table(database);
    std::vector<ListedCategory> listed;
    for (std::uint8_t category = 0; category < HandheldRecord::categories; ++category) {
        std::size_t records = 0;
        database.records().forEach([&](const HandheldRecord& record) {
            if (record.category == category && !record.isGone()) ++records;
        });
        const std::string name = fromHandheldText(table.name(category));
        if (records > 0 || !name.empty()) listed.push_back({category, name, records});
    }
    return listed;
}

void listCategories(const CommandLine& line, HandheldDatabase& database) {
    const std::vector<ListedCategory> categories = listedCategories(database);
    if (line.json) {
        nlohmann::ordered_json list = nlohmann::ordered_json::array();
        for (const ListedCategory& listed : categories) {
            list.push_back({{"category", listed.number}, {"name", listed.name}, {"records", listed.records}});
        }
        line.out << list.dump(2) << "\n";
        return;
    }
    line.out << "category  records  name\n";
    for (const ListedCategory& listed : categories) {
        line.out << std::right << std::setw(8) << listed.number << std::setw(9) << listed.records << "  "
                 << (listed.name.empty() ? "-" : listed.name) << "\n";
    }
}

void changeCategory(HandheldDatabase& database, const CategoryOptions& options) {
    CategoryTable table(database);
    if (options.remove) {
        table.remove(*options.category);
    } else {
        table.rename(*options.category, toHandheldText(*options.name));
    }
}

void run(const CommandLine& line, const CategoryOptions& options) {
    if (!options.category && !options.remove) {
        HandheldFolder folder = HandheldFolder::open(line.folder);
        listCategories(line, findDatabase(folder.handheld(), options.database));
        return;
    }
    if (!options.category || options.name.has_value() == options.remove) {
        throw UsageError("give a category, and a name for it or --remove");
    }
    line.change([&](HandheldFolder& folder) {
        changeCategory(findDatabase(folder.handheld(), options.database), options);
    });
}

} // namespace

void addCategoryCommand(CommandLine& line) {
    CLI::App& command =
        line.addCommand("category", "List the categories of a database, or name one", "memo 3 Garden");
    line.addJsonOption(command);
    auto options = std::make_shared<CategoryOptions>();
    command
        .add_option("NAME", options->database,
                    "A database or an application: address, datebook, mail, memo, todo")
        ->required();
    command.add_option("CATEGORY", options->category, "The category to be named, 1 to 15")
        ->check(CLI::Range(0, HandheldRecord::categories - 1));
    command.add_option("NEWNAME", options->name, "Its name, at most 15 characters");
    command.add_flag("--remove", options->remove, "Take the name away; the records go to category 0");
    command.callback([&line, options] { line.action = [&line, options] { run(line, *options); }; });
}

} // namespace tsr
