// Entry point: shows the frame; the frame's load handler does all start-up.
#include "shell/MDIMain.h"

#include <QApplication>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Quillbay Lite"));
    MDIMain frame(MDIMain::commandLineFrom(app));
    frame.show();
    return app.exec();
}
