#include "terminal/Transcript.h"

#include <algorithm>

namespace {

// What one traffic costs the record besides its bytes, so that many small pieces count too.
constexpr qsizetype kTrafficCost = 64;

int side(Direction d) { return d == Direction::In ? 0 : 1; }

QChar shown(QChar c) {
    if (c.unicode() < 0x20 && c != u'\t')
        return QChar(0x2400 + c.unicode());
    if (c.unicode() == 0x7F)
        return QChar(0x2421);
    return c;
}

// The bytes at the end that start a UTF-8 character the next piece finishes. A lead byte is never a
// continuation, so cutting before it reads the same as reading the pieces whole.
qsizetype unfinishedTail(QByteArrayView bytes) {
    for (qsizetype back = 1; back <= std::min<qsizetype>(3, bytes.size()); ++back) {
        const auto b = quint8(bytes[bytes.size() - back]);
        if (b < 0xC0)
            continue;
        // F5 to FF start nothing.
        const qsizetype needed = b >= 0xF5 ? 1 : b >= 0xF0 ? 4 : b >= 0xE0 ? 3 : 2;
        return needed > back ? back : 0;
    }
    return 0;
}

}  // namespace

// Made by hand: it comes at every line, and QTime::toString reads its format each time.
QString stampText(QTime at) {
    char s[] = "[00:00:00.000] ";
    auto put = [&](int at, int value, int digits) {
        for (int i = digits - 1; i >= 0; --i, value /= 10)
            s[at + i] = char('0' + value % 10);
    };
    put(1, at.hour(), 2);
    put(4, at.minute(), 2);
    put(7, at.second(), 2);
    put(10, at.msec(), 3);
    return QString::fromLatin1(s);
}

ViewEdit TrafficRender::add(Direction d, QByteArrayView bytes, QTime at) {
    ViewEdit e = view_ == TerminalView::Text ? addText(d, bytes, at) : addHex(d, bytes, at);
    last_ = d;
    if (!e.text.isEmpty())
        empty_ = false;
    return e;
}

ViewEdit TrafficRender::addText(Direction d, QByteArrayView bytes, QTime at) {
    ViewEdit e;
    e.direction = d;
    QString& out = e.text;
    if (d != last_ && !atLineStart_) {
        out += QLatin1Char('\n');
        atLineStart_ = true;
        lineLength_ = 0;
    }
    // Qt's own decoder, fed piece by piece, loses a byte after a broken sequence cut between pieces.
    QByteArray& held = held_[side(d)];
    held += bytes;
    const qsizetype tail = unfinishedTail(held);
    const QString text = QString::fromUtf8(QByteArrayView(held).first(held.size() - tail));
    held.remove(0, held.size() - tail);
    bool& pendingCr = pendingCr_[side(d)];
    auto startLine = [&] {
        if (atLineStart_ && stamps_)
            out += stampText(at);
        atLineStart_ = false;
    };
    for (const QChar c : text) {
        if (pendingCr) {
            pendingCr = false;
            if (c == u'\n')
                continue;
        }
        if (c == u'\r' || c == u'\n') {
            startLine();
            out += QLatin1Char('\n');
            atLineStart_ = true;
            lineLength_ = 0;
            pendingCr = c == u'\r';
            continue;
        }
        if (lineLength_ == kMaxLine) {
            out += QLatin1Char('\n');
            atLineStart_ = true;
            lineLength_ = 0;
        }
        startLine();
        out += shown(c);
        ++lineLength_;
    }
    return e;
}

QString TrafficRender::rowText() const {
    QString line = stamps_ ? stampText(rowAt_) : QString();
    QString digits = QString::fromLatin1(row_.toHex(' ').toUpper());
    digits.resize(kRowBytes * 3 - 1, QLatin1Char(' '));
    line += digits + QStringLiteral("  ");
    for (const char b : row_)
        line += (b >= 0x20 && b < 0x7F) ? QLatin1Char(b) : QLatin1Char('.');
    return line;
}

ViewEdit TrafficRender::addHex(Direction d, QByteArrayView bytes, QTime at) {
    ViewEdit e;
    e.direction = d;
    if (bytes.isEmpty())
        return e;
    const bool continues = !row_.isEmpty() && d == last_ && row_.size() < kRowBytes;
    if (continues) {
        e.removeTail = rowShown_;
    } else {
        row_.clear();
        rowAt_ = at;
        if (!empty_)
            e.text += QLatin1Char('\n');
    }
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (row_.size() == kRowBytes) {
            e.text += rowText() + QLatin1Char('\n');
            row_.clear();
            rowAt_ = at;
        }
        row_.append(bytes[i]);
    }
    const QString last = rowText();
    e.text += last;
    rowShown_ = last.size();
    return e;
}

void Transcript::add(Direction d, const QByteArray& bytes, QTime at) {
    if (bytes.isEmpty())
        return;
    record_.push_back({d, at, bytes});
    held_ += bytes.size() + kTrafficCost;
    // The oldest goes, the newest always stays.
    while (held_ > keep_ && record_.size() > 1) {
        held_ -= record_.front().bytes.size() + kTrafficCost;
        record_.pop_front();
        if (showIndex_ > 0) {
            --showIndex_;
        } else {
            showOffset_ = 0;
        }
    }
}

void Transcript::clear() {
    record_.clear();
    held_ = 0;
    showIndex_ = 0;
    showOffset_ = 0;
    render_ = TrafficRender(view_, stamps_);
}

void Transcript::restart(TerminalView view, bool stamps) {
    view_ = view;
    stamps_ = stamps;
    showIndex_ = 0;
    showOffset_ = 0;
    render_ = TrafficRender(view, stamps);
}

bool Transcript::shownAll() const { return showIndex_ >= record_.size(); }

std::vector<ViewEdit> Transcript::next(qsizetype budget) {
    std::vector<ViewEdit> edits;
    while (budget > 0 && !shownAll()) {
        const Traffic& t = record_[showIndex_];
        const qsizetype n = std::min(budget, t.bytes.size() - showOffset_);
        ViewEdit e = render_.add(t.direction, QByteArrayView(t.bytes).sliced(showOffset_, n), t.at);
        // Edits of one direction go together while what they take off was added in this slice.
        if (!edits.empty() && edits.back().direction == e.direction && edits.back().text.size() >= e.removeTail) {
            edits.back().text.chop(e.removeTail);
            edits.back().text += e.text;
        } else if (e.removeTail > 0 || !e.text.isEmpty()) {
            edits.push_back(std::move(e));
        }
        budget -= n;
        showOffset_ += n;
        if (showOffset_ == t.bytes.size()) {
            ++showIndex_;
            showOffset_ = 0;
        }
    }
    return edits;
}

QString Transcript::text(TerminalView view, bool stamps) const {
    TrafficRender render(view, stamps);
    QString out;
    for (const Traffic& t : record_) {
        const ViewEdit e = render.add(t.direction, t.bytes, t.at);
        out.chop(e.removeTail);
        out += e.text;
    }
    return out;
}
