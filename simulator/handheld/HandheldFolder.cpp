#include "handheld/HandheldFolder.h"

#include <fstream>
#include <iterator>
#include <set>

#include "handheld/HandheldError.h"
#include "handheld/fileName.h"
#include "handheld/pdbFile.h"
#include "handheld/preferenceFile.h"
#include "handheld/settingsFile.h"

namespace tsr {

namespace fs = std::filesystem;

namespace {

const char* const settingsName = "handheld.json";
const char* const preferencesName = "preferences";
const char* const databaseExtension = ".pdb";
const char* const unfinishedExtension = ".new";

using SmallFiles = std::map<std::string, std::vector<std::uint8_t>>;

std::vector<fs::path> filesIn(const fs::path& folder) {
    std::set<fs::path> sorted;
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (entry.is_regular_file()) sorted.insert(entry.path());
    }
    return {sorted.begin(), sorted.end()};
}

// Runs `work`, and gives what goes wrong in it the name of the file.
template <typename Work>
void about(const fs::path& file, Work work) {
    try {
        work();
    } catch (const std::exception& error) {
        throw HandheldError(file.string() + ": " + error.what());
    }
}

SmallFiles smallFilesOf(const Handheld& handheld) {
    SmallFiles files;
    const std::string settings = settingsText(handheld);
    files[settingsName].assign(settings.begin(), settings.end());
    for (const auto& [key, preference] : handheld.preferences) {
        files[std::string(preferencesName).append("/").append(preferenceFileName(key))] =
            preferenceFile(preference);
    }
    return files;
}

} // namespace

HandheldFolder HandheldFolder::create(const fs::path& path, Handheld handheld,
                                      const std::function<void(Handheld&)>& complete) {
    if (fs::exists(path / settingsName)) throw HandheldError(path.string() + " holds a handheld already");
    HandheldFolder folder(path);
    if (fs::exists(path)) folder.loadDatabases();
    handheld.databases.merge(folder.handheld_->databases);
    if (complete) complete(handheld);
    *folder.handheld_ = std::move(handheld);
    about(path, [&] { fs::create_directories(path / preferencesName); });
    folder.save();
    return folder;
}

HandheldFolder HandheldFolder::open(const fs::path& path) {
    if (!fs::exists(path / settingsName)) {
        throw HandheldError(path.string() + " is no handheld: it has no " + settingsName);
    }
    HandheldFolder folder(path);
    folder.load();
    return folder;
}

void HandheldFolder::save() {
    saveDatabases();
    removeDatabases();
    saveSmallFiles();
}

void HandheldFolder::load() {
    loadSettings();
    loadDatabases();
    loadPreferences();
    small_ = smallFilesOf(*handheld_);
}

void HandheldFolder::loadSettings() {
    const fs::path file = path_ / settingsName;
    about(file, [&] {
        const auto content = readFile(file);
        readSettings({content.begin(), content.end()}, *handheld_);
    });
}

void HandheldFolder::loadDatabases() {
    for (const fs::path& file : filesIn(path_)) {
        if (file.extension() == databaseExtension) about(file, [&] { loadDatabase(file); });
    }
}

// Resources are programs; a backup may hold some, and we leave them alone.
void HandheldFolder::loadDatabase(const fs::path& file) {
    const auto content = readFile(file);
    if (isResourceFile(content)) return;
    HandheldDatabase database = parsePdb(content);
    const std::string name = database.name();
    if (files_.contains(name))
        throw HandheldError("holds the database " + name + ", as does " + files_[name]);
    files_[name] = file.filename().string();
    handheld_->databases.insert_or_assign(name, std::move(database));
}

void HandheldFolder::loadPreferences() {
    const fs::path folder = path_ / preferencesName;
    about(folder, [&] { fs::create_directories(folder); });
    for (const fs::path& file : filesIn(folder)) {
        if (file.extension() == unfinishedExtension) continue;
        about(file, [&] {
            handheld_->preferences.insert(readPreferenceFile(file.filename().string(), readFile(file)));
        });
    }
}

void HandheldFolder::saveDatabases() {
    for (auto& [name, database] : handheld_->databases) {
        const bool known = files_.contains(name);
        if (known && !database.isUnsaved()) continue;
        const std::string file = known ? files_[name] : freeFileName(name);
        replaceFile(path_ / file, toPdb(database));
        files_[name] = file;
        database.markSaved();
    }
}

void HandheldFolder::removeDatabases() {
    for (auto file = files_.begin(); file != files_.end();) {
        if (handheld_->find(file->first)) {
            ++file;
            continue;
        }
        about(path_ / file->second, [&] { fs::remove(path_ / file->second); });
        file = files_.erase(file);
    }
}

void HandheldFolder::saveSmallFiles() {
    const SmallFiles wanted = smallFilesOf(*handheld_);
    for (const auto& [name, content] : wanted) {
        auto there = small_.find(name);
        if (there != small_.end() && there->second == content) continue;
        replaceFile(path_ / name, content);
    }
    for (const auto& [name, content] : small_) {
        if (!wanted.contains(name)) about(path_ / name, [&, file = path_ / name] { fs::remove(file); });
    }
    small_ = wanted;
}

// The file of that name may be one that we did not load, or that holds a database of another name.
std::string HandheldFolder::freeFileName(const std::string& database) const {
    std::string name = toFileName(database) + databaseExtension;
    for (int number = 2; fs::exists(path_ / name); ++number) {
        name = toFileName(database) + "-" + std::to_string(number) + databaseExtension;
    }
    return name;
}

std::vector<std::uint8_t> readFile(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::vector<std::uint8_t> content{std::istreambuf_iterator<char>(stream),
                                      std::istreambuf_iterator<char>()};
    if (!stream.is_open() || stream.bad()) throw HandheldError("cannot be read");
    return content;
}

void replaceFile(const fs::path& file, const std::vector<std::uint8_t>& content) {
    fs::path unfinished = file;
    unfinished += unfinishedExtension;
    about(file, [&] {
        std::ofstream stream(unfinished, std::ios::binary | std::ios::trunc);
        stream.write(reinterpret_cast<const char*>(content.data()),
                     static_cast<std::streamsize>(content.size()));
        stream.close();
        if (!stream) throw HandheldError("cannot be written");
        fs::rename(unfinished, file);
    });
}

} // namespace tsr
