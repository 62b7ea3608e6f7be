#include "document/Document.h"

#include "document/DiskStamp.h"
#include "document/Language.h"
#include "document/Positions.h"
#include "document/SourceView.h"
#include "document/SourceViewEditor.h"
#include "document/TextFormat.h"
#include "core/Globals.h"
#include "core/Settings.h"
#include "platform/Failure.h"
#include "platform/Prompts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTimer>
#include <cerrno>

using Sci = QsciScintillaBase;

struct Document::FileFormat {
    TextFormat text;
    // What the file held when this document last read or wrote it, and its absolute path.
    DiskStamp disk;
    QString diskPath;
    // An existing file whose load was refused: saving the (empty) document over it would destroy it.
    QString refusedPath;
    QString refusedReason;
};

namespace {

// errno right after a failed file call, or the given number when the library left none. The fallback
// must be a plain value: working it out might make file calls of its own that change errno.
int lastError(int fallback) { return errno != 0 ? errno : fallback; }

bool samePath(const QString& a, const QString& b) {
    const QFileInfo fa(a), fb(b);
    if (QDir::cleanPath(fa.absoluteFilePath()) == QDir::cleanPath(fb.absoluteFilePath()))
        return true;
    const QString ca = fa.canonicalFilePath();
    return !ca.isEmpty() && ca == fb.canonicalFilePath();
}

QsciScintilla::EolMode eolMode(LineEnding e) {
    switch (e) {
    case LineEnding::CrLf: return QsciScintilla::EolWindows;
    case LineEnding::Cr: return QsciScintilla::EolMac;
    case LineEnding::Lf: break;
    }
    return QsciScintilla::EolUnix;
}

}  // namespace

Document::Document(SourceView& view)
    : view_(view), language_(std::make_unique<Language>()), format_(std::make_unique<FileFormat>()) {}

Document::~Document() = default;

Language& Document::language() { return *language_; }

SourceViewEditor& Document::sci() const { return SourceViewEditor::of(view_); }

bool Document::Modified() const { return sci().SendScintilla(Sci::SCI_GETMODIFY) != 0; }

void Document::setAllText(const QByteArray& utf8) {
    endRun();
    const bool readOnly = sci().isReadOnly();
    sci().setReadOnly(false);
    view_.clearLineTags();
    // The loaded text is no step to undo, and recording it would hold a second copy of a large file.
    sci().SendScintilla(Sci::SCI_SETUNDOCOLLECTION, 0L);
    sci().SendScintilla(Sci::SCI_SETTEXT, uintptr_t(0), utf8.constData());
    sci().SendScintilla(Sci::SCI_EMPTYUNDOBUFFER);
    sci().SendScintilla(Sci::SCI_SETUNDOCOLLECTION, 1L);
    sci().SendScintilla(Sci::SCI_SETSAVEPOINT);
    sci().SendScintilla(Sci::SCI_GOTOPOS, 0L);
    sci().setReadOnly(readOnly);
    view_.checkCaretMoved();
}

namespace {

// The file's whole bytes. A file that is there but isn't read throws with reason set to what to say when
// the document is then to be saved over it.
QByteArray readSource(const QString& path, QString& reason) {
    const auto refuse = [&](Failure f, const QString& why) {
        reason = why;
        return f;
    };
    const QFileInfo info(path);
    if (!info.exists())
        throw osFailure(ENOENT, path);
    if (info.isDir())
        throw refuse(osFailure(EISDIR, path), QStringLiteral("it is a folder"));
    const auto tooLarge = [&](qint64 size) {
        return refuse(Failure(EFBIG, QStringLiteral("%1: The file is too large to open (%2 MB; the limit is %3 MB).")
                                         .arg(path)
                                         .arg(size / (1024 * 1024))
                                         .arg(Document::kMaxFileBytes / (1024 * 1024))),
                      QStringLiteral("it is too large"));
    };
    if (info.size() > Document::kMaxFileBytes)
        throw tooLarge(info.size());

    QFile file(path);
    errno = 0;
    if (!file.open(QIODevice::ReadOnly))
        throw refuse(osFailure(lastError(EACCES), path), QStringLiteral("it could not be read"));
    QByteArray bytes;
    // A file another program writes in place at this moment may be read half old, half new: it is read
    // again while its size or time moves under the read, a few times at most. What was read is what the
    // document's stamp says, so a change after the last read is seen as one.
    for (int attempt = 0;; ++attempt) {
        const QFileInfo before(path);
        errno = 0;
        // A file that reports no size (a device, a pipe) is read up to the limit and one byte more.
        bytes = info.isFile() ? file.readAll() : file.read(Document::kMaxFileBytes + 1);
        if (file.error() != QFileDevice::NoError)
            throw refuse(osFailure(lastError(EIO), path), QStringLiteral("it could not be read"));
        const QFileInfo after(path);
        const bool still = before.size() == after.size() && after.size() == bytes.size() &&
                           before.lastModified() == after.lastModified();
        if (!info.isFile() || still || attempt == 2 || !file.seek(0))
            break;
    }
    if (bytes.size() > Document::kMaxFileBytes)
        throw tooLarge(bytes.size());
    if (bytes.contains('\0'))
        throw refuse(Failure(EILSEQ, QStringLiteral("%1: The file holds binary data (NUL bytes), not text; it was not "
                                                    "opened.")
                                         .arg(path)),
                     QStringLiteral("it holds binary data"));
    return bytes;
}

}  // namespace

// The bytes go into the control as they are, in UTF-8: a file with mixed line endings keeps them, and
// the first ending found only decides what Enter inserts.
void Document::LoadFile(const QString& path) {
    *format_ = FileFormat{};
    format_->diskPath = QFileInfo(path).absoluteFilePath();
    QByteArray bytes;
    QString refused;
    try {
        bytes = readSource(path, refused);
    } catch (const Failure&) {
        setAllText({});
        if (!refused.isEmpty()) {
            format_->refusedPath = format_->diskPath;
            format_->refusedReason = refused;
        }
        emit view_.DiskSynced();
        throw;
    }
    take(bytes, detectFormat(bytes, setting(Key::LegacyEncoding).toLatin1()));
}

void Document::ReloadFile(QByteArrayView encoding) {
    endRun();
    const QString path = pathName_;
    QString refused;  // the text stays, and with it what the document knows of the file
    QByteArray bytes = readSource(path, refused);
    const std::optional<TextFormat> format = encoding.isEmpty()
                                                 ? detectFormat(bytes, setting(Key::LegacyEncoding).toLatin1())
                                                 : formatIn(bytes, encoding);
    if (!format) {
        const bool utf8 = encoding.compare(QByteArrayView(kUtf8Name), Qt::CaseInsensitive) == 0;
        throw Failure(EILSEQ, utf8 ? QStringLiteral("%1 is not UTF-8 text: read as UTF-8, some of its bytes would be "
                                                    "lost.")
                                         .arg(QDir::toNativeSeparators(path))
                                   : QStringLiteral("%1 is not text in %2: read so, some of its bytes would be lost.")
                                         .arg(QDir::toNativeSeparators(path), QString::fromLatin1(encoding)));
    }
    // The caret stays on its line and the view where it was, as far as the new text reaches.
    const long caret = sci().SendScintilla(Sci::SCI_GETCURRENTPOS);
    const long line = sci().SendScintilla(Sci::SCI_LINEFROMPOSITION, caret);
    const long column = sci().SendScintilla(Sci::SCI_GETCOLUMN, caret);
    const long firstVisible = sci().SendScintilla(Sci::SCI_GETFIRSTVISIBLELINE);
    *format_ = FileFormat{};
    format_->diskPath = QFileInfo(path).absoluteFilePath();
    take(bytes, *format);
    const long lastLine = sci().SendScintilla(Sci::SCI_GETLINECOUNT) - 1;
    sci().SendScintilla(Sci::SCI_GOTOPOS, sci().SendScintilla(Sci::SCI_FINDCOLUMN, std::min(line, lastLine), column));
    sci().SendScintilla(Sci::SCI_SETFIRSTVISIBLELINE, firstVisible);
    view_.checkCaretMoved();
}

void Document::take(QByteArray& bytes, const TextFormat& format) {
    format_->disk = DiskStamp::ofBytes(bytes);
    const QByteArray utf8 = toUtf8Text(bytes, format.encoding, format.codePage);
    bytes.clear();
    setAllText(utf8);
    format_->text = format;
    sci().setEolMode(eolMode(format.lineEnding));
    emit view_.DiskSynced();
}

QByteArray Document::encoding() const { return encodingName(format_->text); }

bool Document::changedOnDisk() const {
    if (format_->diskPath.isEmpty() || !samePath(pathName_, format_->diskPath))
        return false;
    return !DiskStamp::of(pathName_).sameAs(format_->disk);
}

bool Document::askToOverwrite(const QString& path) const {
    const QString question = QStringLiteral("%1 was changed by another program since it was opened or saved here."
                                            "\r\rOverwrite it with the text here? The other program's changes are "
                                            "then lost.")
                                 .arg(QDir::toNativeSeparators(path));
    Prompts* prompts = globals().prompts;
    return prompts && prompts->message(question, QStringLiteral("File Changed on Disk"), Icon::Exclamation,
                                       Buttons::YesNoDefaultNo) == Answer::Yes;
}

bool Document::askToSaveAsUtf8(const QString& path, QByteArrayView utf8) const {
    const QString text = QString::fromUtf8(utf8);
    const CodePage& page = CodePage::named(format_->text.codePage);
    const qsizetype at = std::max<qsizetype>(page.firstMissing(text), 0);
    const qsizetype length = at + 1 < text.size() && text[at].isHighSurrogate() ? 2 : 1;
    const uintptr_t position = uintptr_t(QStringView(text).first(at).toUtf8().size());
    const long line = sci().SendScintilla(Sci::SCI_LINEFROMPOSITION, position);
    const QString question =
        QStringLiteral("The code page of %1, %2, has no byte for \"%3\" (line %4), and perhaps for other "
                       "characters typed into it.\r\rSave the file as UTF-8 instead? Its other accented letters "
                       "and symbols are then written in UTF-8 too.\r\rNo: nothing is saved.")
            .arg(QDir::toNativeSeparators(path), QString::fromLatin1(page.name()), text.mid(at, length))
            .arg(line + 1);
    Prompts* prompts = globals().prompts;
    return prompts && prompts->message(question, QStringLiteral("Save as UTF-8"), Icon::Exclamation,
                                       Buttons::YesNo) == Answer::Yes;
}

void Document::SaveFile(const QString& path) {
    endRun();
    if (!format_->refusedPath.isEmpty() && samePath(path, format_->refusedPath))
        throw Failure(EPERM, QStringLiteral("%1 was not opened, as %2, so this document is not saved over it: "
                                            "that would destroy the file. Save under another name.")
                                 .arg(path, format_->refusedReason));
    // Another program's change since this document read or wrote the file is only overwritten when the
    // user says so. A file that is gone is written again, in its folder made anew if that went too.
    if (!format_->diskPath.isEmpty() && samePath(path, format_->diskPath)) {
        const DiskStamp now = DiskStamp::of(path);
        if (now.isFile && !now.sameAs(format_->disk) && !askToOverwrite(path))
            throw cancelError();
        if (!now.exists && format_->disk.exists)
            QDir().mkpath(QFileInfo(path).absolutePath());
    }
    const auto text = [this] { return utf8Text(); };
    const QByteArrayView utf8 = text();
    TextEncoding encoding = format_->text.encoding;
    std::optional<QByteArray> bytes = fromUtf8Text(utf8, encoding, format_->text.codePage);
    if (!bytes) {
        // The user typed a character that the file's code page has no byte for. Written in UTF-8 it is
        // kept, but every other 8-bit character of the file changes its bytes: that is the user's choice.
        if (!askToSaveAsUtf8(path, utf8))
            throw cancelError();
        encoding = TextEncoding::Utf8;
        bytes = text().toByteArray();  // taken again: the control's buffer may have moved while the box was up
    }

    // Unbuffered: a buffered QSaveFile whose last write fails on a full disk still commits the cut file.
    // Where the folder takes no new file (a shared folder, a project of another account) but the file
    // itself may be written, it is written in place: not atomic, but saved, as any other editor would.
    QSaveFile file(path);
    file.setDirectWriteFallback(true);
    errno = 0;
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        const int err = errno;  // taken at once: any file call after it (a stat) overwrites it
        throw osFailure(err != 0 ? err : QFileInfo(path).isDir() ? EISDIR : EACCES, path);
    }
    errno = 0;
    if (file.write(*bytes) != bytes->size()) {
        const int err = lastError(ENOSPC);
        file.cancelWriting();
        throw osFailure(err, path);
    }
    errno = 0;
    if (!file.commit())
        throw osFailure(lastError(EIO), path);
    format_->text.encoding = encoding;
    format_->disk = DiskStamp::ofBytes(*bytes);
    format_->diskPath = QFileInfo(path).absoluteFilePath();
    sci().SendScintilla(Sci::SCI_SETSAVEPOINT);
    emit view_.DiskSynced();
}

int Document::NumLines() const { return int(sci().SendScintilla(Sci::SCI_GETLINECOUNT)); }

QString Document::GetLine(int line) const { return lineText(sci(), line); }

int Document::GetLineLength(int line) const { return lineLength(sci(), line); }

bool Document::CanUndo() const { return sci().SendScintilla(Sci::SCI_CANUNDO) != 0; }

bool Document::CanRedo() const { return sci().SendScintilla(Sci::SCI_CANREDO) != 0; }

void Document::Undo() {
    endRun();
    sci().undo();
    view_.checkCaretMoved();
}

void Document::Redo() {
    endRun();
    sci().redo();
    view_.checkCaretMoved();
}

// A run of InsertImpl and DeleteImpl calls (an indent of many lines) is one step to undo. The system ends
// a run with UpdateViews; should that call not come, the run ends when control returns to the event loop,
// so that the user's next typing never joins it.
void Document::beginRun() {
    if (runOpen_)
        return;
    runOpen_ = true;
    sci().beginUndoAction();
    QTimer::singleShot(0, &view_, [this] { endRun(); });
}

void Document::endRun() {
    if (!runOpen_)
        return;
    runOpen_ = false;
    sci().endUndoAction();
}

void Document::InsertImpl(int col, int line, const QString& text) {
    beginRun();
    sci().SendScintilla(Sci::SCI_INSERTTEXT, uintptr_t(positionAt(sci(), col, line)), text.toUtf8().constData());
    view_.checkCaretMoved();
}

void Document::DeleteImpl(int startCol, int startLine, int endCol, int endLine) {
    const long a = positionAt(sci(), startCol, startLine), b = positionAt(sci(), endCol, endLine);
    if (a == b)
        return;
    beginRun();
    sci().SendScintilla(Sci::SCI_DELETERANGE, std::min(a, b), std::abs(b - a));
    view_.checkCaretMoved();
}

// Scintilla repaints changed lines by itself, so the lines and flags the original took are not needed;
// what is left is to close the run as one undo step.
QByteArrayView Document::utf8Text() const {
    // Asking for the pointer closes the control's gap, so the text lies in one piece.
    const auto* chars = reinterpret_cast<const char*>(sci().SendScintilla(Sci::SCI_GETCHARACTERPOINTER));
    return QByteArrayView(chars, sci().SendScintilla(Sci::SCI_GETLENGTH));
}

void Document::UpdateViews() {
    endRun();
    sci().viewport()->update();
}
