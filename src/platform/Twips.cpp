#include "platform/Twips.h"

#include <QGuiApplication>
#include <QScreen>

double screenDpiX() {
    const QScreen* s = QGuiApplication::primaryScreen();
    return s ? s->logicalDotsPerInchX() : 96.0;
}

double screenDpiY() {
    const QScreen* s = QGuiApplication::primaryScreen();
    return s ? s->logicalDotsPerInchY() : 96.0;
}
