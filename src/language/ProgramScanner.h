#pragma once
// What a program declares, read from its text: the INCLUDEs, DEFINEs, constants, variables, aliases,
// SYMBOLs and labels, each with its line. One grammar serves both compiler kinds: PicBasic programs name
// their things with SYMBOL and labels, PicBasic Pro programs with VAR, CON and DEFINE too.
// Comments, strings and ASM...ENDASM or #CONFIG...#ENDCONFIG blocks hold no symbols; names ignore case.
// A full scan is cheap enough to repeat after each pause in typing (see bench/language.cpp).

#include <QString>
#include <QStringView>
#include <vector>

enum class SymbolKind {
    Include,     // INCLUDE "file": the name is the file as written between the quotes
    Define,      // DEFINE OSC 20: name OSC, value 20
    Constant,    // Max CON 10
    Variable,    // buf VAR BYTE[16]: size BYTE, length 16
    Alias,       // LED VAR PORTB.0: value PORTB.0
    Symbol,      // SYMBOL LED = 0 (PicBasic's own declaration)
    Label,       // main: (a name and a colon at the start of a line)
    Subroutine,  // a label that some GOSUB reaches
};

struct ProgramSymbol {
    SymbolKind kind = SymbolKind::Label;
    QString name;
    int line = 0;    // from 0
    QString size;    // Variable: BIT, BYTE, WORD or LONG in upper case; empty while not yet typed
    QString length;  // Variable: the array length as written; empty for one value
    QString value;   // Define, Constant, Symbol: the value as written; Alias: what it names
    bool operator==(const ProgramSymbol&) const = default;
};

// Every symbol of the text, in the order of the text.
std::vector<ProgramSymbol> scanProgram(QStringView text);

// What a list shows beside the name: "BYTE[16]", "PORTB.0", "20"; empty for includes and labels.
QString symbolDetail(const ProgramSymbol& symbol);

// Sorted by name, letter case ignored, then by line: the explorer's order by name.
void sortByName(std::vector<ProgramSymbol>& symbols);

// The file an INCLUDE names, as the compiler looks for it: a full path as it stands, else beside the
// program, else beside the compiler. Backslashes are taken for the path separators the programs are
// written with. Empty when none of these exists.
QString includedFile(const QString& included, const QString& programPath, const QString& compilerPath);
