// SourceView: the marks that compiler messages leave, in a document's strip and on the output's lines.
#include "document/SourceViewEditor.h"
#include "document/SourceViewImpl.h"
#include "platform/SystemColors.h"

#include <array>

using Sci = QsciScintillaBase;

namespace {

constexpr int kTagMargin = 2;
// Marker numbers, styles and indicators, one per tone in LineTone's order. Styles above the predefined
// ones (32 to 39); indicators from the first that belongs to the container.
constexpr int kFirstMarker = 0, kFirstToneStyle = 40, kNoteStyle = 43, kFirstIndicator = 8;
constexpr int kTones = 3;
const std::array<QColor, kTones> kToneColors = {QColor(0xC0, 0x1C, 0x28), QColor(0x9A, 0x67, 0x00),
                                                QColor(0x1F, 0x5F, 0xBF)};
const QColor kNoteColor(0x5A, 0x5A, 0x5A);

int toneIndex(LineTone tone) { return int(tone); }

}  // namespace

void SourceView::setReadOnly(bool readOnly) { editor_->setReadOnly(readOnly); }

void SourceView::markMessageLine(int line, LineTone tone) {
    clearMessageMark();
    SourceViewEditor& e = *editor_;
    const int marker = kFirstMarker + toneIndex(tone);
    e.markerDefine(QsciScintilla::RightArrow, marker);
    e.setMarkerBackgroundColor(kToneColors[toneIndex(tone)], marker);
    e.setMarkerForegroundColor(kToneColors[toneIndex(tone)].darker(), marker);
    d->messageMark = e.markerAdd(line, marker);
}

void SourceView::clearMessageMark() {
    if (d->messageMark >= 0)
        editor_->markerDeleteHandle(d->messageMark);
    d->messageMark = -1;
}

int SourceView::messageMarkLine() const { return d->messageMark >= 0 ? editor_->markerLine(d->messageMark) : -1; }

void SourceView::Impl::guardMessageMark(long pos, int type, int length) {
    if (messageMark < 0 || !(type & (Sci::SC_MOD_BEFOREINSERT | Sci::SC_MOD_BEFOREDELETE)))
        return;
    const int marked = e.markerLine(messageMark);
    const auto lineOf = [&](long p) { return int(e.SendScintilla(Sci::SCI_LINEFROMPOSITION, p)); };
    // A deletion touches the lines of its first and last character: the line end of the line above the
    // mark is no part of the marked line, so deleting a whole line above leaves the mark where it was.
    const int first = lineOf(pos);
    const bool deletion = (type & Sci::SC_MOD_BEFOREDELETE) && length > 0;
    const int last = deletion ? lineOf(pos + length - 1) : first;
    // A deletion that ends where the marked line starts but begins inside a line joins the two.
    const bool joins = deletion && pos + length == e.SendScintilla(Sci::SCI_POSITIONFROMLINE, marked) &&
                       pos != e.SendScintilla(Sci::SCI_POSITIONFROMLINE, first);
    if ((marked >= first && marked <= last) || joins)
        q.clearMessageMark();
}

void SourceView::Impl::defineToneStyles() {
    const QFont font = baseFont();
    const QByteArray family = font.family().toUtf8();
    const QColor paper = toQColor(textBack);
    const auto define = [&](int style, const QColor& color, int attribute) {
        e.SendScintilla(Sci::SCI_STYLESETFORE, style, color);
        e.SendScintilla(Sci::SCI_STYLESETBACK, style, paper);
        e.SendScintilla(Sci::SCI_STYLESETFONT, uintptr_t(style), family.constData());
        e.SendScintilla(Sci::SCI_STYLESETSIZEFRACTIONAL, style,
                        long(font.pointSizeF() * int(Sci::SC_FONT_SIZE_MULTIPLIER)));
        e.SendScintilla(attribute, style, 1L);
    };
    for (int t = 0; t < kTones; ++t) {
        define(kFirstToneStyle + t, kToneColors[t], Sci::SCI_STYLESETBOLD);
        const int indicator = kFirstIndicator + t;
        e.SendScintilla(Sci::SCI_INDICSETSTYLE, indicator, long(Sci::INDIC_TEXTFORE));
        e.SendScintilla(Sci::SCI_INDICSETFORE, indicator, kToneColors[t]);
    }
    define(kNoteStyle, kNoteColor, Sci::SCI_STYLESETITALIC);
    // The tag strip's untagged lines take the line numbers' background; a plain view shows no numbers.
    e.SendScintilla(Sci::SCI_STYLESETBACK, Sci::STYLE_LINENUMBER, paper);
}

void SourceView::setLineTag(int line, const QString& tag, LineTone tone) {
    SourceViewEditor& e = *editor_;
    if (!d->tagStrip) {
        d->tagStrip = true;
        d->applyMargins();
    }
    const int t = toneIndex(tone);
    e.setMarginText(line, tag, kFirstToneStyle + t);
    const long start = e.SendScintilla(Sci::SCI_POSITIONFROMLINE, line);
    const long end = e.SendScintilla(Sci::SCI_GETLINEENDPOSITION, line);
    // A compile's output tags thousands of fresh lines: clearing the other tones there is wasted work.
    const bool retagged = d->taggedLines.contains(line);
    d->taggedLines.insert(line);
    for (int other = 0; other < kTones; ++other) {
        if (other != t && !retagged)
            continue;
        e.SendScintilla(Sci::SCI_SETINDICATORCURRENT, kFirstIndicator + other);
        if (other == t)
            e.SendScintilla(Sci::SCI_INDICATORFILLRANGE, start, end - start);
        else
            e.SendScintilla(Sci::SCI_INDICATORCLEARRANGE, start, end - start);
    }
}

void SourceView::setLineNote(int line, const QString& note) {
    d->noted = true;
    editor_->annotate(line, note, kNoteStyle);
    editor_->setAnnotationDisplay(QsciScintilla::AnnotationIndented);
}

void SourceView::clearLineTags() {
    // Every load clears; a view that was never tagged has nothing to clear, and the control's clearing
    // isn't free.
    if (!d->tagStrip && !d->noted)
        return;
    SourceViewEditor& e = *editor_;
    d->taggedLines.clear();
    d->noted = false;
    e.clearMarginText();
    e.clearAnnotations();
    const long length = e.SendScintilla(Sci::SCI_GETLENGTH);
    for (int t = 0; t < kTones; ++t) {
        e.SendScintilla(Sci::SCI_SETINDICATORCURRENT, kFirstIndicator + t);
        e.SendScintilla(Sci::SCI_INDICATORCLEARRANGE, 0L, length);
    }
    if (d->tagStrip) {
        d->tagStrip = false;
        d->applyMargins();
    }
}

QString SourceView::lineTag(int line) const {
    const auto& e = *editor_;
    const long n = e.SendScintilla(Sci::SCI_MARGINGETTEXT, uintptr_t(line), static_cast<const char*>(nullptr));
    QByteArray text(int(n), '\0');
    e.SendScintilla(Sci::SCI_MARGINGETTEXT, uintptr_t(line), text.constData());
    return QString::fromUtf8(text);
}

std::optional<LineTone> SourceView::lineTone(int line) const {
    if (lineTag(line).isEmpty())
        return std::nullopt;
    const int t = int(editor_->SendScintilla(Sci::SCI_MARGINGETSTYLE, line)) - kFirstToneStyle;
    if (t < 0 || t >= kTones)
        return std::nullopt;
    return LineTone(t);
}

QString SourceView::lineNote(int line) const { return editor_->annotation(line); }
