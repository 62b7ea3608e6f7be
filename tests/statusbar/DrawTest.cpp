// What Draw leaves on the target, call by call.

#include "StatusBarTesting.h"

namespace {

// One line per painting call, e.g. "Panel 0,0,99,20 [Line: 1 Col: 1] 0".
QStringList trace(const RecordingTarget& target) {
    QStringList out;
    for (const DrawCall& c : target.painting()) {
        const QString r = QStringLiteral("%1,%2,%3,%4 ").arg(c.rect.left).arg(c.rect.top).arg(c.rect.right).arg(
            c.rect.bottom);
        const QString text = QLatin1Char('[') + c.text + QStringLiteral("] ");
        switch (c.op) {
        case DrawCall::Fill: out << "Fill " + r + QString::number(quint32(c.value), 16); break;
        case DrawCall::Text: out << "Text " + r + text + QString::number(c.flags, 16); break;
        case DrawCall::Panel: out << "Panel " + r + text + QString::number(c.value, 16); break;
        case DrawCall::Icon: out << "Icon " + r + QString::number(c.icon); break;
        case DrawCall::SetFont: out << "Font " + c.font.name + " " + QString::number(c.font.size); break;
        case DrawCall::SetForeColor: out << "Color " + QString::number(quint32(c.value), 16); break;
        case DrawCall::Measure: break;
        }
    }
    return out;
}

QStringList drawOnce(BarOnTarget& b) {
    b.target.calls.clear();
    b.bar.Draw();
    return trace(b.target);
}

const QStringList kGrip = {"Font Marlett 12", "Color 80000014", "Text -2,-1,298,19 [o] 2a", "Color 80000010",
                           "Text -2,-1,298,19 [p] 2a", "Font Tahoma 9", "Color 80000008"};

}  // namespace

TEST(StatusDraw, BackgroundThenEachPanelCutAtTheRightEdge) {
    BarOnTarget b;
    b.framePanels();
    b.bar.PanelIcon(1, 4);
    b.bar.PanelIcon(2, 5);
    b.bar.PanelStyle(2, kPanelPopOut);
    const QString icon1 = QString::number(b.bar.PanelhIcon(1)), icon2 = QString::number(b.bar.PanelhIcon(2));
    // Frame, icon, then text; no text beside the second icon, so no text call.
    EXPECT_EQ(drawOnce(b), (QStringList{"Fill 0,0,300,20 8000000f", "Panel 0,0,115,20 [] 0", "Icon 2,2,18,18 " + icon1,
                                        "Text 20,0,115,20 [Line: 1 Col: 1] 24", "Panel 116,0,249,20 [] 200",
                                        "Icon 118,2,134,18 " + icon2, "Panel 250,0,300,20 [] 0"}));

    // Panel 2 is cut one short of the edge and panel 3 stays unpainted; the layout keeps the whole panels.
    b.bar.PanelIcon(1, -1);
    b.bar.PanelIcon(2, -1);
    b.target.client.right = 150;
    EXPECT_EQ(drawOnce(b), (QStringList{"Fill 0,0,150,20 8000000f", "Panel 0,0,99,20 [Line: 1 Col: 1] 0",
                                        "Panel 100,0,149,20 [] 200"}));
    EXPECT_EQ(b.bar.GetPanelRect(2), (BarRect{100, 0, 163, 20}));

    // Offsets move the panels, not the background.
    b.target.client.right = 300;
    b.bar.SetLeftTopOffsets(5, 3);
    EXPECT_EQ(drawOnce(b).mid(0, 2), (QStringList{"Fill 0,0,300,20 8000000f", "Panel 5,3,99,20 [Line: 1 Col: 1] 0"}));
}

TEST(StatusDraw, TheGripRestoresTheFontAndLeavesWindowTextAlsoInSimpleMode) {
    BarOnTarget b;
    b.framePanels();
    const BarFont font{QStringLiteral("Tahoma"), 9, true, true, true};
    b.target.currentFont = font;
    b.target.currentForeColor = 0x0000FF;
    b.bar.SizeGrip(true);
    // Over the panels, in a font of the same style, 4/3 the size.
    EXPECT_EQ(drawOnce(b).mid(4), kGrip);
    EXPECT_TRUE(b.target.calls[4].font.bold && b.target.calls[4].font.italic && b.target.calls[4].font.underline);
    EXPECT_EQ(b.target.currentFont, font);
    EXPECT_EQ(b.target.currentForeColor, systemColor(kColorWindowText));

    // Simple mode shows one text instead of the panels; setting the text alone paints nothing.
    b.target.calls.clear();
    b.bar.SimpleText(QStringLiteral("Compiling"));
    EXPECT_TRUE(b.target.calls.empty());
    b.bar.SimpleMode(true);
    EXPECT_EQ(trace(b.target), QStringList({"Fill 0,0,300,20 8000000f", "Text 0,0,300,20 [Compiling] 24"}) + kGrip);
    b.target.calls.clear();
    b.bar.SimpleMode(false);
    EXPECT_EQ(b.target.only(DrawCall::Panel).size(), 3u);

    // With no panels left only the background and the grip remain.
    for (int i = 0; i < 3; ++i)
        b.bar.RemovePanel(1);
    EXPECT_EQ(drawOnce(b), QStringList{"Fill 0,0,300,20 8000000f"} + kGrip);
}
