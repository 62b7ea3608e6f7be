#pragma once
// The text of one view: file name, modified state, undo, file reading and writing.

#include <QByteArrayView>
#include <QString>
#include <memory>

class SourceView;
class SourceViewEditor;
class Language;

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
    void SaveFile(const QString& path);

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

    // Files larger than this are refused: far beyond any source, and the control keeps two bytes a character.
    static constexpr qint64 kMaxFileBytes = 128LL * 1024 * 1024;

private:
    struct FileFormat;
    SourceViewEditor& sci() const;
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
