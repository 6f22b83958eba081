#include "device/ReplicationType.h"

namespace tsr {

const char* replicationTypeName(ReplicationType type) {
    switch (type) {
    case ReplicationType::MustChoose: return "Must Choose";
    case ReplicationType::None: return "None";
    case ReplicationType::Normal: return "Normal";
    case ReplicationType::Reset: return "Reset";
    case ReplicationType::Clear: return "Clear";
    case ReplicationType::Fast: return "Fast";
    case ReplicationType::Slow: return "Slow";
    }
    return "Unknown";
}

} // namespace tsr
