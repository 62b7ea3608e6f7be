#include "platform/RunpbScripts.h"

#include "platform/Failure.h"
#include "platform/Launcher.h"
#include "platform/Blanks.h"
#include "platform/Paths.h"

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
};

ShLines shLines(const CompileInputs& in) {
    const qsizetype slash = in.D.lastIndexOf(QLatin1Char('/'));
    if (slash < 0)
        throw invalidProcedureCall(QStringLiteral("the document path has no directory: ") + in.D);
    return {slash == 0 ? QStringLiteral("/") : in.D.left(slash),
            shellQuote(joinPosix(in.S, in.output)),
            shellQuote(joinPosix(in.S, in.output + QStringLiteral(".part")))};
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

// The eight steps around the line that runs the compiler.
QByteArray shScript(const ShLines& sh, const QString& searchPath, const QString& compilerLine) {
    const QStringList lines = {
        QStringLiteral("#!/bin/sh"),
        QStringLiteral("rm -f -- ") + sh.tempDat + QLatin1Char(' ') + sh.partial,
        QStringLiteral("cd -- ") + shellQuote(sh.docDir),
        searchPath,
        QStringLiteral("echo 'Compiling.... Please Wait.'"),
        compilerLine,
        QStringLiteral("mv -f -- ") + sh.partial + QLatin1Char(' ') + sh.tempDat,
        QStringLiteral("cat -- ") + sh.tempDat,
    };
    return (lines.join(QLatin1Char('\n')) + QLatin1Char('\n')).toUtf8();
}

}  // namespace

QByteArray runpbSh(const CompileInputs& in) {
    const ShLines sh = shLines(in);
    // An empty entry in PATH would mean the current directory, so no compiler directory leaves PATH alone.
    const QString path = in.C.isEmpty() ? QStringLiteral("export PATH")
                                        : QStringLiteral("PATH=") + shellQuote(in.C) +
                                              QStringLiteral(":\"$PATH\"; export PATH");
    const QString options = shellWords(optionWords(trimBlanks(in.O)));
    return shScript(sh, path,
                    shellQuote(trimBlanks(in.P)) + (options.isEmpty() ? QString() : QLatin1Char(' ') + options) +
                        QStringLiteral(" -p") + shellQuote(in.M) + QLatin1Char(' ') + shellQuote(in.D) +
                        QStringLiteral(" >") + sh.partial + QStringLiteral(" 2>&1"));
}

QByteArray runpbShWine(const CompileInputs& in, const WineForms& win) {
    const ShLines sh = shLines(in);
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
    return shScript(sh, env, quoted.join(QLatin1Char(' ')) + QStringLiteral(" >") + sh.partial);
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
