#include "tessera/Memo.h"

#include "tessera/TesseraError.h"
#include "tessera/categories.h"

namespace tsr {

namespace {

constexpr char subjectName[] = "Subject";
constexpr char bodyName[] = "Body";

} // namespace

Memo toMemo(const Document& document) {
    return {firstValue(document.properties, subjectName), firstValue(document.properties, bodyName),
            categoriesOf(document.properties)};
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
    setCategories(properties, memo.categories);
}

Properties adoptMemo(const Properties& kept, const Properties& sent) {
    Properties properties = kept;
    for (const char* const name : {subjectName, bodyName}) properties.erase(name);
    adoptCategories(properties, sent);
    for (const auto& [name, values] : sent) {
        if (name != categoryName) properties[name] = values;
    }
    return properties;
}

} // namespace tsr
