#include "platform/QtFixedDialog.h"

#include "platform/Twips.h"

#include <QDialog>
#include <QLabel>

#include <algorithm>

void setupFixedDialog(QDialog& dlg, const QString& title, int widthTwips, int heightTwips) {
    dlg.setWindowTitle(title);
    dlg.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                       Qt::WindowCloseButtonHint);
    dlg.setModal(true);
    dlg.setFixedSize(twipsToPixelsX(widthTwips), twipsToPixelsY(heightTwips));
    // The twips geometry was laid out for an 8-point dialog font; a larger one would clip the captions.
    QFont small = dlg.font();
    small.setPointSizeF(8);
    dlg.setFont(small);
}

void placeInTwips(QWidget* w, int left, int top, int width, int height) {
    w->setGeometry(twipsToPixelsX(left), twipsToPixelsY(top), twipsToPixelsX(width), twipsToPixelsY(height));
    if (auto* label = qobject_cast<QLabel*>(w))
        label->resize(std::max(label->width(), label->sizeHint().width()), label->height());
}
