#include "language/Folding.h"

#include "language/StatementLexer.h"

#include <algorithm>

using namespace lexer;

namespace {

enum class Block { If, For, While, Do, Repeat, Select, Asm, Config, None };

struct Open {
    Block block;
    int line;
};

class Folder {
public:
    std::vector<FoldRange> run(QStringView text) {
        forEachLine(text, [this](int index, QStringView line) { foldLine(index, line); });
        std::sort(ranges_.begin(), ranges_.end(), [](const FoldRange& a, const FoldRange& b) {
            return a.first != b.first ? a.first < b.first : a.last > b.last;
        });
        return std::move(ranges_);
    }

private:
    void foldLine(int index, QStringView line) {
        if (inside_ != Block::None) {
            // Assembly and configuration text: only its closing word counts.
            if (sameWord(firstWord(line), inside_ == Block::Asm ? "ENDASM" : "#ENDCONFIG")) {
                close(inside_, index);
                inside_ = Block::None;
            }
            return;
        }
        LineLexer lex(line);
        bool first = true;
        while (lex.next(pieces_)) {
            const bool label = isLabel(lex, pieces_, first);
            first = false;
            if (label || pieces_.isEmpty() || pieces_[0].kind != Kind::Word)
                continue;
            const QStringView w0 = lex.text(pieces_[0]);
            const QStringView w1 = pieces_.size() > 1 && pieces_[1].kind == Kind::Word ? lex.text(pieces_[1]) : QStringView();
            if (sameWord(w0, "IF")) {
                // Only an IF whose statement ends at THEN has a block below it.
                if (sameWord(lex.text(pieces_.back()), "THEN"))
                    open(Block::If, index);
            } else if (sameWord(w0, "FOR")) {
                open(Block::For, index);
            } else if (sameWord(w0, "WHILE")) {
                open(Block::While, index);
            } else if (sameWord(w0, "DO")) {
                open(Block::Do, index);
            } else if (sameWord(w0, "REPEAT")) {
                open(Block::Repeat, index);
            } else if (sameWord(w0, "SELECT")) {
                open(Block::Select, index);
            } else if (sameWord(w0, "ENDIF") || (sameWord(w0, "END") && sameWord(w1, "IF"))) {
                close(Block::If, index);
            } else if (sameWord(w0, "NEXT")) {
                close(Block::For, index);
            } else if (sameWord(w0, "WEND")) {
                close(Block::While, index);
            } else if (sameWord(w0, "LOOP")) {
                close(Block::Do, index);
            } else if (sameWord(w0, "UNTIL")) {
                close(Block::Repeat, index);
            } else if (sameWord(w0, "ENDSELECT") || (sameWord(w0, "END") && sameWord(w1, "SELECT"))) {
                close(Block::Select, index);
            } else if (sameWord(w0, "ASM") || sameWord(w0, "#CONFIG")) {
                inside_ = sameWord(w0, "ASM") ? Block::Asm : Block::Config;
                open(inside_, index);
                return;
            }
        }
    }

    void open(Block b, int line) { stack_.push_back({b, line}); }

    // The nearest open block of the kind closes, and with it the blocks left open inside it.
    void close(Block b, int line) {
        for (auto it = stack_.rbegin(); it != stack_.rend(); ++it) {
            if (it->block != b)
                continue;
            if (it->line < line)
                ranges_.push_back({it->line, line});
            stack_.erase(std::prev(it.base()), stack_.end());
            return;
        }
    }

    std::vector<Open> stack_;
    std::vector<FoldRange> ranges_;
    Pieces pieces_;
    Block inside_ = Block::None;
};

}  // namespace

std::vector<FoldRange> foldRanges(QStringView text) { return Folder().run(text); }

std::vector<FoldLevel> foldLevels(const std::vector<FoldRange>& ranges, int lineCount) {
    std::vector<FoldLevel> out(size_t(std::max(lineCount, 0)));
    std::vector<int> step(out.size() + 1, 0);
    for (const FoldRange& r : ranges) {
        if (r.first < 0 || r.first >= r.last || r.first >= lineCount)
            continue;
        out[size_t(r.first)].header = true;
        ++step[size_t(r.first) + 1];
        --step[size_t(std::min(r.last, lineCount - 1)) + 1];
    }
    int depth = 0;
    for (size_t i = 0; i < out.size(); ++i)
        out[i].depth = depth += step[i];
    return out;
}
