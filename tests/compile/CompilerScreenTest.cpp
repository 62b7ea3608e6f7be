// The compiler output screen: its titles, the countdown, Esc, and a fresh window after each close.
#include "compile/CompilerScreen.h"
#include "document/SourceView.h"
#include "platform/Failure.h"
#include "shell/Globals.h"
#include "support/Doubles.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <gtest/gtest.h>

#include <algorithm>

namespace {
constexpr int kEsc = 27;

class CompilerScreenTest : public ::testing::Test {
protected:
    TestWorld w;
    QWidget owner;

    void SetUp() override { globals().loadedWindows.push_back(&owner); }
    void TearDown() override {
        if (CompilerScreen* s = CompilerScreen::find())
            s->close();
        flushDeletes();
    }
    static void flushDeletes() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
    static QString counting(const char* n) {
        return QStringLiteral("Compiler Output - Auto Close in: %1 Secs - Esc to Cancel").arg(n);
    }
};
}  // namespace

TEST_F(CompilerScreenTest, CountdownShowsFiveToOneThenClosesAtZero) {
    CompilerScreen& s = CompilerScreen::instance();
    EXPECT_EQ(&CompilerScreen::instance(), &s);
    EXPECT_FALSE(s.isVisible());
    EXPECT_EQ(s.parentWidget(), &owner);
    EXPECT_EQ(s.windowTitle(), "Compiler Output - Esc to Close");
    QPointer<CompilerScreen> alive(&s);
    s.startCountdown("5");
    EXPECT_EQ(s.windowTitle(), counting("5"));
    for (const char* n : {"4", "3", "2", "1"}) {
        s.CompileScreenTimer_Timer();
        EXPECT_EQ(s.windowTitle(), counting(n));
        EXPECT_EQ(CompilerScreen::find(), &s);
    }
    s.CompileScreenTimer_Timer();
    EXPECT_EQ(CompilerScreen::find(), nullptr);
    EXPECT_FALSE(s.CompileScreenTimer.isActive());
    flushDeletes();
    EXPECT_TRUE(alive.isNull());
}

TEST_F(CompilerScreenTest, TagBelowOneCountsIntoTheNegativesUntilEsc) {
    CompilerScreen& s = CompilerScreen::instance();
    s.startCountdown("0");
    s.CompileScreenTimer_Timer();
    EXPECT_EQ(s.windowTitle(), "Compiler Output - Auto Close in:-1 Secs - Esc to Cancel");
    s.CompileScreenTimer_Timer();
    EXPECT_EQ(s.CompileScreenTimer.Tag, "-2");
    s.CompilerOutput_KeyDown(kEsc, 0);
    EXPECT_EQ(s.windowTitle(), "Compiler Output - Auto Close Canceled - Esc to Close");
    EXPECT_EQ(CompilerScreen::find(), &s);
}

TEST_F(CompilerScreenTest, FirstEscCancelsTheCountdownSecondClosesOtherKeysDoNothing) {
    CompilerScreen& s = CompilerScreen::instance();
    s.show();
    s.startCountdown("3");
    s.CompilerOutput_KeyDown('A', 0);
    s.CompilerOutput_KeyDown(13, 1);
    EXPECT_TRUE(s.CompileScreenTimer.isActive());
    EXPECT_EQ(s.windowTitle(), counting("3"));
    // The key reaches the screen through the control's own event.
    emit s.CompilerOutput->KeyDown(kEsc, 0);
    EXPECT_FALSE(s.CompileScreenTimer.isActive());
    EXPECT_EQ(s.windowTitle(), "Compiler Output - Auto Close Canceled - Esc to Close");
    EXPECT_TRUE(s.isVisible());
    emit s.CompilerOutput->KeyDown(kEsc, 0);
    EXPECT_FALSE(s.isVisible());
    EXPECT_EQ(CompilerScreen::find(), nullptr);
}

TEST_F(CompilerScreenTest, EscWhileWaitingClosesAndTheNextUseGetsAFreshWindow) {
    CompilerScreen& first = CompilerScreen::instance();
    first.show();
    first.CompilerOutput->SetText("Compiling Please Wait.....");
    first.CompilerOutput_KeyDown(kEsc, 0);
    EXPECT_FALSE(first.isVisible());
    CompilerScreen& second = CompilerScreen::instance();
    EXPECT_NE(&second, &first);
    EXPECT_EQ(second.windowTitle(), "Compiler Output - Esc to Close");
    EXPECT_FALSE(second.CompileScreenTimer.isActive());
    EXPECT_TRUE(second.CompilerOutput->Text().isEmpty());
    EXPECT_EQ(std::count(globals().loadedWindows.begin(), globals().loadedWindows.end(),
                         static_cast<QWidget*>(&second)),
              1);
}

TEST_F(CompilerScreenTest, ATagWithoutANumberNeitherStartsNorRunsTheCountdown) {
    CompilerScreen& s = CompilerScreen::instance();
    EXPECT_THROW(s.startCountdown("soon"), Failure);
    EXPECT_EQ(s.windowTitle(), "Compiler Output - Esc to Close");
    EXPECT_FALSE(s.CompileScreenTimer.isActive());
    s.startCountdown("4");
    s.CompileScreenTimer.Tag = "x";
    s.CompileScreenTimer_Timer();
    EXPECT_FALSE(s.CompileScreenTimer.isActive());
    EXPECT_EQ(CompilerScreen::find(), &s);
}
