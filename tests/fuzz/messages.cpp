// A compile's output as any text: the messages read from the whole text are those read from each of its
// lines, counted as the reference split counts them; each takes its file and text from its own line, the
// same with blanks around it; and placing them at tagged lines keeps the assembler's own place.
#include "FuzzWorld.h"
#include "compile/CompileMessages.h"

#include <QRegularExpression>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes = fuzzBytes(data, size);
    const QString output = QString::fromUtf8(bytes);
    const std::vector<OutputMessage> messages = parseOutputMessages(output);

    static const QRegularExpression lineEnd(QStringLiteral("\r\n|\r|\n"));
    const QStringList lines = output.split(lineEnd);
    size_t next = 0;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const std::optional<OutputMessage> one = parseMessageLine(lines[i]);
        if (!one)
            continue;
        FUZZ_CHECK(next < messages.size(), "line %lld is a message the whole text missed", qlonglong(i));
        const OutputMessage& m = messages[next++];
        FUZZ_CHECK(m.message.outputLine == i, "line %lld counted as %d", qlonglong(i), m.message.outputLine);
        OutputMessage same = *one;
        same.message.outputLine = int(i);
        FUZZ_CHECK(m == same);
        FUZZ_CHECK(parseMessageLine(QStringLiteral(" \t") + lines[i] + QStringLiteral("\t ")) == one);

        const CompileMessage& c = m.message;
        FUZZ_CHECK(c.line >= 0 && c.asmFile.isEmpty() && c.asmLine == 0);
        FUZZ_CHECK(c.severity != CompileMessage::Severity::Note || m.fromAssembler);
        FUZZ_CHECK(c.file == c.file.trimmed() && c.text == c.text.trimmed(), "[%s] [%s]", qPrintable(c.file),
                   qPrintable(c.text));
        FUZZ_CHECK(lines[i].contains(c.file), "file %s", qPrintable(c.file));
        const QString said = m.fromAssembler && c.text.startsWith(QLatin1Char('['))
                                 ? c.text.mid(c.text.indexOf(QLatin1Char(']')) + 1).trimmed()
                                 : c.text;
        FUZZ_CHECK(lines[i].contains(said), "text %s", qPrintable(c.text));
    }
    FUZZ_CHECK(next == messages.size(), "the whole text found a message no line holds");

    // The same bytes as the .ASM every assembler message names.
    const std::vector<AsmTag> tags = readAsmTags(bytes);
    const std::vector<CompileMessage> placed = placeMessages(
        messages, [](const QString& named) { return QStringLiteral("/here/") + named; },
        [&](const QString&) { return tags; });
    FUZZ_CHECK(placed.size() == messages.size());
    for (size_t i = 0; i < placed.size(); ++i) {
        const CompileMessage& p = placed[i];
        const CompileMessage& m = messages[i].message;
        if (p.asmFile.isEmpty()) {
            FUZZ_CHECK(p.line == m.line && p.file == (m.file.isEmpty() ? QString() : QStringLiteral("/here/") + m.file));
            continue;
        }
        const AsmTag* tag = tagAbove(tags, m.line);
        FUZZ_CHECK(messages[i].fromAssembler && tag && p.asmFile == QStringLiteral("/here/") + m.file &&
                   p.asmLine == m.line && p.file == QStringLiteral("/here/") + tag->file && p.line == tag->line);
        FUZZ_CHECK(p.text == m.text && p.severity == m.severity && p.outputLine == m.outputLine);
    }
    return 0;
}
