// A compiler that could not be run at all offers the set-up check on its output screen.
#include "compile/CompileRules.h"
#include "compile/CompilerScreen.h"
#include "document/SourceView.h"
#include "support/Doubles.h"
#include "support/FakeFrame.h"

#include <QCoreApplication>
#include <QPushButton>
#include <gtest/gtest.h>

TEST(SetupOffer, TheCompilerScreenOffersTheCheckWhenTheCompilerCouldNotRun) {
    for (const auto& [status, offers] : std::initializer_list<std::pair<std::optional<int>, bool>>{
             {std::nullopt, false}, {0, false}, {1, false}, {126, true}, {127, true}, {128, false}})
        EXPECT_EQ(compilerCouldNotRun(status), offers) << status.value_or(-1);

    TestWorld w;
    FakeFrame frame;
    CompilerScreen& screen = CompilerScreen::fresh();
    screen.show();
    const QRect output = screen.CompilerOutput->geometry();
    EXPECT_FALSE(screen.cmdCheckSetup->isVisible());
    screen.offerSetupCheck(frame);
    ASSERT_TRUE(screen.cmdCheckSetup->isVisible());
    // Above the output, which gives it room, within the screen.
    EXPECT_LE(screen.cmdCheckSetup->geometry().right(), screen.width());
    EXPECT_LT(screen.cmdCheckSetup->geometry().bottom(), screen.CompilerOutput->geometry().top());
    EXPECT_GT(screen.CompilerOutput->geometry().top(), output.top());
    screen.cmdCheckSetup->click();
    EXPECT_EQ(frame.setupChecks, 1);
    screen.close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
