#include "language/ProgramScanner.h"

#include "language/StatementLexer.h"

#include <QSet>
#include <algorithm>

using namespace lexer;

namespace {

bool isSize(QStringView w) {
    return sameWord(w, "BYTE") || sameWord(w, "WORD") || sameWord(w, "BIT") || sameWord(w, "LONG");
}

class Scanner {
public:
    std::vector<ProgramSymbol> run(QStringView text) {
        forEachLine(text, [this](int index, QStringView line) { scanLine(index, line); });
        for (ProgramSymbol& s : out_)
            if (s.kind == SymbolKind::Label && gosubs_.contains(s.name.toUpper()))
                s.kind = SymbolKind::Subroutine;
        return std::move(out_);
    }

private:
    enum class Block { None, Asm, Config };

    void scanLine(int index, QStringView line) {
        if (block_ != Block::None) {
            const QStringView first = firstWord(line);
            if (sameWord(first, block_ == Block::Asm ? "ENDASM" : "#ENDCONFIG"))
                block_ = Block::None;
            return;
        }
        LineLexer lex(line);
        bool firstStatement = true;
        while (lex.next(pieces_)) {
            const bool first = firstStatement;
            firstStatement = false;
            if (pieces_.isEmpty())
                continue;
            // The statement after a label is read as the next one.
            if (isLabel(lex, pieces_, first)) {
                add(SymbolKind::Label, lex.text(pieces_[0]), index);
                continue;
            }
            if (!statement(index, lex))
                return;
        }
    }

    // False when the rest of the line is no BASIC.
    bool statement(int index, const LineLexer& lex) {
        const Pieces& p = pieces_;
        auto word = [&](int i) { return i < p.size() && p[i].kind == Kind::Word ? lex.text(p[i]) : QStringView(); };
        const QStringView w0 = word(0);
        if (p[0].kind == Kind::Char && lex.text(p[0]) == u"@")
            return false;  // a line of assembly
        collectGosubs(lex);
        if (sameWord(w0, "ASM")) {
            block_ = Block::Asm;
            return false;
        }
        if (sameWord(w0, "#CONFIG")) {
            block_ = Block::Config;
            return false;
        }
        if (sameWord(w0, "INCLUDE")) {
            if (p.size() < 2)
                return true;
            QStringView file = lex.rest(p[1].start);
            if (p[1].kind == Kind::String) {
                file = lex.text(p[1]).sliced(1);  // the closing quote may be missing while it is typed
                if (file.endsWith(u'"'))
                    file.chop(1);
            }
            if (!file.isEmpty())
                add(SymbolKind::Include, file, index);
            return true;
        }
        if (sameWord(w0, "DEFINE")) {
            if (const QStringView name = word(1); !name.isEmpty())
                add(SymbolKind::Define, name, index).value = lex.rest(p[1].end).toString();
            return true;
        }
        if (sameWord(w0, "SYMBOL")) {
            if (const QStringView name = word(1); !name.isEmpty()) {
                const int from = p.size() > 2 && lex.text(p[2]) == u"=" ? p[2].end : p[1].end;
                add(SymbolKind::Symbol, name, index).value = lex.rest(from).toString();
            }
            return true;
        }
        if (w0.isEmpty() || w0.startsWith(u'#'))
            return true;
        const QStringView w1 = word(1);
        if (sameWord(w1, "CON")) {
            add(SymbolKind::Constant, w0, index).value = lex.rest(p[1].end).toString();
        } else if (sameWord(w1, "VAR")) {
            const QStringView size = word(2);
            if (p.size() == 2 || isSize(size)) {
                ProgramSymbol& s = add(SymbolKind::Variable, w0, index);
                s.size = size.toString().toUpper();
                if (p.size() > 3 && lex.text(p[3]) == u"[") {
                    int close = 4;
                    while (close < p.size() && lex.text(p[close]) != u"]")
                        ++close;
                    const int end = close < p.size() ? p[close].start : lex.statementEnd();
                    s.length = lex.text(p[3].end, end).trimmed().toString();
                }
            } else {
                add(SymbolKind::Alias, w0, index).value = lex.rest(p[2].start).toString();
            }
        }
        return true;
    }

    // GOSUB name, and ON x GOSUB a, b, c.
    void collectGosubs(const LineLexer& lex) {
        const Pieces& p = pieces_;
        for (int i = 0; i < p.size(); ++i) {
            if (p[i].kind != Kind::Word || !sameWord(lex.text(p[i]), "GOSUB"))
                continue;
            for (int j = i + 1; j < p.size() && p[j].kind == Kind::Word; j += 2) {
                gosubs_.insert(lex.text(p[j]).toString().toUpper());
                if (j + 1 >= p.size() || lex.text(p[j + 1]) != u",")
                    break;
            }
        }
    }

    ProgramSymbol& add(SymbolKind kind, QStringView name, int line) {
        out_.push_back(ProgramSymbol{kind, name.toString(), line, {}, {}, {}});
        return out_.back();
    }

    std::vector<ProgramSymbol> out_;
    QSet<QString> gosubs_;
    Pieces pieces_;
    Block block_ = Block::None;
};

}  // namespace

std::vector<ProgramSymbol> scanProgram(QStringView text) { return Scanner().run(text); }

QString symbolDetail(const ProgramSymbol& s) {
    switch (s.kind) {
    case SymbolKind::Variable:
        return s.length.isEmpty() ? s.size : s.size + u'[' + s.length + u']';
    case SymbolKind::Define:
    case SymbolKind::Constant:
    case SymbolKind::Alias:
    case SymbolKind::Symbol:
        return s.value;
    default:
        return {};
    }
}

void sortByName(std::vector<ProgramSymbol>& symbols) {
    std::stable_sort(symbols.begin(), symbols.end(), [](const ProgramSymbol& a, const ProgramSymbol& b) {
        const int c = QString::compare(a.name, b.name, Qt::CaseInsensitive);
        return c != 0 ? c < 0 : a.line < b.line;
    });
}
