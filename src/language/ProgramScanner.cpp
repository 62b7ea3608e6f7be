#include "language/ProgramScanner.h"

#include "language/StatementLexer.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QStringList>
#include <algorithm>

using namespace lexer;

namespace {

// The size a key names, null for another key.
QString sizeOf(Key k) {
    switch (k) {
    case Key::Bit:
        return QStringLiteral("BIT");
    case Key::Byte:
        return QStringLiteral("BYTE");
    case Key::Word:
        return QStringLiteral("WORD");
    case Key::Long:
        return QStringLiteral("LONG");
    default:
        return {};
    }
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
            if (firstKey(line) == (block_ == Block::Asm ? Key::EndAsm : Key::EndConfig))
                block_ = Block::None;
            return;
        }
        LineLexer lex(line);
        bool firstStatement = true;
        while (lex.next(pieces_)) {
            const bool first = firstStatement;
            firstStatement = false;
            if (pieces_.empty())
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
        const int n = int(p.size());
        auto word = [&](int i) { return i < n && p[i].kind == Kind::Word ? lex.text(p[i]) : QStringView(); };
        auto key = [&](int i) { return i < n ? p[i].key : Key::None; };
        if (lex.is(p[0], u'@'))
            return false;  // a line of assembly
        collectGosubs(lex);
        switch (p[0].key) {
        case Key::Asm:
            block_ = Block::Asm;
            return false;
        case Key::Config:
            block_ = Block::Config;
            return false;
        case Key::Include: {
            if (n < 2)
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
        case Key::Define:
            if (const QStringView name = word(1); !name.isEmpty())
                add(SymbolKind::Define, name, index).value = lex.rest(p[1].end).toString();
            return true;
        case Key::Symbol:
            if (const QStringView name = word(1); !name.isEmpty()) {
                const int from = n > 2 && lex.is(p[2], u'=') ? p[2].end : p[1].end;
                add(SymbolKind::Symbol, name, index).value = lex.rest(from).toString();
            }
            return true;
        default:
            break;
        }
        const QStringView w0 = word(0);
        if (w0.isEmpty() || w0.startsWith(u'#'))
            return true;
        if (key(1) == Key::Con) {
            add(SymbolKind::Constant, w0, index).value = lex.rest(p[1].end).toString();
        } else if (key(1) == Key::Var) {
            const QString size = sizeOf(key(2));
            if (n == 2 || !size.isNull()) {
                ProgramSymbol& s = add(SymbolKind::Variable, w0, index);
                s.size = size;
                if (n > 3 && lex.is(p[3], u'[')) {
                    int close = 4;
                    while (close < n && !lex.is(p[close], u']'))
                        ++close;
                    const int end = close < n ? p[close].start : lex.statementEnd();
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
        const int n = int(p.size());
        for (int i = 0; i < n; ++i) {
            if (p[i].key != Key::Gosub)
                continue;
            for (int j = i + 1; j < n && p[j].kind == Kind::Word; j += 2) {
                gosubs_.insert(lex.text(p[j]).toString().toUpper());
                if (j + 1 >= n || !lex.is(p[j + 1], u','))
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

QString includedFile(const QString& included, const QString& programPath, const QString& compilerPath) {
    QString name = included.trimmed();
    name.replace(u'\\', u'/');
    if (name.isEmpty())
        return {};
    QStringList candidates;
    if (QDir::isAbsolutePath(name))
        candidates << name;
    else
        for (const QString& beside : {programPath, compilerPath})
            if (!beside.isEmpty())
                candidates << QFileInfo(beside).dir().filePath(name);
    for (const QString& c : candidates)
        if (QFileInfo(c).isFile())
            return QDir::cleanPath(c);
    return {};
}
