#include "dialogs/SysInfo.h"

#include "core/Globals.h"
#include "platform/Failure.h"
#include "platform/Launcher.h"
#include "platform/Prompts.h"

#include <QStandardPaths>

QStringList sysInfoPrograms() {
    // Hardware summaries first; the desktops' system monitors when there is none.
    return {QStringLiteral("hardinfo2"),           QStringLiteral("hardinfo"),
            QStringLiteral("kinfocenter"),         QStringLiteral("gnome-system-monitor"),
            QStringLiteral("mate-system-monitor"), QStringLiteral("xfce4-taskmanager"),
            QStringLiteral("lxtask")};
}

void StartSysInfo() {
    try {
        for (const QString& name : sysInfoPrograms()) {
            const QString path = QStandardPaths::findExecutable(name);
            if (path.isEmpty())
                continue;
            if (!globals().launcher)
                throw objectNotSet();
            globals().launcher->startDetached(path, {}, QString());
            return;
        }
    } catch (const Failure&) {
        // A program that is there but won't start is as good as none.
    }
    if (Prompts* prompts = globals().prompts)
        prompts->message(QStringLiteral("System Information Is Unavailable At This Time"), QString(), Icon::None,
                         Buttons::Ok);
}
