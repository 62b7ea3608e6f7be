#include "compile/AsmTags.h"

#include <QFile>
#include <QStringDecoder>

#include <algorithm>

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

QString nameOf(QByteArrayView bytes) {
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString name = utf8.decode(bytes);
    return utf8.hasError() ? QString::fromLatin1(bytes) : name;
}

// "; FILE<tab>00012<tab>..." : the file and the line; the statement behind may be empty. The tags of
// one file name it thousands of times: a name like the last one shares its text.
bool readTag(QByteArrayView line, AsmTag& tag, QByteArrayView& lastName, QString& lastFile) {
    qsizetype i = 0;
    while (i < line.size() && (line[i] == ' ' || line[i] == '\t'))
        ++i;
    if (i >= line.size() || line[i] != ';')
        return false;
    ++i;
    while (i < line.size() && (line[i] == ' ' || line[i] == '\t'))
        ++i;
    const qsizetype tab = line.indexOf('\t', i);
    if (tab <= i)
        return false;
    qsizetype d = tab + 1;
    int n = 0;
    while (d < line.size() && isDigit(line[d]) && d - tab <= 9)
        n = n * 10 + (line[d++] - '0');
    if (d == tab + 1 || (d < line.size() && line[d] != '\t'))
        return false;
    const QByteArrayView name = line.sliced(i, tab - i);
    if (name != lastName) {
        lastName = name;
        lastFile = nameOf(name).trimmed();
    }
    tag.file = lastFile;
    tag.line = n;
    return !tag.file.isEmpty();
}

}  // namespace

std::vector<AsmTag> readAsmTags(QByteArrayView text) {
    std::vector<AsmTag> tags;
    QByteArrayView lastName;
    QString lastFile;
    int lineNumber = 1;
    for (qsizetype start = 0; start < text.size(); ++lineNumber) {
        qsizetype end = text.indexOf('\n', start);
        if (end < 0)
            end = text.size();
        QByteArrayView line = text.sliced(start, end - start);
        if (line.endsWith('\r'))
            line.chop(1);
        AsmTag tag;
        if (readTag(line, tag, lastName, lastFile)) {
            tag.asmLine = lineNumber;
            tags.push_back(std::move(tag));
        }
        start = end + 1;
    }
    return tags;
}

std::vector<AsmTag> asmTagsOfFile(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return readAsmTags(f.readAll());
}

const AsmTag* tagAbove(const std::vector<AsmTag>& tags, int asmLine) {
    const auto after =
        std::upper_bound(tags.begin(), tags.end(), asmLine, [](int l, const AsmTag& t) { return l < t.asmLine; });
    return after == tags.begin() ? nullptr : &*(after - 1);
}
