// What Draw leaves on the target, call by call, and what the frame's status picture then really shows.

#include "StatusBarTesting.h"
#include "statusbar/StatusPicture.h"

#include <QImage>
#include <QRegularExpression>

namespace {

// Runs `step` (a Draw by default) on a cleared record: one line per painting call, e.g. "Panel 0,0,99,20 [x] 0".
QStringList paint(BarOnTarget& b, const std::function<void()>& step = {}) {
    b.target.calls.clear();
    step ? step() : b.bar.Draw();
    QStringList out;
    for (const DrawCall& c : b.target.painting()) {
        const QString r = QString::asprintf("%d,%d,%d,%d ", c.rect.left, c.rect.top, c.rect.right, c.rect.bottom);
        const QString value = QString::number(quint32(c.value), 16);
        switch (c.op) {
        case DrawCall::Fill: out << "Fill " + r + value; break;
        case DrawCall::Text: out << "Text " + r + '[' + c.text + "] " + QString::number(c.flags, 16); break;
        case DrawCall::Panel: out << "Panel " + r + '[' + c.text + "] " + value; break;
        case DrawCall::Icon: out << "Icon " + r + QString::number(c.icon); break;
        case DrawCall::SetFont: out << "Font " + c.font.name + " " + QString::number(c.font.size); break;
        case DrawCall::SetForeColor: out << "Color " + value; break;
        default: break;
        }
    }
    return out;
}

const QStringList kGrip = {"Font Marlett 12", "Color 80000014", "Text -2,-1,298,19 [o] 2a", "Color 80000010",
                           "Text -2,-1,298,19 [p] 2a", "Font Tahoma 9", "Color 80000008"};

int countColor(const QImage& img, const QRect& r, QColor c) {
    int n = 0;
    for (int y = r.top(); y <= r.bottom(); ++y)
        for (int x = r.left(); x <= r.right(); ++x)
            n += img.pixel(x, y) == c.rgb();
    return n;
}

}  // namespace

TEST(StatusDraw, BackgroundThenEachPanelCutAtTheRightEdge) {
    BarOnTarget b;
    b.bar.PanelIcon(1, 4);
    b.bar.PanelIcon(2, 5);
    b.bar.PanelStyle(2, kPanelPopOut);
    const QString icon1 = QString::number(b.bar.PanelhIcon(1)), icon2 = QString::number(b.bar.PanelhIcon(2));
    // Frame, icon, then text; no text beside the second icon, so no text call.
    EXPECT_EQ(paint(b), (QStringList{"Fill 0,0,300,20 8000000f", "Panel 0,0,115,20 [] 0", "Icon 2,2,18,18 " + icon1,
                                     "Text 20,0,115,20 [Line: 1 Col: 1] 24", "Panel 116,0,249,20 [] 200",
                                     "Icon 118,2,134,18 " + icon2, "Panel 250,0,300,20 [] 0"}));

    // Panel 2 is cut one short of the edge and panel 3 stays unpainted; offsets move the panels, not the background.
    BarOnTarget narrow(150);
    narrow.bar.SetLeftTopOffsets(5, 3);
    EXPECT_EQ(paint(narrow), (QStringList{"Fill 0,0,150,20 8000000f", "Panel 5,3,99,20 [Line: 1 Col: 1] 0",
                                          "Panel 100,3,149,20 [] 0"}));
}

TEST(StatusDraw, TheGripRestoresTheFontAndLeavesWindowTextAlsoInSimpleMode) {
    BarOnTarget b;
    const BarFont font{QStringLiteral("Tahoma"), 9, true, true, true};
    b.target.currentFont = font;
    b.target.currentForeColor = 0x0000FF;
    b.bar.SizeGrip(true);
    EXPECT_EQ(paint(b).mid(4), kGrip);  // over the panels, in the same style 4/3 the size
    EXPECT_TRUE(b.target.calls[4].font.bold && b.target.calls[4].font.italic && b.target.calls[4].font.underline);
    EXPECT_EQ(b.target.currentFont, font);
    EXPECT_EQ(b.target.currentForeColor, systemColor(kColorWindowText));

    // Simple mode shows one text instead of the panels; setting the text alone paints nothing.
    EXPECT_TRUE(paint(b, [&] { b.bar.SimpleText("Compiling"); }).isEmpty());
    EXPECT_EQ(paint(b, [&] { b.bar.SimpleMode(true); }),
              QStringList({"Fill 0,0,300,20 8000000f", "Text 0,0,300,20 [Compiling] 24"}) + kGrip);
    EXPECT_EQ(paint(b, [&] { b.bar.SimpleMode(false); }).filter("Panel ").size(), 3);
}

TEST(StatusPicture, ShowsPanelsIconAndGrip) {
    StatusPicture pic;
    pic.resize(400, 22);
    pic.show();
    cNoStatusBar bar(pic.icons());
    QPixmap red(16, 16);
    red.fill(Qt::red);
    PixmapImageList list(pic.icons(), {red});
    bar.ImageList(&list);
    bar.Create(&pic.target());
    // As the frame does: the bar has its target before a paint reaches it.
    int paints = 0;
    QObject::connect(&pic, &StatusPicture::Paint, [&] { ++paints; bar.Draw(); });
    bar.AddPanel(0, QStringLiteral("Line: 1 Col: 1"), -1, 100);
    bar.AddPanel(0, QString(), 0, 64, true);
    bar.SizeGrip(true);

    // Drawn since the last paint: the picture is shown as it is, text, icon and the grip's shadow strokes.
    const QImage img = pic.grab().toImage();
    EXPECT_EQ(paints, 0);
    EXPECT_LT(countColor(img, QRect(3, 3, 94, 16), img.pixelColor(3, 3)), 94 * 16);  // not one colour
    EXPECT_GT(countColor(img, QRect(bar.GetPanelRect(2).left, 0, 20, 22), Qt::red), 100);
    EXPECT_GT(countColor(img, QRect(380, 8, 18, 13), toQColor(systemColor(kColorShadow))), 5);
    // Nothing new to show: the picture asks for a Draw.
    pic.grab();
    EXPECT_EQ(paints, 1);
}

TEST(StatusDraw, ATextChangeRepaintsItsPanelAloneUntilTheLayoutChanges) {
    BarOnTarget b;
    b.bar.SizeGrip(true);
    b.bar.Draw();
    EXPECT_EQ(paint(b, [&] { b.bar.PanelText(1, "Line: 2 Col: 5"); }),
              (QStringList{"Fill 0,0,99,20 8000000f", "Panel 0,0,99,20 [Line: 2 Col: 5] 0"}));
    EXPECT_TRUE(paint(b, [&] { b.bar.PanelText(1, "Line: 2 Col: 5"); }).isEmpty());
    // The last panel lies under the grip, which is laid over it again.
    const QStringList last = paint(b, [&] { b.bar.PanelText(3, "PBP"); });
    EXPECT_EQ(last.mid(0, 2), (QStringList{"Fill 250,0,300,20 8000000f", "Panel 250,0,300,20 [PBP] 0"}));
    EXPECT_EQ(last.filter("Text ").join('|'), "Text -2,-1,298,19 [o] 2a|Text -2,-1,298,19 [p] 2a");
    // A widened panel moves the others, and an offset, a spring or a font set without painting shows at the next text.
    EXPECT_EQ(paint(b, [&] { b.bar.PanelTextWiden(1, "Line: 12345 Col: 123"); }).first(), "Fill 0,0,300,20 8000000f");
    const std::function<void()> unpainted[] = {[&] { b.bar.SetLeftTopOffsets(2, 0); },
                                               [&] { b.bar.PanelSpring(3, true); },
                                               [&] { b.bar.Font({QStringLiteral("Tahoma"), 9}); },
                                               [&] { b.target.client.right = 280; }};
    for (const auto& change : unpainted) {
        EXPECT_TRUE(paint(b, change).filter(QRegularExpression("^(Fill|Panel|Text)")).isEmpty());
        EXPECT_EQ(paint(b, [&] { b.bar.PanelText(2, "x"); }).filter("Panel ").size(), 3);
    }
    b.bar.SimpleMode(true);
    EXPECT_EQ(paint(b, [&] { b.bar.PanelText(1, "y"); }).mid(0, 2),
              (QStringList{"Fill 0,0,280,20 8000000f", "Text 0,0,280,20 [] 24"}));
}

TEST(StatusPicture, APanelRepaintedAloneLooksAsTheWholeBarDoes) {
    StatusPicture pic;
    pic.resize(400, 22);
    pic.show();
    cNoStatusBar bar(pic.icons());
    QPixmap red(16, 16);
    red.fill(Qt::red);
    PixmapImageList list(pic.icons(), {red});
    bar.ImageList(&list);
    bar.Create(&pic.target());
    bar.AddPanel(0, QStringLiteral("Line: 1 Col: 1"), -1, 100);
    bar.AddPanel(0, QStringLiteral("Make pin output high."), 0, 64, true);
    bar.AddPanel(0, QStringLiteral("PBC"), -1, 40);
    bar.SizeGrip(true);
    bar.Draw();
    bar.PanelText(1, QStringLiteral("Line: 20 Col: 8"));
    bar.PanelText(2, QStringLiteral("Delay (1mSec resolution)."));
    bar.PanelText(3, QStringLiteral("PBP"));
    const QImage alone = pic.target().pixmap().toImage();
    bar.Draw();
    EXPECT_EQ(alone, pic.target().pixmap().toImage());
    EXPECT_NE(alone, QImage());
}

TEST(StatusDraw, HeldBackTextsPaintOnceEachAtTheNextPendingDraw) {
    BarOnTarget b;
    b.bar.Draw();
    EXPECT_TRUE(paint(b, [&] {
                    EXPECT_TRUE(b.bar.PanelTextLater(1, "Ln 2", true));
                    EXPECT_TRUE(b.bar.PanelTextLater(3, "PBP", true));
                    EXPECT_TRUE(b.bar.PanelTextLater(1, "Ln 3", true));
                    EXPECT_FALSE(b.bar.PanelTextLater(3, "PBP", false));
                }).isEmpty());
    EXPECT_EQ(b.bar.PanelText(1), "Ln 3");
    EXPECT_EQ(paint(b, [&] { b.bar.DrawPending(); }).filter("Panel "),
              (QStringList{"Panel 0,0,99,20 [Ln 3] 0", "Panel 250,0,300,20 [PBP] 0"}));
    EXPECT_FALSE(b.bar.DrawPending());
    // A text wider than its panel widens it: the whole bar is painted, and the panel stays wide.
    b.bar.PanelTextLater(1, "Line: 12345 Col: 123", true);
    EXPECT_EQ(paint(b, [&] { b.bar.DrawPending(); }).filter("Panel ").size(), 3);
    EXPECT_EQ(b.bar.GetPanelRect(1).right, 20 * 7 + 12 - 1);
    b.bar.PanelTextLater(1, "Line: 1 Col: 1", true);
    b.bar.PanelTextLater(2, "Make pin output high.", false);
    EXPECT_EQ(paint(b, [&] { b.bar.DrawPending(); }).filter("Panel ").size(), 2);
    EXPECT_EQ(b.bar.GetPanelRect(1).right, 20 * 7 + 12 - 1);
    // A whole Draw takes what was held back with it.
    b.bar.PanelTextLater(2, "x", false);
    b.bar.Draw();
    EXPECT_FALSE(b.bar.DrawPending());
}
