#include "bench/scale/MemoScene.h"

#include "tessera/Memo.h"

namespace tsr::bench {

namespace {

constexpr std::uint8_t categories = 3; // Unfiled, Business and Personal

const std::string categoryNames[categories] = {"", "Business", "Personal"};

std::string subjectOf(std::size_t number) { return "Memo " + std::to_string(number); }

std::string bodyOf(std::size_t number) {
    return subjectOf(number)
         + "\nTwo pounds of apples, flour, milk and a dozen of eggs\nCall back before noon\n";
}

std::uint8_t categoryOf(std::size_t number) { return static_cast<std::uint8_t>(number % categories); }

} // namespace

MemoScene::MemoScene(std::size_t memos, Place place)
    : Scene(memos, *findApplication("memo"), "Memo Pad", "MemoSync", journalKind, memoKind) {
    fill(place);
}

void MemoScene::addToHandheld(HandheldDatabase& database, std::size_t number) {
    const std::string text = bodyOf(number);
    database.addRecord({text.c_str(), text.c_str() + text.size() + 1}, categoryOf(number));
}

Properties MemoScene::document(std::size_t number) {
    Memo memo{subjectOf(number), bodyOf(number), {}};
    if (categoryOf(number) != 0) memo.categories.push_back(categoryNames[categoryOf(number)]);
    return toProperties(memo);
}

} // namespace tsr::bench
