#include "platform/Failure.h"
#include "platform/OpenSave.h"
#include "platform/QtPrompts.h"
#include "support/Doubles.h"

#include <QLoggingCategory>
#include <gtest/gtest.h>

namespace {
QStringList traces;
void keepTrace(QtMsgType, const QMessageLogContext& context, const QString& text) {
    traces << QString::fromLatin1(context.category) + QStringLiteral(": ") + text;
}
}  // namespace

TEST(Failure, ErrorBoxTextAndSkipModeSwallowsOnlyFailuresLeavingATraceWhenItsCategoryIsOn) {
    EXPECT_EQ(QStringList({errorBoxText(Failure(5, "Invalid procedure call")), errorBoxText(Failure(-2147, "x"))}),
              QStringList({"Error( 5): Invalid procedure call", "Error(-2147): x"}));
    traces.clear();
    const QtMessageHandler before = qInstallMessageHandler(keepTrace);
    const auto skip = [] { skipOnFailure([] { throw Failure(53, "File not found", "LoadFile"); }); };
    skip();
    EXPECT_EQ(traces, QStringList()) << "off by default";
    QLoggingCategory::setFilterRules("tarnlet.skipped.debug=true");
    skip();
    skipOnFailure([] { throw Failure(-7, "no source"); });
    int ran = 0;
    skipOnFailure([&] { ++ran; });
    EXPECT_EQ(ran, 1);
    EXPECT_THROW(skipOnFailure([] { throw std::runtime_error("not ours"); }), std::runtime_error);
    QLoggingCategory::setFilterRules({});
    skip();
    qInstallMessageHandler(before);
    EXPECT_EQ(traces, QStringList({"tarnlet.skipped: skipped failure 53: File not found (source: LoadFile)",
                                   "tarnlet.skipped: skipped failure -7: no source"}));
}

TEST(OpenSave, CancelRaisesOrEmptiesByCancelError) {
    FakePrompts prompts;
    OpenSave dlg(&prompts);
    dlg.FileName = "/old.pbp";
    dlg.CancelError = true;
    EXPECT_EQ(failureNumber([&] { dlg.ShowOpen(); }), kCancelError);
    EXPECT_EQ(dlg.FileName, "/old.pbp");
    EXPECT_THROW(dlg.ShowColor(), Failure);
    dlg.CancelError = false;
    dlg.ShowSave();
    EXPECT_EQ(dlg.FileName, "");
    // Shown with the filter and name it was left with; a bare name gets the default extension.
    dlg.Filter = "Basic Source Code (*.bas)|*.bas|";
    dlg.FileName = "/w/a.pbp";
    prompts.files.push_back(QString("/w/blink"));
    dlg.ShowSave();
    EXPECT_EQ(dlg.FileName, "/w/blink.bas");
    EXPECT_EQ(prompts.fileDialogFilters.last(), dlg.Filter);
    EXPECT_EQ(prompts.fileDialogNames.last(), "/w/a.pbp");
    prompts.colors.push_back(0x0000B4);
    dlg.ShowColor();
    EXPECT_EQ(dlg.Color, 0xB4);
}

TEST(QtPrompts, FiltersLineBreaksAndTheSaveDialogsOwnQuestion) {
    EXPECT_EQ(qtNameFilters("All Source Code Files|*.bas;*.pbp;*.pbc|PicBasic Pro Source Code (*.pbp)|*.pbp|"),
              QStringList({"All Source Code Files (*.bas *.pbp *.pbc)", "PicBasic Pro Source Code (*.pbp)"}));
    EXPECT_TRUE(qtNameFilters("").isEmpty());
    QFileDialog dlg;
    setupFileDialog(dlg, QFileDialog::AcceptSave, "Basic Source Code (*.bas)|*.bas|", "/tmp/blink.bas");
    EXPECT_TRUE(dlg.testOption(QFileDialog::DontConfirmOverwrite));
    EXPECT_EQ(dlg.nameFilters(), QStringList({"Basic Source Code (*.bas)"}));
    EXPECT_EQ(dlg.acceptMode(), QFileDialog::AcceptSave);
    // A carriage return shows as a line break; the text is kept, not read as markup.
    EXPECT_EQ(displayedMessageText("a /b\rc\r\nd\n\re\r"), "a /b\nc\nd\n\ne\n");
    EXPECT_EQ(displayedMessageText("<b>&amp;</b>"), "<b>&amp;</b>");
}
