// The program scanner on programs as users write them, in both dialects.
#include "language/ProgramScanner.h"
#include "support/Doubles.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace {

const char* const kindNames[] = {"Include", "Define", "Constant", "Variable", "Alias", "Symbol", "Label", "Subroutine"};

// One symbol a line: "line kind name detail".
QStringList described(const std::vector<ProgramSymbol>& symbols) {
    QStringList out;
    for (const ProgramSymbol& s : symbols)
        out << QStringLiteral("%1 %2 %3 %4").arg(s.line).arg(kindNames[int(s.kind)], s.name, symbolDetail(s)).trimmed();
    return out;
}

QStringList scanned(const QString& text) { return described(scanProgram(text)); }

const QString kProPicBasic = QStringLiteral(R"(' Blink and report over the serial port
' Note: a colon in a comment makes no label:
INCLUDE "modedefs.bas"
include "lcd_setup.pbp" ' second: the LCD
DEFINE OSC 20
Define HSER_BAUD 9600
#CONFIG
    __config _HS_OSC & _WDT_OFF
  cfg_label:
#ENDCONFIG
LED     VAR PORTB.0
Button1 Var PORTA.4 ' an alias: of a pin
count   VAR BYTE
total   VAR WORD
flags   var bit
big     VAR LONG BANK0
buf     VAR BYTE[16]
names   VAR byte [ MAXLEN ]  ' the length as written
lowb    VAR total.BYTE0
MAXLEN  CON 8
Delay   CON 500 ; half a second
SYMBOL  Relay = PORTB.1
main:
    GOSUB Blink
    gosub REPORT
    IF count > 10 THEN GOTO done
    LCDOUT $FE, 1, "Count: ", DEC count
    count = count + 1 : GOTO main
Blink:  HIGH LED : PAUSE Delay : LOW LED
    RETURN
report:
    HSEROUT ["Total: ", DEC total, 13, 10]
    RETURN
ASM
asm_label:
    movlw 5
    ; comment: here
ENDASM
REM done: nothing here
@ asm_one: nop
done: END)");

}  // namespace

TEST(ProgramScanner, FindsWhatAPicBasicProProgramDeclaresAndNothingInCommentsStringsOrAssembly) {
    const QStringList expected = {
        "2 Include modedefs.bas", "3 Include lcd_setup.pbp", "4 Define OSC 20", "5 Define HSER_BAUD 9600",
        "10 Alias LED PORTB.0", "11 Alias Button1 PORTA.4", "12 Variable count BYTE", "13 Variable total WORD",
        "14 Variable flags BIT", "15 Variable big LONG", "16 Variable buf BYTE[16]", "17 Variable names BYTE[MAXLEN]",
        "18 Alias lowb total.BYTE0", "19 Constant MAXLEN 8", "20 Constant Delay 500", "21 Symbol Relay PORTB.1",
        "22 Label main", "28 Subroutine Blink", "30 Subroutine report" /* gosub REPORT */,
        "40 Label done" /* reached by GOTO only */,
    };
    EXPECT_EQ(scanned(kProPicBasic), expected);
    // The line ends don't matter; a text that ends in one has an empty last line.
    QString crlf = kProPicBasic, cr = kProPicBasic;
    crlf.replace('\n', "\r\n");
    cr.replace('\n', '\r');
    EXPECT_EQ(scanned(crlf), expected);
    EXPECT_EQ(scanned(cr), expected);
    EXPECT_EQ(scanned("\n\r\n\rx VAR BYTE\n"), QStringList{"3 Variable x BYTE"});

    // The explorer's order by name: case ignored, then by line.
    std::vector<ProgramSymbol> byName = scanProgram(kProPicBasic + "\nLED2 VAR PORTB.2\nled CON 1");
    sortByName(byName);
    QStringList names;
    for (const ProgramSymbol& s : byName)
        names << s.name;
    EXPECT_EQ(names.join(' '), "big Blink buf Button1 count Delay done flags HSER_BAUD lcd_setup.pbp LED led LED2 lowb "
                               "main MAXLEN modedefs.bas names OSC Relay report total");
    EXPECT_EQ(described(byName).mid(10, 3),
              (QStringList{"10 Alias LED PORTB.0", "42 Constant led 1", "41 Alias LED2 PORTB.2"}));
}

TEST(ProgramScanner, ReadsPicBasicsSymbolsAndLabelsAndTheSubroutinesOfOnGosub) {
    const QString program = QStringLiteral(
        "' PicBasic: SYMBOL and labels\n"
        "Symbol LED = 0\n"
        "symbol Count = B2\n"
        "SYMBOL Delay=250\n"
        "loop: High LED\n"
        "    gosub wait : Low LED : Goto loop\n"
        "Wait:\n"
        "    Pause Delay\n"
        "    Return\n"
        "ON idx GOSUB first, Second ,third\n"
        "FIRST: Return\n"
        "second: Return\n"
        "third: Return\n"
        "fourth: Return ' ON x GOSUB fourth, in a comment\n");
    EXPECT_EQ(scanned(program), (QStringList{"1 Symbol LED 0", "2 Symbol Count B2", "3 Symbol Delay 250", "4 Label loop",
                                             "6 Subroutine Wait", "10 Subroutine FIRST", "11 Subroutine second",
                                             "12 Subroutine third", "13 Label fourth"}));
}

TEST(ProgramScanner, LinesBeingTypedAndLinesThatOnlyLookLikeDeclarations) {
    const std::pair<const char*, QStringList> cases[] = {
        {"x VAR", {"0 Variable x"}},  // the size not typed yet
        {"x CON", {"0 Constant x"}},
        {"INCLUDE \"half", {"0 Include half"}},
        {"INCLUDE \"\"", {}},
        {"INCLUDE", {}},
        {"DEFINE", {}},
        {"SYMBOL = 3", {}},
        {"arr VAR WORD[4", {"0 Variable arr WORD[4]"}},
        {"Clear: x = 1", {}},          // a statement word and a colon: no label
        {"ENDIF : RETURN", {}},
        {"LOOP : GOSUB x\nx:", {"1 Subroutine x"}},  // a PicBasic Pro 3 word, a blank, ':': a statement
        {"loop:", {"0 Label loop"}},                  // ... without the blank, the label older programs use
        {"  indented: x VAR BYTE", {"0 Label indented", "0 Variable x BYTE"}},
        {"x = 1 : notlabel:", {}},     // a label starts its line
        {"main ' note: here", {}},
        {"LCDOUT \"time: \", x", {}},
        {"#IF x : #DEFINE y", {}},
        {"rem: this is a comment", {}},
        {"Remote: GOSUB remote", {"0 Subroutine Remote"}},
        {"caf\u00e9 VAR BYTE", {"0 Variable caf\u00e9 BYTE"}},
        {"ASM : x VAR BYTE\ny VAR BYTE\n  endasm\nz VAR BYTE", {"3 Variable z BYTE"}},
        {"ASM\nx VAR BYTE", {}},       // an assembly block without its end runs to the end of the text
        {"@ x VAR BYTE\ny VAR BIT", {"1 Variable y BIT"}},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(scanned(QString::fromUtf8(text)), expected) << text;
}

TEST(ProgramScanner, AnIncludeIsLookedForAsAFullPathThenBesideTheProgramThenBesideTheCompiler) {
    TestWorld world;
    const QString program = world.write("src/main.pbp", "INCLUDE \"lib.bas\"");
    const QString compiler = world.write("pbp/PBPW.EXE", "");
    const QString beside = world.write("src/lib.bas", "");
    const QString shipped = world.write("pbp/modedefs.bas", "");
    const QString nested = world.write("src/inc/lcd.bas", "");
    const std::pair<QString, QString> cases[] = {
        {"lib.bas", beside},  {"modedefs.bas", shipped}, {"inc\\lcd.bas", nested}, {" inc/lcd.bas ", nested},
        {nested, nested},     {"missing.bas", ""},       {"", ""},                  {"inc", ""},
    };
    for (const auto& [included, found] : cases)
        EXPECT_EQ(includedFile(included, program, compiler), found) << included.toStdString();
    EXPECT_EQ(includedFile("modedefs.bas", program, ""), "") << "no compiler set";
}
