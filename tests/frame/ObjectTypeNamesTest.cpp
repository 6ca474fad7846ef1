#include "frame/ObjectTypeNames.h"

#include <gtest/gtest.h>

namespace OrvantaNS {
namespace {

TEST(ObjectTypeNamesTest, EveryRowOfTheTable_AndOtherNumbers) {
    EXPECT_EQ(objectTypeName(Move), "Move");
    EXPECT_EQ(objectTypeName(ActiveWindow), "ActiveWindow");
    EXPECT_EQ(objectTypeName(Reserved16), "Reserved16");
    EXPECT_EQ(objectTypeName(FullScreenDirty), "FullScreenDirty");
    EXPECT_EQ(objectTypeName(ClickWindow), "ClickWindow");
    EXPECT_EQ(objectTypeName(29), "type 29");
}

} // namespace
} // namespace OrvantaNS
