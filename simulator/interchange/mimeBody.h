#pragma once

#include <string>

#include "interchange/gmimeObjects.h"

namespace tsr {

// The text of a message in UTF-8, its parts one after the other; of alternatives the plain text, else the
// HTML reduced to text. A line at the end names each attachment: "[attachment: plan.pdf]". Raises
// InterchangeError for more parts, or parts within parts, than anybody sends.
std::string bodyText(GMimeMessage* message);

} // namespace tsr
