#include "compile/CompileScript.h"

#include "core/Convert.h"
#include "core/DeviceCombo.h"

QString compilerDevice(const QString& entry) {
    return entry.mid(3);
}

QString selectCompileDevice(DeviceCombo& combo) { return selectDeviceForTools(combo); }

QString optionsWithOq(const QString& options) {
    if (options.contains(QLatin1String("-ampasm"), Qt::CaseInsensitive) &&
        !options.contains(QLatin1String("-oq"), Qt::CaseInsensitive))
        return trimBlanks(options) + QStringLiteral(" -oq");
    return options;
}
