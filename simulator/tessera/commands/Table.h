#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace tsr {

// Rows of text in columns as wide as they need to be. Characters that would act on a terminal show as '?'.
class Table {
public:
    explicit Table(const std::vector<std::string>& firstRow) : rows_{firstRow} {}

    void add(const std::vector<std::string>& row) { rows_.push_back(row); } // as long as the first

    friend std::ostream& operator<<(std::ostream& stream, const Table& table);

private:
    std::vector<std::vector<std::string>> rows_;
};

} // namespace tsr
