#pragma once
// The parts of a SourceView, shared by the files that implement it.

#include <QSet>

#include "document/Document.h"
#include "document/FindDialog.h"
#include "document/SourceLexer.h"
#include "document/SourceView.h"
#include "document/SourceViewEditor.h"
#include "document/TokenInfo.h"

#include <QFont>
#include <QPointer>
#include <QTimer>
#include <array>
#include <memory>
#include <optional>

struct SourceView::Impl {
    Impl(SourceView& view, SourceViewEditor& editor, bool plainText, const QString& face);

    SourceView& q;
    SourceViewEditor& e;
    const bool plain;  // no language: the compiler's output
    std::unique_ptr<Document> document;  // before the lexer, which reads its Language
    TokenInfo screen;
    TokenInfo print;
    std::unique_ptr<SourceLexer> lexer;
    QPointer<FindDialog> findDialog;

    QString fontName;
    QString family;  // the installed face that stands for fontName
    qint32 fore = 0, back = 0, textBack = 0, selFore = 0, selBack = 0;
    MarginStyle marginStyle = MarginStyle::None;
    int lastCol = -1, lastLine = -1;
    // The caret's line changed while the caret stayed (Delete, Undo, a reload, a recovery): told again all
    // the same.
    bool caretLineEdited = false;
    // QScintilla's notices before a change, and of a caret shown: cut off first when the view goes.
    QMetaObject::Connection textChanging, caretShown;

    // Lines changed since LinesChanged was last delivered: the first, and the line count before.
    struct PendingLines {
        int first, countBefore;
    };
    std::optional<PendingLines> pendingLines;
    // Called before each insertion or deletion; LinesChanged follows once the change is done.
    void textAboutToChange(long pos, int type, const char* text, int length);
    void deliverLinesChanged();

    // What applyLook last sent outside the token styles: background, selection colours, caret.
    using Sent = std::array<QRgb, 4>;
    std::optional<Sent> sent;
    struct PlainSent {
        QFont font;
        QColor color, paper;
        bool operator==(const PlainSent&) const = default;
    };
    std::optional<PlainSent> plainSent;

    struct Search {
        QString what;
        bool matchCase = false, wholeWord = false, forward = true;
    };
    std::optional<Search> search;

    // The face asked for, resolved to an installed fixed-pitch one, at 9.75 points, weight 400.
    QFont baseFont() const;
    QFont styleFont(int style) const;
    // Puts the font and colours into QScintilla's styles; only what changed is sent.
    void applyLook();
    // For the length of a print: the print table's colours on white paper.
    void applyPrintLook();
    void applyMargins();

    // The message mark's handle, -1 without one; the tag strip is shown while a line has a tag.
    int messageMark = -1;
    bool tagStrip = false;
    // Lines that carry a tag: only these have an indicator of another tone to clear.
    QSet<int> taggedLines;
    bool noted = false;  // a line note was set since the last clearing
    // The tags' styles, which a reset of the plain view's styles takes away.
    void defineToneStyles();
    // Takes the message mark away when a change about to happen touches its line.
    void guardMessageMark(long pos, int type, int length);

    // The coding aids (SourceViewCoding.cpp).
    quint64 generation = 0;
    QTimer foldTimer;
    std::vector<QString> completion;
    QString callTip;
    void setUpCoding();
    void applyFoldMargin();
    // The list's choice goes in with the typed prefix's case instead of as listed.
    void completionChosen(const char* word, long start);
    long completionStart = 0;  // where the word being completed starts
    // The word before the caret is the list's choice already, letter case aside, or the caret left it.
    bool wordComplete() const;
    // After Enter made a new line: it starts with the blanks of the line above.
    void newLineKeepingIndent();
};
