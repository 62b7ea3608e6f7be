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
            if (firstKey(line) == (inside_ == Block::Asm ? Key::EndAsm : Key::EndConfig)) {
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
            if (label || pieces_.empty())
                continue;
            const Key second = pieces_.size() > 1 ? pieces_[1].key : Key::None;
            switch (pieces_[0].key) {
            case Key::If:
                // Only an IF whose statement ends at THEN has a block below it.
                if (pieces_.back().key == Key::Then)
                    open(Block::If, index);
                break;
            case Key::For:
                open(Block::For, index);
                break;
            case Key::While:
                open(Block::While, index);
                break;
            case Key::Do:
                open(Block::Do, index);
                break;
            case Key::Repeat:
                open(Block::Repeat, index);
                break;
            case Key::Select:
                open(Block::Select, index);
                break;
            case Key::EndIf:
                close(Block::If, index);
                break;
            case Key::End:  // END IF, END SELECT; END alone ends the program
                if (second == Key::If)
                    close(Block::If, index);
                else if (second == Key::Select)
                    close(Block::Select, index);
                break;
            case Key::Next:
                close(Block::For, index);
                break;
            case Key::Wend:
                close(Block::While, index);
                break;
            case Key::Loop:
                close(Block::Do, index);
                break;
            case Key::Until:
                close(Block::Repeat, index);
                break;
            case Key::EndSelect:
                close(Block::Select, index);
                break;
            case Key::Asm:
            case Key::Config:
                inside_ = pieces_[0].key == Key::Asm ? Block::Asm : Block::Config;
                open(inside_, index);
                return;
            default:
                break;
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
