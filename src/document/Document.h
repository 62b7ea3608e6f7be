#pragma once
// The text of one view: file name, modified state, undo, file reading and writing.

#include <QByteArrayView>
#include <QString>
#include <memory>

class SourceView;
class SourceViewEditor;
class Language;
struct TextFormat;

class Document {
public:
    explicit Document(SourceView& view);
    ~Document();

    QString PathName() const { return pathName_; }
    void setPathName(const QString& p) { pathName_ = p; }
    bool Modified() const;
    // Replaces the text by the file's and clears Modified. A path that doesn't exist leaves the document
    // empty and throws Failure (errno ENOENT). The file's line ending and encoding are kept for SaveFile.
    void LoadFile(const QString& path);
    // Writes atomically and clears Modified; a failure leaves the old file whole and throws Failure with
    // the system's errno and text. In a folder where no new file may be made, the file is written in place.
    // Text that the file's code page cannot hold is written as UTF-8 only when the user says so; if not,
    // nothing is written and the Failure is the cancel one that callers pass over.
    // A file that another program changed since this document read or wrote it is overwritten only when the
    // user says so; if not, nothing is written and the Failure is the cancel one. A file that is gone is
    // written again, its folder made anew if that is gone too.
    void SaveFile(const QString& path);
    // Reads PathName again, in the encoding given (kUtf8Name or a code page) or, without one, as LoadFile
    // does. The caret keeps its line. A failure, or an encoding that can't keep the file's bytes, throws
    // Failure and leaves the text as it was.
    void ReloadFile(QByteArrayView encoding = {});
    // kUtf8Name, or the code page the file was read in.
    QByteArray encoding() const;
    // The file at PathName no longer holds what this document last read or wrote there: another program
    // changed, replaced or removed it, or made it where there was none.
    bool changedOnDisk() const;

    Language& language();

    int NumLines() const;
    QString GetLine(int line) const;
    int GetLineLength(int line) const;
    bool CanUndo() const;
    bool CanRedo() const;
    void Undo();
    void Redo();
    // InsertImpl and DeleteImpl calls up to the next UpdateViews make one undo step.
    void InsertImpl(int col, int line, const QString& text);
    void DeleteImpl(int startCol, int startLine, int endCol, int endLine);
    // Ends the run of InsertImpl and DeleteImpl calls and repaints.
    void UpdateViews();
    // The text as the control holds it, in UTF-8, without a copy: valid until the next change.
    QByteArrayView utf8Text() const;

    // Files larger than this are refused: far beyond any source, and the control keeps two bytes a character.
    static constexpr qint64 kMaxFileBytes = 128LL * 1024 * 1024;

private:
    struct FileFormat;
    SourceViewEditor& sci() const;
    // Puts the file's bytes, read in that format, in as the text: no undo step, not modified.
    void take(QByteArray& bytes, const TextFormat& format);
    // Asks whether to write over another program's change; true for Yes.
    bool askToOverwrite(const QString& path) const;
    void setAllText(const QByteArray& utf8);
    // Asks whether to save as UTF-8 what the code page cannot hold; true for Yes.
    bool askToSaveAsUtf8(const QString& path, QByteArrayView utf8) const;
    void beginRun();
    void endRun();
    bool runOpen_ = false;
    SourceView& view_;
    QString pathName_;
    std::unique_ptr<Language> language_;
    std::unique_ptr<FileFormat> format_;
};
