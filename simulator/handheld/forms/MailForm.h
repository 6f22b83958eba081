#pragma once

#include "handheld/forms/RecordForm.h"

namespace tsr {

class MailForm : public RecordForm {
public:
    std::vector<std::string> fields() const override;
    FieldValues read(const std::vector<std::uint8_t>& record) const override;
    std::vector<std::uint8_t> write(const FieldValues& values) const override;
};

} // namespace tsr
