#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "handheld/Handheld.h"

namespace tsr {

// A handheld that is kept in a folder, see docs/handheld.md for its files. Files are replaced as a whole: a
// reader sees the old one or the new one. A file whose content did not change is not written.
//
// Every failure is a HandheldError that names the file.
class HandheldFolder {
public:
    // Makes the folder if need be. One that holds a handheld already is refused. Databases that lie there
    // belong to the new handheld. `complete` may add to it, also what depends on them, before anything is
    // written.
    static HandheldFolder create(const std::filesystem::path& path, Handheld handheld,
                                 const std::function<void(Handheld&)>& complete = {});
    static HandheldFolder open(const std::filesystem::path& path);

    // The address stays the same for as long as the folder is open, wherever this object is moved.
    Handheld& handheld() { return *handheld_; }
    void save();

private:
    explicit HandheldFolder(std::filesystem::path path) : path_(std::move(path)) {}

    void load();
    void loadSettings();
    void loadDatabases();
    void loadDatabase(const std::filesystem::path& file);
    void loadPreferences();
    void saveDatabases();
    void removeDatabases();
    void saveSmallFiles();
    std::string freeFileName(const std::string& database) const;

    std::filesystem::path path_;
    std::unique_ptr<Handheld> handheld_ = std::make_unique<Handheld>();
    std::map<std::string, std::string> files_; // from a database's name to the file that holds it
    std::map<std::string, std::vector<std::uint8_t>>
        small_; // settings and preferences, as the folder holds them
};

// Raise HandheldError.
std::vector<std::uint8_t> readFile(const std::filesystem::path& file);
void replaceFile(const std::filesystem::path& file, const std::vector<std::uint8_t>& content);

} // namespace tsr
