#include "compile/CompileRules.h"

#include <QIODevice>
#include <QTextStream>

std::optional<CompilerKind> compilerKindOf(const QString& compilerType) {
    if (compilerType == QLatin1String("0"))
        return compilerKindAt(0);
    if (compilerType == QLatin1String("1"))
        return compilerKindAt(1);
    return std::nullopt;
}

std::optional<CompilerKind> compilerKindAt(int index) {
    switch (index) {
    case 0:
        return CompilerKind{Key::CompilerPathName, Key::CompilerCommandLineOptions, compilerPanelText(true)};
    case 1:
        return CompilerKind{Key::CompilerPathName1, Key::CompilerCommandLineOptions1, compilerPanelText(false)};
    default:
        return std::nullopt;
    }
}

QString compilerPanelText(bool usePBP) { return usePBP ? QStringLiteral("PBP") : QStringLiteral("PBC"); }

QString compilerVersionText(const QString& output) {
    const QString t = output.toUpper();
    const qsizetype a = t.indexOf(QStringLiteral("PICBASIC"));
    if (a < 0)
        return {};
    const qsizetype c = t.indexOf(QLatin1Char(',')) + 1;  // position from 1, 0 for none
    return t.mid(a, c + 1);
}

bool compilerCouldNotRun(std::optional<int> exitStatus) { return exitStatus == 126 || exitStatus == 127; }

bool hasErrorLine(QIODevice& in) {
    QTextStream text(&in);
    QString line;
    while (text.readLineInto(&line))
        if (line.contains(QStringLiteral("ERROR"), Qt::CaseInsensitive))
            return true;
    return false;
}
