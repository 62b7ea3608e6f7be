// The registry of open documents: one document per file whatever its spelling, what a dock that follows
// the documents hears, and every way a document goes leaving the count, the Window menu and the tools right.
#include "RunningFrame.h"
#include "core/ToolIds.h"

#include "core/Editors.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>

namespace {

QString nameOf(const frmEditor* doc) { return QFileInfo(doc->Caption()).fileName(); }

}  // namespace

TEST(Editors, OneDocumentUnderEverySpellingOfItsPathAndWhatAFollowerHears) {
    RunningFrame t;
    Editors& editors = t.f->editors();
    frmEditor* untitled = t.doc();
    QStringList heard;
    QObject::connect(&editors, &Editors::opened, [&](frmEditor* d) { heard << "opened " + nameOf(d); });
    QObject::connect(&editors, &Editors::activated, [&](frmEditor* d) { heard << "active " + nameOf(d); });
    QObject::connect(&editors, &Editors::textChanged, [&](frmEditor* d) { heard << "text " + nameOf(d); });
    QObject::connect(&editors, &Editors::pathChanged, [&](frmEditor* d, const QString& old) {
        heard << "path " + QFileInfo(old).fileName() + ">" + nameOf(d);
    });
    QObject::connect(&editors, &Editors::closed, [&](frmEditor* d) { heard << "closed " + nameOf(d); });

    const QString blink = t.w.write("led/blink.pbp", "HIGH 0\n");
    ASSERT_TRUE(QFile::link(blink, t.w.file("link.pbp")));
    ASSERT_TRUE(QFile::link(t.w.file("led"), t.w.file("alias")));
    t.openFile(blink);
    frmEditor* doc = t.doc();
    for (const QString& spelling : {t.w.file("link.pbp"), t.w.file("alias/blink.pbp"),
                                    t.w.file("led/../led/blink.pbp"), t.w.file("led//blink.pbp")})
        EXPECT_EQ(editors.find(spelling), doc) << spelling.toStdString();
    // A document whose file isn't made yet is found by its cleaned path; another file is no document.
    EXPECT_EQ(editors.find(t.w.file("alias/../Untitled.pbp")), untitled);
    EXPECT_EQ(editors.find(t.w.file("led/blank.pbp")), nullptr);
    EXPECT_EQ(editors.all(), QList<frmEditor*>({untitled, doc}));
    EXPECT_EQ(editors.active(), doc);

    // Another spelling opens nothing new, and Save As onto one is refused.
    t.openFile(t.w.file("link.pbp"));
    EXPECT_EQ(t.lastBox().text, "File Already Open!");
    t.f->mdiArea()->setActiveSubWindow(untitled->subWindow());
    t.w.prompts.files = {t.w.file("alias/blink.pbp")};
    t.click(ToolId::SaveAs);
    EXPECT_EQ(t.lastBox().text, "File Already Open!");
    EXPECT_EQ(editors.count(), 2);

    t.type("x");
    t.w.prompts.files = {t.w.file("led/new.pbp")};
    t.click(ToolId::SaveAs);
    EXPECT_EQ(editors.find(t.w.file("alias/new.pbp")), untitled);
    t.click(ToolId::Close);
    EXPECT_EQ(heard, QStringList({"opened blink.pbp", "active blink.pbp", "active Untitled.pbp",
                                  "text Untitled.pbp", "path Untitled.pbp>new.pbp", "closed new.pbp",
                                  "active blink.pbp"}));
}

TEST(Editors, EveryWayOfClosingLeavesTheCountTheWindowMenuAndTheToolsRight) {
    enum Way { CloseCommand, WindowClose, FailedLoad, Exit };
    for (Way way : {CloseCommand, WindowClose, FailedLoad, Exit}) {
        SCOPED_TRACE(way);
        RunningFrame t;
        QGuiApplication::clipboard()->setText("x");
        const QString first = t.doc()->Caption(), second = t.w.write("b.pbp", "HIGH 0\n");
        t.openFile(second);
        t.type("x");  // the second has undo, the first none
        t.doc()->View->document().SaveFile(second);
        QStringList left = {first};
        switch (way) {
        case CloseCommand: t.click(ToolId::Close); break;
        case WindowClose: t.doc()->subWindow()->close(); break;
        case FailedLoad: {
            Tool& entry = recentFileEntry(t.f->toolBars(), 2);
            entry.setCaption("&2 " + t.w.file("vanished.pbp"));
            entry.setVisible(true);
            t.click(ToolId::File2);
            EXPECT_EQ(t.lastBox().title, "File Error");
            left << second;
            break;
        }
        case Exit:
            t.click(ToolId::Exit);
            EXPECT_FALSE(t.f->isVisible());
            left.clear();
            break;
        }
        EXPECT_EQ(t.f->miDocCount(), left.size());
        EXPECT_EQ(t.titles(), left);
        EXPECT_EQ(t.filesLabel(), "Files: " + QString::number(left.size()));
        EXPECT_EQ(t.windowMenu(), QStringList{"separator"} + left);
        const bool any = !left.isEmpty();
        for (const char* id : {ToolId::Save, ToolId::Close, ToolId::Compile, ToolId::Device, ToolId::Paste})
            EXPECT_EQ(t.enabled(id), any) << id;
        // The active document's undo history and selection, not the closed one's.
        EXPECT_EQ(t.enabled(ToolId::Undo), way == FailedLoad);
        EXPECT_FALSE(t.enabled(ToolId::Cut) || t.enabled(ToolId::Redo) || t.enabled(ToolId::TokenColor));
    }
}
