#include "core/DosPath.h"

#include "core/Globals.h"
#include "platform/Paths.h"
#include "platform/Prompts.h"

QString GetDosPath(const QString& path) {
    const QString s = globals().paths ? globals().paths->shortPath(path) : QString();
    if (s.isEmpty())
        globals().prompts->message(QStringLiteral("Error! Invalid Path or File Name: ") + path +
                                       QStringLiteral("\rIf problem persists contact Velnor Systems at 555-201-0142"),
                                   QString(), Icon::Critical, Buttons::Ok);
    return s;
}
