#include "platform/RunpbScripts.h"

#include "platform/Failure.h"
#include "platform/Launcher.h"
#include "platform/Blanks.h"
#include "platform/Paths.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>

namespace {

QString joinPosix(const QString& dir, const QString& name) {
    return dir.endsWith(QLatin1Char('/')) ? dir + name : dir + QLatin1Char('/') + name;
}

}  // namespace

QByteArray runpbBat(const CompileInputs& in) {
    const QString tempDat = in.S + QLatin1Char('\\') + in.output;
    // p counts from 1; the directory is D from position 3 up to p-1, after the drive.
    const qsizetype p = in.D.lastIndexOf(QLatin1Char('\\')) + 1;
    if (p < 3)
        throw invalidProcedureCall(QStringLiteral("the document path has no directory after its drive: ") + in.D);
    const QStringList lines = {
        QStringLiteral("@ECHO OFF"),
        QStringLiteral("DEL ") + tempDat,
        in.D.left(2),
        QStringLiteral("CD") + in.D.mid(2, p - 3),
        QStringLiteral("PATH=") + in.C + QStringLiteral(";%path%"),
        QStringLiteral("ECHO Compiling.... Please Wait."),
        trimBlanks(in.P) + QLatin1Char(' ') + trimBlanks(in.O) + QStringLiteral(" -p") + in.M + QLatin1Char(' ') +
            in.D + QLatin1Char('>') + tempDat,
        QStringLiteral("TYPE ") + tempDat,
    };
    QString text;
    for (const QString& line : lines)
        text += line + QStringLiteral("\r\n");
    return text.toLocal8Bit();
}

namespace {

struct ShLines {
    QString docDir;
    QString tempDat;
    QString partial;
    QString status;
};

ShLines shLines(const CompileInputs& in) {
    const qsizetype slash = in.D.lastIndexOf(QLatin1Char('/'));
    if (slash < 0)
        throw invalidProcedureCall(QStringLiteral("the document path has no directory: ") + in.D);
    return {slash == 0 ? QStringLiteral("/") : in.D.left(slash),
            shellQuote(joinPosix(in.S, in.output)),
            shellQuote(joinPosix(in.S, in.output + QStringLiteral(".part"))),
            shellQuote(joinPosix(in.S, compileStatusName(in.output)))};
}

// The option words for sh: a word the shell would take as it stands goes in bare, any other quoted. The
// options typed by hand must not reach the shell as text: a lone quote or a line break in them made a
// script that sh refused or ran half of, and "*" or "$" would be expanded.
QString shellWords(const QStringList& words) {
    static const QRegularExpression plain(QRegularExpression::anchoredPattern(QStringLiteral("[A-Za-z0-9_@%+=:,./-]+")));
    QStringList out;
    for (const QString& w : words)
        out << (plain.match(w).hasMatch() ? w : shellQuote(w));
    return out.join(QLatin1Char(' '));
}

// The steps around the lines that run the compiler and leave its text in the partial output. The
// compiler's exit status ($status) goes into the status file before the output appears, so whoever finds
// the output finds the status too, in a terminal as well; the script ends with it.
QByteArray shScript(const ShLines& sh, const QString& removed, const QString& searchPath,
                    const QStringList& compilerLines) {
    QStringList lines = {
        QStringLiteral("#!/bin/sh"),
        QStringLiteral("rm -f -- ") + sh.tempDat + QLatin1Char(' ') + sh.partial + QLatin1Char(' ') + sh.status +
            removed,
        QStringLiteral("cd -- ") + shellQuote(sh.docDir),
        searchPath,
        QStringLiteral("echo 'Compiling.... Please Wait.'"),
    };
    lines << compilerLines;
    lines << QStringLiteral("echo \"$status\" >") + sh.status
          << QStringLiteral("mv -f -- ") + sh.partial + QLatin1Char(' ') + sh.tempDat
          << QStringLiteral("cat -- ") + sh.tempDat
          << QStringLiteral("[ \"$status\" = 0 ] || echo \"") + exitStatusText(QStringLiteral("$status")) +
                 QLatin1Char('"')
          << QStringLiteral("exit \"$status\"");
    return (lines.join(QLatin1Char('\n')) + QLatin1Char('\n')).toUtf8();
}

// Lines that wine itself writes to standard error, as a sed address: its loader's ("wine: failed to open
// ...", "wine: configuration in ... has been updated.") and its server's. The debug channels are off.
const QString kWineLines = QStringLiteral("/^wine\\(server\\)\\{0,1\\}: /");

}  // namespace

QByteArray runpbSh(const CompileInputs& in) {
    const ShLines sh = shLines(in);
    // An empty entry in PATH would mean the current directory, so no compiler directory leaves PATH alone.
    const QString path = in.C.isEmpty() ? QStringLiteral("export PATH")
                                        : QStringLiteral("PATH=") + shellQuote(in.C) +
                                              QStringLiteral(":\"$PATH\"; export PATH");
    const QString options = shellWords(optionWords(trimBlanks(in.O)));
    // A compiler that can't be started leaves the shell's own message in the output, and 126 or 127.
    return shScript(sh, QString(), path,
                    {shellQuote(trimBlanks(in.P)) + (options.isEmpty() ? QString() : QLatin1Char(' ') + options) +
                         QStringLiteral(" -p") + shellQuote(in.M) + QLatin1Char(' ') + shellQuote(in.D) +
                         QStringLiteral(" >") + sh.partial + QStringLiteral(" 2>&1"),
                     QStringLiteral("status=$?")});
}

QByteArray runpbShWine(const CompileInputs& in, const WineForms& win) {
    const ShLines sh = shLines(in);
    const QString all = shellQuote(joinPosix(in.S, in.output + QStringLiteral(".all")));
    // In front of whatever search path the user gave wine; wine's own diagnostics stay out of the output.
    QString env = QStringLiteral("WINEDEBUG=-all; export WINEDEBUG");
    if (!win.C.isEmpty())
        env = QStringLiteral("WINEPATH=") + shellQuote(win.C) + QStringLiteral("\"${WINEPATH:+;$WINEPATH}\"; ") +
              env + QStringLiteral(" WINEPATH");
    QStringList words{win.wine, win.P};
    words << optionWords(in.O) << QStringLiteral("-p") + in.M << win.D;
    QStringList quoted;
    for (const QString& w : words)
        quoted << shellQuote(w);
    // The compiler's standard output and error in the order written, without wine's own lines; those
    // follow only when the compile failed, since they may tell why (a prefix that wine can't use). sed
    // in the C locale takes any bytes, whatever the compiler's code page.
    return shScript(sh, QLatin1Char(' ') + all, env,
                    {quoted.join(QLatin1Char(' ')) + QStringLiteral(" >") + all + QStringLiteral(" 2>&1"),
                     QStringLiteral("status=$?"),
                     QStringLiteral("LC_ALL=C sed '") + kWineLines + QStringLiteral("d' ") + all +
                         QStringLiteral(" >") + sh.partial,
                     QStringLiteral("[ \"$status\" = 0 ] || LC_ALL=C sed -n '") + kWineLines +
                         QStringLiteral("p' ") + all + QStringLiteral(" >>") + sh.partial});
}

QStringList optionWords(const QString& options) { return QProcess::splitCommand(options); }

QString compilerDirectory(const QString& P, QChar separator) {
    const qsizetype at = P.lastIndexOf(separator);
    return at < 0 ? QString() : P.left(at);
}

QString compilerDirectory(const QString& P) {
    return compilerDirectory(P, pathSeparator().at(0));
}

QString compileScriptName(int slot) {
#ifdef Q_OS_WIN
    const QString extension = QStringLiteral(".bat");
#else
    const QString extension = QStringLiteral(".sh");
#endif
    return QStringLiteral("runpb") + (slot > 1 ? QString::number(slot) : QString()) + extension;
}

QString compileOutputName(int slot) {
    return QStringLiteral("temp") + (slot > 1 ? QString::number(slot) : QString()) + QStringLiteral(".dat");
}

QString compileStatusName(const QString& output) { return output + QStringLiteral(".status"); }

std::optional<int> compileExitStatus(const QString& outputFile) {
    QFile f(compileStatusName(outputFile));
    if (!f.open(QIODevice::ReadOnly))
        return std::nullopt;
    bool ok = false;
    const int status = f.read(16).trimmed().toInt(&ok);
    return ok ? std::optional<int>(status) : std::nullopt;
}

QString exitStatusText(const QString& status) { return QStringLiteral("exit status ") + status; }

QString withOutputLine(const QString& text, const QString& line) {
    const QString end = text.contains(QStringLiteral("\r\n")) ? QStringLiteral("\r\n") : QStringLiteral("\n");
    const bool open = !text.isEmpty() && !text.endsWith(QLatin1Char('\n')) && !text.endsWith(QLatin1Char('\r'));
    return text + (open ? end : QString()) + line + end;
}
