#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tessera/ItemName.h"
#include "tessera/TesseraSession.h"

namespace tsr::test {

// A handheld with nothing but memos: keeps what the conduit keeps of them, and makes its requests in its
// order.
class MemoClient {
public:
    struct Memo {
        std::string subject;
        ItemName name;              // empty for a new one
        std::uint32_t sequence = 0; // cut to 16 bits after each session
        bool modified = false;
    };

    // What one session moved.
    struct Moves {
        std::vector<std::string> sent, sentAnomalies, received, deleted; // subjects; those deleted in Notes
        std::vector<std::string> refused;                                // messages

        bool none() const {
            return sent.empty() && sentAnomalies.empty() && received.empty() && deleted.empty();
        }
    };

    explicit MemoClient(TesseraService& service) : service_(service) {}

    void add(const std::string& subject) { memos.push_back({subject, {}, 0, false}); }
    void edit(const std::string& subject, const std::string& newSubject);
    void remove(const std::string& subject);
    void reset(); // forgets the sequence numbers

    // One session of the user Ann. An item that is refused is left for the next. Raises ConnectionLost, or
    // runtime_error for a request that failed, and then all is as it was, unless the two requests that end
    // the session fail.
    Moves synchronize(const std::string& conflictRule = "C");

    std::vector<std::string> subjects() const; // sorted

    std::vector<Memo> memos;

private:
    TesseraService& service_;
    std::vector<ItemName> deletions_;
};

} // namespace tsr::test
