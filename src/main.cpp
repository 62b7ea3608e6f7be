// Entry point: puts the platform services in place and shows the frame; the frame's load handler
// does all start-up.
#include "platform/PosixLauncher.h"
#include "platform/PosixPaths.h"
#include "platform/QtPrompts.h"
#include "core/Globals.h"
#include "shell/MDIMain.h"

#include <QApplication>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
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
        MDIMain frame(MDIMain::commandLineFrom(app));
        prompts.setParent(&frame);
        frame.show();
        rc = app.exec();
        prompts.setParent(nullptr);
    }
    g.reset();
    return rc;
}
