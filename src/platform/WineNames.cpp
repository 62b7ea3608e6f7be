#include "platform/WineNames.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sys/stat.h>

namespace {

// Characters that may stand in a DOS name besides letters, digits and "-"; quotes around a name are no part of it.
const QString kNameChars = QStringLiteral("\\w~$#%&@^{}");

QString upToDot(const QString& name, bool first) {
    const qsizetype dot = first ? name.indexOf(QLatin1Char('.')) : name.lastIndexOf(QLatin1Char('.'));
    return dot < 0 ? name : name.left(dot);
}

// The extension of a file named after the alias, in lower case; empty for any other file.
QString aliasOutputExtension(const QString& fileName, const QString& alias) {
    const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
    if (dot < 0 || fileName.left(dot).compare(alias, Qt::CaseInsensitive) != 0)
        return {};
    const QString ext = fileName.mid(dot + 1).toLower();
    return compilerOutputExtensions().contains(ext) ? ext : QString();
}

QStringList filesIn(const QString& dir) { return QDir(dir).entryList(QDir::Files | QDir::Hidden | QDir::System); }

// A run of a path's own characters behind a DOS directory: its backslashes become slashes.
const QRegularExpression& pathRest() {
    static const QRegularExpression rest(QStringLiteral("[^\\s\"'<>|(),;]*"));
    return rest;
}

}  // namespace

std::optional<FileStamp> fileStamp(const QString& path) {
    struct stat st {};
    if (::lstat(QFile::encodeName(path).constData(), &st) != 0)
        return std::nullopt;
    return FileStamp{quint64(st.st_ino), qint64(st.st_size),
                     qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec};
}

QStringList compilerOutputExtensions() {
    return {QStringLiteral("hex"), QStringLiteral("asm"), QStringLiteral("lst"),
            QStringLiteral("mac"), QStringLiteral("cod"), QStringLiteral("err")};
}

AliasOutputs noteAliasOutputs(const QString& document, const QString& dosDocument) {
    const QFileInfo doc(document);
    AliasOutputs noted;
    noted.directory = doc.absolutePath();
    noted.name = upToDot(doc.fileName(), true);
    noted.compilerWouldUseName = noted.name == upToDot(doc.fileName(), false);
    const QString dosName = dosDocument.mid(dosDocument.lastIndexOf(QLatin1Char('\\')) + 1);
    // A name that is its own DOS form (blink.pbp) has its outputs named right already.
    if (dosName.isEmpty() || dosName == doc.fileName())
        return noted;
    noted.alias = upToDot(dosName, false);
    for (const QString& f : filesIn(noted.directory))
        if (!aliasOutputExtension(f, noted.alias).isEmpty())
            if (const auto stamp = fileStamp(noted.directory + QLatin1Char('/') + f))
                noted.before.insert(f, *stamp);
    return noted;
}

LongNames giveLongNames(const AliasOutputs& noted, LongNamedOutputs& ours) {
    LongNames result;
    if (noted.alias.isEmpty())
        return result;
    for (const QString& f : filesIn(noted.directory)) {
        const QString ext = aliasOutputExtension(f, noted.alias);
        if (ext.isEmpty())
            continue;
        const QString from = noted.directory + QLatin1Char('/') + f;
        const auto now = fileStamp(from);
        if (!now || noted.before.value(f) == *now)
            continue;  // not written by this compile: someone else's, or an earlier compile's
        const QString name = noted.name + QLatin1Char('.') + ext;
        const QString to = noted.directory + QLatin1Char('/') + name;
        if (const auto there = fileStamp(to)) {
            const bool output = !QFileInfo(to).isDir() &&
                                (noted.compilerWouldUseName || (ours.contains(to) && ours.value(to) == *there));
            if (!output) {
                result.kept << f + QStringLiteral(" keeps its name: ") + name +
                                   QStringLiteral(" is there and is not this compiler's output.");
                continue;
            }
        }
        // rename() replaces the old file in one step, so the name never points at nothing or half a file.
        if (std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0) {
            result.kept << f + QStringLiteral(" keeps its name: ") + QString::fromLocal8Bit(std::strerror(errno));
            continue;
        }
        ours.insert(to, fileStamp(to).value_or(FileStamp{}));
        result.renamed.push_back({f, name});
    }
    return result;
}

QString withUserNames(QString text, const QList<std::pair<QString, QString>>& paths,
                      const QList<std::pair<QString, QString>>& names) {
    // The longest first, so that a directory never takes the place of the path of a file in it.
    auto longestFirst = [](QList<std::pair<QString, QString>> forms) {
        std::stable_sort(forms.begin(), forms.end(),
                         [](const auto& a, const auto& b) { return a.first.size() > b.first.size(); });
        return forms;
    };
    for (const auto& [dos, user] : longestFirst(paths)) {
        if (dos.isEmpty())
            continue;
        const QRegularExpression at(QRegularExpression::escape(dos) + QStringLiteral("(\\\\|(?=[\\s\"'<>|(),;]|$))"),
                                    QRegularExpression::CaseInsensitiveOption);
        QString out;
        qsizetype from = 0;
        for (auto m = at.match(text, from); m.hasMatch(); m = at.match(text, from)) {
            out += text.mid(from, m.capturedStart() - from) + user;
            from = m.capturedEnd();
            if (!m.captured(1).isEmpty()) {
                const auto rest = pathRest().match(text, from, QRegularExpression::NormalMatch,
                                                   QRegularExpression::AnchorAtOffsetMatchOption);
                out += QLatin1Char('/') + rest.captured().replace(QLatin1Char('\\'), QLatin1Char('/'));
                from = rest.capturedEnd();
            }
        }
        text = out + text.mid(from);
    }
    for (const auto& [dos, user] : longestFirst(names)) {
        if (dos.isEmpty())
            continue;
        const QRegularExpression at(QStringLiteral("(?<![%1.-])").arg(kNameChars) + QRegularExpression::escape(dos) +
                                        QStringLiteral("(?![%1-])").arg(kNameChars),
                                    QRegularExpression::CaseInsensitiveOption);
        text.replace(at, QString(user).replace(QLatin1Char('\\'), QStringLiteral("\\\\")));
    }
    return text;
}
