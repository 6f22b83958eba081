#include "tessera/commands/inputText.h"

#include <fstream>
#include <iterator>

#include "tessera/TesseraError.h"

namespace tsr {

std::string inputText(const TesseraCommandLine& line, const std::string& name) {
    std::ifstream file;
    if (name != "-") {
        file.open(name, std::ios::binary);
        if (!file) throw TesseraError("cannot read '" + name + "'");
    }
    std::istream& input = name == "-" ? line.in : file;
    return {std::istreambuf_iterator<char>(input), {}};
}

} // namespace tsr
