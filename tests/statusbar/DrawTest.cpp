// What Draw leaves on the target, call by call, and what the frame's status picture then really shows.

#include "StatusBarTesting.h"
#include "statusbar/StatusPicture.h"

#include <QImage>

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
