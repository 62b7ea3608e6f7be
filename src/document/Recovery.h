#pragma once
// Recovery files: the text of a modified document, kept on disk while it is unsaved, so that a crash,
// a killed process or a power cut loses nothing typed. Each file belongs to the running instance whose
// process id starts its name; files of an instance that is gone are offered at the next start.

#include <QByteArrayView>
#include <QString>
#include <QtGlobal>
#include <functional>
#include <optional>
#include <vector>

// What one recovery file holds.
struct RecoveryRecord {
    QString pathName;  // the document's PathName: where Save writes
    qint64 pid = 0;    // the process that wrote the file
    QString text;
    bool operator==(const RecoveryRecord&) const = default;
};

// A document to open again, as the user left it.
struct RecoveredDocument {
    QString pathName;
    QString text;
    // The recovery file, now this process's own: the document's watcher takes it on.
    QString recoveryFile;
};

// $XDG_STATE_HOME/tarnlet/recovery, or ~/.local/state/tarnlet/recovery without that variable.
QString recoveryDirectory();

// "<pid>-<32 hex digits>.recovery": new and unique for each call.
QString newRecoveryFileName(qint64 pid);
// The owner's process id from a file name of that form; nullopt for any other name.
std::optional<qint64> recoveryFileOwner(const QString& fileName);

QByteArray encodeRecovery(const RecoveryRecord& r);
// nullopt for anything that isn't a whole recovery record.
std::optional<RecoveryRecord> decodeRecovery(const QByteArray& bytes);

// Writes the record atomically, making the directory (readable by its owner only) when needed; throws
// Failure with the system's text.
void writeRecoveryFile(const QString& path, const RecoveryRecord& r);
// The same record with the text's bytes written as they are given: a document's copy takes them from the
// control's own buffer, so that no second copy of a large text is ever made.
void writeRecoveryFile(const QString& path, const QString& pathName, qint64 pid, QByteArrayView utf8Text);
// nullopt when the file can't be read or isn't a recovery record.
std::optional<RecoveryRecord> readRecoveryFile(const QString& path);

// This process's id.
qint64 ownProcessId();
// The name the system gives this program's processes (on Linux the 15-character "comm").
QString ownProcessName();
// True when pid is a running process (not a zombie) of the program named processName. Where that can't
// be told, a running process counts: its files are left alone.
bool isRunningInstance(qint64 pid, const QString& processName);

// The recovery files in dir whose owner isn't running, oldest first.
QStringList staleRecoveryFiles(const QString& dir, const std::function<bool(qint64 pid)>& ownerRunning);
// Renames the file, in one step, to a new name of ownPid; gives that name, or nullopt when the file is
// gone (another instance took it first).
std::optional<QString> takeOverRecoveryFile(const QString& path, qint64 ownPid);

// The question after a crash, counting in words that fit the number.
QString recoveryQuestion(int count);

// Takes over the stale files of dir and asks once whether to recover them. Yes gives the documents, each
// with its file now this process's own; No deletes the files. Unreadable files are deleted unasked.
std::vector<RecoveredDocument> offerRecovery(const QString& dir, qint64 ownPid,
                                             const std::function<bool(qint64 pid)>& ownerRunning);
// The same for this process at start-up, in recoveryDirectory().
std::vector<RecoveredDocument> offerRecovery();
