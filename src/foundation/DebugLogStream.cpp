#include "foundation/DebugLogStream.h"

#include <algorithm>

#include "platform/module.h"
#include "platform/moduleName.h"

namespace tsr {

void DebugLogStream::open(const std::string& displayName) {
    const std::string path = platform::moduleDirectory(moduleName) + fileName(displayName);
    file.open(path, std::ios_base::out | std::ios_base::app);
}

std::string DebugLogStream::fileName(const std::string& displayName) {
    std::string name = displayName;
    std::erase(name, ' ');
    return "Tsr" + name + ".log";
}

} // namespace tsr
