// An .ASM as any bytes: its tags stand on lines in order, each a comment whose file and line are the
// tag's, and the tag above a line is the last tag at or before it, as a walk through all of them finds.
#include "FuzzWorld.h"
#include "compile/AsmTags.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes = fuzzBytes(data, size);
    const std::vector<AsmTag> tags = readAsmTags(bytes);
    const QList<QByteArray> lines = bytes.split('\n');
    int last = 0;
    for (const AsmTag& t : tags) {
        FUZZ_CHECK(t.asmLine > last && t.asmLine <= lines.size(), "tag at line %d", t.asmLine);
        last = t.asmLine;
        FUZZ_CHECK(t.line >= 0 && !t.file.isEmpty() && t.file == t.file.trimmed() && !t.file.contains(QLatin1Char('\t')));
        QByteArray line = lines[t.asmLine - 1];
        while (line.startsWith(' ') || line.startsWith('\t'))
            line.remove(0, 1);
        FUZZ_CHECK(line.startsWith(';'));
        const QList<QByteArray> fields = line.mid(1).split('\t');
        qsizetype f = 0;
        while (f < fields.size() && fields[f].trimmed().isEmpty())
            ++f;  // the blanks between ";" and the name
        FUZZ_CHECK(f + 1 < fields.size());
        const QString name = QString::fromUtf8(fields[f]).trimmed();
        FUZZ_CHECK(name == t.file || QString::fromLatin1(fields[f]).trimmed() == t.file, "%s", qPrintable(t.file));
        FUZZ_CHECK(fields[f + 1].chopped(fields[f + 1].endsWith('\r') ? 1 : 0).toInt() == t.line, "line %d", t.line);
    }
    // Every line that a tag is on, and the lines around them.
    for (int line = 0; line <= int(lines.size()) + 1; ++line) {
        const AsmTag* walked = nullptr;
        for (const AsmTag& t : tags)
            if (t.asmLine <= line)
                walked = &t;
        FUZZ_CHECK(tagAbove(tags, line) == walked, "line %d", line);
    }
    return 0;
}
