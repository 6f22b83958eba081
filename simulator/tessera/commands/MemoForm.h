#pragma once

#include <optional>

#include "tessera/commands/CategoryOptions.h"
#include "tessera/commands/DocumentForm.h"

namespace tsr {

class MemoForm : public DocumentForm {
public:
    const Words& words() const override;
    std::vector<std::string> columns() const override { return {"SUBJECT", "CATEGORIES"}; }
    std::vector<std::string> row(const Document& document) const override;
    std::vector<std::pair<std::string, std::string>> details(const Document& document) const override;
    std::string text(const Document& document) const override;
    CLI::Option* addSettings(CLI::App& command) override;
    void apply(const TesseraCommandLine& line, Document& document) const override;
    Json toJson(const Document& document) const override;
    Properties fromJson(const Json& json) const override;

private:
    std::optional<std::string> subject_;
    std::optional<std::string> body_;
    std::optional<std::string> file_;
    CategoryOptions categories_;
};

} // namespace tsr
