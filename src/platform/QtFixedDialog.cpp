#include "platform/QtFixedDialog.h"

#include "platform/Twips.h"

#include <QDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>

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

void centreInTwips(QWidget& window, QWidget* owner, int widthTwips, int heightTwips) {
    const QSize client(twipsToPixelsX(widthTwips), twipsToPixelsY(heightTwips));
    window.resize(client);
    QRect around;
    if (owner)
        around = owner->frameGeometry();
    else if (const QScreen* s = QGuiApplication::primaryScreen())
        around = s->availableGeometry();
    if (around.isValid())
        window.move(around.center() - QPoint(client.width() / 2, client.height() / 2));
}
