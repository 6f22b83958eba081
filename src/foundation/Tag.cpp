#include "foundation/Tag.h"

#include "foundation/TaggedStreambuf.h"

namespace tsr {

std::ostream& operator<<(std::ostream& stream, const Tag& tag) {
    if (auto* tagged = dynamic_cast<TaggedStreambuf<char>*>(stream.rdbuf())) tagged->setTag(tag.name());
    return stream;
}

} // namespace tsr
