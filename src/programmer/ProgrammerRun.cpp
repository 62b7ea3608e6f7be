#include "programmer/ProgrammerRun.h"

#include "core/Convert.h"
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
#include "programmer/ProgrammerTemplate.h"
#include "programmer/frmProgrammer.h"

#include <QDir>

#include <cerrno>

void GoProgram(frmEditor& doc) {
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
        QString options = setting(kind->optionsKey);
        if (options.contains(QLatin1Char('{'))) {
            const QString pathName = doc.View->document().PathName();
            DeviceCombo& devices = doc.frame().deviceCombo();
            // A Windows programmer gets the Windows forms of the paths. Without wine, the failure the launch
            // would give comes before any token is worked out.
            const auto host = ProgramHost::of(path, *globals().paths, globals().wine);
            ExpandCommandLineTokens(options,
                                    [&](const QString& token) { return TokenValue(token, pathName, devices, *host); });
        }
        const ProgrammerCommand command = programmerCommand(path, options);
        launching = true;
        globals().launcher->startDetached(command.program, command.args, dir.value_or(QString()));
    } catch (const Failure& f) {
        // Only the launch itself tells that the program is missing; no test of the file comes before it.
        const QString text = launching && f.number == kFileNotFound
                                 ? QStringLiteral("Launch Programmer Error! \r\r") + path +
                                       QStringLiteral(" not found!")
                                 : QStringLiteral("Error! \r\r") + f.description;
        globals().prompts->message(text, QString(), Icon::Critical, Buttons::Ok);
        // Beside the frame, so that the user can fix the path and launch again while it stands.
        auto* options = new frmProgrammer(doc.frame());
        options->setAttribute(Qt::WA_DeleteOnClose);
        options->setModal(false);
        options->show();
    }
}
