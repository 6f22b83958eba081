#include "foundation/fileVersion.h"

#include "platform/module.h"

namespace tsr {

std::string fileVersionText(const std::string& fileName) {
    const std::string version = platform::fileVersion(fileName);
    return version.empty() ? "?.?.?.?" : version;
}

} // namespace tsr
