// Keys and buttons in the numbers the view's events deliver, as the system's handlers compare them.
#include "platform/KeyCodes.h"

#include <gtest/gtest.h>

TEST(KeyCodes, KeysGiveThePlatformsVirtualKeyNumbers) {
    EXPECT_EQ(virtualKeyCode(Qt::Key_F2), 113);
    EXPECT_EQ(virtualKeyCode(Qt::Key_F12), 123);
    EXPECT_EQ(virtualKeyCode(Qt::Key_Escape), 27);
    EXPECT_EQ(virtualKeyCode(Qt::Key_Enter), 13);
    EXPECT_EQ(virtualKeyCode(Qt::Key_Z), 'Z');
    EXPECT_EQ(virtualKeyCode(Qt::Key_9), '9');
    EXPECT_EQ(virtualKeyCode(Qt::Key_Down), 40);
    EXPECT_EQ(virtualKeyCode(Qt::Key_Backtab), 9);
    // A shifted symbol reports the key it sits on; the keypad has numbers of its own.
    EXPECT_EQ(virtualKeyCode(Qt::Key_Exclam), '1');
    EXPECT_EQ(virtualKeyCode(Qt::Key_Colon), virtualKeyCode(Qt::Key_Semicolon));
    EXPECT_EQ(virtualKeyCode(Qt::Key_5, Qt::KeypadModifier), 0x65);
    EXPECT_EQ(virtualKeyCode(Qt::Key_Home, Qt::KeypadModifier), 36);
    EXPECT_EQ(virtualKeyCode(Qt::Key_unknown), 0);
}

TEST(KeyCodes, ShiftStateAndButtonBits) {
    EXPECT_EQ(shiftState(Qt::ShiftModifier), 1);
    EXPECT_EQ(shiftState(Qt::ControlModifier), 2);
    EXPECT_EQ(shiftState(Qt::ShiftModifier | Qt::AltModifier | Qt::KeypadModifier), 5);
    EXPECT_EQ(mouseButtons(Qt::RightButton), 2);
    EXPECT_EQ(mouseButtons(Qt::MiddleButton), 4);
    EXPECT_EQ(mouseButtons(Qt::LeftButton | Qt::RightButton | Qt::BackButton), 3);
}
