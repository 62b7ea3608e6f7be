#include "statusbar/StatusPicture.h"

#include <QPainter>
#include <QResizeEvent>

StatusPicture::StatusPicture(QWidget* parent) : QWidget(parent), target_(icons_, this) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    // Drawing from a setter shows at the next paint; drawing during the paint needs no other.
    target_.drawingStarted = [this] {
        if (!painting_)
            update();
    };
    target_.resize(size(), devicePixelRatioF());
}

void StatusPicture::paintEvent(QPaintEvent*) {
    painting_ = true;
    emit Painting();
    // What was drawn since the last paint is already current: drawing it again would only double the work.
    if (!target_.drawnSinceTaken())
        emit Paint();
    painting_ = false;
    QPainter p(this);
    p.drawPixmap(0, 0, target_.pixmap());
}

void StatusPicture::resizeEvent(QResizeEvent* event) {
    target_.resize(event->size(), devicePixelRatioF());
    emit Resized();
}
