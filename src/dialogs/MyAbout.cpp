#include "dialogs/MyAbout.h"

#include "core/Globals.h"
#include "core/Version.h"
#include "dialogs/SysInfo.h"
#include "platform/QtFixedDialog.h"
#include "platform/SystemColors.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QScreen>

namespace {
constexpr qint32 kEditionColor = 0x00C00000;  // dark blue
constexpr qint32 kDigitColor = 0x00E0E0E0;    // light grey

QFont boldCaptionFont(QFont f) {
    f.setPointSizeF(9.75);
    f.setBold(true);
    return f;
}

void setTextColor(QLabel* label, qint32 color) {
    QPalette p = label->palette();
    p.setColor(QPalette::WindowText, toQColor(color));
    label->setPalette(p);
}
}  // namespace

MyAbout* MyAbout::find() {
    for (QWidget* w : globals().loadedWindows)
        if (auto* about = qobject_cast<MyAbout*>(w))
            return about;
    return nullptr;
}

MyAbout& MyAbout::instance(QWidget* owner) {
    if (MyAbout* live = find())
        return *live;
    return *new MyAbout(owner);
}

MyAbout::MyAbout(QWidget* owner) : QDialog(owner) {
    setupFixedDialog(*this, QString(), 5415, 3345);
    // A border without a title bar: no caption, no system menu, no minimise or maximise.
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint);
    QPalette white = palette();
    white.setColor(QPalette::Window, Qt::white);
    setPalette(white);
    setAutoFillBackground(true);

    // The digit rows lie beneath everything else; the picture's blank parts let them show through.
    for (int i = 0; i < kBinScrollRows; ++i) {
        auto* row = new QLabel(this);
        setTextColor(row, kDigitColor);
        placeInTwips(row, 0, 45 + 180 * i, 1770, 195);
        row->hide();
        BinScroll[i] = row;
    }

    Image1 = new QLabel(this);
    placeInTwips(Image1, 135, 145, 3750, 570);
    Image1->setPixmap(QIcon(QStringLiteral(":/about/about.png")).pixmap(QSize(250, 38)));

    lbEdition = new QLabel(QStringLiteral("Quillbay Lite"), this);
    lbEdition->setFont(boldCaptionFont(font()));
    setTextColor(lbEdition, kEditionColor);
    placeInTwips(lbEdition, 2025, 765, 3345, 315);

    Label2 = new QLabel(this);
    Label2->setFont(boldCaptionFont(font()));
    placeInTwips(Label2, 1800, 1200, 3390, 285);

    PBPVersion = new QLabel(pbpVersionStartText(), this);
    placeInTwips(PBPVersion, 1800, 1560, 3495, 285);

    cmdOK = new QPushButton(QStringLiteral("&OK"), this);
    placeInTwips(cmdOK, 3600, 2115, 1575, 345);
    cmdOK->setDefault(true);
    cmdSysInfo = new QPushButton(QStringLiteral("&System Info..."), this);
    placeInTwips(cmdSysInfo, 3615, 2565, 1560, 345);

    if (const QScreen* s = QGuiApplication::primaryScreen())
        move(s->availableGeometry().center() - rect().center());

    Timer1.setInterval(50);
    connect(&Timer1, &QTimer::timeout, this, &MyAbout::Timer1_Timer);
    connect(cmdOK, &QPushButton::clicked, this, &MyAbout::cmdOK_Click);
    connect(cmdSysInfo, &QPushButton::clicked, this, &MyAbout::cmdSysInfo_Click);

    Form_Load();
    Timer1.start();
    globals().addWindow(this);
}

MyAbout::~MyAbout() { globals().removeWindow(this); }

void MyAbout::setPBPVersion(const QString& text) { PBPVersion->setText(text); }

void MyAbout::Form_Load() {
    Label2->setText(aboutVersionText(kVersionMajor, kVersionMinor, kVersionRevision));
    const BinRows rows = startingBinRows();
    for (int i = 0; i < kBinScrollRows; ++i) {
        BinScroll[i]->setText(rows[i]);
        BinScroll[i]->show();
    }
    // These two never show; their texts move with the others.
    BinScroll[1]->hide();
    BinScroll[2]->hide();
}

void MyAbout::Timer1_Timer() {
    BinRows rows;
    for (int i = 0; i < kBinScrollRows; ++i)
        rows[i] = BinScroll[i]->text();
    scrollBinRows(rows);
    for (int i = 0; i < kBinScrollRows; ++i)
        BinScroll[i]->setText(rows[i]);
}

void MyAbout::cmdOK_Click() { done(Accepted); }

void MyAbout::cmdSysInfo_Click() { StartSysInfo(); }

void MyAbout::reject() { cmdOK_Click(); }

void MyAbout::done(int result) {
    unload();
    QDialog::done(result);
}

void MyAbout::closeEvent(QCloseEvent* e) {
    // A shown box rejects (and so unloads); a loaded but hidden one is closed at shutdown.
    QDialog::closeEvent(e);
    if (e->isAccepted())
        unload();
}

void MyAbout::unload() {
    if (unloaded_)
        return;
    unloaded_ = true;
    Timer1.stop();
    globals().removeWindow(this);
    deleteLater();
}
