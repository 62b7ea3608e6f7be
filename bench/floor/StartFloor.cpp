// The floor for the start benchmark: the least a window like the frame can be. A main window of the frame's
// default size with a menu bar, a toolbar, a status bar and one QScintilla, shown, and ended at the first
// moment its event loop would wait, saying so on its output, as the real program is when
// TARNLET_QUIT_AT_IDLE is set.
#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>
#include <Qsci/qsciscintilla.h>

#include <cstdio>
#include <utility>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QMainWindow frame;
    QMenu* file = frame.menuBar()->addMenu(QStringLiteral("&File"));
    for (const char* item : {"&New", "&Open...", "&Save", "E&xit"})
        file->addAction(QString::fromLatin1(item));
    frame.menuBar()->addMenu(QStringLiteral("&Edit"))->addAction(QStringLiteral("&Undo"));
    QToolBar* tools = frame.addToolBar(QStringLiteral("Standard"));
    for (const char* item : {"New", "Open", "Save", "Compile"})
        tools->addAction(QString::fromLatin1(item));
    frame.statusBar()->showMessage(QStringLiteral("Line: 1 Col: 1"));
    frame.setCentralWidget(new QsciScintilla);
    frame.resize(600, 400);
    frame.show();
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &app,
                     [] {
                         static bool said = false;
                         if (!std::exchange(said, true)) {
                             std::fputs("idle\n", stdout);
                             std::fflush(stdout);
                         }
                         QCoreApplication::exit(0);
                     });
    return app.exec();
}
