#include "dialogs/SetupCheck.h"

#include "platform/PeImage.h"
#include "platform/SystemProbe.h"

#include <QFileInfo>
#include <QProcess>

namespace {

const QString kWine32Fix = QStringLiteral(
    "sudo dpkg --add-architecture i386 && sudo apt update && sudo apt install wine32");

QString quoted(const QString& path) {
    QString q = path;
    q.replace(QLatin1Char('\''), QLatin1String("'\\''"));
    return QLatin1Char('\'') + q + QLatin1Char('\'');
}

// A program as the system would start it: a path, or a bare name found on PATH.
struct Program {
    QString path;     // the file that would start; empty when none is found
    bool runs = false;
    std::optional<quint16> machine;  // a Windows program's machine
    QString problem;  // why it can't start
    QString fix;
};

Program lookAt(const QString& stored, const QString& setting, SystemProbe& probe) {
    Program p;
    const QString name = stored.trimmed();
    if (name.isEmpty()) {
        p.problem = QStringLiteral("no path is set");
        p.fix = setting + QStringLiteral(": enter the program's path.");
        return p;
    }
    if (!name.contains(QLatin1Char('/'))) {
        p.path = probe.findOnPath(name);
        if (p.path.isEmpty()) {
            p.problem = name + QStringLiteral(" is not on PATH");
            p.fix = QStringLiteral("Install ") + name + QStringLiteral(", or give its full path in ") + setting +
                    QLatin1Char('.');
            return p;
        }
    } else
        p.path = name;
    if (!probe.isFile(p.path)) {
        p.problem = p.path + (probe.isDirectory(p.path) ? QStringLiteral(" is a folder, not a program")
                                                        : QStringLiteral(" is not there"));
        p.fix = setting + QStringLiteral(": browse to the program (it may have moved).");
        p.path.clear();
        return p;
    }
    p.machine = probe.peMachine(p.path);
    if (!p.machine && !probe.isExecutable(p.path)) {
        p.problem = p.path + QStringLiteral(" may not be run (it is not executable)");
        p.fix = QStringLiteral("chmod +x ") + quoted(p.path);
        return p;
    }
    p.runs = true;
    return p;
}

QString machineText(const Program& p) {
    if (!p.machine)
        return QStringLiteral("native program");
    switch (*p.machine) {
    case kPeMachineI386:
        return QStringLiteral("Windows program, 32-bit: runs through Wine");
    case kPeMachineAmd64:
        return QStringLiteral("Windows program, 64-bit: runs through Wine");
    default:
        return QStringLiteral("Windows program for machine 0x%1: runs through Wine").arg(*p.machine, 4, 16,
                                                                                        QLatin1Char('0'));
    }
}

SetupRow programRow(const QString& what, const Program& p, const QString& okDetail) {
    if (!p.runs)
        return {what, SetupState::Missing, p.problem, p.fix};
    return {what, SetupState::Ok, okDetail.isEmpty() ? p.path : okDetail + QStringLiteral(": ") + p.path, {}};
}

// The assembler's candidate file names: MPASM is MPASMWIN.EXE for the Windows compilers, mpasmx beside
// MPLAB X; PM is the compiler's own.
QStringList assemblerFiles(const QString& option) {
    const QString name = option.toLower();
    if (name == QLatin1String("mpasm"))
        return {QStringLiteral("mpasmwin.exe"), QStringLiteral("mpasmx"), QStringLiteral("mpasm")};
    if (name == QLatin1String("pm"))
        return {QStringLiteral("pm.exe"), QStringLiteral("pm")};
    return {name, name + QStringLiteral(".exe")};
}

SetupRow assemblerRow(const SetupInputs& in, const Program& compiler, SystemProbe& probe) {
    const QString option = assemblerOption(in.compilerOptions);
    if (option.isEmpty())
        return {QStringLiteral("Assembler"), SetupState::NotNeeded,
                QStringLiteral("none chosen in the compiler's options: the compiler uses its own"), {}};
    const QStringList files = assemblerFiles(option);
    const QString dir = compiler.path.isEmpty() ? QString() : QFileInfo(compiler.path).absolutePath();
    // The compile puts the compiler's folder in front of PATH; file names there are any letter case.
    if (!dir.isEmpty())
        for (const QString& entry : probe.entries(dir))
            if (files.contains(entry.toLower()))
                return {QStringLiteral("Assembler"), SetupState::Ok, dir + QLatin1Char('/') + entry, {}};
    for (const QString& file : files)
        for (const QString& name : {file, file.toUpper()})
            if (const QString found = probe.findOnPath(name); !found.isEmpty())
                return {QStringLiteral("Assembler"), SetupState::Ok, found, {}};
    const QString where = dir.isEmpty() ? QStringLiteral("on PATH") : dir + QStringLiteral(" or on PATH");
    return {QStringLiteral("Assembler"), SetupState::Missing,
            QStringLiteral("-a") + option + QStringLiteral(" is set, and no ") + files.first().toUpper() +
                QStringLiteral(" is in ") + where,
            QStringLiteral("Put ") + files.first().toUpper() + QStringLiteral(" in ") + where +
                QStringLiteral(", or take -a") + option +
                QStringLiteral(" out of Compile > Compiler Options > Command Line Options.")};
}

}  // namespace

QStringList portsNamedIn(const QStringList& args) {
    QStringList ports;
    for (const QString& arg : args)
        if (const qsizetype at = arg.indexOf(QLatin1String("/dev/")); at >= 0)
            ports << arg.mid(at);
    ports.removeDuplicates();
    return ports;
}

QString assemblerOption(const QString& compilerOptions) {
    for (const QString& word : QProcess::splitCommand(compilerOptions))
        if (word.size() > 2 && word.startsWith(QLatin1String("-a"), Qt::CaseInsensitive))
            return word.mid(2);
    return {};
}

QList<SetupRow> checkSetup(const SetupInputs& in, SystemProbe& probe) {
    QList<SetupRow> rows;
    const QString compilerSetting = QStringLiteral("Compile > Compiler Options > Compiler Pathname");
    const QString programmerSetting = QStringLiteral("Programmer > Programmer Options > Programmer Pathname");
    const Program compiler = lookAt(in.compilerPath, compilerSetting, probe);
    const Program programmer = lookAt(in.programmerPath, programmerSetting, probe);

    rows << programRow(QStringLiteral("Compiler"), compiler, {});
    if (compiler.path.isEmpty())
        rows << SetupRow{QStringLiteral("Windows or native"), SetupState::NotNeeded, QStringLiteral("no compiler to look at"),
                         {}};
    else
        rows << SetupRow{QStringLiteral("Windows or native"), SetupState::Ok, machineText(compiler), {}};

    // Wine matters for whichever of the two is a Windows program.
    QStringList windowsPrograms, programs32;
    for (const Program* p : {&compiler, &programmer})
        if (p->machine) {
            windowsPrograms << QFileInfo(p->path).fileName();
            if (*p->machine == kPeMachineI386)
                programs32 << QFileInfo(p->path).fileName();
        }
    const QString wine = probe.wine();
    const QString notWindows = QStringLiteral("neither the compiler nor the programmer is a Windows program");
    if (windowsPrograms.isEmpty())
        rows << SetupRow{QStringLiteral("Wine"), SetupState::NotNeeded, notWindows, {}};
    else if (wine.isEmpty())
        rows << SetupRow{QStringLiteral("Wine"), SetupState::Missing,
                         QStringLiteral("no wine on PATH, and ") + windowsPrograms.join(QStringLiteral(", ")) +
                             QStringLiteral(" needs it"),
                         QStringLiteral("sudo apt install wine")};
    else
        rows << SetupRow{QStringLiteral("Wine"), SetupState::Ok, wine, {}};

    if (programs32.isEmpty())
        rows << SetupRow{QStringLiteral("32-bit Wine"), SetupState::NotNeeded,
                         QStringLiteral("no 32-bit Windows program is set"), {}};
    else if (wine.isEmpty() || !probe.wineRuns32Bit(wine))
        rows << SetupRow{QStringLiteral("32-bit Wine"), SetupState::Missing,
                         programs32.join(QStringLiteral(", ")) +
                             QStringLiteral(" is 32-bit, and no wine here runs 32-bit programs (wine32 is missing)"),
                         kWine32Fix};
    else
        rows << SetupRow{QStringLiteral("32-bit Wine"), SetupState::Ok, QStringLiteral("runs 32-bit programs"), {}};

    const QString prefix = probe.winePrefix();
    if (windowsPrograms.isEmpty())
        rows << SetupRow{QStringLiteral("Wine prefix"), SetupState::NotNeeded, notWindows, {}};
    else if (probe.isDirectory(prefix))
        rows << SetupRow{QStringLiteral("Wine prefix"), SetupState::Ok, prefix, {}};
    else
        rows << SetupRow{QStringLiteral("Wine prefix"), SetupState::Missing,
                         prefix + QStringLiteral(" has not been made"),
                         probe.winePrefixFromEnvironment() ? QStringLiteral("WINEPREFIX=") + quoted(prefix) +
                                                                 QStringLiteral(" wineboot")
                                                           : QStringLiteral("wineboot")};

    rows << assemblerRow(in, compiler, probe);
    rows << programRow(QStringLiteral("Programmer"), programmer, in.programmerKind);

    // The serial ports the programmer's command line and the terminal use.
    QStringList used = portsNamedIn(in.programmerArgs);
    if (!in.terminalPort.isEmpty() && !used.contains(in.terminalPort))
        used << in.terminalPort;
    QString group;
    for (const QString& port : used)
        if (group = probe.groupOf(port); !group.isEmpty() && group != QLatin1String("root"))
            break;
    if (group.isEmpty() || group == QLatin1String("root"))
        group = QStringLiteral("dialout");
    const QString groupWhat = QStringLiteral("Group ") + group;
    if (used.isEmpty())
        rows << SetupRow{groupWhat, SetupState::NotNeeded,
                         QStringLiteral("neither the programmer nor the serial terminal names a serial port"), {}};
    else if (probe.isSuperuser())
        rows << SetupRow{groupWhat, SetupState::Ok, QStringLiteral("you run as root, which may open any port"), {}};
    else if (probe.sessionGroups().contains(group))
        rows << SetupRow{groupWhat, SetupState::Ok, QStringLiteral("you may open ") + used.join(QStringLiteral(", ")),
                         {}};
    else if (probe.accountGroups().contains(group))
        rows << SetupRow{groupWhat, SetupState::Missing,
                         QStringLiteral("you were added to ") + group +
                             QStringLiteral(", and this session started before that"),
                         QStringLiteral("Log out and in again (or restart), then start the program again.")};
    else
        rows << SetupRow{groupWhat, SetupState::Missing,
                         QStringLiteral("you are not in the group ") + group + QStringLiteral(" that may open ") +
                             used.join(QStringLiteral(", ")),
                         QStringLiteral("sudo usermod -aG ") + group + QStringLiteral(" $USER, then log out and in.")};

    const QStringList present = probe.serialPorts();
    const QString presentText = present.isEmpty() ? QStringLiteral("none present")
                                                  : QStringLiteral("present: ") + present.join(QStringLiteral(", "));
    QStringList absent;
    for (const QString& port : used)
        if (!present.contains(port) && !probe.exists(port))
            absent << port;
    if (in.programmerTakesTerminalPort && in.terminalPort.isEmpty())
        rows << SetupRow{QStringLiteral("Serial ports"), SetupState::Missing,
                         QStringLiteral("the programmer's command line takes the serial terminal's port, and none "
                                        "is chosen (") + presentText + QLatin1Char(')'),
                         QStringLiteral("View > Serial Terminal: choose the board's port.")};
    else if (!absent.isEmpty())
        rows << SetupRow{QStringLiteral("Serial ports"), SetupState::Missing,
                         absent.join(QStringLiteral(", ")) + QStringLiteral(" is not there (") + presentText +
                             QLatin1Char(')'),
                         QStringLiteral("Plug the adapter in, or choose a port that is there in View > Serial "
                                        "Terminal (and in the programmer's command line).")};
    else if (used.isEmpty() && present.isEmpty())
        rows << SetupRow{QStringLiteral("Serial ports"), SetupState::NotNeeded, presentText, {}};
    else
        rows << SetupRow{QStringLiteral("Serial ports"), SetupState::Ok, presentText, {}};
    return rows;
}

QString setupReportText(const QList<SetupRow>& rows) {
    QString text;
    for (const SetupRow& r : rows) {
        const QString state = r.state == SetupState::Ok        ? QStringLiteral("ok")
                              : r.state == SetupState::Missing ? QStringLiteral("MISSING")
                                                               : QStringLiteral("not needed");
        text += r.what + QStringLiteral(": ") + state + QStringLiteral(" - ") + r.detail;
        if (!r.fix.isEmpty())
            text += QStringLiteral("\n    fix: ") + r.fix;
        text += QLatin1Char('\n');
    }
    return text;
}
