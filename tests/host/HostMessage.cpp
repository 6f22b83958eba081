#include "host/HostMessage.h"

#include <stdexcept>

#include "handheld/pdbFile.h"
#include "handheld/preferenceFile.h"
#include "handheld/settingsFile.h"

namespace tsr::test {

namespace {

constexpr std::size_t numberBytes = 8;

class Writer {
public:
    void number(std::uint64_t value) {
        for (std::size_t i = 0; i < numberBytes; ++i)
            message_.push_back(static_cast<std::uint8_t>(value >> 8 * i));
    }
    void signedNumber(std::int64_t value) { number(static_cast<std::uint64_t>(value)); }

    template <typename Bytes>
    void bytes(const Bytes& content) {
        number(content.size());
        message_.insert(message_.end(), content.begin(), content.end());
    }

    void texts(const std::vector<std::string>& all) {
        number(all.size());
        for (const std::string& each : all) bytes(each);
    }

    void handheld(const Handheld& handheld) {
        bytes(settingsText(handheld));
        number(handheld.databases.size());
        for (const auto& [name, database] : handheld.databases) bytes(toPdb(database));
        number(handheld.preferences.size());
        for (const auto& [key, preference] : handheld.preferences) {
            bytes(preferenceFileName(key));
            bytes(preferenceFile(preference));
        }
    }

    MessageBytes take() { return std::move(message_); }

private:
    MessageBytes message_;
};

class Reader {
public:
    explicit Reader(const MessageBytes& message) : rest_(message) {}

    std::uint64_t number() {
        const std::uint8_t* const from = take(numberBytes);
        std::uint64_t value = 0;
        for (std::size_t i = numberBytes; i > 0; --i) value = value << 8 | from[i - 1];
        return value;
    }
    std::int64_t signedNumber() { return static_cast<std::int64_t>(number()); }

    template <typename Bytes>
    Bytes bytes() {
        const std::uint64_t size = number();
        const std::uint8_t* const from = take(size);
        return Bytes(from, from + size);
    }
    std::string text() { return bytes<std::string>(); }

    std::vector<std::string> texts() {
        std::vector<std::string> all;
        for (std::uint64_t left = number(); left > 0; --left) all.push_back(text());
        return all;
    }

    Handheld handheld() {
        Handheld handheld;
        readSettings(text(), handheld);
        for (std::uint64_t left = number(); left > 0; --left) {
            HandheldDatabase database = parsePdb(bytes<MessageBytes>());
            const std::string name = database.name();
            handheld.databases.insert_or_assign(name, std::move(database));
        }
        for (std::uint64_t left = number(); left > 0; --left) {
            const std::string name = text();
            handheld.preferences.insert(readPreferenceFile(name, bytes<MessageBytes>()));
        }
        return handheld;
    }

private:
    const std::uint8_t* take(std::uint64_t size) {
        if (size > rest_.size() - at_) throw std::runtime_error("a message is cut short");
        const std::uint8_t* const from = rest_.data() + at_;
        at_ += static_cast<std::size_t>(size);
        return from;
    }

    const MessageBytes& rest_;
    std::size_t at_ = 0;
};

} // namespace

MessageBytes toMessage(const SessionRequest& request) {
    Writer writer;
    writer.number(request.creator);
    writer.signedNumber(request.syncType);
    writer.signedNumber(request.clock);
    writer.number(request.failedCall);
    writer.number(request.repeats);
    writer.texts(request.faults);
    writer.bytes(request.traceFile);
    writer.handheld(request.handheld);
    return writer.take();
}

MessageBytes toMessage(const SessionAnswer& answer) {
    Writer writer;
    writer.bytes(answer.error);
    writer.signedNumber(answer.result);
    writer.texts(answer.log);
    writer.texts(answer.progress);
    writer.bytes(answer.failedCall);
    writer.bytes(answer.trace);
    writer.signedNumber(answer.handlesLeft);
    writer.signedNumber(answer.bytesLeft);
    writer.handheld(answer.handheld);
    return writer.take();
}

SessionRequest parseRequest(const MessageBytes& message) {
    Reader reader(message);
    SessionRequest request;
    request.creator = static_cast<std::uint32_t>(reader.number());
    request.syncType = static_cast<std::int32_t>(reader.signedNumber());
    request.clock = reader.signedNumber();
    request.failedCall = reader.number();
    request.repeats = reader.number();
    request.faults = reader.texts();
    request.traceFile = reader.text();
    request.handheld = reader.handheld();
    return request;
}

SessionAnswer parseAnswer(const MessageBytes& message) {
    Reader reader(message);
    SessionAnswer answer;
    answer.error = reader.text();
    answer.result = static_cast<std::int32_t>(reader.signedNumber());
    answer.log = reader.texts();
    answer.progress = reader.texts();
    answer.failedCall = reader.text();
    answer.trace = reader.text();
    answer.handlesLeft = reader.signedNumber();
    answer.bytesLeft = reader.signedNumber();
    answer.handheld = reader.handheld();
    return answer;
}

} // namespace tsr::test
