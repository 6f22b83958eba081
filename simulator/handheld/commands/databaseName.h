#pragma once

#include <string>

#include "handheld/Handheld.h"

namespace tsr {

// What stands for the free-time application in the place of a database's name.
inline const std::string freeTimeName = "freetime";

// The database of a name, or of an application by its name on our command line ("memo"). Raises
// HandheldError.
HandheldDatabase& findDatabase(Handheld& handheld, const std::string& name);

} // namespace tsr
