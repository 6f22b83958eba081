#include "hotsync/SyncPicture.h"

namespace tsr {

namespace {

constexpr std::uint8_t unidBlock = 1;
constexpr std::uint8_t seqNumBlock = 2;
constexpr std::size_t unidBytes = 16;

// Reads big-endian integers from a record; past its end it gives zeros and says so.
class Cursor {
public:
    explicit Cursor(const std::vector<std::uint8_t>& data) : data_(data) {}

    std::uint32_t read(std::size_t bytes) {
        std::uint32_t value = 0;
        for (std::size_t byte = 0; byte < bytes; ++byte) value = value << 8 | next();
        return value;
    }

    std::string text(std::size_t bytes) {
        std::string result;
        for (std::size_t byte = 0; byte < bytes; ++byte) result += static_cast<char>(next());
        return result;
    }

    bool hasMore() const { return position_ < data_.size(); }
    bool isGood() const { return position_ <= data_.size(); }

private:
    std::uint8_t next() { return position_++ < data_.size() ? data_[position_ - 1] : std::uint8_t{0}; }

    const std::vector<std::uint8_t>& data_;
    std::size_t position_ = 0;
};

using Unids = std::map<std::pair<std::uint32_t, std::uint32_t>, std::string>; // by block and index

void readUnids(const HandheldRecord& record, Unids& unids) {
    Cursor cursor(record.data);
    cursor.text(9); // the leading byte and the Dbid
    while (cursor.hasMore()) {
        const std::uint32_t count = cursor.read(2);
        const std::uint32_t first = cursor.read(2);
        for (std::uint32_t index = first; index < first + count && cursor.hasMore(); ++index) {
            unids[{record.id, index}] = cursor.text(unidBytes);
        }
    }
}

void readItems(const HandheldRecord& record, const Unids& unids, SyncPicture& picture) {
    Cursor cursor(record.data);
    cursor.text(1);
    const std::uint32_t block = cursor.read(3);
    while (cursor.hasMore()) {
        const auto unid = unids.find({block, cursor.read(2)});
        cursor.read(1);
        SyncPicture::Item item;
        item.sequenceNumber = cursor.read(2);
        for (std::uint32_t left = cursor.read(2); left > 0 && cursor.hasMore(); --left) {
            const std::uint32_t uid = cursor.read(3);
            cursor.read(4); // tag and CRC
            if (uid != 0) item.uids.push_back(uid);
        }
        if (cursor.isGood() && unid != unids.end()) picture.items[unid->second] = item;
    }
}

} // namespace

SyncPicture::SyncPicture(const HandheldDatabase& database) {
    Unids unids;
    database.records().forEach([&unids](const HandheldRecord& record) {
        if (record.category == unidBlock) readUnids(record, unids);
    });
    database.records().forEach([&](const HandheldRecord& record) {
        if (record.category == seqNumBlock) readItems(record, unids, *this);
    });
}

} // namespace tsr
