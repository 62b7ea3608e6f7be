#include "language/ReservedWords.h"

#include <algorithm>

namespace {

// A key of blanks only ends the keys, as an empty one does.
bool blankKey(const QString& key) {
    return std::all_of(key.begin(), key.end(), [](QChar c) { return c == u' '; });
}

void addAll(std::vector<ReservedWord>& out, int set, std::initializer_list<const char*> words) {
    for (const char* w : words)
        out.push_back({set, QString::fromLatin1(w)});
}

// Words of the ports by index; GPIO has no TRIS register and there is no port I.
const char* const kPortWords[10][2] = {
    {"GPIO", nullptr},    {"PORTA", "TRISA"}, {"PORTB", "TRISB"}, {"PORTC", "TRISC"}, {"PORTD", "TRISD"},
    {"PORTE", "TRISE"}, {"PORTF", "TRISF"}, {"PORTG", "TRISG"}, {"PORTH", "TRISH"}, {"PORTJ", "TRISJ"},
};

std::vector<QString> makeModifiers() {
    std::vector<QString> out;
    const struct {
        const char* base;
        int widest;
    } kinds[] = {{"BIN", 16}, {"DEC", 5}, {"HEX", 4}};
    for (const auto& k : kinds) {
        const QString base = QString::fromLatin1(k.base);
        const QString forms[] = {base, QLatin1Char('I') + base, QLatin1Char('S') + base,
                                 QLatin1StringView("IS") + base};
        for (const QString& f : forms)
            out.push_back(f);
        for (int width = 1; width <= k.widest; ++width)
            for (const QString& f : forms)
                out.push_back(f + QString::number(width));
    }
    out.push_back(QStringLiteral("REP"));
    out.push_back(QStringLiteral("STR"));
    return out;
}

}  // namespace

const std::vector<QString>& pbp3Words(bool usePBP) {
    static const std::vector<QString> none;
    static const std::vector<QString> words = [] {
        std::vector<QString> out;
        for (const char* w : {"DO", "LOOP", "REPEAT", "UNTIL", "EXIT", "CONTINUE", "ARRAYREAD", "ARRAYWRITE",
                              "#CONFIG", "#ENDCONFIG", "#IF", "#IFDEF", "#IFNDEF", "#ELSE", "#ENDIF", "#DEFINE",
                              "#MSG", "#ERROR", "#WARNING"})
            out.push_back(QString::fromLatin1(w));
        return out;
    }();
    return usePBP ? words : none;
}

const std::vector<QString>& pbpModifiers() {
    static const std::vector<QString> modifiers = makeModifiers();
    return modifiers;
}

std::vector<ReservedWord> reservedWords(bool usePBP, const PBPCodeTable& codes, const PBPDefineTable& defines,
                                        const PortDigits& ports) {
    std::vector<ReservedWord> out;
    for (const PBPCodeRow& row : codes) {
        if (blankKey(row[kCodeKey]))
            break;
        out.push_back({WordSet::Statements, row[kCodeKey]});
    }
    if (!usePBP) {
        addAll(out, WordSet::Statements, {"Symbol"});
        addAll(out, WordSet::Math, {"MAX", "MIN"});
        addAll(out, WordSet::Logic, {"AND", "OR", "XOR", "NOT"});
        return out;
    }
    for (const QString& d : defines)
        out.push_back({WordSet::Defines, d});
    addAll(out, WordSet::VarSize, {"WORD", "BYTE", "BIT"});
    addAll(out, WordSet::Math, {"ABS", "COS", "DCD", "DIG", "MAX", "MIN", "NCD", "REV", "SIN", "SQR"});
    addAll(out, WordSet::Logic, {"AND", "OR", "XOR", "NOT"});
    for (const QString& m : pbpModifiers())
        out.push_back({WordSet::Modifiers, m});
    for (int i = 0; i < int(ports.size()); ++i) {
        if (ports[i] == 0)
            continue;
        for (const char* w : kPortWords[i])
            if (w)
                out.push_back({WordSet::Statements, QString::fromLatin1(w)});
    }
    return out;
}
