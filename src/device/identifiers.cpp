#include "device/identifiers.h"

namespace tsr {

namespace {

template <typename Identifier>
Identifier read(PalmRecordBuffer& buffer) {
    typename Identifier::Words words{};
    for (std::uint32_t& word : words) word = buffer.readDword();
    return Identifier(words);
}

template <typename Identifier>
void append(PalmRecordBuffer& buffer, const Identifier& identifier) {
    for (const std::uint32_t word : identifier.words()) buffer.appendDword(word);
}

} // namespace

Dbid readDbid(PalmRecordBuffer& buffer) { return read<Dbid>(buffer); }

Unid readUnid(PalmRecordBuffer& buffer) { return read<Unid>(buffer); }

void appendDbid(PalmRecordBuffer& buffer, const Dbid& dbid) { append(buffer, dbid); }

void appendUnid(PalmRecordBuffer& buffer, const Unid& unid) { append(buffer, unid); }

} // namespace tsr
