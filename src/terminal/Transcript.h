#pragma once
// The terminal's record of what came in (and, with local echo, what went out), and its text in the text
// view or the hex view. The record is shown a slice at a time, so that a flood of bytes or a switch of
// view never holds up the event loop: each slice gives the edits that bring the view up to date.

#include "terminal/TerminalSettings.h"

#include <QByteArray>
#include <QString>
#include <QTime>
#include <deque>
#include <vector>

enum class Direction { In, Out };

// A change to the end of a view: take removeTail characters off the end, then add text.
struct ViewEdit {
    qsizetype removeTail = 0;
    QString text;
    Direction direction = Direction::In;
};

// The text of a view, made as the traffic comes.
//   Text: UTF-8; CR, LF and CR LF each end a line; other control characters show as their pictures
//   (U+2400...); a change of direction starts a new line; a line is broken after kMaxLine characters.
//   Hex: rows of up to 16 bytes of one direction, the digits, then the bytes as ASCII ('.' for others);
//   a row that fills up is written again in place.
// With time stamps each line and row starts with the time its first byte came, "[12:34:56.789] ".
class TrafficRender {
public:
    static constexpr qsizetype kMaxLine = 2000;
    static constexpr int kRowBytes = 16;
    TrafficRender(TerminalView view = TerminalView::Text, bool stamps = false) : view_(view), stamps_(stamps) {}
    ViewEdit add(Direction d, QByteArrayView bytes, QTime at);

private:
    ViewEdit addText(Direction d, QByteArrayView bytes, QTime at);
    ViewEdit addHex(Direction d, QByteArrayView bytes, QTime at);
    QString rowText() const;

    TerminalView view_;
    bool stamps_;
    bool empty_ = true;
    Direction last_ = Direction::In;
    // Text
    // The start of a UTF-8 character that the next piece finishes, for each direction.
    QByteArray held_[2];
    bool pendingCr_[2] = {false, false};
    bool atLineStart_ = true;
    qsizetype lineLength_ = 0;
    // Hex: the last row, and how long its text is in the view.
    QByteArray row_;
    QTime rowAt_;
    qsizetype rowShown_ = 0;
};

// "[12:34:56.789] "
QString stampText(QTime at);

struct Traffic {
    Direction direction;
    QTime at;
    QByteArray bytes;
};

class Transcript {
public:
    // keep: about how many bytes the record holds before its oldest traffic goes.
    explicit Transcript(qsizetype keep = 4 << 20) : keep_(keep) {}

    void add(Direction d, const QByteArray& bytes, QTime at);
    void clear();
    // The view is emptied and shows the whole record again, in this form.
    void restart(TerminalView view, bool stamps);
    // The edits that show the next bytes of the record, budget of them at most; none when all are shown.
    std::vector<ViewEdit> next(qsizetype budget);
    bool shownAll() const;
    // The whole record in one form, as a log file holds it.
    QString text(TerminalView view, bool stamps) const;
    const std::deque<Traffic>& record() const { return record_; }

private:
    qsizetype keep_;
    qsizetype held_ = 0;
    TerminalView view_ = TerminalView::Text;
    bool stamps_ = false;
    std::deque<Traffic> record_;
    // The next byte to show: its traffic and its place in it.
    std::size_t showIndex_ = 0;
    qsizetype showOffset_ = 0;
    TrafficRender render_;
};
