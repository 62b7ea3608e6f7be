#include "support/Doubles.h"

#include "platform/Failure.h"
#include "core/Globals.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

Answer FakePrompts::message(const QString& text, const QString& title, Icon icon, Buttons buttons) {
    boxes.push_back({text, title, icon, buttons});
    if (!answers.empty()) {
        const Answer a = answers.front();
        answers.pop_front();
        return a;
    }
    return (buttons == Buttons::YesNo || buttons == Buttons::YesNoCancel) ? Answer::Yes : Answer::Ok;
}

bool FakePrompts::messageOffering(const QString& text, const QString& title, Icon icon, const QString& extra) {
    offered.emplace_back(boxes.size(), extra);
    boxes.push_back({text, title, icon, Buttons::Ok});
    if (takeOffer.empty())
        return false;
    const bool take = takeOffer.front();
    takeOffer.pop_front();
    return take;
}

std::optional<QString> FakePrompts::openFile(const QString& filter, const QString& fileName) {
    fileDialogFilters << filter;
    fileDialogNames << fileName;
    if (files.empty())
        return std::nullopt;
    auto f = files.front();
    files.pop_front();
    return f;
}

std::optional<QString> FakePrompts::saveFile(const QString& filter, const QString& fileName, int& filterIndex) {
    if (!filterChoices.empty()) {
        filterIndex = filterChoices.front();
        filterChoices.pop_front();
    }
    return openFile(filter, fileName);
}

std::optional<qint32> FakePrompts::chooseColor(qint32) {
    if (colors.empty())
        return std::nullopt;
    auto c = colors.front();
    colors.pop_front();
    return c;
}

namespace {
class FakeHidden : public HiddenProcess {
public:
    void terminate() override { ended = true; }
    bool running() const override { return !ended; }
    bool ended = false;
};
class FakeWatched : public WatchedProcess {
public:
    explicit FakeWatched(std::shared_ptr<FakeRun> run) : run_(std::move(run)) {}
    ~FakeWatched() override { run_->dropped = true; }
    bool running() const override { return !run_->ended; }
    void stop() override { run_->stopAsked = true; }

private:
    std::shared_ptr<FakeRun> run_;
};
}  // namespace

std::unique_ptr<WatchedProcess> FakeLauncher::startWatched(const QString& program, const QStringList& args,
                                                           const QString& workDir, ProcessEvents events) {
    if (failWatched)
        throw Failure(*failWatched, QStringLiteral("File not found"));
    launches.push_back({LaunchRecord::Watched, program, args, workDir});
    runs.push_back(std::make_shared<FakeRun>(FakeRun{std::move(events)}));
    return std::make_unique<FakeWatched>(runs.back());
}

void FakeLauncher::startDetached(const QString& program, const QStringList& args, const QString& workDir) {
    if (failDetached)
        throw Failure(*failDetached, QStringLiteral("File not found"));
    launches.push_back({LaunchRecord::Detached, program, args, workDir});
}

std::unique_ptr<HiddenProcess> FakeLauncher::startHidden(const QString& script, const QString& workDir) {
    launches.push_back({LaunchRecord::Hidden, script, {}, workDir});
    return std::make_unique<FakeHidden>();
}

bool FakeLauncher::startInTerminal(const QString& script, const QString& workDir) {
    launches.push_back({LaunchRecord::Terminal, script, {}, workDir});
    return !failTerminal;
}

bool FakeLauncher::openUrl(const QString& url) {
    launches.push_back({LaunchRecord::Url, url, {}, {}});
    return !failUrl;
}

QString FakePaths::shortPath(const QString& path) {
    const QFileInfo fi(path);
    return fi.exists() ? fi.absoluteFilePath() : QString();
}

TestWorld::TestWorld() : paths(QString()) {
    paths.appDir = app_.path();
    oldConfig_ = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", config_.path().toLocal8Bit());
    // Recovery files too: a test must never take over those of a program the developer has running.
    oldState_ = qgetenv("XDG_STATE_HOME");
    qputenv("XDG_STATE_HOME", state_.path().toLocal8Bit());
    Globals& g = globals();
    g.reset();
    g.prompts = &prompts;
    g.launcher = &launcher;
    g.paths = &paths;
}

TestWorld::~TestWorld() {
    Globals& g = globals();
    g.reset();
    g.prompts = nullptr;
    g.launcher = nullptr;
    g.paths = nullptr;
    if (oldConfig_.isNull())
        qunsetenv("XDG_CONFIG_HOME");
    else
        qputenv("XDG_CONFIG_HOME", oldConfig_);
    if (oldState_.isNull())
        qunsetenv("XDG_STATE_HOME");
    else
        qputenv("XDG_STATE_HOME", oldState_);
}

QString TestWorld::write(const QString& name, const QByteArray& bytes) const {
    const QString path = app_.filePath(name);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    if (f.open(QIODevice::WriteOnly))
        f.write(bytes);
    return path;
}

QString TestWorld::writeDeviceCatalogue() const {
    return write("device.ide",
                 "; devices for tests\n"
                 "PIC16F84A: PBC PORTA=5 PORTB=8\n"
                 "PIC12F675: PBC GPIO=6\n"
                 "PIC18F452: PORTA=7 PORTB=8 PORTC=8 PORTD=8 PORTE=3\n");
}

long failureNumber(const std::function<void()>& step) {
    try {
        step();
    } catch (const Failure& f) {
        return f.number;
    }
    return 0;
}
