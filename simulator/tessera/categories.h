#pragma once

#include <string>
#include <vector>

#include "tessera/Document.h"

namespace tsr {

// The categories of a document: the values of this property, where an empty one stands for none.
inline constexpr char categoryName[] = "Category";

std::vector<std::string> categoriesOf(const Properties& properties);             // none of them empty
void setCategories(Properties& properties, std::vector<std::string> categories); // leaves empty ones out

// Takes over the category that a handheld has sent, where a record is in one at most. A document that is in
// it already stays in its others, which the handheld doesn't know of; it comes first, as handhelds take the
// first.
void adoptCategories(Properties& properties, const Properties& sent);

} // namespace tsr
