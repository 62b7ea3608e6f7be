#pragma once
// The compiler output screen: a top-level window outside the frame's document area, shown without
// blocking. It shows a waiting text, then the compiler's output, and closes by a countdown in its title or
// by Esc. A single compile has one for the whole application; compiles that run at once each show in
// their own. The output's messages are tagged on their lines and counted above them; Enter or a
// double-click on one, or F4 and Shift+F4, go to its line in its document.

#include "compile/CompileMessages.h"
#include "platform/TaggedTimer.h"

#include <QPointer>
#include <QString>
#include <QTimer>
#include <QWidget>
#include <chrono>
#include <vector>

class CompileSession;
class Frame;
class QLabel;
class QPushButton;
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
    // The live screen with messages that was last loaded or gone from: the one F4 in the frame walks.
    static CompilerScreen* withMessages();
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
    // A new compile shows here: the messages of the last one go. Its messages come when it ends.
    void setSession(CompileSession* session);

    // Tags the messages on their output lines and counts them above the output; nothing moves a caret.
    // frame opens their files; source is the compiled document's path, which a message that names no
    // file is about.
    void showMessages(Frame& frame, std::vector<CompileMessage> messages, const QString& source);
    const std::vector<CompileMessage>& messages() const { return messages_; }
    // The message last gone to; -1 before the first.
    int currentMessage() const { return current_; }
    // "2 errors, 1 warning" above the output, while it shows messages; empty otherwise.
    QString countText() const;
    // The user's act: the message's document comes forward, opened when it isn't, its line selected and
    // marked in the strip; here the message's line is selected. False when its file can't be opened.
    bool goToMessage(int index);
    // F4 and Shift+F4: the next or the previous message, going round.
    bool stepMessage(bool forward);
    // A line of the screen's own under the output, kept in sight: the countdown stops and a screen that
    // the user closed during the compile comes back.
    void tell(const QString& line);
    // A "Check Set-up..." button above the output, for a compiler that could not be run; the next compile
    // shown here takes it away.
    void offerSetupCheck(Frame& frame);
    QPushButton* cmdCheckSetup = nullptr;

    void CompilerOutput_KeyDown(int keyCode, int shift);
    void CompilerOutput_DblClick();
    void CompilerOutput_MouseDown(int buttons, int shift, int x, int y);
    void CompileScreenTimer_Timer();
    void Form_Resize();

protected:
    void resizeEvent(QResizeEvent* e) override;
    void closeEvent(QCloseEvent* e) override;

private:
    // The countdown stops, the title says so.
    void cancelCountdown();
    void tagMessageLines();
    void Session_Ended();

    QPointer<CompileSession> session_;
    QLabel* MessageCount = nullptr;
    Frame* frame_ = nullptr;
    std::vector<CompileMessage> messages_;
    QString source_;
    int current_ = -1;
    std::chrono::steady_clock::time_point used_{};
};
