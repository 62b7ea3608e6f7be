// SourceView: what helps while writing a program: bookmarks, comment toggling, the indent of a new line,
// the fold margin, the completion list and the call tip.
#include "document/Positions.h"
#include "document/SourceViewEditor.h"
#include "document/SourceViewImpl.h"
#include "language/Completion.h"
#include "language/LineEditing.h"

using Sci = QsciScintillaBase;

namespace {

// After the message marks' three markers; the fold margin after the number, strip and tag margins.
constexpr int kBookmarkMarker = 3;
constexpr int kFoldMargin = 3;
constexpr int kFoldPixels = 14;
// A pause in typing this long and the fold margin follows the text.
constexpr int kFoldDelayMs = 250;
constexpr int kListRows = 12;

long send(const SourceViewEditor& e, unsigned msg, unsigned long w = 0, long l = 0) { return e.SendScintilla(msg, w, l); }

}  // namespace

void SourceView::Impl::setUpCoding() {
    // The modification notices stay as the constructor sets them; folding would ask for more.
    const long mask = send(e, Sci::SCI_GETMODEVENTMASK);
    if (!plain) {
        e.setFolding(QsciScintilla::BoxedTreeFoldStyle, kFoldMargin);
        e.markerDefine(QsciScintilla::Bookmark, kBookmarkMarker);
        e.setMarkerBackgroundColor(QColor(0x35, 0x84, 0xE4), kBookmarkMarker);
        e.setMarkerForegroundColor(QColor(0x1A, 0x5F, 0xB4), kBookmarkMarker);
        foldTimer.setSingleShot(true);
        foldTimer.setInterval(kFoldDelayMs);
        QObject::connect(&foldTimer, &QTimer::timeout, &q, [this] { q.updateFolds(); });
        QObject::connect(&q, &SourceView::TextEdited, &q, [this] { foldTimer.start(); });
    }
    e.SendScintilla(Sci::SCI_SETMODEVENTMASK, mask);
    e.SendScintilla(Sci::SCI_AUTOCSETSEPARATOR, long('\n'));
    e.SendScintilla(Sci::SCI_AUTOCSETIGNORECASE, 1L);
    e.SendScintilla(Sci::SCI_AUTOCSETCASEINSENSITIVEBEHAVIOUR, long(Sci::SC_CASEINSENSITIVEBEHAVIOUR_IGNORECASE));
    e.SendScintilla(Sci::SCI_AUTOCSETAUTOHIDE, 1L);
    e.SendScintilla(Sci::SCI_AUTOCSETCHOOSESINGLE, 0L);
    e.SendScintilla(Sci::SCI_AUTOCSETMAXHEIGHT, long(kListRows));
    QObject::connect(&e, qOverload<const char*, int, int, int>(&QsciScintillaBase::SCN_AUTOCSELECTION), &q,
                     [this](const char* word, int start, int, int) { completionChosen(word, start); });
    QObject::connect(&e, &QsciScintillaBase::SCN_CHARADDED, &q, [this](int ch) { emit q.CharAdded(ch); });
    applyFoldMargin();
}

void SourceView::Impl::applyFoldMargin() {
    if (!plain)
        e.setMarginWidth(kFoldMargin, marginStyle == MarginStyle::None ? 0 : kFoldPixels);
}

void SourceView::Impl::newLineKeepingIndent() {
    const int line = q.CaretY();
    if (line == 0)
        return;
    const QByteArray indent = lineIndent(lineText(e, line - 1)).toUtf8();
    if (!indent.isEmpty())
        e.SendScintilla(Sci::SCI_ADDTEXT, indent.size(), indent.constData());
}

quint64 SourceView::textGeneration() const { return d->generation; }

void SourceView::toggleBookmark(int line) {
    if (d->plain)
        return;
    if (editor_->markersAtLine(line) & (1u << kBookmarkMarker))
        editor_->markerDelete(line, kBookmarkMarker);
    else
        editor_->markerAdd(line, kBookmarkMarker);
}

QList<int> SourceView::bookmarks() const {
    QList<int> lines;
    for (long line = send(*editor_, Sci::SCI_MARKERNEXT, 0, 1L << kBookmarkMarker); line >= 0;
         line = send(*editor_, Sci::SCI_MARKERNEXT, line + 1, 1L << kBookmarkMarker))
        lines << int(line);
    return lines;
}

bool SourceView::gotoBookmark(bool forward) {
    const SourceViewEditor& e = *editor_;
    const long mask = 1L << kBookmarkMarker;
    const int caret = CaretY();
    const int last = int(send(e, Sci::SCI_GETLINECOUNT)) - 1;
    long line = forward ? send(e, Sci::SCI_MARKERNEXT, caret + 1, mask) : send(e, Sci::SCI_MARKERPREVIOUS, caret - 1, mask);
    if (line < 0)
        line = forward ? send(e, Sci::SCI_MARKERNEXT, 0, mask) : send(e, Sci::SCI_MARKERPREVIOUS, last, mask);
    if (line < 0)
        return false;
    editor_->SendScintilla(Sci::SCI_ENSUREVISIBLEENFORCEPOLICY, line);
    SetSel(0, int(line), 0, int(line));
    return true;
}

void SourceView::showLine(int line) {
    SourceViewEditor& e = *editor_;
    e.SendScintilla(Sci::SCI_ENSUREVISIBLE, line);
    const long screen = send(e, Sci::SCI_LINESONSCREEN);
    const long visible = send(e, Sci::SCI_VISIBLEFROMDOCLINE, line);
    e.SendScintilla(Sci::SCI_SETFIRSTVISIBLELINE, std::max(0L, visible - screen / 3));
    SetSel(0, line, 0, line);
}

void SourceView::toggleLineComments() {
    SourceViewEditor& e = *editor_;
    if (d->plain || e.isReadOnly())
        return;
    int startCol = 0, first = 0, endCol = 0, last = 0;
    GetSel(startCol, first, endCol, last);
    const bool selected = TextSelected();
    // A selection that ends at the start of a line leaves that line alone.
    const bool endsAtLineStart = selected && endCol == 0 && last > first;
    if (endsAtLineStart)
        --last;
    QStringList lines;
    for (int line = first; line <= last; ++line)
        lines << lineText(e, line);
    const std::vector<LineEdit> edits = toggleComment(lines);
    if (edits.empty())
        return;
    e.beginUndoAction();
    for (const LineEdit& edit : edits) {
        const int line = first + edit.line;
        const long from = positionAt(e, edit.column, line);
        const long to = positionAt(e, edit.column + edit.remove, line);
        const QByteArray text = edit.insert.toUtf8();
        e.SendScintilla(Sci::SCI_SETTARGETRANGE, from, to);
        e.SendScintilla(Sci::SCI_REPLACETARGET, text.size(), text.constData());
    }
    e.endUndoAction();
    // The lines stay selected whole, so that a second toggle takes the same ones.
    if (selected)
        SetSel(0, first, endsAtLineStart ? 0 : lineLength(e, last), endsAtLineStart ? last + 1 : last);
    checkCaretMoved();
}

void SourceView::updateFolds() {
    if (d->plain)
        return;
    d->foldTimer.stop();
    SourceViewEditor& e = *editor_;
    const int lines = int(send(e, Sci::SCI_GETLINECOUNT));
    const std::vector<FoldLevel> levels = foldLevels(foldRanges(Text()), lines);
    // Only the lines whose level changed are sent: each one makes Scintilla check the folds around it.
    for (int line = 0; line < lines && line < int(levels.size()); ++line) {
        const long level = (Sci::SC_FOLDLEVELBASE + levels[line].depth) |
                           (levels[line].header ? long(Sci::SC_FOLDLEVELHEADERFLAG) : 0L);
        if (send(e, Sci::SCI_GETFOLDLEVEL, line) != level)
            e.SendScintilla(Sci::SCI_SETFOLDLEVEL, line, level);
    }
}

FoldLevel SourceView::foldLevel(int line) const {
    const long level = send(*editor_, Sci::SCI_GETFOLDLEVEL, line);
    return {int((level & Sci::SC_FOLDLEVELNUMBERMASK) - Sci::SC_FOLDLEVELBASE),
            (level & Sci::SC_FOLDLEVELHEADERFLAG) != 0};
}

bool SourceView::showCompletion(const std::vector<QString>& words) {
    SourceViewEditor& e = *editor_;
    if (d->plain || e.isReadOnly() || words.empty())
        return false;
    int col = 0, line = 0;
    columnAndLine(e, send(e, Sci::SCI_GETCURRENTPOS), col, line);
    const QString text = lineText(e, line);
    const std::optional<int> start = completionStart(text, col);
    if (!start)
        return false;
    const QByteArray typed = text.mid(*start, col - *start).toUtf8();
    QByteArray list;
    list.reserve(qsizetype(words.size()) * 10);
    for (const QString& w : words) {
        if (!list.isEmpty())
            list += '\n';
        list += w.toUtf8();
    }
    d->completion = words;
    d->completionStart = send(e, Sci::SCI_GETCURRENTPOS) - typed.size();
    e.SendScintilla(Sci::SCI_AUTOCSHOW, typed.size(), list.constData());
    return completionShown();
}

std::optional<QString> SourceView::completionPrefix() const {
    int col = 0, line = 0;
    columnAndLine(*editor_, send(*editor_, Sci::SCI_GETCURRENTPOS), col, line);
    const QString text = lineText(*editor_, line);
    const std::optional<int> start = completionStart(text, col);
    if (!start)
        return std::nullopt;
    return text.mid(*start, col - *start);
}

bool SourceView::completionShown() const { return send(*editor_, Sci::SCI_AUTOCACTIVE) != 0; }

const std::vector<QString>& SourceView::completionWords() const { return d->completion; }

bool SourceView::Impl::wordComplete() const {
    const long caret = send(e, Sci::SCI_GETCURRENTPOS);
    if (completionStart > caret)
        return true;  // the caret left the word: the list is no longer about it
    const long n = send(e, Sci::SCI_AUTOCGETCURRENTTEXT, 0, 0);
    QByteArray chosen(int(n) + 1, '\0');
    e.SendScintilla(Sci::SCI_AUTOCGETCURRENTTEXT, 0UL, chosen.data());
    const auto* typed = reinterpret_cast<const char*>(
        e.SendScintilla(Sci::SCI_GETRANGEPOINTER, completionStart, caret - completionStart));
    return QString::fromUtf8(typed, int(caret - completionStart))
               .compare(QString::fromUtf8(chosen.constData(), int(n)), Qt::CaseInsensitive) == 0;
}

void SourceView::Impl::completionChosen(const char* word, long start) {
    const long caret = send(e, Sci::SCI_GETCURRENTPOS);
    if (start > caret)
        return;  // Scintilla's own insertion goes on
    const auto* typed = reinterpret_cast<const char*>(e.SendScintilla(Sci::SCI_GETRANGEPOINTER, start, caret - start));
    const QByteArray text =
        completionText(QString::fromUtf8(typed, int(caret - start)), QString::fromUtf8(word)).toUtf8();
    // Cancelled here, the list inserts nothing itself.
    e.SendScintilla(Sci::SCI_AUTOCCANCEL);
    e.beginUndoAction();
    e.SendScintilla(Sci::SCI_SETTARGETRANGE, start, caret);
    e.SendScintilla(Sci::SCI_REPLACETARGET, text.size(), text.constData());
    e.SendScintilla(Sci::SCI_GOTOPOS, static_cast<unsigned long>(start + text.size()));
    e.endUndoAction();
    q.checkCaretMoved();
}

void SourceView::showCallTip(const QString& text) {
    if (d->plain || text.isEmpty())
        return;
    d->callTip = text;
    const QByteArray bytes = text.toUtf8();
    editor_->SendScintilla(Sci::SCI_CALLTIPSHOW, send(*editor_, Sci::SCI_GETCURRENTPOS), bytes.constData());
}

bool SourceView::callTipShown() const { return send(*editor_, Sci::SCI_CALLTIPACTIVE) != 0; }

QString SourceView::callTipText() const { return callTipShown() ? d->callTip : QString(); }
