// The frame from start to shutdown, with the platform doubles.
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "platform/Twips.h"
#include "compile/CompilerScreen.h"
#include "core/Globals.h"
#include "shell/MDIMain.h"
#include "core/Settings.h"
#include "statusbar/StatusPicture.h"
#include "statusbar/cNoStatusBar.h"
#include "support/Doubles.h"
#include "support/Typing.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QSettings>
#include <gtest/gtest.h>

namespace {

std::unique_ptr<MDIMain> start(const QString& commandLine = {}) {
    auto f = std::make_unique<MDIMain>(commandLine);
    f->show();
    return f;
}

QString stored(const QString& section, const QString& key) {
    QSettings s(settingsFilePath(), QSettings::IniFormat);
    return s.contains(section + "/" + key) ? s.value(section + "/" + key).toString() : QStringLiteral("<none>");
}

QStringList documentTitles(MDIMain& f) {
    QStringList t;
    for (QMdiSubWindow* s : f.mdiArea()->subWindowList(QMdiArea::CreationOrder))
        t << s->widget()->windowTitle();
    return t;
}

void type(frmEditor* doc, const QString& text) { typeText(doc->View->editorWidget(), text); }

}  // namespace

TEST(Startup, FirstStartWithEmptySettings) {
    TestWorld w;
    w.writeDeviceCatalogue();
    auto f = start();
    // With a maximised document the frame's title carries the document's too, as MDI frames do.
    EXPECT_TRUE(f->windowTitle().startsWith("Quillbay Lite")) << f->windowTitle().toStdString();
    EXPECT_EQ(f->frameGeometry().topLeft(), QPoint(0, 0));
    EXPECT_EQ(f->frameGeometry().width(), twipsToPixelsX(9000));
    EXPECT_EQ(f->frameGeometry().height(), twipsToPixelsY(6000));
    EXPECT_TRUE(globals().UsePBP);
    ASSERT_TRUE(f->statusBar());
    EXPECT_EQ(f->statusBar()->PanelCount(), 3);
    EXPECT_EQ(f->statusBar()->PanelText(1), "Line: 1 Col: 1");
    EXPECT_EQ(f->statusBar()->PanelText(3), "PBP");
    EXPECT_TRUE(f->statusBar()->SizeGrip());
    EXPECT_EQ(f->statusBar()->PanelSpring(2), true);
    EXPECT_EQ(f->statusPicture()->height(), twipsToPixelsY(f->statusBar()->Height()));
    // The whole band fits the first-start width: the open documents label is on it, not in its overflow.
    QWidget* files = f->toolBars().widget(f->toolBars().Bands("Standard").Tools().Item("ID_OpenDocs"));
    ASSERT_NE(files, nullptr);
    EXPECT_TRUE(files->isVisible());
    EXPECT_LE(f->toolBars().standardBar()->sizeHint().width(), f->width());
    EXPECT_EQ(f->miDocCount(), 1);
    EXPECT_EQ(documentTitles(*f), QStringList{w.appDir() + "/Untitled.pbp"});
    frmEditor* doc = f->activeDocument();
    ASSERT_NE(doc, nullptr);
    EXPECT_EQ(doc->View->document().PathName(), w.appDir() + "/Untitled.pbp");
    EXPECT_FALSE(doc->View->document().Modified());
    EXPECT_EQ(doc->Tag, doc->Caption());
    // The loaded windows: the frame first, then the document.
    ASSERT_EQ(globals().loadedWindows.size(), 2u);
    EXPECT_EQ(globals().loadedWindows[0], f.get());
    EXPECT_TRUE(w.prompts.boxes.empty());
    // Nothing is stored before the first writer runs, and the document doesn't exist on disk.
    EXPECT_FALSE(QFile::exists(settingsFilePath()));
    EXPECT_FALSE(QFile::exists(w.appDir() + "/Untitled.pbp"));
}

TEST(Startup, CloseStoresPlacementAndLastFileWhichTheNextStartOpens) {
    TestWorld w;
    w.writeDeviceCatalogue();
    const QString path = w.write("blink.pbp", "' blink\r\nHIGH PORTB.0\r\n");
    {
        auto f = start(path);
        ASSERT_TRUE(f->close());
        EXPECT_EQ(f->miDocCount(), 0);
    }
    EXPECT_EQ(stored("Startup", "LastFile"), path);
    EXPECT_EQ(stored("Startup", "Height"), "6000");
    EXPECT_EQ(stored("Startup", "Width"), "9000");
    EXPECT_EQ(stored("Startup", "Left"), "0");
    EXPECT_EQ(stored("Startup", "Top"), "0");
    EXPECT_EQ(stored("Startup", "WindowState"), "0");
    EXPECT_EQ(stored("Startup", "DefaultDevice"), "0");
    // The colours of the document closed last are the stored ones.
    EXPECT_EQ(stored("ViewColors", "svComment"), "38400");
    EXPECT_EQ(stored("ViewColors", "svBackGround"), "-2147483643");

    auto f = start();
    ASSERT_NE(f->activeDocument(), nullptr);
    EXPECT_EQ(f->activeDocument()->Caption(), path);
    EXPECT_EQ(f->activeDocument()->View->document().GetLine(1), "HIGH PORTB.0");
}

TEST(Startup, CommandLineIsTakenWhole) {
    TestWorld w;
    w.writeDeviceCatalogue();
    saveSetting(Key::LastFile, w.write("last.pbp", "x"));
    const QString spaced = w.appDir() + "/my project/led blink.pbp";
    auto f = start(spaced);
    EXPECT_EQ(documentTitles(*f), QStringList{spaced});
    EXPECT_FALSE(f->activeDocument()->View->document().Modified());
    EXPECT_EQ(f->activeDocument()->View->document().NumLines(), 1);
    EXPECT_TRUE(w.prompts.boxes.empty());
    f->close();
    // Quotes are part of the name: a file that doesn't exist, so an empty document of that name.
    // It doesn't start with "/", so it is taken in the working directory.
    auto g = start("\"" + spaced + "\"");
    EXPECT_EQ(documentTitles(*g), QStringList{QDir::currentPath() + "/\"" + spaced + "\""});
}

TEST(Startup, ARelativePathIsTakenInTheStartingDirectoryForGood) {
    TestWorld w;
    w.writeDeviceCatalogue();
    QTemporaryDir elsewhere;
    const QString original = w.write("rel.pbp", "old\n");
    QDir::setCurrent(w.appDir());
    auto f = start("rel.pbp");
    EXPECT_EQ(documentTitles(*f), QStringList{original});
    // A compile of another document changes the working directory; Save still writes the file it opened.
    QDir::setCurrent(elsewhere.path());
    type(f->activeDocument(), "new ");
    f->SSActiveToolBars1_ToolClick(f->toolBars().Tools().Item("ID_Save"));
    EXPECT_FALSE(QFile::exists(elsewhere.path() + "/rel.pbp"));
    QFile saved(original);
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_EQ(saved.readAll(), "new old\n");
    f->close();
    EXPECT_EQ(setting(Key::LastFile), original);
    QDir::setCurrent(QDir::tempPath());
}

TEST(Startup, AFirstDocumentThatCannotBeLoadedLeavesNoCountAndNoTools) {
    TestWorld w;
    w.writeDeviceCatalogue();
    const QString binary = w.write("blink.hex.pbp", QByteArray("\x01\x00\x02", 3));
    for (const QString& first : {w.appDir(), binary}) {
        auto f = start(first);
        ASSERT_EQ(w.prompts.boxes.size(), 1u) << first.toStdString();
        EXPECT_EQ(w.prompts.boxes[0].title, "File Error");
        w.prompts.boxes.clear();
        EXPECT_EQ(f->miDocCount(), 0);
        EXPECT_EQ(f->activeDocument(), nullptr);
        auto& tools = f->toolBars().Tools();
        for (const char* id : {"ID_Save", "ID_Print", "ID_Compile", "ID_Device"})
            EXPECT_FALSE(tools.Item(id).Enabled()) << id;
        EXPECT_EQ(f->toolBars().Bands("Standard").Tools().Item("ID_OpenDocs").Caption(), "Files: 0");
        // New works from there and counts right.
        f->SSActiveToolBars1_ToolClick(tools.Item("ID_New"));
        EXPECT_EQ(f->miDocCount(), 1);
        EXPECT_EQ(f->toolBars().Bands("Standard").Tools().Item("ID_OpenDocs").Caption(), "Files: 1");
        EXPECT_TRUE(tools.Item("ID_Save").Enabled());
        EXPECT_TRUE(w.prompts.boxes.empty());
        f->close();
    }
}

TEST(Startup, RefusedCloseStopsShutdownAndSavesNothing) {
    TestWorld w;
    w.writeDeviceCatalogue();
    auto f = start(w.appDir() + "/one.pbp");
    type(f->activeDocument(), "first");
    frmEditor* second = f->createDocument(w.appDir() + "/two.pbp");
    f->setMiDocCount(f->miDocCount() + 1);
    type(second, "second");
    // First document: No (dropped); second: Cancel.
    w.prompts.answers = {Answer::No, Answer::Cancel};
    EXPECT_FALSE(f->close());
    EXPECT_TRUE(f->isVisible());
    EXPECT_EQ(f->miDocCount(), 1);
    EXPECT_EQ(documentTitles(*f), QStringList{w.appDir() + "/two.pbp"});
    ASSERT_EQ(w.prompts.boxes.size(), 2u);
    EXPECT_EQ(w.prompts.boxes[0].text, "Save Changes to " + w.appDir() + "/one.pbp");
    EXPECT_EQ(w.prompts.boxes[0].icon, Icon::Question);
    EXPECT_EQ(w.prompts.boxes[0].buttons, Buttons::YesNoCancel);
    EXPECT_EQ(w.prompts.boxes[0].title, "");
    // The closed document wrote LastFile; the frame saved no placement.
    EXPECT_EQ(stored("Startup", "LastFile"), w.appDir() + "/one.pbp");
    EXPECT_EQ(stored("Startup", "Height"), "<none>");
}

TEST(Startup, ClosingWithNoDocumentKeepsLastFile) {
    TestWorld w;
    w.writeDeviceCatalogue();
    auto f = start(w.appDir() + "/a.pbp");
    // No drops the changes; the last document closes and leaves the frame.
    typeText(f->activeDocument()->View->editorWidget(), "scratch");
    w.prompts.answers = {Answer::No};
    ASSERT_TRUE(f->activeDocument()->subWindow()->close());
    EXPECT_EQ(f->miDocCount(), 0);
    EXPECT_EQ(f->activeDocument(), nullptr);
    EXPECT_FALSE(QFile::exists(w.appDir() + "/a.pbp"));
    EXPECT_EQ(globals().loadedWindows.size(), 1u);
    EXPECT_EQ(stored("Startup", "LastFile"), w.appDir() + "/a.pbp");
    saveSetting(Key::LastFile, "/kept.pbp");
    ASSERT_TRUE(f->close());
    EXPECT_EQ(stored("Startup", "LastFile"), "/kept.pbp");
    EXPECT_EQ(stored("Startup", "Width"), "9000");
}

TEST(Startup, GarbageInEveryNumericSettingLeavesStartupRunning) {
    TestWorld w;
    w.writeDeviceCatalogue();
    for (Key k : {Key::CompilerType, Key::Height, Key::Width, Key::Left, Key::Top, Key::WindowState,
                  Key::DefaultDevice, Key::svSymbol, Key::svNumber, Key::svComment, Key::svBackGround,
                  Key::ViewSelBackColor, Key::ViewSelForeColor, Key::AutoCloseCWTime, Key::DosWindow})
        saveSetting(k, "\x01garbage,\"9e999");
    auto f = start();
    EXPECT_EQ(f->miDocCount(), 1);
    EXPECT_EQ(documentTitles(*f).size(), 1);
    EXPECT_TRUE(globals().UsePBP);
    EXPECT_GT(f->width(), 100);
    EXPECT_TRUE(f->close());
}

TEST(Startup, StoredPlacementRules) {
    TestWorld w;
    w.writeDeviceCatalogue();
    // Maximised a few twips above the screen: the stored values apply and the frame is maximised.
    saveSetting(Key::Top, "-60");
    saveSetting(Key::WindowState, "2");
    {
        auto f = start();
        EXPECT_TRUE(f->windowState() & Qt::WindowMaximized);
    }
    saveSetting(Key::Top, "1500");
    saveSetting(Key::Left, "3000");
    saveSetting(Key::WindowState, "0");
    saveSetting(Key::Width, "7500");
    saveSetting(Key::Height, "4500");
    auto f = start();
    EXPECT_EQ(f->frameGeometry(), QRect(twipsToPixelsX(3000), twipsToPixelsY(1500), twipsToPixelsX(7500),
                                        twipsToPixelsY(4500)));
}

TEST(Startup, PicBasicKindFromSettings) {
    TestWorld w;
    w.writeDeviceCatalogue();
    saveSetting(Key::CompilerType, "1");
    auto f = start();
    EXPECT_FALSE(globals().UsePBP);
    EXPECT_EQ(f->statusBar()->PanelText(3), "PBC");
}

TEST(Startup, ShutdownClosesTheOutputScreenFirstAndTheAboutBoxLast) {
    TestWorld w;
    w.writeDeviceCatalogue();
    auto f = start();
    // Loaded in this order: the document, the about box (by a compile's banner), the output screen.
    f->setPBPVersion("PICBASIC PRO(TM) COMPILER 3.1, ");
    CompilerScreen::instance();
    QStringList closed;
    struct CloseOrder : QObject {
        QStringList* closed;
        bool eventFilter(QObject* o, QEvent* e) override {
            if (e->type() == QEvent::Close)
                *closed << QString::fromLatin1(o->metaObject()->className());
            return false;
        }
    } order;
    order.closed = &closed;
    for (QWidget* win : globals().loadedWindows)
        if (win != f.get())
            win->installEventFilter(&order);
    ASSERT_TRUE(f->close());
    EXPECT_EQ(closed, QStringList({"frmEditor", "CompilerScreen", "MyAbout"}))
        << "documents close first, as the frame's own close; then the rest in the system's order";
}
