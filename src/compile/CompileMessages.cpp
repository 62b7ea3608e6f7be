#include "compile/CompileMessages.h"

#include <QHash>

namespace {

using Severity = CompileMessage::Severity;

// Read by hand rather than by regular expressions: every compile's output goes through here, and most of
// its lines are no message, which the first character or two tell.

bool isBlank(QChar c) { return c == QLatin1Char(' ') || c == QLatin1Char('\t'); }
bool isDigit(QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }

qsizetype skipBlanks(QStringView s, qsizetype i) {
    while (i < s.size() && isBlank(s[i]))
        ++i;
    return i;
}

// The number at s[i], moving i past it; none when there is no digit or more than nine (no line has them).
std::optional<int> number(QStringView s, qsizetype& i) {
    qsizetype j = i;
    int n = 0;
    while (j < s.size() && isDigit(s[j])) {
        if (j - i == 9)
            return std::nullopt;
        n = n * 10 + (s[j].unicode() - '0');
        ++j;
    }
    if (j == i)
        return std::nullopt;
    i = j;
    return n;
}

bool startsWithAt(QStringView s, qsizetype i, QLatin1StringView word) { return s.sliced(i).startsWith(word); }

struct Word {
    QLatin1StringView text;
    Severity severity;
};

// The word at s[i] among words, moving i past it.
std::optional<Severity> wordAt(QStringView s, qsizetype& i, std::initializer_list<Word> words) {
    if (i >= s.size())
        return std::nullopt;
    for (const Word& w : words)
        if (s[i] == QLatin1Char(w.text.front()) && startsWithAt(s, i, w.text)) {
            i += w.text.size();
            return w.severity;
        }
    return std::nullopt;
}

constexpr Word kError{QLatin1StringView("Error"), Severity::Error};
constexpr Word kWarning{QLatin1StringView("Warning"), Severity::Warning};
constexpr Word kMessage{QLatin1StringView("Message"), Severity::Note};

// "[113]" at s[i]: the number, moving i past the bracket.
std::optional<int> codeAt(QStringView s, qsizetype& i) {
    if (i >= s.size() || s[i] != QLatin1Char('['))
        return std::nullopt;
    qsizetype j = i + 1;
    const auto code = number(s, j);
    if (!code || j >= s.size() || s[j] != QLatin1Char(']'))
        return std::nullopt;
    i = j + 1;
    return code;
}

QString withCode(int code, QStringView text) {
    text = text.trimmed();
    QString out;
    out.reserve(text.size() + 13);
    out += QLatin1Char('[');
    out += QString::number(code);
    out += QLatin1Char(']');
    if (!text.isEmpty()) {
        out += QLatin1Char(' ');
        out += text;
    }
    return out;
}

// "FILE 47 :" at the start of rest, the file holding blanks or not: the file, the line and the text behind.
struct Place {
    QStringView file;
    int line = 0;
    QStringView text;
};
std::optional<Place> placeAt(QStringView rest) {
    for (qsizetype p = 1; p < rest.size(); ++p) {
        if (!isBlank(rest[p]) || isBlank(rest[p - 1]))
            continue;
        qsizetype i = skipBlanks(rest, p);
        const auto line = number(rest, i);
        if (!line)
            continue;
        i = skipBlanks(rest, i);
        if (i < rest.size() && rest[i] == QLatin1Char(':'))
            return Place{rest.first(p), *line, rest.sliced(i + 1)};
    }
    return std::nullopt;
}

// "(blink.pbp)" at the end of a BASIC compiler's text names the file: a name with an extension that
// starts with a letter, so that "(PORTB.0)" stays text.
std::optional<qsizetype> fileInBracketsAt(QStringView text) {
    if (!text.endsWith(QLatin1Char(')')))
        return std::nullopt;
    const qsizetype open = text.lastIndexOf(QLatin1Char('('));
    if (open < 0 || (open > 0 && !isBlank(text[open - 1])))
        return std::nullopt;
    const QStringView name = text.sliced(open + 1).chopped(1).trimmed();
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    const QStringView ext = dot > 0 ? name.sliced(dot + 1) : QStringView();
    if (ext.isEmpty() || ext.size() > 4 || !ext[0].isLetter() || name.contains(QLatin1Char(')')))
        return std::nullopt;
    for (QChar c : ext)
        if (!c.isLetterOrNumber())
            return std::nullopt;
    return open;
}

OutputMessage basicMessage(Severity severity, int line, QStringView text) {
    OutputMessage m;
    m.message.severity = severity;
    m.message.line = line;
    text = text.trimmed();
    if (const auto open = fileInBracketsAt(text)) {
        m.message.file = text.sliced(*open + 1).chopped(1).trimmed().toString();
        text = text.first(*open).trimmed();
    }
    m.message.text = text.toString();
    return m;
}

OutputMessage assemblerMessage(Severity severity, QStringView file, int line, QString text) {
    OutputMessage m;
    m.fromAssembler = true;
    m.message.severity = severity;
    m.message.file = file.trimmed().toString();
    m.message.line = line;
    m.message.text = std::move(text);
    return m;
}

// gpasm: "blink.asm:47:Error[113]   Symbol ...", the file holding colons or not (C:\...).
std::optional<OutputMessage> gpasmLine(QStringView s) {
    for (qsizetype c = s.indexOf(QLatin1Char(':'), 1); c >= 0; c = s.indexOf(QLatin1Char(':'), c + 1)) {
        qsizetype i = c + 1;
        const auto line = number(s, i);
        if (!line || i >= s.size() || s[i] != QLatin1Char(':'))
            continue;
        ++i;
        const auto severity = wordAt(s, i, {kError, kWarning, kMessage});
        if (!severity)
            continue;
        i = skipBlanks(s, i);
        const auto code = codeAt(s, i);
        if (!code)
            continue;
        return assemblerMessage(*severity, s.first(c), *line, withCode(*code, s.sliced(i)));
    }
    return std::nullopt;
}

// The lines that start with their severity: MPASM, the BASIC compilers and the PM assembler.
std::optional<OutputMessage> severityFirstLine(QStringView s) {
    qsizetype i = 0;
    const auto severity = wordAt(s, i,
                                 {kError, kWarning, kMessage, {QLatin1StringView("ERROR"), Severity::Error},
                                  {QLatin1StringView("WARNING"), Severity::Warning},
                                  {QLatin1StringView("Fatal"), Severity::Error},
                                  {QLatin1StringView("FATAL"), Severity::Error}});
    if (!severity)
        return std::nullopt;
    const bool fatal = s[0] == QLatin1Char('F');
    const bool note = *severity == Severity::Note;

    // MPASM: "Error[113] C:\PBP\BLINK.ASM 47 : Symbol ...", the place missing in a message about no line.
    qsizetype c = skipBlanks(s, i);
    if (const auto code = codeAt(s, c)) {
        if (s[0].isLower() || !s[1].isLower())
            return std::nullopt;  // ERROR[1] is no assembler's
        const QStringView rest = s.sliced(c).trimmed();
        if (const auto place = placeAt(rest))
            return assemblerMessage(*severity, place->file, place->line, withCode(*code, place->text));
        QStringView text = rest;
        if (text.startsWith(QLatin1Char(':')))
            text = text.sliced(1);
        return assemblerMessage(*severity, {}, 0, withCode(*code, text));
    }
    if (note)
        return std::nullopt;
    if (i < s.size() && !isBlank(s[i]) && s[i] != QLatin1Char(':'))
        return std::nullopt;  // "Errors", "WARNINGS"
    if (fatal) {
        const qsizetype e = skipBlanks(s, i);
        qsizetype after = e;
        if (wordAt(s, after, {{QLatin1StringView("ERROR"), Severity::Error},
                              {QLatin1StringView("Error"), Severity::Error},
                              {QLatin1StringView("error"), Severity::Error}}) &&
            (after == s.size() || isBlank(s[after]) || s[after] == QLatin1Char(':')))
            i = after;
    }

    // The BASIC compilers: " Line 12:" or ":" behind the word.
    qsizetype l = skipBlanks(s, i);
    if (l > i && wordAt(s, l, {{QLatin1StringView("Line"), Severity::Error},
                               {QLatin1StringView("LINE"), Severity::Error},
                               {QLatin1StringView("line"), Severity::Error}})) {
        qsizetype n = skipBlanks(s, l);
        if (n > l)
            if (const auto line = number(s, n)) {
                n = skipBlanks(s, n);
                if (n < s.size() && s[n] == QLatin1Char(':'))
                    return basicMessage(*severity, *line, s.sliced(n + 1));
            }
    }
    if (const qsizetype colon = skipBlanks(s, i); colon < s.size() && s[colon] == QLatin1Char(':'))
        return basicMessage(*severity, 0, s.sliced(colon + 1));

    // The PM assembler: "Error BLINK.ASM 47 : [202] illegal character".
    if (i < s.size() && isBlank(s[i]))
        if (const auto place = placeAt(s.sliced(skipBlanks(s, i))))
            return assemblerMessage(*severity, place->file, place->line, place->text.trimmed().toString());
    // Whatever a fatal error says.
    if (fatal && i < s.size())
        return basicMessage(*severity, 0, s.sliced(i));
    return std::nullopt;
}

}  // namespace

QString messageCountText(const std::vector<CompileMessage>& messages) {
    int errors = 0, warnings = 0;
    for (const CompileMessage& m : messages) {
        errors += m.severity == Severity::Error;
        warnings += m.severity == Severity::Warning;
    }
    auto counted = [](int n, const char* one, const char* many) {
        return QString::number(n) + QLatin1Char(' ') + QLatin1String(n == 1 ? one : many);
    };
    QStringList parts;
    if (errors)
        parts << counted(errors, "error", "errors");
    if (warnings)
        parts << counted(warnings, "warning", "warnings");
    return parts.isEmpty() ? QStringLiteral("no errors") : parts.join(QStringLiteral(", "));
}

std::optional<OutputMessage> parseMessageLine(QStringView line) {
    const QStringView s = line.trimmed();
    if (s.size() < 2)
        return std::nullopt;
    // Every severity word starts with one of these.
    if (const char16_t c = s[0].unicode(); c == u'E' || c == u'W' || c == u'M' || c == u'F')
        if (auto m = severityFirstLine(s))
            return m;
    return gpasmLine(s);
}

std::vector<OutputMessage> parseOutputMessages(QStringView output) {
    std::vector<OutputMessage> messages;
    int lineNumber = 0;
    for (qsizetype start = 0; start < output.size();) {
        qsizetype end = start;
        for (const QChar* c = output.data() + start; end < output.size() && *c != u'\n' && *c != u'\r'; ++c)
            ++end;
        if (auto m = parseMessageLine(output.sliced(start, end - start))) {
            m->message.outputLine = lineNumber;
            messages.push_back(std::move(*m));
        }
        if (end + 1 < output.size() && output[end] == QLatin1Char('\r') && output[end + 1] == QLatin1Char('\n'))
            ++end;
        start = end + 1;
        ++lineNumber;
    }
    return messages;
}

std::vector<CompileMessage> placeMessages(const std::vector<OutputMessage>& parsed,
                                          const std::function<QString(const QString&)>& localFile,
                                          const std::function<std::vector<AsmTag>(const QString&)>& tagsOf) {
    // Many messages name the same few files: each is looked up and read once.
    QHash<QString, QString> local;
    auto here = [&](const QString& named) -> QString {
        if (named.isEmpty())
            return {};
        auto at = local.constFind(named);
        if (at == local.cend())
            at = local.insert(named, localFile(named));
        return *at;
    };
    QHash<QString, std::vector<AsmTag>> tags;
    std::vector<CompileMessage> placed;
    placed.reserve(parsed.size());
    for (const OutputMessage& p : parsed) {
        CompileMessage m = p.message;
        m.file = here(m.file);
        if (p.fromAssembler && !m.file.isEmpty() && m.line > 0) {
            auto at = tags.constFind(m.file);
            if (at == tags.cend())
                at = tags.insert(m.file, tagsOf(m.file));
            if (const AsmTag* tag = tagAbove(*at, m.line)) {
                m.asmFile = m.file;
                m.asmLine = m.line;
                m.file = here(tag->file);
                m.line = tag->line;
            }
        }
        placed.push_back(std::move(m));
    }
    return placed;
}
