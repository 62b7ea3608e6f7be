// The goto line dialog: what the field takes, and what Enter, Escape and the buttons do.
#include "dialogs/frmGotoLine.h"
#include "core/Globals.h"
#include "support/Doubles.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <gtest/gtest.h>

namespace {
class GotoLineTest : public ::testing::Test {
protected:
    TestWorld w;
    QWidget owner;
    frmGotoLine dlg{&owner};

    void SetUp() override { dlg.show(); }  // shown as a modal dialog would be, without exec()

    static void press(QWidget* target, int key, const QString& text = {}, Qt::KeyboardModifiers mods = {}) {
        QKeyEvent down(QEvent::KeyPress, key, mods, text);
        QCoreApplication::sendEvent(target, &down);
    }
    bool saidNotAvailable() const {
        const auto& b = w.prompts.boxes;
        return b.size() == 1 && b[0].text == "This feature not available at this time" && b[0].title.isEmpty() &&
               b[0].icon == Icon::None && b[0].buttons == Buttons::Ok;
    }
};
}  // namespace

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
    EXPECT_TRUE(saidNotAvailable());
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
    EXPECT_TRUE(saidNotAvailable());
}
