#include "platform/Failure.h"
#include "platform/OpenSave.h"
#include "platform/QtPrompts.h"
#include "support/Doubles.h"

#include <cerrno>
#include <gtest/gtest.h>

TEST(Failure, ErrorBoxTextHasABlankBeforeAPositiveNumber) {
    EXPECT_EQ(errorBoxText(Failure(5, "Invalid procedure call")), "Error( 5): Invalid procedure call");
    EXPECT_EQ(errorBoxText(Failure(-2147, "x")), "Error(-2147): x");
    EXPECT_EQ(errorBoxText(Failure(0, "")), "Error( 0): ");
}

TEST(Failure, SkipModeSwallowsOnlyFailures) {
    int ran = 0;
    skipOnFailure([&] { throw Failure(1, "x"); });
    skipOnFailure([&] { ++ran; });
    EXPECT_EQ(ran, 1);
    EXPECT_THROW(skipOnFailure([] { throw std::runtime_error("not ours"); }), std::runtime_error);
}

TEST(OpenSave, CancelRaisesOrEmptiesByCancelError) {
    FakePrompts prompts;
    OpenSave dlg(&prompts);
    dlg.FileName = "/old.pbp";
    dlg.CancelError = true;
    try {
        dlg.ShowOpen();
        FAIL() << "no failure";
    } catch (const Failure& f) {
        EXPECT_EQ(f.number, kCancelError);
    }
    EXPECT_EQ(dlg.FileName, "/old.pbp");
    dlg.CancelError = false;
    dlg.ShowSave();
    EXPECT_EQ(dlg.FileName, "");
    // The dialog is shown with the filter and name it was left with.
    dlg.Filter = "All Files (*.*)|*.*|";
    dlg.FileName = "/w/a.pbp";
    prompts.files.push_back(QString("/w/blink"));
    dlg.ShowSave();
    EXPECT_EQ(dlg.FileName, "/w/blink.bas");
    EXPECT_EQ(prompts.fileDialogFilters.last(), "All Files (*.*)|*.*|");
    EXPECT_EQ(prompts.fileDialogNames.last(), "/w/a.pbp");
    dlg.CancelError = true;
    EXPECT_THROW(dlg.ShowColor(), Failure);
    prompts.colors.push_back(0x0000B4);
    dlg.ShowColor();
    EXPECT_EQ(dlg.Color, 0xB4);
}

TEST(QtPrompts, FiltersBecomeQtNameFilters) {
    EXPECT_EQ(qtNameFilters("All Source Code Files|*.bas;*.pbp;*.pbc|PicBasic Pro Source Code (*.pbp)|*.pbp|"
                            "All Files (*.*)|*.*|"),
              QStringList({"All Source Code Files (*.bas *.pbp *.pbc)", "PicBasic Pro Source Code (*.pbp)",
                           "All Files (*.*)"}));
    EXPECT_TRUE(qtNameFilters("").isEmpty());
}

TEST(QtPrompts, SaveDialogAsksNoReplaceQuestionOfItsOwn) {
    QFileDialog dlg;
    setupFileDialog(dlg, QFileDialog::AcceptSave, "Basic Source Code (*.bas)|*.bas|", "/tmp/blink.bas");
    EXPECT_TRUE(dlg.testOption(QFileDialog::DontConfirmOverwrite));
    EXPECT_EQ(dlg.nameFilters(), QStringList({"Basic Source Code (*.bas)"}));
    EXPECT_EQ(dlg.acceptMode(), QFileDialog::AcceptSave);
}

TEST(Prompts, ACarriageReturnShowsAsALineBreakAndTheTextIsKept) {
    EXPECT_EQ(displayedMessageText("Error! Invalid Path or File Name: /a b\rIf problem persists"),
              "Error! Invalid Path or File Name: /a b\nIf problem persists");
    EXPECT_EQ(displayedMessageText("a\r\nb\n\rc\r"), "a\nb\n\nc\n");
    EXPECT_EQ(displayedMessageText("<b>&amp;</b>"), "<b>&amp;</b>");
}
