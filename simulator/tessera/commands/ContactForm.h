#pragma once

#include <array>
#include <map>
#include <optional>

#include "interchange/Contact.h"
#include "tessera/commands/CategoryOptions.h"
#include "tessera/commands/DocumentForm.h"

namespace tsr {

class ContactForm : public DocumentForm {
public:
    const Words& words() const override;
    std::vector<std::string> columns() const override { return {"NAME", "COMPANY", "PHONE", "CATEGORIES"}; }
    std::vector<std::string> row(const Document& document) const override;
    std::vector<std::pair<std::string, std::string>> details(const Document& document) const override;
    std::string text(const Document& document) const override;
    CLI::Option* addSettings(CLI::App& command) override;
    void apply(const TesseraCommandLine& line, Document& document) const override;
    Json toJson(const Document& document) const override;
    Properties fromJson(const Json& json) const override;

private:
    std::map<std::string, std::optional<std::string>> texts_; // by their names in JSON
    std::array<std::optional<std::vector<std::string>>, phoneKinds> phones_;
    std::optional<std::string> displayed_;
    CategoryOptions categories_;
};

} // namespace tsr
