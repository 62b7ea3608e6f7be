#pragma once
// The compiler output screen: one top-level window for the whole application, outside the frame's
// document area, shown without blocking. It shows a waiting text, then the compiler's output, and closes
// by a countdown in its title or by Esc.

#include <QString>
#include "platform/TaggedTimer.h"

#include <QTimer>
#include <QWidget>

class SourceView;


class CompilerScreen : public QWidget {
    Q_OBJECT
public:
    // The live screen, or a new one, not shown, when there is none. Its owner is the frame (the first
    // loaded window), when there is one.
    static CompilerScreen& instance();
    // The live screen, or null. A screen that was closed is no longer live, though Qt may not have
    // deleted it yet.
    static CompilerScreen* find();

    // The three titles.
    static QString readyTitle();                        // "Compiler Output - Esc to Close"
    static QString cancelledTitle();                    // "... - Auto Close Canceled - Esc to Close"
    static QString countingTitle(const QString& tag);   // throws Failure 13 when tag holds no number

    // Client area 6420 x 3195 twips, centred on the owner.
    explicit CompilerScreen(QWidget* owner = nullptr);
    ~CompilerScreen() override;

    SourceView* CompilerOutput = nullptr;
    // Interval 1000 ms, off; Tag holds the seconds left.
    TaggedTimer CompileScreenTimer;

    // Sets Tag to the seconds, the counting title, and switches the timer on. With seconds that are no
    // number it throws Failure 13 and changes nothing.
    void startCountdown(const QString& seconds);

    void CompilerOutput_KeyDown(int keyCode, int shift);
    void CompileScreenTimer_Timer();
    void Form_Resize();

protected:
    void resizeEvent(QResizeEvent* e) override;
    void closeEvent(QCloseEvent* e) override;
};
