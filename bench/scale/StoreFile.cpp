#include "bench/scale/StoreFile.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>

namespace tsr::bench {

namespace {

std::string freshName() {
    static int number = 0;
    const std::string name =
        "tsr-scale-" + std::to_string(::getpid()) + "-" + std::to_string(++number) + ".db";
    return (std::filesystem::temp_directory_path() / name).string();
}

void remove(const std::string& name) {
    for (const char* const ending : {"", "-wal", "-shm"}) std::filesystem::remove(name + ending);
}

std::string filled(void (*fill)(Store& store)) {
    const std::string name = freshName();
    {
        Store store(name);
        fill(store);
    }
    std::ifstream file(name, std::ios::binary);
    std::string content{std::istreambuf_iterator<char>(file), {}};
    remove(name);
    return content;
}

} // namespace

StoreFile::StoreFile(void (*fill)(Store& store)) : name_(freshName()) {
    static const std::string content = filled(fill);
    std::ofstream(name_, std::ios::binary) << content;
}

StoreFile::~StoreFile() { remove(name_); }

} // namespace tsr::bench
