#include "compile/CompilerScreen.h"

#include "compile/CompileSession.h"
#include "document/SourceView.h"
#include "platform/Failure.h"
#include "platform/Twips.h"
#include "core/Convert.h"
#include "core/Globals.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace {
constexpr int kEscape = 27;
// About a title bar's height.
constexpr int kCascadePixels = 28;

// A number as the title prints it: a blank in front unless it is negative.
QString printed(double n) {
    const QString digits = QString::number(n, 'g', 15);
    return n < 0 ? digits : QLatin1Char(' ') + digits;
}
}  // namespace

QString CompilerScreen::readyTitle() { return QStringLiteral("Compiler Output - Esc to Close"); }

QString CompilerScreen::cancelledTitle() {
    return QStringLiteral("Compiler Output - Auto Close Canceled - Esc to Close");
}

QString CompilerScreen::countingTitle(const QString& tag) {
    return QStringLiteral("Compiler Output - Auto Close in:") + printed(numberOf(tag)) +
           QStringLiteral(" Secs - Esc to Cancel");
}

std::vector<CompilerScreen*> CompilerScreen::all() {
    std::vector<CompilerScreen*> screens;
    for (QWidget* w : globals().loadedWindows)
        if (auto* screen = qobject_cast<CompilerScreen*>(w))
            screens.push_back(screen);
    return screens;
}

CompilerScreen* CompilerScreen::find() {
    const std::vector<CompilerScreen*> screens = all();
    return screens.empty() ? nullptr : screens.front();
}

CompilerScreen& CompilerScreen::fresh() {
    const auto& loaded = globals().loadedWindows;
    const auto others = int(all().size());
    auto* screen = new CompilerScreen(loaded.empty() ? nullptr : loaded.front());
    // A second compile's screen stands down and to the right of the first, not hiding it.
    screen->move(screen->pos() + QPoint(kCascadePixels, kCascadePixels) * others);
    return *screen;
}

CompilerScreen& CompilerScreen::instance() {
    CompilerScreen* live = find();
    return live ? *live : fresh();
}

CompilerScreen::CompilerScreen(QWidget* owner) : QWidget(owner, Qt::Window) {
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(readyTitle());

    CompilerOutput = new SourceView(this, true);
    CompilerOutput->setFontName(QStringLiteral("Courier New"));
    // Left editable: nothing reads the text back, the next load replaces it, and the loads from outside
    // (SetText, Document.LoadFile) then never depend on the control lifting a read-only guard.
    connect(CompilerOutput, &SourceView::KeyDown, this, &CompilerScreen::CompilerOutput_KeyDown);

    CompileScreenTimer.setInterval(1000);
    connect(&CompileScreenTimer, &QTimer::timeout, this, &CompilerScreen::CompileScreenTimer_Timer);

    const QSize client(twipsToPixelsX(6420), twipsToPixelsY(3195));
    resize(client);
    QRect around;
    if (owner)
        around = owner->frameGeometry();
    else if (const QScreen* s = QGuiApplication::primaryScreen())
        around = s->availableGeometry();
    if (around.isValid())
        move(around.center() - QPoint(client.width() / 2, client.height() / 2));
    Form_Resize();

    globals().addWindow(this);
}

CompilerScreen::~CompilerScreen() { globals().removeWindow(this); }

void CompilerScreen::startCountdown(const QString& seconds) {
    const QString title = countingTitle(seconds);
    CompileScreenTimer.Tag = seconds;
    setWindowTitle(title);
    CompileScreenTimer.start();
}

bool CompilerScreen::live() const {
    const auto& loaded = globals().loadedWindows;
    return std::find(loaded.begin(), loaded.end(), this) != loaded.end();
}

CompileSession* CompilerScreen::session() const { return session_; }

void CompilerScreen::setSession(CompileSession* session) { session_ = session; }

void CompilerScreen::CompilerOutput_KeyDown(int keyCode, int) {
    if (keyCode != kEscape)
        return;
    if (CompileScreenTimer.isActive()) {
        CompileScreenTimer.stop();
        setWindowTitle(cancelledTitle());
    } else {
        close();
    }
}

void CompilerScreen::CompileScreenTimer_Timer() {
    double left = 0;
    try {
        left = numberOf(CompileScreenTimer.Tag) - 1;
    } catch (const Failure&) {
        // A Tag that holds no number cannot count down: the screen stays until the user closes it.
        CompileScreenTimer.stop();
        return;
    }
    CompileScreenTimer.Tag = QString::number(left, 'g', 15);
    setWindowTitle(countingTitle(CompileScreenTimer.Tag));
    // Exactly 0: a start below 1 goes on into the negative numbers until Esc.
    if (left == 0)
        close();
}

void CompilerScreen::Form_Resize() {
    const QRect outer = frameGeometry();
    CompilerOutput->setGeometry(0, 0, std::max(0, outer.width() - twipsToPixelsX(100)),
                                std::max(0, outer.height() - twipsToPixelsY(100)));
}

void CompilerScreen::resizeEvent(QResizeEvent* e) {
    QWidget::resizeEvent(e);
    Form_Resize();
}

void CompilerScreen::closeEvent(QCloseEvent* e) {
    // A closed screen is gone for its users at once, even before Qt deletes it.
    CompileScreenTimer.stop();
    globals().removeWindow(this);
    e->accept();
}
