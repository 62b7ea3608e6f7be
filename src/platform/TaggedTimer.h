#pragma once
// A timer with a text beside it, as the windows keep a countdown or a wait count in a timer's tag.

#include <QString>
#include <QTimer>

class TaggedTimer : public QTimer {
public:
    using QTimer::QTimer;
    QString Tag;
};
