#include "programmer/frmProgrammer.h"

#include "core/Convert.h"
#include "core/Frame.h"
#include "core/Globals.h"
#include "core/Settings.h"
#include "platform/Failure.h"
#include "platform/OpenSave.h"
#include "platform/PosixSystemProbe.h"
#include "platform/Prompts.h"
#include "platform/QtFixedDialog.h"
#include "programmer/ProgrammerPresets.h"
#include "programmer/ProgrammerTemplate.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

frmProgrammer* frmProgrammer::find() {
    for (QWidget* w : globals().loadedWindows)
        if (auto* dlg = qobject_cast<frmProgrammer*>(w))
            return dlg;
    return nullptr;
}

void frmProgrammer::open(Frame& frame, bool modal) {
    if (frmProgrammer* dlg = find()) {
        dlg->raise();
        dlg->activateWindow();
        return;
    }
    if (modal) {
        frmProgrammer dlg(frame);
        frame.runModal(dlg);
        return;
    }
    auto* dlg = new frmProgrammer(frame);
    dlg->setAttribute(Qt::WA_DeleteOnClose);
    dlg->setModal(false);
    dlg->show();
}

frmProgrammer::frmProgrammer(Frame& frame) : QDialog(frame.frameWindow()), probe(&systemProbe()), frame_(frame) {
    // The system's own controls fill the top 2475 twips; the presets' row lies below them.
    setupFixedDialog(*this, QStringLiteral("Programmer Options"), 4500, 3555);

    Programmer = new QComboBox(this);
    for (int i = 0; i < kProgrammerKinds; ++i)
        Programmer->addItem(programmerKindAt(i)->name);
    Programmer->setToolTip(QStringLiteral("Select Desired Programer"));
    placeInTwips(Programmer, 240, 240, 3975, 315);

    Label2 = new QLabel(QStringLiteral("Programmer Pathname:"), this);
    placeInTwips(Label2, 240, 720, 1815, 255);
    ProgrammerPath = new QLineEdit(this);
    ProgrammerPath->setToolTip(QStringLiteral("Programer Pathname"));
    placeInTwips(ProgrammerPath, 240, 960, 3705, 285);
    Browse = new QPushButton(QStringLiteral("..."), this);
    Browse->setToolTip(QStringLiteral("Browse"));
    placeInTwips(Browse, 3960, 960, 255, 285);

    Label1 = new QLabel(QStringLiteral("Command Line Options:"), this);
    placeInTwips(Label1, 240, 1320, 1815, 255);
    CommandOptions = new QLineEdit(this);
    CommandOptions->setToolTip(QStringLiteral("Programer Command Line Options"));
    placeInTwips(CommandOptions, 240, 1560, 3975, 285);

    cmdOK = new QPushButton(QStringLiteral("&OK"), this);
    placeInTwips(cmdOK, 240, 1980, 1215, 375);
    cmdExit = new QPushButton(QStringLiteral("&Cancel"), this);
    cmdExit->setToolTip(QStringLiteral("Exit Programmer Screen"));
    placeInTwips(cmdExit, 1620, 1980, 1215, 375);

    Label3 = new QLabel(QStringLiteral("Linux programmer &preset:"), this);
    placeInTwips(Label3, 240, 2520, 3975, 255);
    Preset = new QComboBox(this);
    Preset->addItem(QStringLiteral("(none: keep the fields)"));
    for (const ProgrammerPreset& p : programmerPresets())
        Preset->addItem(p.name);
    Preset->setToolTip(QStringLiteral("Fill the \"Other\" programmer's path and command line for this tool"));
    placeInTwips(Preset, 240, 2760, 3975, 315);
    Label3->setBuddy(Preset);
    PresetNote = new QLabel(this);
    PresetNote->setWordWrap(true);
    PresetNote->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    placeInTwips(PresetNote, 240, 3105, 3975, 420);

    for (QPushButton* b : {Browse, cmdOK, cmdExit})
        b->setAutoDefault(false);

    // Cancel comes first and has the focus when the dialog opens; the rest follow top to bottom.
    setTabOrder(cmdExit, Programmer);
    setTabOrder(Programmer, ProgrammerPath);
    setTabOrder(ProgrammerPath, Browse);
    setTabOrder(Browse, CommandOptions);
    setTabOrder(CommandOptions, cmdOK);
    setTabOrder(cmdOK, Preset);
    cmdExit->setFocus();

    Form_Load();

    // Connected after the load, which runs the fill step itself.
    connect(Programmer, &QComboBox::currentIndexChanged, this, [this] { Programmer_Click(); });
    connect(Browse, &QPushButton::clicked, this, [this] { Browse_Click(); });
    connect(cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
    connect(cmdExit, &QPushButton::clicked, this, [this] { cmdExit_Click(); });
    connect(Preset, &QComboBox::activated, this, [this] { Preset_Click(); });

    globals().addWindow(this);
}

frmProgrammer::~frmProgrammer() { globals().removeWindow(this); }

void frmProgrammer::done(int result) {
    globals().removeWindow(this);
    QDialog::done(result);
}

void frmProgrammer::keyPressEvent(QKeyEvent* e) {
    switch (e->key()) {
    case Qt::Key_Escape:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        QWidget::keyPressEvent(e);
        return;
    default:
        QDialog::keyPressEvent(e);
    }
}

void frmProgrammer::Form_Load() {
    skipOnFailure([&] {
        // Only this dialog writes the kind, but the store can be edited by hand: a value that is no kind
        // (or no number) shows the first kind, so the dialog always shows a programmer.
        const qint16 type = int16Of(setting(Key::ProgrammerType));
        Programmer->setCurrentIndex(programmerKindAt(type) ? type : 0);
    });
    skipOnFailure([&] { Programmer_Click(); });
}

void frmProgrammer::Programmer_Click() {
    if (const auto kind = programmerKindAt(Programmer->currentIndex())) {
        ProgrammerPath->setText(setting(kind->pathKey));
        CommandOptions->setText(setting(kind->optionsKey));
    }
}

void frmProgrammer::Preset_Click() {
    const int at = Preset->currentIndex() - 1;
    if (at < 0 || at >= programmerPresets().size()) {
        PresetNote->clear();
        return;
    }
    const ProgrammerPreset& preset = programmerPresets()[at];
    // Any of these tools runs as the "Other" kind; its stored fields give way to the preset's.
    Programmer->setCurrentIndex(kProgrammerKinds - 1);
    const PresetPath where = presetPath(preset, *probe);
    ProgrammerPath->setText(where.path);
    CommandOptions->setText(preset.options);
    PresetNote->setText(presetPathNote(preset, where));
}

void frmProgrammer::Browse_Click() {
    Prompts* prompts = globals().prompts;
    try {
        OpenSave& dlg = frame_.openSave();
        // Start directory, name and CancelError stay as the last use left them.
        if (const auto kind = programmerKindAt(Programmer->currentIndex()))
            dlg.Filter = kind->filter;
        dlg.ShowOpen();
        if (!dlg.FileName.isEmpty())
            ProgrammerPath->setText(dlg.FileName);
        else
            prompts->message(QStringLiteral("No filename entered."), QStringLiteral("File Error"), Icon::None,
                             Buttons::Ok);
    } catch (const Failure& f) {
        if (f.number != kCancelError)
            prompts->message(f.description, QString(), Icon::None, Buttons::Ok);
    }
}

void frmProgrammer::cmdOK_Click() {
    // Stored as typed, an empty field too: a stored value wins over the default at the next launch.
    skipOnFailure([&] {
        saveSetting(Key::ProgrammerType, QString::number(Programmer->currentIndex()));
        if (const auto kind = programmerKindAt(Programmer->currentIndex())) {
            saveSetting(kind->pathKey, ProgrammerPath->text());
            saveSetting(kind->optionsKey, CommandOptions->text());
        }
    });
    done(Accepted);
}

void frmProgrammer::cmdExit_Click() { done(Rejected); }
