// A programmer's command line template as any text: the expansion ends, asks for each token's value once,
// and the template splits into a program and its arguments, each value kept within its argument.
//
// Input: the template, then optionally after NUL bytes the values of the five known tokens in the order
// FileNameDosPath, FileNameWinPath, HexFileDosPath, HexFileWinPath, DeviceName. Values may hold braces
// and tokens, as a document path can.
#include "FuzzWorld.h"
#include "programmer/ProgrammerTemplate.h"

#include <QMap>
#include <QProcess>

#include <cmath>

namespace {

const char* const kTokens[] = {"{FILENAMEDOSPATH}", "{FILENAMEWINPATH}", "{HEXFILEDOSPATH}", "{HEXFILEWINPATH}",
                               "{DEVICENAME}"};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QList<QByteArray> fields = fuzzBytes(data, size).split('\0');
    QString options = QString::fromUtf8(fields.value(0));
    const QString typed = options;

    // A value like a real one by default; one holding a token of its own is the case that once looped.
    QStringList values = {QStringLiteral("/home/ann/{FileNameWinPath}/blink.pbp"),
                          QStringLiteral("/home/ann/{FileNameWinPath}/blink.pbp"),
                          QStringLiteral("/home/ann/{FileNameWinPath}/blink.hex"),
                          QStringLiteral("/home/ann/{FileNameWinPath}/blink.hex"), QStringLiteral("16F84A")};
    for (int i = 0; i < 5 && i + 1 < fields.size(); ++i)
        values[i] = QString::fromUtf8(fields[i + 1]);

    QMap<QString, int> asked;
    qsizetype longestValue = 0;
    for (const QString& v : values)
        longestValue = std::max(longestValue, v.size());
    ExpandCommandLineTokens(options, [&](const QString& token) {
        const QString key = token.toUpper();
        FUZZ_CHECK(++asked[key] == 1, "token asked twice: %s", qPrintable(token));
        FUZZ_CHECK(token.startsWith(QLatin1Char('{')) && token.endsWith(QLatin1Char('}')));
        for (int i = 0; i < 5; ++i) {
            if (token.compare(QLatin1String(kTokens[i]), Qt::CaseInsensitive) == 0)
                return values[i];
        }
        return QString();
    });
    // Each of the five known tokens (12 letters at least) is replaced once, at every occurrence the text
    // holds then: a bound that an endless expansion would break.
    double bound = double(typed.size());
    for (int i = 0; i < 5; ++i)
        bound += std::floor(bound / 12) * double(longestValue);
    FUZZ_CHECK(double(options.size()) <= bound, "grew to %lld", static_cast<long long>(options.size()));
    if (!typed.contains(QLatin1Char('{')))
        FUZZ_CHECK(options == typed, "a template without braces changed");

    // The same template split first and expanded per argument: tokens asked once for the whole template,
    // no argument empty, a value that holds no brace behind its first letter whole within one argument, and
    // the line shown to the user splitting back into the same words.
    asked.clear();
    const ProgrammerCommand command = programmerCommand(values[1], typed, [&](const QString& token) {
        FUZZ_CHECK(++asked[token.toUpper()] == 1, "token asked twice over the arguments: %s", qPrintable(token));
        for (int i = 0; i < 5; ++i) {
            if (token.compare(QLatin1String(kTokens[i]), Qt::CaseInsensitive) == 0)
                return values[i];
        }
        return QString();
    });
    FUZZ_CHECK(!command.program.startsWith(QLatin1Char(' ')) && !command.program.endsWith(QLatin1Char(' ')));
    for (const QString& arg : command.args)
        FUZZ_CHECK(!arg.isEmpty(), "an empty argument");
    const QStringList words = QProcess::splitCommand(typed.trimmed());
    if (!typed.contains(QLatin1Char('{')))
        FUZZ_CHECK(command.args == words, "a template without braces split otherwise than a command line");
    const QString value = values[1];
    if (words == QStringList{QStringLiteral("{FileNameWinPath}")} && !value.isEmpty() &&
        !value.mid(1).contains(QLatin1Char('{')))
        FUZZ_CHECK(command.args == QStringList{value}, "a value split over arguments");
    if (!command.program.isEmpty())
        FUZZ_CHECK(QProcess::splitCommand(commandLineText(command)) == QStringList{command.program} + command.args,
                   "the shown line splits otherwise");
    (void)hexFileName(values[1]);
    (void)programmerDirectory(values[1]);
    return 0;
}
