// The frame from start to shutdown and a document's close, with the platform doubles.
#include "RunningFrame.h"
#include "core/ToolIds.h"

#include "compile/CompilerScreen.h"
#include "core/Session.h"
#include "shell/EditorRegistry.h"
#include "platform/UnixSingleInstance.h"
#include "platform/Twips.h"
#include "statusbar/StatusPicture.h"
#include "statusbar/cNoStatusBar.h"

#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>

#include <atomic>
#include <thread>

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

// Sessions: a normal close keeps the documents in their order with the active one and each caret line; a
// start without a file brings back those still there, and the command line or LastFile decide otherwise.
TEST(Session, ACloseKeepsTheDocumentsAndAStartWithoutAFileBringsThemBack) {
    RunningFrame t(QString(), false);
    QByteArray lines;
    for (int i = 1; i <= 30; ++i)
        lines += "LINE " + QByteArray::number(i) + "\r\n";
    const QStringList paths = {t.w.write("a.pbp", lines), t.w.write("b dir/b.bas", lines), t.w.write("c.pbc", lines)};
    t.start(paths[0]);
    t.f->createDocument(paths[1]);
    t.f->createDocument(paths[2]);
    const int caret[] = {20, 0, 5};
    for (int i = 0; i < 3; ++i)
        t.f->registry().all()[i]->View->SetSel(0, caret[i], 0, caret[i]);
    t.f->createDocument(t.w.file("Untitled1.pbp"));  // never saved: nothing to come back to
    t.f->mdiArea()->setActiveSubWindow(t.f->registry().find(paths[1])->subWindow());
    ASSERT_TRUE(t.f->close());

    auto lineOf = [&](const QString& p) { return t.f->registry().find(p)->View->CaretY(); };
    // The active one is there at once; the others come in their places while the frame answers.
    t.start();
    EXPECT_EQ(t.f->miDocCount(), 1);
    EXPECT_EQ(t.doc()->Caption(), paths[1]);
    EXPECT_TRUE(t.f->restoring());
    ASSERT_TRUE(waitFor([&] { return !t.f->restoring(); }));
    EXPECT_EQ(t.titles(), paths);
    EXPECT_EQ(t.doc()->Caption(), paths[1]);
    EXPECT_EQ((QList<int>{lineOf(paths[0]), lineOf(paths[1]), lineOf(paths[2])}), QList<int>({20, 0, 5}));
    // The status bar tells the active document's caret, not that of one placed in the background.
    EXPECT_EQ(t.f->statusBar()->PanelText(1), "Line: 1 Col: 1");
    EXPECT_TRUE(t.doc()->subWindow()->isMaximized());
    // One that came in behind fills the area when it comes to the front.
    t.f->mdiArea()->setActiveSubWindow(t.f->registry().find(paths[0])->subWindow());
    EXPECT_TRUE(t.f->registry().find(paths[0])->subWindow()->isMaximized());
    EXPECT_EQ(t.f->statusBar()->PanelText(1), "Line: 21 Col: 1");
    t.f->mdiArea()->setActiveSubWindow(t.f->registry().find(paths[1])->subWindow());
    EXPECT_EQ(t.windowMenu(), QStringList{"separator"} + paths);
    EXPECT_EQ(t.filesLabel(), "Files: 3");
    EXPECT_TRUE(t.w.prompts.boxes.empty());

    // A close before all are back keeps them all.
    ASSERT_TRUE(t.f->close());
    t.start();
    ASSERT_TRUE(t.f->close());
    t.start();
    EXPECT_EQ(t.titles(), paths);
    // Missing files are left out without a word; a folder where a file was, too.
    ASSERT_TRUE(t.f->close());
    QFile::remove(paths[1]);
    QFile::remove(paths[2]);
    QDir().mkpath(paths[2]);
    t.start();
    EXPECT_EQ(t.titles(), QStringList{paths[0]});
    EXPECT_EQ(t.f->miDocCount(), 1);
    EXPECT_TRUE(t.w.prompts.boxes.empty());
    // A file on the command line opens alone.
    t.start(paths[0]);
    EXPECT_EQ(t.titles(), QStringList{paths[0]});
    // Nothing left of the session: LastFile opens, as it always did (here the file closed last).
    ASSERT_TRUE(t.f->close());
    QFile::remove(paths[0]);
    saveSetting(Key::LastFile, t.w.file("last.pbp"));
    t.start();
    EXPECT_EQ(t.titles(), QStringList{t.w.file("last.pbp")});
    EXPECT_TRUE(t.w.prompts.boxes.empty());
    // Closed with no document: the next start is LastFile's too.
    t.click(ToolId::Close);
    ASSERT_TRUE(t.f->close());
    t.start();
    EXPECT_EQ(t.titles(), QStringList{t.w.file("last.pbp")});
}

// The recent files list is in the settings as soon as it changes: a killed IDE (no close) keeps it.
TEST(Session, RecentFilesAreStoredWhenTheyChange) {
    RunningFrame t;
    const QString a = t.w.write("a.pbp", "x"), b = t.w.write("b.pbp", "y");
    t.openFile(a);
    t.openFile(b);
    t.start();  // the frame goes without its close, as under kill -9
    EXPECT_EQ(QStringList({t.recent(1), t.recent(2)}), QStringList({"&1 " + b, "&2 " + a}));
    EXPECT_EQ(t.stored("Startup/Height"), "<none>");
}

// Status panel 1 shows all of a long caret position: it widens to its text, never below its 100 pixels.
TEST(Startup, TheCaretPanelWidensToItsWholeText) {
    RunningFrame t;
    cNoStatusBar& bar = *t.f->statusBar();
    // As the window shows it: held-back panel texts are painted, and measured, at the picture's next paint.
    auto width = [&](int panel) {
        t.f->statusPicture()->grab();
        return bar.GetPanelRect(panel).right - bar.GetPanelRect(panel).left + 1;
    };
    EXPECT_EQ(width(1), 100);
    const QString longest = "Line: 12345 Col: 123";
    t.f->setPanelText(1, longest);
    const int needed = t.f->statusPicture()->target().measureText(longest).width() + 12;
    ASSERT_GT(needed, 100) << "the test needs a text wider than the panel";
    EXPECT_EQ(width(1), needed);
    // The caret's own event writes it.
    SourceView& v = *t.doc()->View;
    v.SetText(QString("x\n").repeated(12400) + QString(130, 'y'));
    v.SetSel(122, 12400, 122, 12400);
    EXPECT_EQ(bar.PanelText(1), "Line: 12401 Col: 123");
    EXPECT_GE(width(1), t.f->statusPicture()->target().measureText(bar.PanelText(1)).width() + 12);
}

namespace {
// A later start on its own thread, as in its own process: it blocks until the answer or the timeout.
bool laterStart(const HandOver& message, const QString& address, int timeoutMs = kRunningIdeAnswerMs) {
    std::atomic<int> taken{-1};
    std::thread later([&] {
        UnixSingleInstance channel(address);
        taken = channel.handOver(message, timeoutMs) ? 1 : 0;
    });
    waitFor([&] { return taken >= 0; });
    later.join();
    return taken == 1;
}
}  // namespace

// A later start's files reach the running frame: each opens, or comes forward when it is open, with no
// question; with none the frame just comes to the front.
TEST(OneIde, HandedOverFilesOpenOrComeForwardAndTheFrameComesToTheFront) {
    RunningFrame t(QString(), false);
    struct Channel : SingleInstance {
        std::function<void(const HandOver&)> listener;
        bool handOver(const HandOver&, int) override { return false; }
        bool listen(std::function<void(const HandOver&)> onMessage) override {
            listener = std::move(onMessage);
            return true;
        }
    } channel;
    const QString a = t.w.write("a.pbp", "A"), b = t.w.write("b.pbp", "B"), fresh = t.w.file("new.pbp");
    // The frame listens before it is shown: a file that comes while it is loading opens after its own.
    t.f = std::make_unique<MDIMain>(QString());
    ASSERT_TRUE(t.f->answerLaterStarts(channel));
    channel.listener({{a}});
    t.f->show();
    EXPECT_EQ(t.titles(), QStringList({t.w.file("Untitled.pbp"), a}));
    EXPECT_EQ(t.doc()->Caption(), a);
    channel.listener({{t.w.appDir() + "/./b.pbp", a, fresh}});
    EXPECT_EQ(t.titles(), QStringList({t.w.file("Untitled.pbp"), a, t.w.appDir() + "/./b.pbp", fresh}));
    EXPECT_EQ(t.doc()->Caption(), fresh);  // as on the command line: empty, nothing written
    EXPECT_FALSE(QFile::exists(fresh));
    channel.listener({{b}});
    EXPECT_EQ(t.doc()->Caption(), t.w.appDir() + "/./b.pbp");
    EXPECT_EQ(t.f->miDocCount(), 4);
    EXPECT_EQ(t.filesLabel(), "Files: 4");
    EXPECT_TRUE(t.w.prompts.boxes.empty());
    EXPECT_EQ(t.recent(1), "-");
    t.f->showMinimized();
    ASSERT_TRUE(t.f->isMinimized());
    channel.listener({});
    EXPECT_FALSE(t.f->isMinimized());
    EXPECT_EQ(t.f->miDocCount(), 4);
}

// The channel: one whole message is taken and answered; foreign bytes, another settings home and an IDE that
// doesn't answer are not; a socket a killed IDE left is taken over, one that an IDE listens on is not, and
// an IDE that ends takes its socket along.
TEST(OneIde, TheChannelTakesOurMessagesOnlyAndEachSettingsHomeIsItsOwnIde) {
    TestWorld w;
    const QString address = UnixSingleInstance::addressFor(settingsHome());
    const QString socketFile = UnixSingleInstance::socketPath(address);
    EXPECT_NE(UnixSingleInstance::addressFor(settingsHome() + "/portable"), address);
    ASSERT_TRUE(writeFile(socketFile, ""));  // a socket file left behind by a killed IDE
    EXPECT_FALSE(laterStart({}, address, 300));
    auto running = std::make_unique<UnixSingleInstance>(address);
    QList<HandOver> got;
    ASSERT_TRUE(running->listen([&](const HandOver& m) { got << m; }));
    EXPECT_EQ(QFileInfo(socketFile).permissions() & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther |
                                                      QFile::WriteOther), QFile::Permissions());
    UnixSingleInstance sameMoment(address);
    EXPECT_FALSE(sameMoment.listen([&](const HandOver& m) { got << m; }));
    const HandOver one{{"/home/ann/my led/blink.pbp"}};
    EXPECT_TRUE(laterStart(one, address));
    EXPECT_TRUE(laterStart({}, address));
    ASSERT_TRUE(waitFor([&] { return got.size() == 2; }));
    EXPECT_EQ(got, QList<HandOver>({one, {}}));

    // Another program's bytes get no answer and reach nobody; the channel goes on taking ours.
    std::atomic<int> answered{-1};
    std::thread foreign([&] {
        QLocalSocket s;
        s.connectToServer(address);
        s.waitForConnected(kRunningIdeAnswerMs);
        s.write("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
        s.waitForBytesWritten();
        while (s.state() == QLocalSocket::ConnectedState && s.bytesAvailable() == 0)
            s.waitForReadyRead(100);
        answered = int(s.bytesAvailable());
    });
    waitFor([&] { return answered >= 0; });
    foreign.join();
    EXPECT_EQ(answered, 0);
    EXPECT_TRUE(laterStart(one, address));
    ASSERT_TRUE(waitFor([&] { return got.size() == 3; }));

    // Nobody under another settings home; an IDE that takes the call but never answers is given up.
    EXPECT_FALSE(laterStart(one, UnixSingleInstance::addressFor(settingsHome() + "/portable"), 300));
    QLocalServer silent;
    const QString silentAddress = address + "-silent";
    ASSERT_TRUE(silent.listen(silentAddress));
    EXPECT_FALSE(laterStart(one, silentAddress, 300));
    EXPECT_EQ(got.size(), 3);
    running.reset();
    EXPECT_FALSE(QFileInfo::exists(socketFile));
    EXPECT_FALSE(laterStart(one, address, 300));
}

// The program itself: a second tarnlet, with a relative path and with none, hands over to the running frame
// and ends; no second frame comes up.
TEST(OneIde, ASecondTarnletHandsItsFileToTheRunningFrameAndEnds) {
    const QString program = QStringLiteral(QB_BINARY_DIR "/tarnlet");
    ASSERT_TRUE(QFileInfo(program).isExecutable()) << "build the program first";
    RunningFrame t;
    UnixSingleInstance channel(UnixSingleInstance::addressFor(settingsHome()));
    ASSERT_TRUE(t.f->answerLaterStarts(channel));
    const QString file = t.w.write("handed over.pbp", "HIGH 1\r\n");
    for (const QStringList& args : {QStringList{"handed over.pbp"}, QStringList{}}) {
        QProcess later;
        later.setWorkingDirectory(t.w.appDir());
        later.setProcessChannelMode(QProcess::ForwardedChannels);
        later.start(program, args);
        ASSERT_TRUE(later.waitForStarted());
        // The frame answers from its event loop while the later start waits; the deadline only stops a
        // later start that came up as an IDE of its own.
        QDeadlineTimer guard(60000);
        while (later.state() != QProcess::NotRunning && !guard.hasExpired())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        if (later.state() != QProcess::NotRunning) {
            later.kill();
            later.waitForFinished();
            FAIL() << "the later start didn't end: " << args.join(' ').toStdString();
        }
        EXPECT_EQ(later.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(later.exitCode(), 0);
    }
    ASSERT_TRUE(waitFor([&] { return t.f->miDocCount() == 2; }));
    EXPECT_EQ(t.doc()->Caption(), file);
    EXPECT_EQ(t.doc()->View->Text(), "HIGH 1\r\n");
}
