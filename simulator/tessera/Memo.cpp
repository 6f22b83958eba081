#include "tessera/Memo.h"

#include "tessera/TesseraError.h"

namespace tsr {

namespace {

constexpr char subjectName[] = "Subject";
constexpr char bodyName[] = "Body";
constexpr char categoryName[] = "Category";

std::vector<std::string> withoutEmpty(std::vector<std::string> texts) {
    std::erase(texts, "");
    return texts;
}

} // namespace

Memo toMemo(const Document& document) {
    Memo memo{firstValue(document.properties, subjectName), firstValue(document.properties, bodyName), {}};
    const auto categories = document.properties.find(categoryName);
    if (categories != document.properties.end()) memo.categories = withoutEmpty(categories->second);
    return memo;
}

Properties toProperties(const Memo& memo) {
    Properties properties;
    setMemo(properties, memo);
    return properties;
}

void setMemo(Properties& properties, const Memo& memo) {
    if (memo.subject.find_first_of("\r\n") != std::string::npos) {
        throw TesseraError("the subject of a memo is one line");
    }
    properties[subjectName] = {memo.subject};
    properties[bodyName] = {memo.body};
    properties.erase(categoryName);
    const std::vector<std::string> categories = withoutEmpty(memo.categories);
    if (!categories.empty()) properties[categoryName] = categories;
}

} // namespace tsr
