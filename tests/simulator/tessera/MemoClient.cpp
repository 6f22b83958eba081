#include "MemoClient.h"

#include <algorithm>
#include <stdexcept>

namespace tsr::test {

namespace {

const ItemName newItem{std::string(16, '0'), std::string(32, '0')};

// The work of one session, on copies.
class Session {
public:
    Session(TesseraService& service, std::vector<MemoClient::Memo>& memos, MemoClient::Moves& moves)
        : session_(service), memos_(memos), moves_(moves) {}

    void authenticate() {
        ask(1, {"286934400", "Ann", "secret", "2.4.2.0", ".", "0", "", "", "Palm", "160x160"});
    }

    void sendDeletions(const std::vector<ItemName>& deletions) {
        std::vector<std::string> strings;
        for (const ItemName& name : deletions) strings.insert(strings.end(), {name.dbid, name.unid});
        if (!deletions.empty()) ask(358, strings);
    }

    void sendNew() {
        for (MemoClient::Memo& memo : memos_) {
            if (memo.name.unid.empty()) send(355, {"", newItem.dbid, newItem.unid}, memo, moves_.sent);
        }
    }

    void sendInfo(const std::string& rule) {
        std::vector<std::string> strings{"286934400", rule};
        for (const MemoClient::Memo& memo : memos_) {
            if (memo.name.unid.empty()) continue;
            strings.insert(strings.end(), {memo.name.dbid, memo.name.unid, std::to_string(memo.sequence),
                                           std::to_string(memo.sequence + (memo.modified ? 1 : 0))});
        }
        token_ = ask(350, strings).at(0);
    }

    void sendAnomalies() {
        for (const ItemName& name : list(359, 360)) {
            send(361, {token_, name.dbid, name.unid, "0"}, memoOf(name), moves_.sentAnomalies);
        }
    }

    void sendWanted() {
        for (const ItemName& name : list(353, 354)) {
            send(355, {token_, name.dbid, name.unid}, memoOf(name), moves_.sent);
        }
    }

    void receive() {
        const std::uint32_t count = static_cast<std::uint32_t>(std::stoul(ask(356, {token_}).at(0)));
        for (std::uint32_t i = 0; i < count; ++i) {
            const Response response = session_.handle({357, {token_, std::to_string(i), "1"}});
            if (response.result == ResultCode::Success) store(response.strings);
        }
    }

    void receiveDeletions() {
        for (const ItemName& name : list(351, 352)) {
            moves_.deleted.push_back(memoOf(name).subject);
            std::erase_if(memos_, [&name](const auto& memo) { return memo.name == name; });
        }
    }

    void close() {
        ask(200, {});
        ask(19, {});
    }

private:
    std::vector<std::string> ask(std::uint32_t code, const std::vector<std::string>& strings) {
        const Response response = session_.handle({code, strings});
        if (response.result != ResultCode::Success) throw std::runtime_error(response.message);
        return response.strings;
    }

    std::vector<ItemName> list(std::uint32_t countCode, std::uint32_t fetchCode) {
        const std::string count = ask(countCode, {token_}).at(0);
        const auto strings = ask(fetchCode, {token_, "0", count});
        std::vector<ItemName> names;
        for (std::size_t i = 1; i < strings.size(); i += 2)
            names.push_back({strings.at(i), strings.at(i + 1)});
        return names;
    }

    MemoClient::Memo& memoOf(const ItemName& name) {
        for (MemoClient::Memo& memo : memos_) {
            if (memo.name == name) return memo;
        }
        throw std::runtime_error("the server listed an item that the handheld doesn't know");
    }

    void send(std::uint32_t code, std::vector<std::string> strings, MemoClient::Memo& memo,
              std::vector<std::string>& sent) {
        strings.insert(strings.end(), {"#Differences=0", "Body=", "Category=", "Subject=" + memo.subject});
        const Response response = session_.handle({code, strings});
        if (response.result != ResultCode::Success) {
            moves_.refused.push_back(response.message);
            return;
        }
        memo = {memo.subject,
                {response.strings.at(0), response.strings.at(1)},
                sequenceOf(response.strings.at(2)),
                false};
        sent.push_back(memo.subject);
    }

    void store(const std::vector<std::string>& strings) {
        MemoClient::Memo received;
        for (const std::string& text : strings) {
            const std::string name = text.substr(0, text.find('='));
            const std::string value = text.substr(name.size() + 1);
            if (name == "Subject") received.subject = value;
            if (name == "DBID") received.name.dbid = value;
            if (name == "UNID") received.name.unid = value;
            if (name == "SeqNum") received.sequence = sequenceOf(value);
        }
        std::erase_if(memos_, [&received](const auto& memo) { return memo.name == received.name; });
        moves_.received.push_back(received.subject);
        memos_.push_back(received);
    }

    static std::uint32_t sequenceOf(const std::string& text) {
        return static_cast<std::uint16_t>(std::stoul(text));
    }

    TesseraSession session_;
    std::vector<MemoClient::Memo>& memos_;
    MemoClient::Moves& moves_;
    std::string token_;
};

} // namespace

void MemoClient::edit(const std::string& subject, const std::string& newSubject) {
    for (Memo& memo : memos) {
        if (memo.subject != subject) continue;
        memo.subject = newSubject;
        memo.modified = !memo.name.unid.empty();
    }
}

void MemoClient::remove(const std::string& subject) {
    for (const Memo& memo : memos) {
        if (memo.subject == subject && !memo.name.unid.empty()) deletions_.push_back(memo.name);
    }
    std::erase_if(memos, [&subject](const Memo& memo) { return memo.subject == subject; });
}

void MemoClient::reset() {
    for (Memo& memo : memos) memo.sequence = 0;
}

MemoClient::Moves MemoClient::synchronize(const std::string& conflictRule) {
    std::vector<Memo> working = memos;
    Moves moves;
    Session session(service_, working, moves);
    session.authenticate();
    session.sendDeletions(deletions_);
    session.sendNew();
    session.sendInfo(conflictRule);
    session.sendAnomalies();
    session.sendWanted();
    session.receive();
    session.receiveDeletions();
    deletions_.clear();
    memos = working;
    session.close();
    return moves;
}

std::vector<std::string> MemoClient::subjects() const {
    std::vector<std::string> subjects;
    for (const Memo& memo : memos) subjects.push_back(memo.subject);
    std::sort(subjects.begin(), subjects.end());
    return subjects;
}

} // namespace tsr::test
