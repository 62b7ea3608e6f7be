#include "document/Recovery.h"

#include "platform/Failure.h"
#include "platform/Prompts.h"
#include "core/Globals.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
#include <QUuid>
#include <algorithm>
#include <cerrno>
#include <cstdio>

#ifdef Q_OS_UNIX
#include <signal.h>
#include <sys/types.h>
#include <unistd.h>
#endif

namespace {

constexpr char kMagic[] = "tarnlet recovery 1\n";
const QLatin1StringView kSuffix(".recovery");

const QRegularExpression& fileNamePattern() {
    static const QRegularExpression re(QStringLiteral("^([0-9]{1,19})-[0-9a-f]{32}\\.recovery$"));
    return re;
}

// Reads "<label> <decimal>\n" at pos and moves pos past it.
std::optional<qint64> readField(const QByteArray& bytes, qsizetype& pos, QByteArrayView label) {
    if (!QByteArrayView(bytes).sliced(pos).startsWith(label))
        return std::nullopt;
    const qsizetype start = pos + label.size();
    if (start >= bytes.size() || bytes[start] != ' ')
        return std::nullopt;
    const qsizetype end = bytes.indexOf('\n', start + 1);
    if (end < 0 || end - start - 1 > 19)
        return std::nullopt;
    bool ok = false;
    const qint64 value = bytes.mid(start + 1, end - start - 1).toLongLong(&ok);
    // Plain digits only: no sign, no blanks, no leading zeros that a writer wouldn't give.
    if (!ok || value < 0 || QByteArray::number(value) != bytes.mid(start + 1, end - start - 1))
        return std::nullopt;
    pos = end + 1;
    return value;
}

// Reads "<label> <length>\n", that many bytes and a closing "\n".
std::optional<QByteArray> readBlock(const QByteArray& bytes, qsizetype& pos, QByteArrayView label) {
    const std::optional<qint64> length = readField(bytes, pos, label);
    if (!length || *length > bytes.size() - pos - 1 || bytes[pos + *length] != '\n')
        return std::nullopt;
    QByteArray block = bytes.mid(pos, *length);
    pos += *length + 1;
    return block;
}

void appendBlock(QByteArray& out, const char* label, const QByteArray& block) {
    out += label;
    out += ' ';
    out += QByteArray::number(block.size());
    out += '\n';
    out += block;
    out += '\n';
}

}  // namespace

QString recoveryDirectory() {
    QString base = qEnvironmentVariable("XDG_STATE_HOME");
    // A relative value is no base directory (the XDG rule).
    if (base.isEmpty() || QDir::isRelativePath(base))
        base = QDir::homePath() + QStringLiteral("/.local/state");
    return base + QStringLiteral("/tarnlet/recovery");
}

QString newRecoveryFileName(qint64 pid) {
    return QString::number(pid) + QLatin1Char('-') + QUuid::createUuid().toString(QUuid::Id128) + kSuffix;
}

std::optional<qint64> recoveryFileOwner(const QString& fileName) {
    const QRegularExpressionMatch m = fileNamePattern().match(fileName);
    if (!m.hasMatch())
        return std::nullopt;
    bool ok = false;
    const qint64 pid = m.captured(1).toLongLong(&ok);
    return ok ? std::optional(pid) : std::nullopt;
}

namespace {
// Everything before the text's own bytes; the record ends with those and a line break.
QByteArray recoveryHead(const QString& pathName, qint64 pid, qsizetype textSize) {
    QByteArray out = kMagic;
    out += "pid " + QByteArray::number(pid) + '\n';
    appendBlock(out, "path", pathName.toUtf8());
    out += "text " + QByteArray::number(textSize) + '\n';
    return out;
}
}  // namespace

QByteArray encodeRecovery(const RecoveryRecord& r) {
    const QByteArray text = r.text.toUtf8();
    return recoveryHead(r.pathName, r.pid, text.size()) + text + '\n';
}

std::optional<RecoveryRecord> decodeRecovery(const QByteArray& bytes) {
    if (!bytes.startsWith(kMagic))
        return std::nullopt;
    qsizetype pos = qsizetype(sizeof kMagic - 1);
    const std::optional<qint64> pid = readField(bytes, pos, "pid");
    if (!pid)
        return std::nullopt;
    const std::optional<QByteArray> path = readBlock(bytes, pos, "path");
    if (!path || path->isEmpty())
        return std::nullopt;
    const std::optional<QByteArray> text = readBlock(bytes, pos, "text");
    if (!text || pos != bytes.size())
        return std::nullopt;
    return RecoveryRecord{QString::fromUtf8(*path), *pid, QString::fromUtf8(*text)};
}

void writeRecoveryFile(const QString& path, const RecoveryRecord& r) {
    writeRecoveryFile(path, r.pathName, r.pid, r.text.toUtf8());
}

void writeRecoveryFile(const QString& path, const QString& pathName, qint64 pid, QByteArrayView utf8Text) {
    const QString dir = QFileInfo(path).absolutePath();
    if (!QFileInfo::exists(dir)) {
        errno = 0;
        if (!QDir().mkpath(dir))
            throw osFailure(errno != 0 ? errno : EACCES, dir);
        // The texts of unsaved documents are nobody else's business.
        QFile::setPermissions(dir, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    }
    const QByteArray head = recoveryHead(pathName, pid, utf8Text.size());
    // Unbuffered, so that a write that fails on a full disk is seen before commit renames a cut file.
    QSaveFile file(path);
    errno = 0;
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        throw osFailure(errno != 0 ? errno : EACCES, path);
    errno = 0;
    const auto written = [&](QByteArrayView bytes) { return file.write(bytes.data(), bytes.size()) == bytes.size(); };
    if (!written(head) || !written(utf8Text) || !written("\n")) {
        const int err = errno != 0 ? errno : ENOSPC;
        file.cancelWriting();
        throw osFailure(err, path);
    }
    errno = 0;
    if (!file.commit())
        throw osFailure(errno != 0 ? errno : EIO, path);
}

std::optional<RecoveryRecord> readRecoveryFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return decodeRecovery(file.readAll());
}

qint64 ownProcessId() { return QCoreApplication::applicationPid(); }

#ifdef Q_OS_LINUX
namespace {
// From /proc/<pid>/stat, "pid (comm) state ...": the name and the state letter. The name may hold
// blanks and parentheses, so it ends at the last ")".
std::optional<std::pair<QString, char>> procStat(const QString& pid) {
    QFile f(QStringLiteral("/proc/") + pid + QStringLiteral("/stat"));
    if (!f.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray s = f.read(4096);
    const qsizetype open = s.indexOf('('), close = s.lastIndexOf(')');
    if (open < 0 || close < open || close + 2 >= s.size())
        return std::nullopt;
    return std::pair{QString::fromUtf8(s.mid(open + 1, close - open - 1)), s[close + 2]};
}
}  // namespace
#endif

QString ownProcessName() {
#ifdef Q_OS_LINUX
    if (const auto stat = procStat(QStringLiteral("self")))
        return stat->first;
#endif
    return QFileInfo(QCoreApplication::applicationFilePath()).fileName().left(15);
}

bool isRunningInstance(qint64 pid, const QString& processName) {
    if (pid <= 0)
        return false;
    if (pid == ownProcessId())
        return true;
#ifdef Q_OS_UNIX
    if (::kill(pid_t(pid), 0) != 0 && errno != EPERM)
        return false;
#endif
#ifdef Q_OS_LINUX
    const auto stat = procStat(QString::number(pid));
    if (!stat)
        return false;  // gone since kill() looked
    // A killed instance whose parent hasn't reaped it yet writes nothing more.
    if (stat->second == 'Z' || stat->second == 'X')
        return false;
    // A reused id: another program's process.
    return stat->first == processName.left(15);
#else
    Q_UNUSED(processName);
    return true;
#endif
}

QStringList staleRecoveryFiles(const QString& dir, const std::function<bool(qint64)>& ownerRunning) {
    QFileInfoList entries = QDir(dir).entryInfoList({QStringLiteral("*") + kSuffix}, QDir::Files);
    std::stable_sort(entries.begin(), entries.end(), [](const QFileInfo& a, const QFileInfo& b) {
        return a.lastModified() < b.lastModified();
    });
    QStringList stale;
    for (const QFileInfo& e : entries) {
        const std::optional<qint64> owner = recoveryFileOwner(e.fileName());
        if (owner && !ownerRunning(*owner))
            stale << e.absoluteFilePath();
    }
    return stale;
}

std::optional<QString> takeOverRecoveryFile(const QString& path, qint64 ownPid) {
    const QString target = QFileInfo(path).absolutePath() + QLatin1Char('/') + newRecoveryFileName(ownPid);
    // One rename: of two instances that try at once, only one finds the old name.
    if (std::rename(QFile::encodeName(path).constData(), QFile::encodeName(target).constData()) != 0)
        return std::nullopt;
    return target;
}

QString recoveryQuestion(int count) {
    return QStringLiteral("Quillbay Lite did not close normally. Recover %1 unsaved %2?")
        .arg(count)
        .arg(count == 1 ? QStringLiteral("document") : QStringLiteral("documents"));
}

std::vector<RecoveredDocument> offerRecovery(const QString& dir, qint64 ownPid,
                                             const std::function<bool(qint64)>& ownerRunning) {
    Prompts* prompts = globals().prompts;
    if (!prompts)
        return {};
    std::vector<RecoveredDocument> found;
    for (const QString& stale : staleRecoveryFiles(dir, ownerRunning)) {
        const std::optional<QString> mine = takeOverRecoveryFile(stale, ownPid);
        if (!mine)
            continue;
        const std::optional<RecoveryRecord> r = readRecoveryFile(*mine);
        if (!r) {
            QFile::remove(*mine);
            continue;
        }
        found.push_back({r->pathName, r->text, *mine});
    }
    if (found.empty())
        return {};
    const Answer a = prompts->message(recoveryQuestion(int(found.size())), QString(), Icon::Question, Buttons::YesNo);
    if (a == Answer::Yes)
        return found;
    for (const RecoveredDocument& d : found)
        QFile::remove(d.recoveryFile);
    return {};
}

std::vector<RecoveredDocument> offerRecovery() {
    const QString name = ownProcessName();
    return offerRecovery(recoveryDirectory(), ownProcessId(),
                         [&](qint64 pid) { return isRunningInstance(pid, name); });
}
