#pragma once
// The "Programmer Output" window: a top-level window beside the frame, shown without blocking, that shows
// the programmer's command line, its output as it arrives (standard error in red) and how it ended. There
// is one for the application, made at the first launch and kept with its owner; each launch shows its run
// in it. Closing it only hides it: a programmer that runs goes on, and Stop is what ends it. A run that
// fails brings the window back up.

#include <QWidget>
#include <memory>

class Frame;
class ProgrammerSession;
class QPlainTextEdit;
class QPushButton;

class ProgrammerOutput : public QWidget {
    Q_OBJECT
public:
    // The window, or null before the first launch.
    static ProgrammerOutput* find();
    // Shows session's run in the window, made now if there is none, and brings it to the front. The run
    // before, which has ended, goes.
    static ProgrammerOutput& showRun(Frame& frame, std::unique_ptr<ProgrammerSession> session);

    // Client area 6420 x 3195 twips, centred on the owner.
    explicit ProgrammerOutput(QWidget* owner = nullptr);
    ~ProgrammerOutput() override;

    QPlainTextEdit* Output = nullptr;
    QPushButton* cmdStop = nullptr;
    QPushButton* cmdClose = nullptr;
    // Shown after a run that failed for want of something on this machine.
    QPushButton* cmdCheckSetup = nullptr;

    // The run it shows; null before the first.
    ProgrammerSession* session() const { return session_.get(); }
    // Its run is still going.
    bool running() const;
    // Shown, raised and active.
    void comeForward();

    void cmdStop_Click();
    void cmdClose_Click();
    void cmdCheckSetup_Click();

protected:
    void keyPressEvent(QKeyEvent* e) override;

private:
    void setSession(std::unique_ptr<ProgrammerSession> session);
    void append(const QString& text, bool error, bool bold = false);
    void Session_Ended();
    void showState();

    std::unique_ptr<ProgrammerSession> session_;
    Frame* frame_ = nullptr;
};
