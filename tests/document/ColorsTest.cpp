// Token and view colours: from the settings into a new view, through the colour commands into every open
// document, and back into the settings when a document closes.
#include "document/EditorColors.h"
#include "core/ToolIds.h"
#include "document/SourceLexer.h"
#include "document/SourceView.h"
#include "document/TokenInfo.h"
#include "document/frmEditor.h"
#include "platform/Failure.h"
#include "platform/SystemColors.h"
#include "core/Globals.h"
#include "core/Settings.h"
#include "support/Doubles.h"
#include "support/FakeFrame.h"

#include <QApplication>
#include <QPalette>
#include <gtest/gtest.h>

namespace {

constexpr qint32 kRed = 0x0000FF, kBlue = 0xFF0000;

qint32 fore(const TokenInfo& t, int cls) {
    qint32 c = 0;
    bool set = false;
    t.GetForegroundColor(cls, c, set);
    return set ? c : -1;
}

struct Colors : ::testing::Test {
    TestWorld world;
    FakeFrame frame;
    std::unique_ptr<frmEditor> open() {
        auto doc = std::make_unique<frmEditor>(frame);
        frame.docs.add(*doc);
        return doc;
    }
    // Through the window's own close, as the frame does.
    static void close(std::unique_ptr<frmEditor>& doc) {
        ASSERT_TRUE(doc->close());
        doc.reset();
    }
    void command(const char* id, qint32 colour, int clickedClass = 0) {
        globals().ClickedTokenClass = clickedClass;
        world.prompts.colors = {colour};
        colorCommand(frame, id);
    }
};

}  // namespace

TEST_F(Colors, EmptySettingsGiveTheDefaultsOnScreenAndInPrintAndAreStoredAtClose) {
    auto doc = open();
    SourceView& v = *doc->View;
    const std::pair<int, qint32> colours[] = {{3, 0xC0C000}, {6, 0x009600}, {11, 0xC000C0}, {4, -1}};
    for (const auto& [cls, colour] : colours) {
        EXPECT_EQ(fore(v.tokenInfo(), cls), colour) << cls;
        EXPECT_EQ(fore(v.printTokenInfo(), cls), colour) << cls;
    }
    for (int cls = 0; cls < TokenInfo::kClasses; ++cls) {
        EXPECT_EQ(v.tokenInfo().background(cls), systemColor(kColorWindow)) << cls;
        EXPECT_FALSE(v.printTokenInfo().hasBackground(cls)) << cls;
        EXPECT_EQ(v.tokenInfo().fontStyle(cls) + v.printTokenInfo().fontStyle(cls), cls >= 10 ? 2 : 0) << cls;
    }
    EXPECT_EQ(std::make_pair(v.SelBackColor(), v.SelForeColor()),
              std::make_pair(systemColor(kColorHighlight), systemColor(kColorHighlightText)));
    EXPECT_EQ(v.FontName(), "Courier");
    // System colours come from the desktop's palette, fixed ones as they are.
    EXPECT_EQ(v.sourceLexer()->color(6), QColor(0, 150, 0));
    EXPECT_EQ(v.sourceLexer()->paper(6), QApplication::palette().color(QPalette::Base));
    close(doc);
    const std::pair<Key, const char*> stored[] = {{Key::svStatements, "11796480"},
        {Key::ViewSelBackColor, "-2147483635"}, {Key::ViewSelForeColor, "-2147483634"}};
    for (const auto& [key, text] : stored)
        EXPECT_EQ(GetSetting(applicationName(), sectionOf(key), nameOf(key), "(none)"), text) << text;
}

TEST_F(Colors, ATokenColourReachesEveryDocumentAndPrintAndTheClosingOneStoresIt) {
    auto a = open(), b = open();
    command(ToolId::TokenColor, kRed, 6);
    EXPECT_TRUE(frame.dialog.CancelError);
    for (frmEditor* doc : {a.get(), b.get()}) {
        EXPECT_EQ(fore(doc->View->printTokenInfo(), 6), kRed);
        EXPECT_EQ(doc->View->sourceLexer()->color(6), QColor(255, 0, 0));
        EXPECT_EQ(fore(doc->View->tokenInfo(), 7), 0x0000B4);
    }
    EXPECT_EQ(globals().ClickedTokenClass, 0);
    EXPECT_EQ(setting(Key::svComment), "38400") << "not until a document closes";
    command(ToolId::TokenColor, kBlue, 2);  // the symbol class is the view's text colour too
    EXPECT_EQ(b->View->ForeColor(), kBlue);
    close(a);
    EXPECT_EQ(setting(Key::svComment), QString::number(kRed));
    EXPECT_EQ(setting(Key::svSymbol), QString::number(kBlue));
    EXPECT_EQ(setting(Key::svString), "180");
}

TEST_F(Colors, ACancelChangesNothingAndAClassWithoutAKeyGetsNoColour) {
    auto doc = open();
    for (const char* id : {ToolId::TokenColor, ToolId::BackgroundColor, ToolId::SelectionTextForegroundColor}) {
        globals().ClickedTokenClass = 6;
        EXPECT_EQ(failureNumber([&] { colorCommand(frame, id); }), kCancelError) << id;
        EXPECT_EQ(globals().ClickedTokenClass, 6);
    }
    EXPECT_EQ(fore(doc->View->tokenInfo(), 6), 0x009600);
    EXPECT_EQ(doc->View->BackColor(), systemColor(kColorWindow));
    EXPECT_EQ(doc->View->SelForeColor(), systemColor(kColorHighlightText));
    for (int cls : {0, 4, 9, 16}) {
        command(ToolId::TokenColor, kRed, cls);
        EXPECT_EQ(globals().ClickedTokenClass, 0);
        for (int c = 0; c < TokenInfo::kClasses; ++c)
            EXPECT_NE(fore(doc->View->tokenInfo(), c), kRed) << cls << " " << c;
        EXPECT_EQ(doc->View->ForeColor(), 0);
    }
}

TEST_F(Colors, BackgroundAndSelectionColoursReachEveryDocumentAndTheLastToCloseDecides) {
    auto a = open(), b = open();
    a->View->tokenInfo().SetBackgroundColor(6, kBlue, true);
    command(ToolId::BackgroundColor, kRed);
    command(ToolId::SelectionTextForegroundColor, 0x00FF00);
    command(ToolId::SelectionTextBackgroundColor, 0x123456);
    for (frmEditor* doc : {a.get(), b.get()}) {
        SourceView& v = *doc->View;
        EXPECT_EQ(std::make_pair(v.BackColor(), v.TextBackColor()), std::make_pair(kRed, kRed));
        for (int cls = 0; cls < TokenInfo::kClasses; ++cls)
            EXPECT_EQ(v.tokenInfo().background(cls), kRed) << cls;
        EXPECT_EQ(v.sourceLexer()->paper(6), QColor(255, 0, 0));
        EXPECT_FALSE(v.printTokenInfo().hasBackground(0));
        EXPECT_EQ(std::make_pair(v.SelForeColor(), v.SelBackColor()), std::make_pair(0x00FF00, 0x123456));
    }
    auto c = open();  // reads the colours the settings still hold
    EXPECT_EQ(c->View->BackColor(), systemColor(kColorWindow));
    close(b);
    EXPECT_EQ(setting(Key::svBackGround), QString::number(kRed));
    EXPECT_EQ(setting(Key::ViewSelForeColor), QString::number(0x00FF00));
    EXPECT_EQ(setting(Key::ViewSelBackColor), QString::number(0x123456));
    close(c);
    EXPECT_EQ(setting(Key::svBackGround), "-2147483643");
}
