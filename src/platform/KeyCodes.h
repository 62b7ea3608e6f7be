#pragma once
// Keys, modifiers and mouse buttons in the numbers the editing control's events deliver:
// the platform's virtual key numbers (112 is F1) and the shift-state and button bits.

#include <Qt>

// Bits of the shift state.
inline constexpr int kShiftMask = 1, kCtrlMask = 2, kAltMask = 4;
// Bits of the mouse buttons.
inline constexpr int kLeftButton = 1, kRightButton = 2, kMiddleButton = 4;

// The virtual key number of a Qt key; 0 for a key that has none. With the keypad modifier, digits and
// operators give the numeric keypad's numbers.
int virtualKeyCode(int qtKey, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
int shiftState(Qt::KeyboardModifiers modifiers);
int mouseButtons(Qt::MouseButtons buttons);
