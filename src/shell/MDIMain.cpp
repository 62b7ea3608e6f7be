#include "shell/MDIMain.h"

#include "compile/CompileSession.h"
#include "compile/CompilerScreen.h"
#include "dialogs/MyAbout.h"
#include "dialogs/frmGotoLine.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "document/frmEditorDisk.h"
#include "document/frmEditorRecovery.h"
#include "platform/Failure.h"
#include "platform/Prompts.h"
#include "platform/QtFileWatch.h"
#include "platform/Twips.h"
#include "core/Convert.h"
#include "core/Globals.h"
#include "core/ToolIds.h"
#include "shell/Placement.h"
#include "core/Session.h"
#include "core/Settings.h"
#include "devices/DeviceCatalogue.h"
#include "platform/SingleInstance.h"
#include "shell/CodeExplorer.h"
#include "shell/EditorRegistry.h"
#include "shell/EnableTools.h"
#include "shell/RecentFiles.h"
#include "shell/WindowList.h"
#include "statusbar/StatusPicture.h"
#include "statusbar/cNoStatusBar.h"

#include <QAction>
#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QMimeData>
#include <QDialog>
#include <QCoreApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QVBoxLayout>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QPointer>
#include <QTimer>
#include <QWindow>

#include <cerrno>
#include <cmath>
#include <limits>

namespace {
// The windows besides the frame, in the order the system closes them; others last, as they were loaded.
std::vector<QWidget*> shutdownOrder(const std::vector<QWidget*>& loaded, const QWidget* frame) {
    static const char* const order[] = {"CompilerScreen", "frmCompile",  "frmEditor", "frmFindCompiler",
                                        "frmGotoLine",    "frmProgrammer", "MyAbout"};
    auto rank = [](const QWidget* w) {
        const QLatin1String name(w->metaObject()->className());
        for (int i = 0; i < int(std::size(order)); ++i)
            if (name == QLatin1String(order[i]))
                return i;
        return int(std::size(order));
    };
    std::vector<QWidget*> out;
    for (QWidget* w : loaded)
        if (w != frame)
            out.push_back(w);
    std::stable_sort(out.begin(), out.end(), [&](QWidget* a, QWidget* b) { return rank(a) < rank(b); });
    return out;
}

// The Code Explorer's width at a first start, and the version of the stored dock state.
constexpr int kExplorerWidth = 270;
constexpr int kDocksVersion = 1;
constexpr qint64 kRestoreSliceMs = 25;  // under what a user notices as a late key

// Stored placement can hold anything; keep what reaches the window system inside a sane range.
int clampedPixels(int px) { return qBound(-32000, px, 32000); }
int twipsX(float t) { return clampedPixels(int(std::lround(qBound(-1e7, double(t), 1e7) * screenDpiX() / 1440.0))); }
int twipsY(float t) { return clampedPixels(int(std::lround(qBound(-1e7, double(t), 1e7) * screenDpiY() / 1440.0))); }
}  // namespace

MDIMain::MDIMain(QString commandLine, QWidget* parent)
    : QMainWindow(parent), commandLine_(absolutePath(commandLine)), openSave_(globals().prompts) {
    setWindowTitle(QStringLiteral("Quillbay Lite"));
    setAttribute(Qt::WA_DeleteOnClose, false);
    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    mdi_ = new QMdiArea(central);
    layout->addWidget(mdi_, 1);
    picStatus = new StatusPicture(central);
    layout->addWidget(picStatus, 0);
    setCentralWidget(central);
    editors_ = std::make_unique<EditorRegistry>(*this, *mdi_);
    connect(editors_.get(), &Editors::opened, this, &MDIMain::Editors_Opened);
    connect(editors_.get(), &Editors::closed, this, &MDIMain::Editors_Closed);
    connect(editors_.get(), &Editors::pathChanged, this, &MDIMain::Editors_PathChanged);
    // Another program's changes to the open files; it goes with the registry.
    new DiskWatch(*this, *editors_, std::make_unique<QtFileWatch>(), editors_.get());
    // The paste tool follows the clipboard, also a copy made in another program.
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] { EnableTools(); });
    explorer_ = new CodeExplorer(*this, this);
    addDockWidget(Qt::LeftDockWidgetArea, explorer_);
    resizeDocks({explorer_}, {kExplorerWidth}, Qt::Horizontal);
    SSActiveToolBars1.attach(*this);
    // The menu entry follows the dock, also when its own close button hid it.
    connect(explorer_->toggleViewAction(), &QAction::toggled, this, [this](bool shown) {
        // Closing, the frame hides its children: the entry keeps what the dock was.
        if (unloaded_)
            return;
        skipOnFailure([&] { SSActiveToolBars1.Tools().Item(QLatin1String(ToolId::CodeExplorer)).setPressed(shown); });
    });
    connect(&SSActiveToolBars1, &SSActiveToolBars::ToolClick, this, &MDIMain::SSActiveToolBars1_ToolClick);
    connect(&SSActiveToolBars1, &SSActiveToolBars::ComboCloseUp, this, &MDIMain::SSActiveToolBars1_ComboCloseUp);
    setWindowIcon(QIcon(QStringLiteral(":/icons/compile.png")));
    // A timer, not a posted call: input and paints get their turn between two documents.
    restoreTimer_.setSingleShot(true);
    restoreTimer_.setInterval(0);
    connect(&restoreTimer_, &QTimer::timeout, this, &MDIMain::restoreNext);
    globals().loadedWindows.insert(globals().loadedWindows.begin(), this);
}

MDIMain::~MDIMain() {
    // The tools go before the dock that the menu entry follows.
    disconnect(explorer_->toggleViewAction(), nullptr, this, nullptr);
    // The bar gives its icons back to picStatus, so it goes first.
    m_cSBar.reset();
    // The registry goes before the area it looks at; the documents go with the area and leave the loaded
    // list as they are destroyed.
    editors_.reset();
    delete mdi_;
    mdi_ = nullptr;
    globals().removeWindow(this);
}

QString MDIMain::absolutePath(const QString& path) {
    // Taken against the directory of this moment: a compile changes the working directory later.
    if (path.isEmpty() || QDir::isAbsolutePath(path))
        return path;
    return QDir::currentPath() + QLatin1Char('/') + path;
}

QString MDIMain::commandLineFrom(const QCoreApplication& app) {
    QStringList args = app.arguments();
    if (!args.isEmpty())
        args.removeFirst();
    return args.join(QLatin1Char(' '));
}

void MDIMain::ShowError(const Failure& f) {
    if (Prompts* p = globals().prompts)
        p->message(errorBoxText(f), QStringLiteral("File Error"), Icon::None, Buttons::Ok);
}

frmEditor* MDIMain::activeDocument() const { return mdi_ && editors_ ? editors_->active() : nullptr; }

Editors& MDIMain::editors() { return *editors_; }

void MDIMain::showEvent(QShowEvent* e) {
    QMainWindow::showEvent(e);
    if (!loaded_) {
        loaded_ = true;
        MDIForm_Load();
    }
}

void MDIMain::MDIForm_Load() {
    loading_ = true;
    openSave_.setPrompts(globals().prompts);
    skipOnFailure([&] { m_cSBar = std::make_unique<cNoStatusBar>(picStatus->icons()); });
    skipOnFailure([&] {
        if (!m_cSBar)
            return;
        m_cSBar->Create(&picStatus->target());
        // Paints reach the bar only once it has its target.
        connect(picStatus, &StatusPicture::Paint, this, &MDIMain::picStatus_Paint, Qt::UniqueConnection);
        connect(picStatus, &StatusPicture::Painting, this, &MDIMain::picStatus_Painting, Qt::UniqueConnection);
        connect(picStatus, &StatusPicture::Resized, this, &MDIMain::picStatus_Resize, Qt::UniqueConnection);
    });
    // The picture has no border of its own and stands in front of the other children.
    skipOnFailure([&] { picStatus->raise(); });
    skipOnFailure([&] { m_cSBar->AddPanel(0, QStringLiteral("Line: 1 Col: 1"), -1, 100, false, false, 0, QString()); });
    skipOnFailure([&] { m_cSBar->AddPanel(0, QString(), -1, 64, true, false, 0, QString()); });
    skipOnFailure([&] { m_cSBar->AddPanel(0, QString(), -1, 40, false, false, 0, QString()); });
    skipOnFailure([&] { m_cSBar->SizeGrip(true); });
    skipOnFailure([&] { picStatus->setFixedHeight(std::max(1, twipsToPixelsY(m_cSBar->Height()))); });
    skipOnFailure([&] {
        bool pbp = true;
        try {
            pbp = numberOf(setting(Key::CompilerType)) == 0;
        } catch (const Failure&) {
            // Not a number: the kind of a first start.
        }
        globals().UsePBP = pbp;
        setPanelText(3, pbp ? QStringLiteral("PBP") : QStringLiteral("PBC"));
    });
    skipOnFailure([&] { placeFrame(); });
    // The docks as the last close left them; stored text that isn't such a state leaves them as they are.
    skipOnFailure([&] { restoreState(QByteArray::fromBase64(setting(Key::Docks).toLatin1()), kDocksVersion); });
    skipOnFailure([&] {
        SSActiveToolBars1.Tools().Item(QLatin1String(ToolId::AutoComplete)).setPressed(setting(Key::AutoComplete) != "0");
    });
    skipOnFailure([&] { loadRecentFiles(SSActiveToolBars1); });
    skipOnFailure([&] { GetDevices(); });
    skipOnFailure([&] { setDeviceListIndex(int16Of(setting(Key::DefaultDevice))); });
    skipOnFailure([&] { GetDeviceData(false); });
    // The command line is taken whole: no trimming, no quotes removed. Without one the documents of the
    // last normal close come back; when none of them is left, LastFile opens.
    if (!commandLine_.isEmpty())
        createCountedDocument(commandLine_, true);
    else if (!restoreSession())
        createCountedDocument(setting(Key::LastFile), true);
    // What a crash left unsaved is offered last, over the documents of a normal start.
    skipOnFailure([&] { recoverDocuments([this](const QString& path) { return openRecovered(path); }); });
    loading_ = false;
    if (!handedOverEarly_.isEmpty())
        takeHandOver(std::exchange(handedOverEarly_, {}));
}

bool MDIMain::restoreSession() {
    const Session session = readSession();
    // The active document comes back first, so that the frame shows it at once; the others follow in
    // their order, one per turn of the event loop, each in its own place, while the frame answers already.
    const int count = int(session.documents.size());
    const int first = session.active >= 0 ? session.active : count - 1;
    if (first >= 0)
        restoring_.push_back({session.documents[first].path, session.documents[first].line, first});
    for (int i = 0; i < count; ++i)
        if (i != first)
            restoring_.push_back({session.documents[i].path, session.documents[i].line, i});
    frmEditor* shown = nullptr;
    while (!shown && !restoring_.empty()) {
        const Restoring r = restoring_.front();
        restoring_.pop_front();
        shown = restoreOne(r);
    }
    if (!restoring_.empty())
        restoreTimer_.start();
    return shown != nullptr;
}

frmEditor* MDIMain::restoreOne(const Restoring& r, bool behind) {
    // A file gone since, or no longer a file, is left out without a word; so is one open already.
    if (!QFileInfo(r.path).isFile() || editors_->find(r.path))
        return nullptr;
    // Ahead of the first document with a later place; documents of this run come after the session's.
    const QList<frmEditor*> docs = editors_->all();
    qsizetype position = docs.size();
    for (qsizetype i = 0; i < docs.size(); ++i) {
        if (restoredRank_.value(docs[i], std::numeric_limits<int>::max()) > r.rank) {
            position = i;
            break;
        }
    }
    frmEditor* doc = nullptr;
    skipOnFailure([&] { doc = &editors_->open(absolutePath(r.path), false, position, behind); });
    if (!doc) {
        skipOnFailure([&] { EnableTools(); });
        skipOnFailure([&] { showDocumentCount(); });
        return nullptr;
    }
    restoredRank_.insert(doc, r.rank);
    skipOnFailure([&] {
        const int line = qBound(0, r.line, doc->View->document().NumLines() - 1);
        doc->View->SetSel(0, line, 0, line);
    });
    return doc;
}

void MDIMain::restoreNext() {
    if (restoring_.empty() || unloaded_)
        return;
    // Documents come back in slices short enough for input to wait unnoticed; one per turn, each turn's
    // paint of the area costs more than a document as their number grows. The user's document stays in
    // front.
    QElapsedTimer slice;
    slice.start();
    do {
        const Restoring r = restoring_.front();
        restoring_.pop_front();
        restoreOne(r, true);
    } while (!restoring_.empty() && !unloaded_ && slice.elapsed() < kRestoreSliceMs);
    if (!restoring_.empty())
        restoreTimer_.start();
}

void MDIMain::finishRestoring() {
    while (!restoring_.empty())
        restoreNext();
}

void MDIMain::takeHandOver(const QStringList& files) {
    if (unloaded_)
        return;
    // A later start that came while this frame was still coming up: its files open at the end of the load.
    if (!loaded_ || loading_) {
        handedOverEarly_ << files;
        return;
    }
    // As a file named at start: one that doesn't exist yet is an empty document of that name.
    for (const QString& path : files)
        makeCounted([&] { editors_->show(absolutePath(path), true); });
    comeForward();
}

void MDIMain::comeForward() {
    if (isMinimized())
        setWindowState((windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
    show();
    raise();
    activateWindow();
}

bool MDIMain::answerLaterStarts(SingleInstance& channel) {
    return channel.listen([this](const HandOver& message) { takeHandOver(message.files); });
}

frmEditor* MDIMain::openRecovered(const QString& path) {
    // The start-up document when it is that file unchanged, else a new window.
    for (frmEditor* d : editors_->all())
        if (d->Caption() == path && !d->View->document().Modified())
            return d;
    if (!createCountedDocument(path, true))
        return nullptr;
    return activeDocument();
}

void MDIMain::placeFrame() {
    const Placement p = placementFrom(setting(Key::Height), setting(Key::Left), setting(Key::Top),
                                      setting(Key::Width), setting(Key::WindowState));
    // Stored lengths are the outer frame; Qt sizes the client area.
    const QSize extra = frameGeometry().size() - size();
    if (p.height)
        resize(width(), std::max(1, twipsY(*p.height) - extra.height()));
    if (p.left)
        move(twipsX(*p.left), y());
    if (p.top)
        move(x(), twipsY(*p.top));
    if (p.width)
        resize(std::max(1, twipsX(*p.width) - extra.width()), height());
    if (extra.isNull() && (p.width || p.height))
        pendingOuter_ = frameGeometry().size();
    // The stored place is the frame's, also at 0,0; without this a window manager would place the
    // client there, or place the frame by its own rule.
    if (QWindow* w = windowHandle(); w && (p.left || p.top))
        w->setFramePosition(pos());
    if (p.windowState) {
        switch (*p.windowState) {
        case 1: setWindowState(Qt::WindowMinimized); break;
        case 2: setWindowState(Qt::WindowMaximized); break;
        default: setWindowState(Qt::WindowNoState); break;
        }
    }
}

bool MDIMain::createCountedDocument(const QString& path, bool missingIsEmpty) {
    return makeCounted([&] { createDocument(path, missingIsEmpty); });
}

bool MDIMain::makeCounted(const std::function<void()>& making) {
    try {
        making();
        return true;
    } catch (const Failure& f) {
        // The window is gone again, and so is the count it took; the tools and the label follow.
        skipOnFailure([&] { EnableTools(); });
        skipOnFailure([&] { showDocumentCount(); });
        ShowError(f);
        return false;
    }
}

frmEditor* MDIMain::createDocument(const QString& path, bool missingIsEmpty) {
    return &editors_->open(absolutePath(path), missingIsEmpty);
}

void MDIMain::Editors_Opened(frmEditor* doc) {
    // A document that comes back from the session stands in its place in the Window menu too.
    const QList<frmEditor*> docs = editors_->all();
    const qsizetype at = docs.indexOf(doc);
    const QString before = at >= 0 && at + 1 < docs.size() ? docs[at + 1]->Tag : QString();
    skipOnFailure([&] {
        ::AddWindowEntry(SSActiveToolBars1, doc->Caption(), miDocCount(), [doc](const QString& t) { doc->Tag = t; },
                         before);
    });
}

// The close steps of a document that the frame keeps: the tools, the files label, the Window menu.
void MDIMain::Editors_Closed(frmEditor* doc) {
    restoredRank_.remove(doc);
    skipOnFailure([&] { EnableTools(); });
    skipOnFailure([&] { showDocumentCount(); });
    skipOnFailure([&] { ::removeWindowEntry(SSActiveToolBars1, doc->Tag); });
}

// Save As: the entry moves to the end of the Window menu under the new title.
void MDIMain::Editors_PathChanged(frmEditor* doc, const QString& oldTitle) {
    if (doc->Caption() == oldTitle)
        return;
    skipOnFailure([&] { ::removeWindowEntry(SSActiveToolBars1, oldTitle); });
    skipOnFailure([&] { AddWindowEntry(doc->Caption()); });
}

void MDIMain::moveEvent(QMoveEvent* e) {
    QMainWindow::moveEvent(e);
    // Before the first map nobody knows the frame's size; once the window manager has framed the
    // window, the client shrinks so that the frame has the stored outer size.
    if (!pendingOuter_ || windowState() != Qt::WindowNoState)
        return;
    const QSize extra = frameGeometry().size() - size();
    if (extra.isNull())
        return;
    const QSize outer = *pendingOuter_;
    pendingOuter_.reset();
    resize(std::max(1, outer.width() - extra.width()), std::max(1, outer.height() - extra.height()));
}

void MDIMain::closeEvent(QCloseEvent* e) {
    // Every document closes in turn; one that refuses stops the whole shutdown, and nothing is saved.
    // Those that close are kept for the next start, in their order, with the active one and their lines.
    finishRestoring();
    auto session = std::make_unique<Session>();
    const frmEditor* wasActive = activeDocument();
    const QList<frmEditor*> docs = editors_->all();
    for (frmEditor* d : docs) {
        const QPointer<frmEditor> doc = d;
        if (!doc || !doc->subWindow())
            continue;
        const int line = doc->View->CaretY();
        const bool active = doc == wasActive;
        if (!doc->subWindow()->close()) {
            e->ignore();
            return;
        }
        // Read after the close: a save at its question may have given the document another name. A file
        // never saved has nothing to come back to.
        if (!doc)
            continue;
        const QString path = doc->View->document().PathName();
        if (!QFileInfo(path).isFile())
            continue;
        if (active)
            session->active = int(session->documents.size());
        session->documents.append({path, line});
    }
    closingSession_ = std::move(session);
    MDIForm_Unload();
    e->accept();
}

void MDIMain::MDIForm_Unload() {
    if (unloaded_)
        return;
    unloaded_ = true;
    const bool minimised = isMinimized();
    const QRect g = frameGeometry();
    const double dx = screenDpiX(), dy = screenDpiY();
    skipOnFailure([&] { saveSetting(Key::Height, singleText(float(pixelsToTwips(g.height(), dy)))); });
    skipOnFailure([&] { saveSetting(Key::Left, singleText(float(pixelsToTwips(g.x(), dx)))); });
    skipOnFailure([&] {
        saveSetting(Key::Top, singleText(minimised ? kMinimisedTopTwips : float(pixelsToTwips(g.y(), dy))));
    });
    skipOnFailure([&] { saveSetting(Key::Width, singleText(float(pixelsToTwips(g.width(), dx)))); });
    skipOnFailure([&] {
        const int state = minimised ? 1 : isMaximized() ? 2 : 0;
        saveSetting(Key::WindowState, QString::number(state));
    });
    skipOnFailure([&] { saveRecentFiles(SSActiveToolBars1); });
    skipOnFailure([&] { saveSetting(Key::Docks, QString::fromLatin1(saveState(kDocksVersion).toBase64())); });
    skipOnFailure([&] { saveSession(closingSession_ ? *closingSession_ : Session{}); });
    skipOnFailure([&] { saveSetting(Key::DefaultDevice, QString::number(deviceListIndex())); });
    // The other windows of the system go with the frame, the output screen first, the about box last.
    for (QWidget* w : shutdownOrder(globals().loadedWindows, this))
        skipOnFailure([&] { w->close(); });
}

void MDIMain::EnableTools() {
    if (!editors_)
        return;
    ToolState state = documentToolState(*editors_);
    state.clipboardText = clipboardHasText();
    if (const frmEditor* doc = editors_->active())
        if (const CompileSession* compile = CompileSession::of(*doc))
            state.compiling = compile->running();
    state.messages = CompilerScreen::withMessages() != nullptr;
    // Runs on every caret move: the tools are written only when something they follow changed.
    if (toolState_ == state)
        return;
    ::EnableTools(SSActiveToolBars1, state, toolState_ ? &*toolState_ : nullptr);
    toolState_ = state;
}

bool MDIMain::clipboardHasText() const {
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    return data && data->hasText();
}

DeviceCombo& MDIMain::deviceCombo() { return SSActiveToolBars1.Tools().Item(QLatin1String(ToolId::Device)).ComboBox(); }

void MDIMain::GetDevices() { ::GetDevices(deviceCombo()); }

void MDIMain::GetDeviceData(bool reloadWords) {
    ::GetDeviceData(deviceCombo(), reloadWords, [this] {
        if (frmEditor* doc = activeDocument())
            doc->LoadReservedWords();
    });
}

int MDIMain::deviceListIndex() { return deviceCombo().ListIndex(); }

void MDIMain::setDeviceListIndex(int index) {
    DeviceCombo& combo = deviceCombo();
    combo.SetListIndex(index);
    // Setting an index that isn't in the list fails and leaves no selection.
    if (combo.ListIndex() != index)
        throw invalidPropertyValue();
}

void MDIMain::AddWindowEntry(const QString& title) {
    ::AddWindowEntry(SSActiveToolBars1, title, miDocCount(), [this](const QString& t) {
        if (frmEditor* doc = activeDocument())
            doc->Tag = t;
    });
}

void MDIMain::showDocumentCount() { setOpenDocsCaption(SSActiveToolBars1, miDocCount()); }

void MDIMain::setPanelText(int panel, const QString& text) {
    if (!m_cSBar)
        return;
    // A fixed panel grows to hold its whole text (a caret at line 12345); the spring takes what is left.
    // The panel is painted with the picture's next paint, so that a burst of caret moves paints once.
    if (m_cSBar->PanelTextLater(PanelRef(panel), text, !m_cSBar->PanelSpring(PanelRef(panel))))
        picStatus->update();
}

void MDIMain::picStatus_Paint() {
    if (m_cSBar)
        m_cSBar->Draw();
}

void MDIMain::picStatus_Resize() { picStatus_Paint(); }

void MDIMain::picStatus_Painting() {
    if (m_cSBar)
        m_cSBar->DrawPending();
}

void MDIMain::setPBPVersion(const QString& text) { MyAbout::instance(this).setPBPVersion(text); }

QString MDIMain::PBPVersion() const {
    const MyAbout* about = MyAbout::find();
    return about ? about->PBPVersion->text() : QString();
}

void MDIMain::popupMenu(const QString& menuId) { SSActiveToolBars1.PopupMenu(menuId); }

void MDIMain::showGotoLine() {
    frmGotoLine dlg(this);
    runModal(dlg);
}

void MDIMain::showCodeExplorer(bool shown) {
    explorer_->setVisible(shown);
    if (shown)
        explorer_->raise();
}

int MDIMain::runModal(QDialog& dlg) { return modalHook ? modalHook(dlg) : dlg.exec(); }
