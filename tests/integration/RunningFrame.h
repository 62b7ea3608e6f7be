#pragma once
// A frame over a fresh world with the platform doubles, and the reads the integration tests make of it.
#include "compile/CompileSession.h"
#include "core/ToolIds.h"
#include "compile/CompilerScreen.h"
#include "core/Globals.h"
#include "core/Settings.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "platform/PosixLauncher.h"
#include "shell/EditorRegistry.h"
#include "shell/MDIMain.h"
#include "shell/RecentFiles.h"
#include "support/Doubles.h"
#include "support/Files.h"
#include "support/Typing.h"

#include <QDialog>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QSettings>
#include <QThread>
#include <gtest/gtest.h>

#include <cstdio>
#include <stdexcept>

struct RunningFrame {
    TestWorld w;
    std::unique_ptr<MDIMain> f;
    explicit RunningFrame(const QString& first = {}, bool startNow = true) {
        w.writeDeviceCatalogue();
        if (startNow)
            start(first);
    }
    MDIMain& start(const QString& first = {}) {
        f.reset();
        f = std::make_unique<MDIMain>(first);
        f->show();
        return *f;
    }
    frmEditor* doc() { return f->activeDocument(); }
    void type(const QString& text) { typeText(doc()->View->editorWidget(), text); }
    void click(const QString& id) { f->SSActiveToolBars1_ToolClick(f->toolBars().Tools().Item(id)); }
    bool enabled(const QString& id) { return f->toolBars().Tools().Item(id).Enabled(); }
    void openFile(const QString& path) {
        w.prompts.files.push_back(path);
        click(ToolId::Open);
    }
    // The documents' titles in the registry's order, the session's documents all back.
    QStringList titles() {
        f->finishRestoring();
        QStringList t;
        for (const frmEditor* d : f->registry().all())
            t << d->windowTitle();
        return t;
    }
    // The Window menu past its four arrange entries.
    QStringList windowMenu() {
        QStringList ids;
        for (const auto& m : f->toolBars().Tools().Item(ToolId::Window).Menu().Tools())
            ids << m->ID();
        return ids.mid(4);
    }
    QString filesLabel() { return f->toolBars().Bands("Standard").Tools().Item(ToolId::OpenDocs).Caption(); }
    // Recent entry n's caption, "-" when hidden.
    QString recent(int n) {
        Tool& e = recentFileEntry(f->toolBars(), n);
        return e.Visible() ? e.Caption() : QStringLiteral("-");
    }
    // The last message box, or an empty one when none was shown.
    Box lastBox() { return w.prompts.boxes.empty() ? Box{} : w.prompts.boxes.back(); }
    static QString stored(const QString& key) {
        QSettings s(settingsFilePath(), QSettings::IniFormat);
        return s.contains(key) ? s.value(key).toString() : QStringLiteral("<none>");
    }
};

// A frame over a source in a directory with blanks and a quote in its name, set to compile it.
struct CompileFrame : RunningFrame {
    PosixLauncher real;
    QStringList modals;

    CompileFrame(const QByteArray& source, const QString& compiler, bool realLauncher = true,
                 const QString& name = "my 'led' work/blink.asm")
        : RunningFrame(QString(), false) {
        if (realLauncher)
            globals().launcher = &real;
        saveSetting(Key::CompilerPathName, compiler);
        start(w.write(name, source));
        f->modalHook = [this](QDialog& d) { modals << d.windowTitle(); return 0; };
    }
    ~CompileFrame() {
        if (CompilerScreen* s = CompilerScreen::find())
            s->close();
        QDir::setCurrent(QDir::tempPath());
    }
    // The active document's latest compile.
    CompileSession& run() {
        CompileSession* s = CompileSession::of(*doc());
        if (!s)
            throw std::logic_error("the document never compiled");
        return *s;
    }
    CompilerScreen& screen() { return CompilerScreen::instance(); }  // a fresh one fails the checks, not the run
    // The compiler runs on its own; wait (bounded) for its output as the tick would, then tick once.
    bool waitAndTick() {
        for (QDeadlineTimer guard(30000); !QFileInfo::exists(w.file("temp.dat")) && !guard.hasExpired();)
            QThread::msleep(20);
        run().CheckFile_Timer();
        return QFileInfo::exists(w.file("temp.dat"));
    }
    // Compiles, keeps the once-a-second tick out of the way and waits for the tick at the script's end.
    bool compileAndWait() {
        click(ToolId::Compile);
        if (!run().CheckFile.isActive()) {
            std::fprintf(stderr, "the compile did not start; boxes: %s\n", qPrintable(boxTexts().join(" | ")));
            return false;
        }
        run().CheckFile.start(3600 * 1000);
        return waitFor([&] { return !run().CheckFile.isActive(); });
    }
    // Compiles the document as the Compile tool does when it is active, and parks the once-a-second tick:
    // the script's end brings the tick.
    CompileSession& compile(frmEditor* d) {
        f->mdiArea()->setActiveSubWindow(d->subWindow());
        click(ToolId::Compile);
        CompileSession& s = run();
        if (s.CheckFile.isActive())
            s.CheckFile.start(3600 * 1000);
        return s;
    }
    QStringList boxTexts() {
        QStringList texts;
        for (const Box& b : w.prompts.boxes)
            texts << b.text;
        return texts;
    }
};
