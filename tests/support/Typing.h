#pragma once
// Typing into a widget as the user does: key events, one per character, through the widget's own handling.

#include <QString>
#include <QTest>
#include <QWidget>

inline void typeText(QWidget* w, const QString& text) {
    for (const QChar c : text) {
        if (c == QLatin1Char('\n'))
            QTest::keyClick(w, Qt::Key_Return);
        else
            QTest::keyClicks(w, QString(c));
    }
}
