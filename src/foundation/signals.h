#pragma once

namespace tsr {

// Two signals that are caught by name and are no errors: they have no text and no cause.

// A device record is not of the class that its replicator needs: a checked downcast failed.
struct BadPalmRecord {};

// A record that is about to be sent no longer exists on the device.
struct RecordDeletedFromDevice {};

} // namespace tsr
