#pragma once
// Styles the text for QScintilla with the line tokeniser: style number = token class.
//
// Only what is on screen is styled. When QScintilla asks for a long range (the user jumped to the end of
// a 100,000-line file), the lines off screen are skipped and remembered as stale; so are all lines when
// the word lists change. Stale lines are styled when they come on screen (restyleVisible, called before
// each paint), so neither opening, typing, jumping nor Refresh ever styles the whole text.
// The record only matters before the end of styling: an edit moves that end back to its line, and
// QScintilla asks again for every line from there that comes on screen.

#include "document/StaleLines.h"

#include <QByteArray>
#include <Qsci/qscilexercustom.h>

class Language;

class SourceLexer : public QsciLexerCustom {
    Q_OBJECT
public:
    SourceLexer(const Language& language, QObject* parent = nullptr);

    const char* language() const override { return "PicBasic"; }
    QString description(int style) const override;
    void styleText(int start, int end) override;

    // Styles the stale lines on screen; cheap when there are none.
    void restyleVisible();
    // Styles every line now (printing needs them all).
    void styleAll();

    // Lines styled so far: a test can see that only what is on screen was styled.
    long long linesStyled() const { return linesStyled_; }
    const StaleLines& staleLines() const { return stale_; }

private:
    long send(unsigned msg, unsigned long w = 0, long l = 0) const;
    // When the word lists or delimiters changed, all styling is stale.
    void checkLanguage();
    // The lines worth styling now: the screen and a page either side.
    std::pair<int, int> window() const;
    // Styles lines first..last (inclusive) and leaves the end of styling behind them.
    void styleLines(int first, int last);

    const Language& lang_;
    quint64 generation_ = 0;
    bool languageSeen_ = false;
    StaleLines stale_;
    QByteArray styles_;
    long long linesStyled_ = 0;
};
