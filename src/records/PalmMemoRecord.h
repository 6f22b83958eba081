#pragma once

#include <cstdint>
#include <string>

#include "records/PalmApplicationRecord.h"

namespace tsr {

// One Memo Pad record of the handheld: a text, and the category that its buffer carries beside it. The secret
// attribute is neither read nor set.
//
//   offset  size   field
//   0       n + 1  text, ends with a NUL; the record ends there too
class PalmMemoRecord : public PalmApplicationRecord {
public:
    PalmMemoRecord() : PalmApplicationRecord(false) {}

    // Parses the whole of `buffer`. Raises MissingNul, or ExcessData for bytes after it.
    PalmMemoRecord(PalmRecordBuffer& buffer, bool archived);

    const std::string& text() const { return text_; }
    void setText(std::string text) { text_ = std::move(text); }
    void setCategory(std::uint32_t index); // raises InvalidCategory above 15

    std::uint8_t category() const override { return static_cast<std::uint8_t>(category_); }
    std::string description() const override; // the first line that is not empty
    std::uint16_t write(PalmRecordBuffer& buffer) const override;

private:
    std::string text_;
    std::uint32_t category_ = 0;
};

} // namespace tsr
