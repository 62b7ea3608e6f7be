#include "platform/Failure.h"
#include "core/Convert.h"
#include "shell/Placement.h"

#include <gtest/gtest.h>

TEST(Placement, MinimisedFrameComesBackAtTheDefaults) {
    const Placement p = placementFrom("1234", "500", "-480000", "7000", "1");
    EXPECT_EQ(p.height, 6000.0f);
    EXPECT_EQ(p.width, 9000.0f);
    EXPECT_EQ(p.left, 0.0f);
    EXPECT_EQ(p.top, 0.0f);
    EXPECT_FALSE(p.windowState.has_value());
}

TEST(Placement, MaximisedFrameAboveTheScreenKeepsItsValues) {
    const Placement p = placementFrom("11000", "-60", "-60", "15480", "2");
    EXPECT_EQ(p.height, 11000.0f);
    EXPECT_EQ(p.left, -60.0f);
    EXPECT_EQ(p.top, -60.0f);
    EXPECT_EQ(p.width, 15480.0f);
    EXPECT_EQ(p.windowState, 2);
}

TEST(Placement, TopZeroWithMinimisedStateStaysMinimised) {
    EXPECT_EQ(placementFrom("6000", "0", "0", "9000", "1").windowState, 1);
}

TEST(Placement, GarbageNeverStopsThePlacement) {
    // Top or state unreadable: the defaults, surely on the screen.
    EXPECT_EQ(placementFrom("6000", "0", "abc", "9000", "0").width, 9000.0f);
    EXPECT_FALSE(placementFrom("6000", "0", "0", "9000", "x").windowState.has_value());
    EXPECT_FALSE(placementFrom("6000", "0", "0", "9000", "99999").windowState.has_value());
    // One bad length: the others still apply.
    const Placement p = placementFrom("4500", "30", "45", "wide", "0");
    EXPECT_EQ(p.height, 4500.0f);
    EXPECT_EQ(p.left, 30.0f);
    EXPECT_FALSE(p.width.has_value());
    EXPECT_EQ(p.windowState, 0);
}

TEST(Placement, SingleTextAsStored) {
    EXPECT_EQ(singleText(9000), "9000");
    EXPECT_EQ(singleText(13.5f), "13.5");
    EXPECT_EQ(singleText(-480000), "-480000");
}

TEST(Convert, NumbersAsTheReadersTakeThem) {
    EXPECT_EQ(numberOf(" 12 "), 12);
    EXPECT_EQ(int16Of("2.5"), 2);
    EXPECT_EQ(int16Of("3.5"), 4);
    EXPECT_EQ(int16Of("-1"), -1);
    EXPECT_EQ(int32Of("-2147483643"), -2147483643);
    auto number = [](auto f) {
        try {
            f();
        } catch (const Failure& e) {
            return e.number;
        }
        return 0L;
    };
    EXPECT_EQ(number([] { numberOf("12abc"); }), kTypeMismatch);
    EXPECT_EQ(number([] { numberOf(""); }), kTypeMismatch);
    EXPECT_EQ(number([] { numberOf("inf"); }), kTypeMismatch);
    EXPECT_EQ(number([] { int16Of("40000"); }), kOverflow);
    EXPECT_EQ(number([] { singleOf("1e300"); }), kOverflow);
}
