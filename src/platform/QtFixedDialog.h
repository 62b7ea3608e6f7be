#pragma once
// The system's small dialogs: fixed size in twips, no minimise or maximise, controls placed in twips.

#include <QString>

class QDialog;
class QWidget;

// Title, flags, modality, the fixed client size and the 8-point font the twips layout was made for.
void setupFixedDialog(QDialog& dlg, const QString& title, int widthTwips, int heightTwips);
// A control at its place and size in twips; a label wider in this font than planned runs on.
void placeInTwips(QWidget* w, int left, int top, int width, int height);
// Sizes the window's client area in twips and centres it over owner's frame, or over the screen without one.
void centreInTwips(QWidget& window, QWidget* owner, int widthTwips, int heightTwips);
