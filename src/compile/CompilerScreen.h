#pragma once
// The compiler output screen: a top-level window outside the frame's document area, shown without
// blocking. It shows a waiting text, then the compiler's output, and closes by a countdown in its title or
// by Esc. A single compile has one for the whole application; compiles that run at once each show in
// their own.

#include "platform/TaggedTimer.h"

#include <QPointer>
#include <QString>
#include <QTimer>
#include <QWidget>
#include <vector>

class CompileSession;
class SourceView;
class CompilerScreen : public QWidget {
    Q_OBJECT
public:
    // The live screen, or a new one, not shown, when there is none.
    static CompilerScreen& instance();
    // The first live screen, or null. A screen that was closed is no longer live, though Qt may not have
    // deleted it yet.
    static CompilerScreen* find();
    // Every live screen, in the order they were made.
    static std::vector<CompilerScreen*> all();
    // A new screen, not shown. Its owner is the frame (the first loaded window), when there is one.
    static CompilerScreen& fresh();

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

    // Not closed yet.
    bool live() const;
    // The compile whose text this shows, when one does.
    CompileSession* session() const;
    void setSession(CompileSession* session);

    void CompilerOutput_KeyDown(int keyCode, int shift);
    void CompileScreenTimer_Timer();
    void Form_Resize();

protected:
    void resizeEvent(QResizeEvent* e) override;
    void closeEvent(QCloseEvent* e) override;

private:
    QPointer<CompileSession> session_;
};
