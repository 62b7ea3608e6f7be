// The about box (texts, moving digit rows, life, system information) and the goto line dialog.
#include "dialogs/AboutRows.h"
#include "dialogs/MyAbout.h"
#include "dialogs/SysInfo.h"
#include "dialogs/frmGotoLine.h"
#include "core/Globals.h"
#include "platform/Failure.h"
#include "support/Doubles.h"
#include "support/Files.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <gtest/gtest.h>

namespace {

void press(QObject* target, int key, const QString& text = {}, Qt::KeyboardModifiers mods = {}) {
    QKeyEvent down(QEvent::KeyPress, key, mods, text);
    QCoreApplication::sendEvent(target, &down);
}

// The one box that says a feature is unavailable: no title, no icon, OK only.
bool saidOnly(const TestWorld& w, const QString& text) {
    const auto& b = w.prompts.boxes;
    return b.size() == 1 && b[0].text == text && b[0].title.isEmpty() && b[0].icon == Icon::None &&
           b[0].buttons == Buttons::Ok;
}

struct AboutTest : ::testing::Test {
    TestWorld w;
    QWidget owner;
    void TearDown() override {
        if (MyAbout* a = MyAbout::find())
            a->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

struct GotoLineTest : ::testing::Test {
    TestWorld w;
    QWidget owner;
    frmGotoLine dlg{&owner};
    void SetUp() override { dlg.show(); }  // as a modal dialog would be, without exec()
};

}  // namespace

TEST(AboutRows, VersionLineAndTheRowsAsLoadedAndAfterTicks) {
    EXPECT_EQ(aboutVersionText(2, 10, 0), "Version: 2.10 Build: 0");
    const BinRows loaded = startingBinRows();
    EXPECT_EQ(loaded[0], "1001001001111100000") << "a rotation by 0 changes nothing";
    EXPECT_EQ(loaded[4], "0010011111000001001") << "row 0 as loaded, turned by 4 more";
    EXPECT_EQ(loaded[17], "1100100100111111001");
    BinRows rows = loaded;
    scrollBinRows(rows);
    EXPECT_EQ(rows[0], loaded[1]);
    EXPECT_EQ(rows[16] + rows[17], loaded[0] + loaded[0]) << "the top text arrives in the two bottom rows";
    const BinRows afterFirst = rows;
    for (int tick = 0; tick < 17; ++tick)
        scrollBinRows(rows);
    EXPECT_EQ(rows, afterFirst) << "17 texts go round, one round in 17 ticks";
}

TEST_F(AboutTest, BannerReachesAHiddenBoxWhoseRowsMoveAndOkOrEscapeUnloadsIt) {
    MyAbout::instance(&owner).setPBPVersion("PICBASIC PRO(TM) COMPILER 2.60, ");
    QPointer<MyAbout> a = MyAbout::find();
    ASSERT_TRUE(a);
    EXPECT_FALSE(a->isVisible()) << "a compile loads the box without showing it";
    EXPECT_EQ(&MyAbout::instance(&owner), a.data());
    EXPECT_EQ(a->Label2->text(), "Version: 1.7 Build: 1");
    EXPECT_EQ(a->PBPVersion->text(), "PICBASIC PRO(TM) COMPILER 2.60, ");
    EXPECT_FALSE(a->Image1->pixmap().isNull()) << "the picture is in the resources";
    const BinRows loaded = startingBinRows();
    a->Timer1_Timer();
    for (int i = 0; i < kBinScrollRows; ++i) {
        EXPECT_EQ(a->BinScroll[i]->text(), loaded[i >= 16 ? 0 : i + 1]) << i;
        EXPECT_EQ(a->BinScroll[i]->isHidden(), i == 1 || i == 2) << i;
    }
    a->cmdOK_Click();
    EXPECT_EQ(MyAbout::find(), nullptr);
    EXPECT_TRUE(globals().loadedWindows.empty());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(a.isNull()) << "OK unloads the instance";
    a = &MyAbout::instance(&owner);
    EXPECT_EQ(a->PBPVersion->text(), "Click compile to get compiler version.");
    EXPECT_EQ(a->BinScroll[1]->text(), loaded[1]) << "the rows start afresh";
    press(a, Qt::Key_Escape);
    EXPECT_EQ(MyAbout::find(), nullptr) << "Escape presses OK";
}

TEST_F(AboutTest, SystemInformationStartsTheFirstProgramFoundOrSaysItIsUnavailable) {
    const ScopedEnv onlyOurs("PATH", w.file("bin").toLocal8Bit());
    auto pathWith = [&](const QStringList& programs) {
        for (const QString& name : programs)
            writeProgram(w.file("bin/" + name), "#!/bin/sh\n");
    };
    const QString unavailable = QStringLiteral("System Information Is Unavailable At This Time");
    pathWith({"systeminfo"});
    MyAbout::instance(&owner).cmdSysInfo_Click();
    EXPECT_TRUE(w.launcher.launches.empty());
    EXPECT_TRUE(saidOnly(w, unavailable));
    EXPECT_TRUE(MyAbout::find()) << "the box stays open";
    w.prompts.boxes.clear();
    pathWith({"gnome-system-monitor", "hardinfo"});
    StartSysInfo();
    ASSERT_EQ(w.launcher.launches.size(), 1u);
    EXPECT_EQ(w.launcher.launches[0].kind, LaunchRecord::Detached);
    EXPECT_EQ(w.launcher.launches[0].program, w.file("bin/hardinfo")) << "the hardware summary comes first";
    EXPECT_TRUE(w.prompts.boxes.empty());
    w.launcher.failDetached = kFileNotFound;
    StartSysInfo();
    EXPECT_TRUE(saidOnly(w, unavailable)) << "found but failing to start is the same as not found";
}

TEST_F(GotoLineTest, FieldTakesDigitsAndBackspaceAndEnterInItGoesOnlyWithText) {
    for (const QChar c : QStringLiteral("1a2-3 .x4"))
        press(dlg.LineValue, c.toUpper().unicode(), QString(c));
    press(dlg.LineValue, Qt::Key_V, QString(QChar(22)), Qt::ControlModifier);
    EXPECT_EQ(dlg.LineValue->text(), "1234");
    press(dlg.LineValue, Qt::Key_Backspace, "\b");
    press(dlg.LineValue, Qt::Key_Home);  // keys without a character are the field's own
    press(dlg.LineValue, Qt::Key_Delete);
    EXPECT_EQ(dlg.LineValue->text(), "23");
    dlg.LineValue->clear();
    press(dlg.LineValue, Qt::Key_Return, "\r");
    EXPECT_TRUE(w.prompts.boxes.empty());
    EXPECT_TRUE(dlg.isVisible()) << "Enter in the empty field does nothing";
    dlg.LineValue->setText("abc");  // as a paste leaves it
    press(dlg.LineValue, Qt::Key_Enter, "\r", Qt::KeypadModifier);
    EXPECT_TRUE(saidOnly(w, "This feature not available at this time"));
    EXPECT_FALSE(dlg.isVisible());
    EXPECT_EQ(dlg.result(), QDialog::Accepted);
    EXPECT_TRUE(globals().loadedWindows.empty());
}

TEST_F(GotoLineTest, EscapeClosesFromTheFieldOnlyAndEnterOnAButtonPressesThatButton) {
    dlg.LineValue->setText("12");
    press(dlg.cmdCancel, Qt::Key_Escape);
    press(dlg.cmdGotoLine, Qt::Key_Escape);
    EXPECT_TRUE(dlg.isVisible()) << "Escape on a button does nothing";
    dlg.cmdCancel->setFocus();
    press(dlg.cmdCancel, Qt::Key_Return, "\r");
    EXPECT_FALSE(dlg.isVisible());
    EXPECT_EQ(dlg.result(), QDialog::Rejected);
    dlg.show();
    press(dlg.LineValue, Qt::Key_Escape);
    EXPECT_FALSE(dlg.isVisible());
    EXPECT_TRUE(w.prompts.boxes.empty());
    dlg.show();
    dlg.cmdGotoLine->click();
    EXPECT_TRUE(saidOnly(w, "This feature not available at this time"));
}
