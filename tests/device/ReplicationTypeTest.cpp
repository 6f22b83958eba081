#include "device/ReplicationType.h"

#include <string>

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(ReplicationType, HasTheNumbersThatTheHandheldStores) {
    const std::pair<int, const char*> rows[] = {{0, "Must Choose"}, {1, "None"},    {2, "Normal"},
                                                {3, "Reset"},       {4, "Clear"},   {5, "Fast"},
                                                {6, "Slow"},        {7, "Unknown"}, {-1, "Unknown"}};
    for (const auto& [number, name] : rows) {
        EXPECT_EQ(std::string(replicationTypeName(static_cast<ReplicationType>(number))), name);
    }
}

} // namespace
} // namespace tsr
