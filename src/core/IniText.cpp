#include "core/IniText.h"

#include <QStringList>

namespace {

const QString kEscapedOpen = QStringLiteral("@Lines(");
const QChar kEscapedClose = QLatin1Char(')');

bool needsEscape(const QString& v) {
    return v.contains(QLatin1Char('\n')) || v.contains(QLatin1Char('\r')) ||
           (v.startsWith(kEscapedOpen) && v.endsWith(kEscapedClose));
}

QString escaped(const QString& v) {
    QString out = kEscapedOpen;
    for (const QChar c : v) {
        if (c == QLatin1Char('\\'))
            out += QLatin1String("\\\\");
        else if (c == QLatin1Char('\n'))
            out += QLatin1String("\\n");
        else if (c == QLatin1Char('\r'))
            out += QLatin1String("\\r");
        else
            out += c;
    }
    return out + kEscapedClose;
}

QString unescaped(const QString& v) {
    const QString body = v.mid(kEscapedOpen.size(), v.size() - kEscapedOpen.size() - 1);
    QString out;
    for (qsizetype i = 0; i < body.size(); ++i) {
        if (body[i] != QLatin1Char('\\') || i + 1 == body.size()) {
            out += body[i];
            continue;
        }
        const QChar n = body[++i];
        out += n == QLatin1Char('n') ? QChar(u'\n') : n == QLatin1Char('r') ? QChar(u'\r') : n;
    }
    return out;
}

}  // namespace

IniEntries parseIniText(const QByteArray& utf8) {
    IniEntries entries;
    QString text = QString::fromUtf8(utf8);
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    QString section = QStringLiteral("General");
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        const QString head = line.trimmed();
        if (head.isEmpty() || head.startsWith(QLatin1Char(';')) || head.startsWith(QLatin1Char('#')))
            continue;
        if (head.startsWith(QLatin1Char('[')) && head.endsWith(QLatin1Char(']'))) {
            section = head.mid(1, head.size() - 2).trimmed();
            continue;
        }
        const qsizetype eq = line.indexOf(QLatin1Char('='));
        if (eq < 0)
            continue;
        const QString key = line.left(eq).trimmed();
        // A "/" in a section's name would make its keys another section's when written back.
        if (key.isEmpty() || section.contains(QLatin1Char('/')))
            continue;
        QString value = line.mid(eq + 1);
        if (value.startsWith(kEscapedOpen) && value.endsWith(kEscapedClose))
            value = unescaped(value);
        entries.insert(section + QLatin1Char('/') + key, value);
    }
    return entries;
}

QByteArray iniText(const IniEntries& entries) {
    // Sections in the order of their first key; keys sorted inside, as the map gives them.
    QStringList sections;
    for (auto it = entries.cbegin(); it != entries.cend(); ++it) {
        const QString section = it.key().section(QLatin1Char('/'), 0, 0);
        if (!sections.contains(section))
            sections << section;
    }
    QString out;
    for (const QString& section : sections) {
        if (!out.isEmpty())
            out += QLatin1Char('\n');
        out += QLatin1Char('[') + section + QStringLiteral("]\n");
        for (auto it = entries.cbegin(); it != entries.cend(); ++it) {
            if (it.key().section(QLatin1Char('/'), 0, 0) != section)
                continue;
            const QString& v = it.value();
            out += it.key().section(QLatin1Char('/'), 1) + QLatin1Char('=') + (needsEscape(v) ? escaped(v) : v) +
                   QLatin1Char('\n');
        }
    }
    return out.toUtf8();
}
