#include "platform/KeyCodes.h"

namespace {

// The numbers a US keyboard layout gives; a shifted symbol reports the key it is on, as the platform does.
int punctuationKey(int k) {
    switch (k) {
    case Qt::Key_Semicolon: case Qt::Key_Colon: return 0xBA;
    case Qt::Key_Equal: case Qt::Key_Plus: return 0xBB;
    case Qt::Key_Comma: case Qt::Key_Less: return 0xBC;
    case Qt::Key_Minus: case Qt::Key_Underscore: return 0xBD;
    case Qt::Key_Period: case Qt::Key_Greater: return 0xBE;
    case Qt::Key_Slash: case Qt::Key_Question: return 0xBF;
    case Qt::Key_QuoteLeft: case Qt::Key_AsciiTilde: return 0xC0;
    case Qt::Key_BracketLeft: case Qt::Key_BraceLeft: return 0xDB;
    case Qt::Key_Backslash: case Qt::Key_Bar: return 0xDC;
    case Qt::Key_BracketRight: case Qt::Key_BraceRight: return 0xDD;
    case Qt::Key_Apostrophe: case Qt::Key_QuoteDbl: return 0xDE;
    case Qt::Key_Exclam: return '1';
    case Qt::Key_At: return '2';
    case Qt::Key_NumberSign: return '3';
    case Qt::Key_Dollar: return '4';
    case Qt::Key_Percent: return '5';
    case Qt::Key_AsciiCircum: return '6';
    case Qt::Key_Ampersand: return '7';
    case Qt::Key_Asterisk: return '8';
    case Qt::Key_ParenLeft: return '9';
    case Qt::Key_ParenRight: return '0';
    default: return 0;
    }
}

int keypadKey(int k) {
    if (k >= Qt::Key_0 && k <= Qt::Key_9)
        return 0x60 + (k - Qt::Key_0);
    switch (k) {
    case Qt::Key_Asterisk: return 0x6A;
    case Qt::Key_Plus: return 0x6B;
    case Qt::Key_Minus: return 0x6D;
    case Qt::Key_Period: case Qt::Key_Comma: return 0x6E;
    case Qt::Key_Slash: return 0x6F;
    default: return 0;
    }
}

}  // namespace

int virtualKeyCode(int k, Qt::KeyboardModifiers modifiers) {
    if (modifiers & Qt::KeypadModifier) {
        if (int vk = keypadKey(k))
            return vk;
    }
    if (k >= Qt::Key_A && k <= Qt::Key_Z)
        return 'A' + (k - Qt::Key_A);
    if (k >= Qt::Key_0 && k <= Qt::Key_9)
        return '0' + (k - Qt::Key_0);
    if (k >= Qt::Key_F1 && k <= Qt::Key_F24)
        return 112 + (k - Qt::Key_F1);
    switch (k) {
    case Qt::Key_Backspace: return 8;
    case Qt::Key_Tab: case Qt::Key_Backtab: return 9;
    case Qt::Key_Clear: return 12;
    case Qt::Key_Return: case Qt::Key_Enter: return 13;
    case Qt::Key_Shift: return 16;
    case Qt::Key_Control: return 17;
    case Qt::Key_Alt: case Qt::Key_AltGr: return 18;
    case Qt::Key_Pause: return 19;
    case Qt::Key_CapsLock: return 20;
    case Qt::Key_Escape: return 27;
    case Qt::Key_Space: return 32;
    case Qt::Key_PageUp: return 33;
    case Qt::Key_PageDown: return 34;
    case Qt::Key_End: return 35;
    case Qt::Key_Home: return 36;
    case Qt::Key_Left: return 37;
    case Qt::Key_Up: return 38;
    case Qt::Key_Right: return 39;
    case Qt::Key_Down: return 40;
    case Qt::Key_Print: return 44;
    case Qt::Key_Insert: return 45;
    case Qt::Key_Delete: return 46;
    case Qt::Key_Help: return 47;
    case Qt::Key_Meta: case Qt::Key_Super_L: return 91;
    case Qt::Key_Super_R: return 92;
    case Qt::Key_Menu: return 93;
    case Qt::Key_NumLock: return 144;
    case Qt::Key_ScrollLock: return 145;
    default: return punctuationKey(k);
    }
}

int shiftState(Qt::KeyboardModifiers m) {
    return ((m & Qt::ShiftModifier) ? kShiftMask : 0) | ((m & Qt::ControlModifier) ? kCtrlMask : 0) |
           ((m & Qt::AltModifier) ? kAltMask : 0);
}

int mouseButtons(Qt::MouseButtons b) {
    return ((b & Qt::LeftButton) ? kLeftButton : 0) | ((b & Qt::RightButton) ? kRightButton : 0) |
           ((b & Qt::MiddleButton) ? kMiddleButton : 0);
}
