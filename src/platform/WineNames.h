#pragma once
// A Windows compiler run through wine gets the document's short DOS form (Z:\HOME\ANN\LED_~KNS\BLIN~4HD.PBP),
// so it names its outputs after the alias (BLIN~4HD.HEX) and prints aliases in its text. These give the
// outputs the document's own name, where Launch Programmer looks for the hex file, and turn the aliases in
// the text back into the user's names.

#include <QHash>
#include <functional>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>
#include <utility>

// Tells whether a file was written since: the same file, size and modification time to the nanosecond.
struct FileStamp {
    quint64 inode = 0;
    qint64 size = 0;
    qint64 modifiedNs = 0;
    bool operator==(const FileStamp&) const = default;
};
std::optional<FileStamp> fileStamp(const QString& path);

// The extensions of the compiler's outputs, in lower case: hex, asm, lst, mac, cod, err.
QStringList compilerOutputExtensions();

// What a compile's outputs are named after, and what lay beside the document under the alias before.
struct AliasOutputs {
    QString directory;  // the document's directory
    QString alias;      // the DOS form's name up to its dot (BLIN~4HD); empty when that is the name itself
    QString name;       // the document's name up to its first dot: blinking_lights_v2
    // name is also the part up to the last dot, which a compiler given the long name would use: the
    // outputs it would write over are the ones named here.
    bool compilerWouldUseName = false;
    QHash<QString, FileStamp> before;  // the outputs named after the alias that lie there, by file name
};

// Notes the outputs of the document (a POSIX path) that bear the alias of its DOS form now, before the
// compiler starts.
AliasOutputs noteAliasOutputs(const QString& document, const QString& dosDocument);

// The files this process gave long names to, with their stamps right after: one of them may be replaced
// by the same document's next compile.
using LongNamedOutputs = QHash<QString, FileStamp>;

struct LongNames {
    QList<std::pair<QString, QString>> renamed;  // file names: BLIN~4HD.HEX, blinking_lights_v2.hex
    QStringList kept;                             // a line for each output that keeps its alias
};

// Renames the outputs that the compile wrote (new or changed since they were noted) to the document's
// name with the lower-case extension. An existing file of that name is replaced only when it is this
// document's output too: the compiler given the long name would write over it, or this process put it
// there and nobody changed it since. Any other file stays as it is, the output keeps its alias, and a
// line says so.
LongNames giveLongNames(const AliasOutputs& noted, LongNamedOutputs& ours);

// The compiler's text with the forms handed to it turned back, letter case ignored: each pair is a DOS
// path (with no closing backslash) or file name and what the user calls it. A path is taken where a
// path can end; a file name only as a whole name.
QString withUserNames(QString text, const QList<std::pair<QString, QString>>& paths,
                      const QList<std::pair<QString, QString>>& names);

// The file that a Windows path (Z:\HOME\ANN\LED_~KNS\BLIN~4HD.PBP, C:\PBP\INC\X.BAS), a POSIX path that
// still holds DOS names (/home/ann/led work/INC/LONG~1.BAS) or a relative one (INC\X.BAS, in directory)
// stands for, as a POSIX path. A drive letter leads where the prefix's dosdevices link of it leads; a
// path on a drive the prefix doesn't have stays as it is. Each part is found in its folder as it stands,
// with its letter case ignored, or as the DOS alias of a longer name there (BLIN~4HD.PBP and BLINKI~1.PBP
// for blinking_lights.pbp): when several names could bear it, shortForms (the Windows short paths of
// POSIX paths, in their order) tells which does. From the first part not found on, the path keeps its
// names, with slashes.
QString posixPathOfWindows(const QString& path, const QString& directory, const QString& prefix,
                           const std::function<QStringList(const QStringList&)>& shortForms);
