// The frame from start to shutdown and a document's close, with the platform doubles.
#include "RunningFrame.h"
#include "core/ToolIds.h"

#include "compile/CompilerScreen.h"
#include "platform/Twips.h"
#include "statusbar/StatusPicture.h"
#include "statusbar/cNoStatusBar.h"

#include <QDir>
#include <QTemporaryDir>

TEST(Startup, FirstStartWithEmptySettingsThenCloseStoresWhatTheNextStartOpens) {
    RunningFrame t;
    MDIMain& f = *t.f;
    EXPECT_TRUE(f.windowTitle().startsWith("Quillbay Lite")) << f.windowTitle().toStdString();
    EXPECT_EQ(f.frameGeometry(), QRect(0, 0, twipsToPixelsX(9000), twipsToPixelsY(6000)));
    EXPECT_TRUE(globals().UsePBP);
    EXPECT_EQ(QStringList({f.statusBar()->PanelText(1), f.statusBar()->PanelText(3)}),
              QStringList({"Line: 1 Col: 1", "PBP"}));
    EXPECT_EQ(f.statusPicture()->height(), twipsToPixelsY(f.statusBar()->Height()));
    // The whole band fits the first-start width: the open documents label is on it, not in its overflow.
    QWidget* files = f.toolBars().widget(f.toolBars().Bands("Standard").Tools().Item(ToolId::OpenDocs));
    ASSERT_NE(files, nullptr);
    EXPECT_TRUE(files->isVisible());
    EXPECT_LE(f.toolBars().standardBar()->sizeHint().width(), f.width());
    EXPECT_EQ(t.titles(), QStringList{t.w.file("Untitled.pbp")});
    EXPECT_EQ(f.miDocCount(), 1);
    EXPECT_FALSE(t.doc()->View->document().Modified());
    ASSERT_EQ(globals().loadedWindows.size(), 2u);
    EXPECT_EQ(globals().loadedWindows[0], &f);
    EXPECT_TRUE(t.w.prompts.boxes.empty());
    EXPECT_FALSE(QFile::exists(settingsFilePath()));
    EXPECT_FALSE(QFile::exists(t.w.file("Untitled.pbp")));
    // Close stores the placement and the last file, which the next start opens.
    const QString path = t.w.write("blink.pbp", "' blink\r\nHIGH PORTB.0\r\n");
    t.start(path);
    ASSERT_TRUE(t.f->close());
    EXPECT_EQ(t.f->miDocCount(), 0);
    const std::pair<QString, QString> placement[] = {{"LastFile", path}, {"Height", "6000"}, {"Width", "9000"},
                                                     {"Left", "0"}, {"Top", "0"}, {"WindowState", "0"}};
    for (const auto& [key, value] : placement)
        EXPECT_EQ(t.stored("Startup/" + key), value) << key.toStdString();
    t.start();
    ASSERT_NE(t.doc(), nullptr);
    EXPECT_EQ(t.doc()->Caption(), path);
    EXPECT_EQ(t.doc()->View->document().GetLine(1), "HIGH PORTB.0");
}

TEST(Startup, TheCommandLineIsOnePathMadeAbsoluteInTheStartingDirectory) {
    RunningFrame t(QString(), false);
    saveSetting(Key::LastFile, t.w.write("last.pbp", "x"));
    const QString spaced = t.w.file("my project/led blink.pbp");
    t.start(spaced);
    EXPECT_EQ(t.titles(), QStringList{spaced});
    EXPECT_TRUE(t.w.prompts.boxes.empty());
    // Quotes are part of the name, which doesn't start with "/".
    QDir::setCurrent(t.w.appDir());
    t.start("\"" + spaced + "\"");
    EXPECT_EQ(t.titles(), QStringList{t.w.appDir() + "/\"" + spaced + "\""});
    // A compile elsewhere changes the working directory; Save still writes the file that was opened.
    const QString original = t.w.write("rel.pbp", "old\n");
    t.start("rel.pbp");
    QTemporaryDir elsewhere;
    QDir::setCurrent(elsewhere.path());
    t.type("new ");
    t.click(ToolId::Save);
    EXPECT_FALSE(QFile::exists(elsewhere.path() + "/rel.pbp"));
    EXPECT_EQ(readFile(original), "new old\n");
    t.f->close();
    EXPECT_EQ(setting(Key::LastFile), original);
    QDir::setCurrent(QDir::tempPath());
}

TEST(Startup, ADocumentThatCannotBeLoadedLeavesNoCountToolsOrLabel) {
    RunningFrame t(QString(), false);
    const QByteArray bytes("GIF\0\1", 5);
    const QString binary = t.w.write("image.pbp", bytes);
    for (const QString& first : {t.w.appDir(), binary}) {
        SCOPED_TRACE(first.toStdString());
        t.start(first);
        t.openFile(binary);  // the same refusal through Open, with no document loaded
        ASSERT_EQ(t.w.prompts.boxes.size(), 2u);
        for (const Box& b : t.w.prompts.boxes)
            EXPECT_EQ(b.title, "File Error");
        t.w.prompts.boxes.clear();
        EXPECT_EQ(t.f->miDocCount(), 0);
        EXPECT_EQ(globals().loadedWindows.size(), 1u);
        for (const char* id : {ToolId::Save, ToolId::Compile, ToolId::Device})
            EXPECT_FALSE(t.enabled(id)) << id;
        EXPECT_EQ(t.filesLabel(), "Files: 0");
        EXPECT_EQ(t.recent(1), "-");
        t.f->close();
    }
}

TEST(Startup, ARefusedCloseStopsShutdownAndAFrameWithoutDocumentsKeepsLastFile) {
    RunningFrame t(QString(), false);
    t.start(t.w.file("one.pbp"));
    t.type("first");
    t.f->createDocument(t.w.file("two.pbp"));
    t.type("second");
    t.w.prompts.answers = {Answer::No, Answer::Cancel};
    EXPECT_FALSE(t.f->close());
    EXPECT_TRUE(t.f->isVisible());
    EXPECT_EQ(t.f->miDocCount(), 1);
    EXPECT_EQ(t.titles(), QStringList{t.w.file("two.pbp")});
    ASSERT_EQ(t.w.prompts.boxes.size(), 2u);
    const Box& ask = t.w.prompts.boxes[0];
    EXPECT_EQ(ask.text, "Save Changes to " + t.w.file("one.pbp"));
    EXPECT_TRUE(ask.icon == Icon::Question && ask.buttons == Buttons::YesNoCancel && ask.title.isEmpty());
    EXPECT_EQ(t.stored("Startup/LastFile"), t.w.file("one.pbp"));
    EXPECT_EQ(t.stored("Startup/Height"), "<none>");
    // The last document dropped: the frame's close leaves LastFile as it is.
    t.w.prompts.answers = {Answer::No};
    ASSERT_TRUE(t.doc()->subWindow()->close());
    EXPECT_EQ(globals().loadedWindows.size(), 1u);
    saveSetting(Key::LastFile, "/kept.pbp");
    ASSERT_TRUE(t.f->close());
    EXPECT_EQ(t.stored("Startup/LastFile"), "/kept.pbp");
    EXPECT_EQ(t.stored("Startup/Width"), "9000");
}

// Unsaved changes at a document's close: the question, the save dialog and what a refusal keeps.
TEST(SaveModified, ACancelAnEmptyNameOrAFailedSaveKeepsTheDocumentAndYesSavesUnderTheNameGiven) {
    RunningFrame t;
    t.type("precious");
    const struct { Answer answer; std::optional<QString> file; QString report; } cases[] = {
        {Answer::Yes, std::nullopt, {}},  // the dialog cancelled: silent
        {Answer::Yes, QString(), "No file name entered."},
        {Answer::Yes, t.w.file("no/such/dir/x.pbp"), "Error( "},
        {Answer::Cancel, std::nullopt, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file.value_or("<no file>").toStdString() + (c.answer == Answer::Cancel ? " Cancel" : " Yes"));
        t.w.prompts.boxes.clear();
        t.w.prompts.answers = {c.answer};
        t.w.prompts.files = {c.file};
        EXPECT_FALSE(t.doc()->subWindow()->close());
        ASSERT_EQ(t.w.prompts.boxes.size(), c.report.isEmpty() ? 1u : 2u);
        if (!c.report.isEmpty()) {
            EXPECT_TRUE(t.lastBox().text.startsWith(c.report)) << t.lastBox().text.toStdString();
            EXPECT_EQ(t.lastBox().title, "File Error");
        }
        EXPECT_EQ(t.f->miDocCount(), 1);
        EXPECT_TRUE(t.doc()->View->document().Modified());
        EXPECT_EQ(t.doc()->View->Text(), "precious");
    }
    EXPECT_EQ(setting(Key::LastFile), t.w.file("Untitled.pbp"));
    // Yes: the save dialog starts at the document's name, and the name given is saved and becomes LastFile.
    const QString other = t.w.file("renamed.pbp");
    t.w.prompts.answers = {Answer::Yes};
    t.w.prompts.files = {other};
    EXPECT_TRUE(t.doc()->subWindow()->close());
    EXPECT_EQ(t.w.prompts.fileDialogNames.last(), t.w.file("Untitled.pbp"));
    EXPECT_EQ(readFile(other), "precious");
    EXPECT_FALSE(QFile::exists(t.w.file("Untitled.pbp")));
    EXPECT_EQ(setting(Key::LastFile), other);
    EXPECT_EQ(t.f->miDocCount(), 0);
}

TEST(Startup, GarbageInAnyNumericSettingLeavesStartupRunningAndGoodPlacementAndKindApply) {
    RunningFrame t(QString(), false);
    for (Key k : {Key::CompilerType, Key::Height, Key::Width, Key::Left, Key::Top, Key::WindowState,
                  Key::DefaultDevice, Key::svSymbol, Key::svNumber, Key::svComment, Key::svBackGround,
                  Key::ViewSelBackColor, Key::ViewSelForeColor, Key::AutoCloseCWTime, Key::DosWindow})
        saveSetting(k, "\x01garbage,\"9e999");
    t.start();
    EXPECT_EQ(t.f->miDocCount(), 1);
    EXPECT_EQ(t.titles().size(), 1);
    EXPECT_TRUE(globals().UsePBP);
    EXPECT_GT(t.f->width(), 100);
    EXPECT_TRUE(t.f->close());
    // Stored placement and compiler kind apply.
    saveSetting(Key::Top, "-60");  // maximised a few twips above the screen
    saveSetting(Key::WindowState, "2");
    EXPECT_TRUE(t.start().windowState() & Qt::WindowMaximized);
    const std::pair<Key, QString> stored[] = {{Key::Top, "1500"},  {Key::Left, "3000"},  {Key::WindowState, "0"},
                                              {Key::Width, "7500"}, {Key::Height, "4500"}, {Key::CompilerType, "1"}};
    for (const auto& [k, v] : stored)
        saveSetting(k, v);
    t.start();
    EXPECT_EQ(t.f->frameGeometry(),
              QRect(twipsToPixelsX(3000), twipsToPixelsY(1500), twipsToPixelsX(7500), twipsToPixelsY(4500)));
    EXPECT_FALSE(globals().UsePBP);
    EXPECT_EQ(t.f->statusBar()->PanelText(3), "PBC");
}

TEST(Startup, ShutdownClosesTheDocumentsThenTheOutputScreenAndTheAboutBoxLast) {
    RunningFrame t;
    // Loaded in this order: the document, the about box (by a compile's banner), the output screen.
    t.f->setPBPVersion("PICBASIC PRO(TM) COMPILER 3.1, ");
    CompilerScreen::instance();
    struct CloseOrder : QObject {
        QStringList closed;
        bool eventFilter(QObject* o, QEvent* e) override {
            if (e->type() == QEvent::Close)
                closed << QString::fromLatin1(o->metaObject()->className());
            return false;
        }
    } order;
    for (QWidget* win : globals().loadedWindows)
        if (win != t.f.get())
            win->installEventFilter(&order);
    ASSERT_TRUE(t.f->close());
    EXPECT_EQ(order.closed, QStringList({"frmEditor", "CompilerScreen", "MyAbout"}));
}
