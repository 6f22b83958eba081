#include "tessera/handheldMail.h"

#include "interchange/mailAddresses.h"
#include "tessera/bodyCut.h"
#include "tessera/mailDocument.h"

namespace tsr {

namespace {

namespace names = mailProperties;

constexpr const char* texts[] = {names::from, names::replyTo, names::subject};
constexpr const char* addresses[] = {names::to, names::cc, names::bcc};

} // namespace

Properties givenMail(const Properties& message, std::size_t limit) {
    Properties given = message;
    for (const char* const name : {names::folder, names::cut}) given.erase(name);
    for (const char* const name : addresses)
        setFilled(given, name, {joinedAddresses(filledValues(message, name), ", ")});
    for (const char* const name : {names::body, names::noticeBody})
        setFilled(given, name, {cutText(firstValue(message, name), limit)});
    given[names::unread] = {firstValue(message, names::unread) == "1" ? "1" : "0"};
    return given;
}

Properties adoptMail(const Properties& kept, const Properties& sent) {
    Properties properties = kept;
    for (const char* const name : texts) setFilled(properties, name, {firstValue(sent, name)});
    for (const char* const name : addresses)
        setFilled(properties, name, dividedAddresses(firstValue(sent, name)));
    if (firstValue(kept, names::noticeBody).empty())
        setFilled(properties, names::body, {firstValue(sent, names::body)});
    return properties;
}

} // namespace tsr
