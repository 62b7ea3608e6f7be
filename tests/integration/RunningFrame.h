#pragma once
// A frame over a fresh world with the platform doubles, and the reads the integration tests make of it.
#include "core/Globals.h"
#include "core/Settings.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "shell/MDIMain.h"
#include "shell/RecentFiles.h"
#include "support/Doubles.h"
#include "support/Typing.h"

#include <QFile>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QSettings>
#include <gtest/gtest.h>

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
        click("ID_Open");
    }
    QStringList titles() {
        QStringList t;
        for (QMdiSubWindow* s : f->mdiArea()->subWindowList(QMdiArea::CreationOrder))
            t << s->widget()->windowTitle();
        return t;
    }
    // The Window menu past its four arrange entries.
    QStringList windowMenu() {
        QStringList ids;
        for (const auto& m : f->toolBars().Tools().Item("ID_Window").Menu().Tools())
            ids << m->ID();
        return ids.mid(4);
    }
    QString filesLabel() { return f->toolBars().Bands("Standard").Tools().Item("ID_OpenDocs").Caption(); }
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
    static QByteArray read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
    }
};
