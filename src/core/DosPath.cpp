#include "core/DosPath.h"

#include "core/Globals.h"
#include "platform/Paths.h"
#include "platform/Prompts.h"

namespace {

QString reported(const QString& path, const QString& shortForm) {
    if (shortForm.isEmpty())
        globals().prompts->message(QStringLiteral("Error! Invalid Path or File Name: ") + path +
                                       QStringLiteral("\rIf problem persists contact Velnor Systems at 555-201-0142"),
                                   QString(), Icon::Critical, Buttons::Ok);
    return shortForm;
}

}  // namespace

QString GetDosPath(const QString& path, ShortPaths& forms) { return reported(path, forms.shortPath(path)); }

QString GetDosPath(const QString& path) {
    return globals().paths ? GetDosPath(path, *globals().paths) : reported(path, QString());
}
