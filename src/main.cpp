// Entry point: hands a later start's file to the IDE that runs, or puts the platform services in place
// and shows the frame; the frame's load handler does all start-up.
#include "platform/PosixLauncher.h"
#include "platform/PosixPaths.h"
#include "platform/QtPrompts.h"
#include "platform/UnixSingleInstance.h"
#include "core/Globals.h"
#include "core/Settings.h"
#include "shell/MDIMain.h"

#include <QAbstractEventDispatcher>
#include <QApplication>

#include <cstdio>
#include <utility>

namespace {

void sayIdleAndQuit() {
    static bool said = false;
    if (!std::exchange(said, true)) {
        std::fputs("idle\n", stdout);
        std::fflush(stdout);
    }
    QCoreApplication::exit(0);
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QString commandLine = MDIMain::absolutePath(MDIMain::commandLineFrom(app));
    // One IDE per user, display and settings home: the running one opens the file and comes forward.
    UnixSingleInstance channel(UnixSingleInstance::addressFor(settingsHome()));
    if (channel.handOver(HandOver{commandLine.isEmpty() ? QStringList() : QStringList{commandLine}},
                         kRunningIdeAnswerMs))
        return 0;
    QtPrompts prompts;
    PosixLauncher launcher;
    PosixPaths paths;
    Globals& g = globals();
    g.prompts = &prompts;
    g.launcher = &launcher;
    g.paths = &paths;
    // An installed program keeps its files in a per-user directory, made at the first start.
    paths.makeApplicationDirectory(prompts);
    int rc = 0;
    {
        MDIMain frame(commandLine);
        prompts.setParent(&frame);
        frame.answerLaterStarts(channel);
        frame.show();
        // For the start benchmark: at the first moment its event loop would wait, the process says so on its
        // output and ends. Run with QT_NO_GLIB=1 that is after the first paint: GLib's dispatcher says so on
        // entering each turn.
        if (qEnvironmentVariableIsSet("TARNLET_QUIT_AT_IDLE"))
            QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &app,
                             [] { sayIdleAndQuit(); });
        rc = app.exec();
        prompts.setParent(nullptr);
    }
    g.reset();
    return rc;
}
