#include "core/Convert.h"
#include "platform/Failure.h"
#include "shell/Placement.h"
#include "support/Doubles.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace {
// A placement as "height left top width state", an unset value as "-".
QString shown(const Placement& p) {
    QStringList out;
    for (const auto& v : {p.height, p.left, p.top, p.width})
        out << (v ? singleText(*v) : QStringLiteral("-"));
    return out.join(' ') + ' ' + (p.windowState ? QString::number(*p.windowState) : QStringLiteral("-"));
}
}  // namespace

TEST(Placement, MinimisedOrUnreadableComesBackAtTheDefaultsAndOneBadLengthLeavesTheRest) {
    const std::pair<QStringList, const char*> cases[] = {
        {{"1234", "500", "-480000", "7000", "1"}, "6000 0 0 9000 -"},  // closed minimised
        {{"11000", "-60", "-60", "15480", "2"}, "11000 -60 -60 15480 2"},  // maximised above the screen
        {{"6000", "0", "0", "9000", "1"}, "6000 0 0 9000 1"},
        {{"6000", "0", "abc", "9000", "0"}, "6000 0 0 9000 -"},
        {{"6000", "0", "0", "9000", "x"}, "6000 0 0 9000 -"},
        {{"6000", "0", "0", "9000", "99999"}, "6000 0 0 9000 -"},
        {{"4500", "30", "45", "wide", "0"}, "4500 30 45 - 0"},
        {{"13.5", "0", "0", "9000", "0"}, "13.5 0 0 9000 0"},
    };
    for (const auto& [in, out] : cases)
        EXPECT_EQ(shown(placementFrom(in[0], in[1], in[2], in[3], in[4])), out) << in.join(' ').toStdString();
}

TEST(Convert, NumbersAsTheReadersTakeThem) {
    EXPECT_EQ(numberOf(" 12 "), 12);
    EXPECT_EQ(QList<int>({int16Of("2.5"), int16Of("3.5"), int16Of("-1")}), QList<int>({2, 4, -1}));
    EXPECT_EQ(int32Of("-2147483643"), -2147483643);
    EXPECT_EQ(failureNumber([] { numberOf("12abc"); }), kTypeMismatch);
    EXPECT_EQ(failureNumber([] { numberOf(""); }), kTypeMismatch);
    EXPECT_EQ(failureNumber([] { numberOf("inf"); }), kTypeMismatch);
    EXPECT_EQ(failureNumber([] { int16Of("40000"); }), kOverflow);
    EXPECT_EQ(failureNumber([] { singleOf("1e300"); }), kOverflow);
}
