#pragma once
// Test doubles of the platform services.

#include "platform/Launcher.h"
#include "platform/Paths.h"
#include "platform/Prompts.h"

#include <QStringList>
#include <ostream>
#include <QTemporaryDir>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

struct Box {
    QString text;
    QString title;
    Icon icon;
    Buttons buttons;
};

// Records every box and dialog; answers from queues. An empty queue answers Ok/Yes-less defaults:
// message -> first button's natural answer (Ok, or Yes), file dialogs -> cancel, colour -> cancel.
class FakePrompts : public Prompts {
public:
    std::vector<Box> boxes;
    std::deque<Answer> answers;
    std::deque<std::optional<QString>> files;  // answers to open and save dialogs
    std::deque<std::optional<qint32>> colors;
    QStringList fileDialogFilters;             // the filter each file dialog was shown with
    QStringList fileDialogNames;               // the file name each file dialog started with
    std::deque<int> filterChoices;             // the filter (from 0) each save dialog is left with; else as shown

    Answer message(const QString& text, const QString& title, Icon icon, Buttons buttons) override;
    // Recorded as a box with OK; the extra button's caption goes to offered, at the box's index.
    bool messageOffering(const QString& text, const QString& title, Icon icon, const QString& extra) override;
    std::vector<std::pair<std::size_t, QString>> offered;  // box index, extra caption
    std::deque<bool> takeOffer;                             // answers to offers; empty: OK
    std::optional<QString> openFile(const QString& filter, const QString& fileName) override;
    std::optional<QString> saveFile(const QString& filter, const QString& fileName, int& filterIndex) override;
    std::optional<qint32> chooseColor(qint32 initial) override;
};

struct LaunchRecord {
    enum Kind { Detached, Watched, Hidden, Terminal, Url } kind;
    QString program;
    QStringList args;
    QString workDir;
};

// A watched program of the launcher double: the test says what it prints and how it ends.
struct FakeRun {
    ProcessEvents events;
    bool stopAsked = false;
    bool dropped = false;  // its handle is gone
    bool ended = false;
    void say(ProcessEvents::Channel channel, const QByteArray& bytes) { events.output(channel, bytes); }
    void end(const ProcessEnd& how) {
        ended = true;
        events.ended(how);
    }
};

class FakeLauncher : public Launcher {
public:
    std::vector<LaunchRecord> launches;
    std::vector<std::shared_ptr<FakeRun>> runs;  // one for each watched start
    bool failTerminal = false;
    bool failUrl = false;
    std::optional<long> failDetached;  // Failure number to throw from startDetached
    std::optional<long> failWatched;   // and from startWatched

    void startDetached(const QString& program, const QStringList& args, const QString& workDir) override;
    std::unique_ptr<WatchedProcess> startWatched(const QString& program, const QStringList& args,
                                                 const QString& workDir, ProcessEvents events) override;
    std::unique_ptr<HiddenProcess> startHidden(const QString& script, const QString& workDir) override;
    bool startInTerminal(const QString& script, const QString& workDir) override;
    bool openUrl(const QString& url) override;
};

class FakePaths : public Paths {
public:
    explicit FakePaths(QString appDir) : appDir(std::move(appDir)) {}
    QString appDir;
    QStringList roots;
    QString installedData;  // empty: not an installed program
    QString shortPath(const QString& path) override;
    QString applicationDirectory() override { return appDir; }
    QStringList searchRoots() override { return roots; }
    QString installedDataDirectory() override { return installedData; }
};

// A fresh world for one test: its own settings file, application directory and platform doubles,
// installed in globals() and removed again at the end.
class TestWorld {
public:
    TestWorld();
    ~TestWorld();
    QString appDir() const { return app_.path(); }
    QString configDir() const { return config_.path(); }
    QString file(const QString& name) const { return app_.filePath(name); }
    // Writes a file into the application directory and gives its path.
    QString write(const QString& name, const QByteArray& bytes) const;
    // A small device.ide: PIC16F84A and PIC12F675 for both compilers, PIC18F452 for PicBasic Pro only.
    QString writeDeviceCatalogue() const;

    FakePrompts prompts;
    FakeLauncher launcher;
    FakePaths paths;

private:
    QTemporaryDir config_;
    QTemporaryDir app_;
    QTemporaryDir state_;
    QByteArray oldConfig_;
    QByteArray oldState_;
};

// The number of the Failure that step throws, 0 when it goes through.
long failureNumber(const std::function<void()>& step);

// Readable QString output in failed expectations.
inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }
inline void PrintTo(const QStringList& l, std::ostream* os) { *os << '[' << l.join(", ").toStdString() << ']'; }
