#include "document/SourceView.h"

#include "document/Positions.h"
#include "document/SourceViewAccessible.h"
#include "document/SourceViewImpl.h"
#include "platform/SystemColors.h"

#include <QAccessible>
#include <QFontDatabase>
#include <QFontInfo>
#include <QHash>
#include <QTimer>
#include <QVBoxLayout>

using Sci = QsciScintillaBase;

namespace {

// The face's size and weight, in both the editor and the compiler's output.
constexpr double kFontPoints = 9.75;
// Outdent takes a tab or up to four blanks as one step, so a tab is four columns wide.
constexpr int kTabColumns = 4;
// QScintilla's margins: the line numbers, the strip, and the output's tags.
constexpr int kNumberMargin = 0, kStripMargin = 1, kTagMargin = 2, kMargins = 3;
// The strip's width, the one the document window's own margin test uses.
constexpr int kStripPixels = 20;

// QScintilla hands Scintilla only the family name, so the style hint has to be resolved here: "Courier"
// on a Linux desktop may otherwise come out proportional.
QString fixedPitchFamily(const QString& name) {
    // Asking means loading the face; every document asks for the same few names.
    static QHash<QString, QString> known;
    if (const auto it = known.constFind(name); it != known.constEnd())
        return *it;
    QFont f(name);
    f.setStyleHint(QFont::TypeWriter);
    f.setFixedPitch(true);
    const QFontInfo info(f);
    return known[name] =
               info.fixedPitch() ? info.family() : QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
}

}  // namespace

SourceView::Impl::Impl(SourceView& view, SourceViewEditor& editor, bool plainText, const QString& face)
    : q(view), e(editor), plain(plainText), document(std::make_unique<Document>(view)), fontName(face) {
    if (!plain)
        lexer = std::make_unique<SourceLexer>(document->language());
    fore = systemColor(kColorWindowText);
    back = textBack = systemColor(kColorWindow);
    selFore = systemColor(kColorHighlightText);
    selBack = systemColor(kColorHighlight);
    marginStyle = plain ? MarginStyle::None : MarginStyle::Fixed;
    family = fixedPitchFamily(fontName);
}

QFont SourceView::Impl::baseFont() const {
    QFont f(family);
    f.setStyleHint(QFont::TypeWriter);
    f.setFixedPitch(true);
    f.setPointSizeF(kFontPoints);
    f.setWeight(QFont::Normal);
    return f;
}

// The system gives the reserved words Bold, so they stand out by weight alone and keep the grid of a
// fixed-pitch face.
QFont SourceView::Impl::styleFont(int style) const {
    QFont f = baseFont();
    f.setBold(style & FontStyle::Bold);
    f.setItalic(style & FontStyle::Italic);
    f.setUnderline(style & FontStyle::Underline);
    return f;
}

void SourceView::Impl::applyLook() {
    if (lexer) {
        for (int s = 0; s < TokenInfo::kClasses; ++s) {
            const QColor color = toQColor(screen.hasForeground(s) ? screen.foreground(s) : fore);
            const QColor paper = toQColor(screen.hasBackground(s) ? screen.background(s) : textBack);
            const QFont font = styleFont(screen.fontStyle(s));
            if (lexer->color(s) != color)
                lexer->setColor(color, s);
            if (lexer->paper(s) != paper)
                lexer->setPaper(paper, s);
            if (lexer->font(s) != font)
                lexer->setFont(font, s);
        }
    } else {
        const PlainSent now{baseFont(), toQColor(fore), toQColor(textBack)};
        if (!plainSent || !(*plainSent == now)) {
            e.setFont(now.font);
            e.setColor(now.color);
            e.setPaper(now.paper);
            e.SendScintilla(Sci::SCI_STYLECLEARALL);
            plainSent = now;
            sent.reset();  // the paper went to the default style too
            defineToneStyles();
        }
    }
    // The default style paints where no text is: below the last line and right of the line ends.
    // Each of these makes Scintilla lay the screen out again, so only a change is sent.
    const Sent now{toQColor(back).rgb(), toQColor(selFore).rgb(), toQColor(selBack).rgb(), toQColor(fore).rgb()};
    if (sent && *sent == now)
        return;
    e.SendScintilla(Sci::SCI_STYLESETBACK, Sci::STYLE_DEFAULT, toQColor(back));
    e.setSelectionForegroundColor(toQColor(selFore));
    e.setSelectionBackgroundColor(toQColor(selBack));
    e.setCaretForegroundColor(toQColor(fore));
    sent = now;
}

void SourceView::Impl::applyPrintLook() {
    if (!lexer)
        return;
    // Paper is white in print, so a class without a print colour prints black rather than in a screen
    // colour chosen for another background.
    for (int s = 0; s < TokenInfo::kClasses; ++s) {
        lexer->setColor(print.hasForeground(s) ? toQColor(print.foreground(s)) : QColor(Qt::black), s);
        lexer->setPaper(Qt::white, s);
        lexer->setFont(styleFont(print.fontStyle(s)), s);
    }
}

// QScintilla's margins never scroll sideways with the text, so the two margin styles differ in what
// they show: Fixed is a plain strip where a click selects the line; Scrolling adds line numbers, which
// scroll up and down with the text, in front of that strip.
void SourceView::Impl::applyMargins() {
    for (int m = 0; m < kMargins; ++m)
        e.setMarginWidth(m, 0);
    const bool numbers = marginStyle == MarginStyle::Scrolling;
    e.setMarginLineNumbers(kNumberMargin, numbers);
    if (numbers) {
        e.setMarginType(kNumberMargin, QsciScintilla::NumberMargin);
        e.setMarginWidth(kNumberMargin, QStringLiteral("000000"));  // room for six digits
    }
    if (marginStyle != MarginStyle::None) {
        e.setMarginType(kStripMargin, QsciScintilla::SymbolMargin);
        e.setMarginSensitivity(kStripMargin, false);  // Scintilla then selects the line on a click
        e.setMarginWidth(kStripMargin, kStripPixels);
    }
    if (tagStrip) {
        e.setMarginType(kTagMargin, QsciScintilla::TextMargin);
        e.setMarginWidth(kTagMargin, QStringLiteral("warning  "));
    }
    applyFoldMargin();
}

SourceView::SourceView(QWidget* parent, bool plainText, const QString& fontName)
    : QWidget(parent), editor_(new SourceViewEditor(*this)),
      d(std::make_unique<Impl>(*this, *editor_, plainText, fontName)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(editor_);
    setFocusProxy(editor_);
    SourceViewEditor& e = *editor_;
    e.setUtf8(true);
    e.setEolMode(QsciScintilla::EolUnix);
    e.setTabWidth(kTabColumns);
    e.setIndentationsUseTabs(true);
    e.setIndentationWidth(0);
    e.setWrapMode(QsciScintilla::WrapNone);
    // The right button opens the document window's menu, not Scintilla's.
    e.SendScintilla(Sci::SCI_USEPOPUP, 0L);
    e.SendScintilla(Sci::SCI_SETSCROLLWIDTH, 1L);
    e.SendScintilla(Sci::SCI_SETSCROLLWIDTHTRACKING, 1L);
    e.viewport()->setMouseTracking(true);
    if (d->lexer)
        e.setLexer(d->lexer.get());
    d->applyMargins();
    d->screen.changed = [this] { d->applyLook(); };
    d->applyLook();
    d->setUpCoding();

    // Only the notices before a change: QScintilla answers the ones after it by counting the characters
    // from the start of the text, for accessibility, which makes each keystroke at the end of a large
    // file cost tens of milliseconds. Accessibility is served by SourceViewAccessible instead.
    SourceViewAccessible::install();
    e.SendScintilla(Sci::SCI_SETMODEVENTMASK, long(Sci::SC_MOD_BEFOREINSERT | Sci::SC_MOD_BEFOREDELETE));
    d->textChanging = connect(&e, &QsciScintillaBase::SCN_MODIFIED, this,
                              [this](int pos, int type, const char* text, int length) {
                                  d->guardMessageMark(pos, type, length);
                                  d->textAboutToChange(pos, type, text, length);
                              });
    // Scintilla tells of caret moves when it repaints; the input handlers tell sooner.
    d->caretShown = connect(&e, &QsciScintillaBase::SCN_UPDATEUI, this, [this](int) { checkCaretMoved(); });
    connect(&e, &QsciScintilla::modificationChanged, this, &SourceView::ModifiedChanged);
}

SourceView::~SourceView() {
    // QScintilla may still signal while it is torn down; the editor goes first, while the lexer it
    // holds and the parts it calls are still there.
    disconnect(d->textChanging);
    disconnect(d->caretShown);
    disconnect(editor_, &QsciScintilla::modificationChanged, this, &SourceView::ModifiedChanged);
    delete editor_;
}

QWidget* SourceView::editorWidget() const { return editor_; }

Document& SourceView::document() { return *d->document; }
TokenInfo& SourceView::tokenInfo() { return d->screen; }
TokenInfo& SourceView::printTokenInfo() { return d->print; }
FindDialog* SourceView::findDialog() const { return d->findDialog; }
SourceLexer* SourceView::sourceLexer() const { return d->lexer.get(); }

QString SourceView::FontName() const { return d->fontName; }

void SourceView::setFontName(const QString& name) {
    d->fontName = name;
    d->family = fixedPitchFamily(name);
    d->applyLook();
}

qint32 SourceView::ForeColor() const { return d->fore; }

void SourceView::setForeColor(qint32 c) {
    d->fore = c;
    d->applyLook();
}

qint32 SourceView::BackColor() const { return d->back; }

void SourceView::setBackColor(qint32 c) {
    d->back = c;
    d->applyLook();
}

qint32 SourceView::TextBackColor() const { return d->textBack; }

void SourceView::setTextBackColor(qint32 c) {
    d->textBack = c;
    d->applyLook();
}

qint32 SourceView::SelForeColor() const { return d->selFore; }

void SourceView::setSelForeColor(qint32 c) {
    d->selFore = c;
    d->applyLook();
}

qint32 SourceView::SelBackColor() const { return d->selBack; }

void SourceView::setSelBackColor(qint32 c) {
    d->selBack = c;
    d->applyLook();
}

int SourceView::CaretY() const {
    return int(editor_->SendScintilla(Sci::SCI_LINEFROMPOSITION, editor_->SendScintilla(Sci::SCI_GETCURRENTPOS)));
}

bool SourceView::TextSelected() const { return editor_->SendScintilla(Sci::SCI_GETSELECTIONEMPTY) == 0; }

QString SourceView::selectedText() const { return editor_->selectedText(); }

MarginStyle SourceView::marginStyle() const { return d->marginStyle; }

void SourceView::setMarginStyle(MarginStyle style) {
    d->marginStyle = style;
    d->applyMargins();
}

QString SourceView::Text() const { return editor_->text(); }

void SourceView::SetText(const QString& t) {
    const bool ro = editor_->isReadOnly();
    editor_->setReadOnly(false);
    clearLineTags();
    editor_->setText(t);
    editor_->setReadOnly(ro);
    checkCaretMoved();
}

// Styling only changes when the word lists or delimiters did, so a Refresh during a compile costs the
// comparison of the styles and a repaint; after a word list change only the lines on screen are restyled
// now, the others when they come on screen.
void SourceView::Refresh() {
    d->applyLook();
    if (d->lexer)
        d->lexer->restyleVisible();
    editor_->viewport()->update();
}

void SourceView::Impl::textAboutToChange(long pos, int type, const char* text, int length) {
    if (!(type & (Sci::SC_MOD_BEFOREINSERT | Sci::SC_MOD_BEFOREDELETE)))
        return;
    ++generation;
    const int line = int(e.SendScintilla(Sci::SCI_LINEFROMPOSITION, pos));
    if (line == lastLine)
        caretLineEdited = true;
    if (!pendingLines) {
        pendingLines = PendingLines{line, int(e.SendScintilla(Sci::SCI_GETLINECOUNT))};
        // Operations deliver at their end; this covers text changed any other way.
        QTimer::singleShot(0, &q, [this] { deliverLinesChanged(); });
    } else {
        pendingLines->first = std::min(pendingLines->first, line);
    }
    if (QAccessible::isActive()) {
        const int offset = SourceViewAccessible::offsetAt(e, pos);
        if (type & Sci::SC_MOD_BEFOREINSERT) {
            QAccessibleTextInsertEvent ev(&e, offset, QString::fromUtf8(text, length));
            QAccessible::updateAccessibility(&ev);
        } else {
            const auto* gone = reinterpret_cast<const char*>(e.SendScintilla(Sci::SCI_GETRANGEPOINTER, pos, long(length)));
            QAccessibleTextRemoveEvent ev(&e, offset, QString::fromUtf8(gone, length));
            QAccessible::updateAccessibility(&ev);
        }
    }
}

// The arguments are approximate, as the system allows: the first changed line, and as many lines after
// it as the text has grown by.
void SourceView::Impl::deliverLinesChanged() {
    if (!pendingLines)
        return;
    const PendingLines p = *pendingLines;
    pendingLines.reset();
    const int grown = int(e.SendScintilla(Sci::SCI_GETLINECOUNT)) - p.countBefore;
    emit q.TextEdited();
    emit q.LinesChanged(p.first, p.first + std::max(grown, 0));
}

void SourceView::tellCaret() {
    d->lastCol = d->lastLine = -1;
    checkCaretMoved();
}

void SourceView::checkCaretMoved() {
    d->deliverLinesChanged();
    int col = 0, line = 0;
    const long pos = editor_->SendScintilla(Sci::SCI_GETCURRENTPOS);
    columnAndLine(*editor_, pos, col, line);
    if (col == d->lastCol && line == d->lastLine && !d->caretLineEdited)
        return;
    d->caretLineEdited = false;
    d->lastCol = col;
    d->lastLine = line;
    emit CaretMove(col, line);
    if (QAccessible::isActive()) {
        QAccessibleTextCursorEvent ev(editor_, SourceViewAccessible::offsetAt(*editor_, pos));
        QAccessible::updateAccessibility(&ev);
    }
}
