#include "programmer/ProgrammerRun.h"

#include "core/Convert.h"
#include "core/DosPath.h"
#include "core/Frame.h"
#include "core/Globals.h"
#include "core/Settings.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/frmEditor.h"
#include "platform/Failure.h"
#include "platform/Launcher.h"
#include "platform/Prompts.h"
#include "platform/ProgramHost.h"
#include "programmer/ProgrammerOutput.h"
#include "programmer/ProgrammerSession.h"
#include "programmer/ProgrammerTemplate.h"
#include "programmer/frmProgrammer.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>

QString programmerStillRunningText() {
    return QStringLiteral("The programmer is still running. Wait for it to end, or stop it, before launching "
                          "it again.");
}

void GoProgram(frmEditor& doc) {
    // Two programmers at once would fight over the device.
    if (ProgrammerOutput* out = ProgrammerOutput::find(); out && out->running()) {
        globals().prompts->message(programmerStillRunningText(), QString(), Icon::Exclamation, Buttons::Ok);
        // After the box, whose owner the window system raises with it.
        out->comeForward();
        return;
    }
    QString path;
    bool launching = false;
    try {
        const auto kind = programmerKindAt(int16Of(setting(Key::ProgrammerType)));
        if (!kind)
            return;  // a kind the options can't have written: nothing to start, nothing to say
        path = setting(kind->pathKey);
        // The process stays in the programmer's directory afterwards, as it does after a compile.
        const std::optional<QString> dir = programmerDirectory(path);
        if (dir && !QDir::setCurrent(*dir))
            throw osFailure(ENOENT, *dir);
        const QString options = setting(kind->optionsKey);
        ProgrammerCommand command = programmerCommand(path, options);
        if (options.contains(QLatin1Char('{'))) {
            const QString pathName = doc.View->document().PathName();
            DeviceCombo& devices = doc.frame().deviceCombo();
            // A Windows programmer gets the Windows forms of the paths. Without wine, the failure the launch
            // would give comes before any token is worked out.
            const auto host = ProgramHost::of(path, *globals().paths, globals().wine);
            // No hex file, nothing to program: the short form's message says which file is missing.
            if (const QString hex = hexFileName(pathName); namesHexFile(options) && !QFileInfo::exists(hex)) {
                GetDosPath(hex, *host);
                return;
            }
            bool missing = false;
            command = programmerCommand(path, options, [&](const QString& token) {
                const QString value = TokenValue(token, pathName, devices, *host);
                // GetDosPath has said which file is missing; an argument without it would mislead.
                missing = missing || (value.isEmpty() && isShortFormToken(token));
                return value;
            });
            if (missing)
                return;
        }
        launching = true;
        auto session = std::make_unique<ProgrammerSession>();
        session->start(*globals().launcher, command, dir.value_or(QString()));
        ProgrammerOutput::showRun(doc.frame(), std::move(session));
    } catch (const Failure& f) {
        // Only the launch itself tells that the program is missing; no test of the file comes before it.
        const QString text = launching && f.number == kFileNotFound
                                 ? QStringLiteral("Launch Programmer Error! \r\r") + path +
                                       QStringLiteral(" not found!")
                                 : QStringLiteral("Error! \r\r") + f.description;
        // A programmer that isn't there or needs a Wine that isn't: the set-up check says what else is missing.
        const bool check = globals().prompts->messageOffering(text, QString(), Icon::Critical, checkSetupCaption());
        // Beside the frame, so that the user can fix the path and launch again while it stands.
        frmProgrammer::open(doc.frame(), false);
        if (check)
            doc.frame().showSetupCheck();
    }
}
