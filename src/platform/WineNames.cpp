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

namespace {

// Letters and digits in upper case: what a name and its DOS alias have in common, before the alias's "~".
QString aliasLetters(QStringView s) {
    QString out;
    for (QChar c : s)
        if (c.isLetterOrNumber())
            out += c.toUpper();
    return out;
}

// Whether name could bear the alias: its letters start with the alias's before "~", its extension's with
// the alias's extension.
bool couldBearAlias(const QString& name, const QString& alias) {
    const qsizetype tilde = alias.indexOf(QLatin1Char('~'));
    const qsizetype aliasDot = alias.lastIndexOf(QLatin1Char('.'));
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    const QString stem = aliasLetters(QStringView(alias).first(tilde));
    const QString ext = aliasDot > tilde ? aliasLetters(QStringView(alias).sliced(aliasDot + 1)) : QString();
    const QStringView nameStem = dot > 0 ? QStringView(name).first(dot) : QStringView(name);
    const QStringView nameExt = dot > 0 ? QStringView(name).sliced(dot + 1) : QStringView();
    return !stem.isEmpty() && aliasLetters(nameStem).startsWith(stem) &&
           (ext.isEmpty() ? nameExt.isEmpty() : aliasLetters(nameExt).startsWith(ext));
}

// The name in dir that part stands for; empty when none does.
QString partIn(const QString& dir, const QString& part,
               const std::function<QStringList(const QStringList&)>& shortForms) {
    const QString at = dir.endsWith(QLatin1Char('/')) ? dir : dir + QLatin1Char('/');
    if (QFileInfo::exists(at + part))
        return part;
    const QStringList names =
        QDir(dir).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& n : names)
        if (n.compare(part, Qt::CaseInsensitive) == 0)
            return n;
    if (!part.contains(QLatin1Char('~')))
        return {};
    QStringList candidates;
    for (const QString& n : names)
        if (couldBearAlias(n, part))
            candidates << n;
    if (candidates.size() <= 1)
        return candidates.value(0);
    QStringList paths;
    for (const QString& n : candidates)
        paths << at + n;
    const QStringList forms = shortForms(paths);
    for (qsizetype i = 0; i < candidates.size(); ++i) {
        const QString form = forms.value(i);
        if (form.mid(form.lastIndexOf(QLatin1Char('\\')) + 1).compare(part, Qt::CaseInsensitive) == 0)
            return candidates[i];
    }
    return {};
}

}  // namespace

QString posixPathOfWindows(const QString& path, const QString& directory, const QString& prefix,
                           const std::function<QStringList(const QStringList&)>& shortForms) {
    QString at;
    QStringView rest(path);
    if (path.size() >= 2 && path[1] == QLatin1Char(':') && path[0].isLetter() && path[0].unicode() < 128) {
        at = QFileInfo(prefix + QStringLiteral("/dosdevices/") + path[0].toLower() + QLatin1Char(':'))
                 .canonicalFilePath();
        if (at.isEmpty())
            return path;
        rest = rest.sliced(2);
    } else if (path.startsWith(QLatin1Char('/')) || path.startsWith(QLatin1Char('\\'))) {
        at = QStringLiteral("/");  // the root of the drive the compile runs on: Z:, the system's root
    } else {
        at = directory;
    }
    static const QRegularExpression separators(QStringLiteral("[\\\\/]+"));
    const QStringList parts = rest.toString().split(separators, Qt::SkipEmptyParts);
    for (qsizetype i = 0; i < parts.size(); ++i) {
        const QString& part = parts[i];
        if (part == QLatin1String("."))
            continue;
        if (part == QLatin1String("..")) {
            at = QDir::cleanPath(at + QStringLiteral("/.."));
            continue;
        }
        const QString found = partIn(at, part, shortForms);
        if (found.isEmpty()) {
            at += QLatin1Char('/') + parts.mid(i).join(QLatin1Char('/'));
            break;
        }
        at += QLatin1Char('/') + found;
    }
    return QDir::cleanPath(at);
}
