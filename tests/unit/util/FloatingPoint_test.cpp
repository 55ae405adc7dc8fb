#include "util/FloatingPoint.h"

#include <gtest/gtest.h>

namespace tvn2x {
namespace {

/// What the border does with it is tested there, of one word length at a time.
TEST(FloatingPoint, IsOursWhileItLivesAndTheCallersAfterwards)
{
    const FloatingPointWords before = FloatingPointWords::Now();
    for (const FloatingPointWords& callers :
         {FloatingPointWords{0x027F, 0x1F80}, {0x037F, 0x9FC0}, {0x0C7F, 0x7F80}, ownFloatingPoint}) {
        callers.Load();
        bool isOwn = false;
        {
            const OwnFloatingPoint own;
            isOwn = FloatingPointWords::Now().ComputesLike(ownFloatingPoint);
        }
        const FloatingPointWords after = FloatingPointWords::Now();
        before.Load();
        EXPECT_TRUE(isOwn);
        EXPECT_TRUE(after.ComputesLike(callers));
    }
}

}  // namespace
}  // namespace tvn2x
