#include "dialogs/frmGotoLine.h"

#include "core/Globals.h"
#include "platform/Failure.h"
#include "platform/KeyCodes.h"
#include "platform/Prompts.h"
#include "platform/QtFixedDialog.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {
constexpr int kBackspace = 8, kEnter = 13, kEscape = 27;

void tell(const QString& text) {
    if (Prompts* prompts = globals().prompts)
        prompts->message(text, QString(), Icon::None, Buttons::Ok);
}
}  // namespace

frmGotoLine::frmGotoLine(QWidget* owner) : QDialog(owner) {
    setupFixedDialog(*this, QStringLiteral("Goto Line"), 5235, 1065);

    Label1 = new QLabel(QStringLiteral("Goto Line:"), this);
    placeInTwips(Label1, 90, 225, 1005, 240);
    LineValue = new QLineEdit(this);
    placeInTwips(LineValue, 1170, 225, 2670, 285);
    cmdGotoLine = new QPushButton(QStringLiteral("&Goto Line"), this);
    placeInTwips(cmdGotoLine, 4050, 225, 1050, 285);
    cmdCancel = new QPushButton(QStringLiteral("&Cancel"), this);
    placeInTwips(cmdCancel, 4050, 585, 1050, 285);
    // Neither button is default: Enter and Escape belong to the field.
    for (QPushButton* b : {cmdGotoLine, cmdCancel}) {
        b->setAutoDefault(false);
        b->setDefault(false);
    }
    setTabOrder(LineValue, cmdGotoLine);
    setTabOrder(cmdGotoLine, cmdCancel);
    LineValue->setFocus();

    if (owner) {
        const QRect around = owner->frameGeometry();
        move(around.center() - rect().center());
    }

    LineValue->installEventFilter(this);
    connect(cmdGotoLine, &QPushButton::clicked, this, &frmGotoLine::cmdGotoLine_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmGotoLine::cmdCancel_Click);

    globals().addWindow(this);
}

frmGotoLine::~frmGotoLine() { globals().removeWindow(this); }

void frmGotoLine::done(int result) {
    globals().removeWindow(this);
    QDialog::done(result);
}

void frmGotoLine::cmdGotoLine_Click() {
    try {
        if (LineValue->text().isEmpty())
            return;
        tell(QStringLiteral("This feature not available at this time"));
        done(Accepted);
    } catch (const Failure& f) {
        tell(QStringLiteral("Goto Error: ") + f.description);
    }
}

void frmGotoLine::cmdCancel_Click() { done(Rejected); }

void frmGotoLine::LineValue_KeyDown(int keyCode, int) {
    if (keyCode == kEnter)
        cmdGotoLine_Click();
    else if (keyCode == kEscape)
        done(Rejected);
}

void frmGotoLine::LineValue_KeyPress(int& keyAscii) {
    const bool digit = keyAscii >= '0' && keyAscii <= '9';
    if (!digit && keyAscii != kBackspace)
        keyAscii = 0;
}

bool frmGotoLine::eventFilter(QObject* watched, QEvent* e) {
    if (watched != LineValue || e->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, e);
    auto* key = static_cast<QKeyEvent*>(e);
    const int code = virtualKeyCode(key->key(), key->modifiers());
    LineValue_KeyDown(code, shiftState(key->modifiers()));
    if (code == kEnter || code == kEscape)
        return true;
    // Keys without a character (arrows, Delete, Home) have no KeyPress and reach the field as they are.
    const QString text = key->text();
    if (text.isEmpty())
        return false;
    int keyAscii = text.at(0).unicode();
    LineValue_KeyPress(keyAscii);
    return keyAscii == 0;
}

void frmGotoLine::keyPressEvent(QKeyEvent* e) {
    switch (e->key()) {
    case Qt::Key_Escape:
        // Escape is the field's alone; from a button it does nothing.
        e->accept();
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        // Enter presses the button that has the focus, as on any button outside a default.
        if (auto* b = qobject_cast<QPushButton*>(focusWidget()))
            b->click();
        e->accept();
        return;
    default:
        QDialog::keyPressEvent(e);
    }
}
