#include "language/StatementTable.h"

#include "language/StatementLexer.h"
#include "platform/Failure.h"

#include <algorithm>

namespace {

using TextRow = std::array<const char*, 3>;

// The texts stand as the compilers' makers wrote them, misspellings included: they are what the user sees.
const TextRow kPBPRows[kPBPCodeRows] = {
    {"@", "@ Assembly Statement", "Insert One Line of Assembly Code"},
    {"Asm", "ASM", "Begin Assembly Language Code Section"},
    {"EndAsm", "", "End Assembly Language Code Section"},
    {"Branch", "BRANCH Index,[Label{,Label...}]", "Branch to a different label based on index value."},
    {"BranchL", "BRANCHL Index,[Label{,Label...}]", "Branch to a different label based on index value (Long BRANCH)."},
    {"Button", "BUTTON Pin,Down,Delay,Rate,BVar,Action,Label", "Debounce and auto-repeat input on specified pin."},
    {"Call", "CALL Label", "CALL assembly language subroutine."},
    {"Clear", "CLEAR", "Zero all variables."},
    {"Count", "COUNT Pin,Period,Var", "Count number of pulses on pin."},
    {"Data", "DATA {@Location,}Constant{,Constant...}", "Define initial contents of on-chip EEPROM."},
    {"Debug", "DEBUG Item{,Item...}", "Asynchronus serial output to fixed pin and baud."},
    {"Disable", "DISABLE", "Disable ON INTERRUPT processing."},
    {"DTMFOut", "DTMFOUT Pin,{Onms,Offms,}[Tone{,Tone...}]", "Produce touch-tones on a pin."},
    {"EEPROM", "EEPROM {Location,}[Constant{,Constant...}]", "Define initial contents of on-chip EEPROM."},
    {"Enable", "ENABLE", "Enable ON INTERRUPT processing."},
    {"End", "END", "Stop execution and enter low power mode."},
    {"For", "FOR Count = Start TO End {STEP {-} Inc}", "Repeatedly execute statements."},
    {"FreqOut", "FREQOUT pin,Onms,Frequency1{,Frequency2}", "Produce up to 2 frequencies on a pin."},
    {"GoSub", "GOSUB Label", "Call BASIC subroutine at specified label."},
    {"GoTo", "GOTO Label", "Continue execution at specified label."},
    {"High", "HIGH Pin", "Make pin output high."},
    {"HSerin", "HSERIN {ParityLabel,}{Timeout,Label,}[Item{,...}]", "Hardware asynchronous serial input."},
    {"HSerout", "HSEROUT [Item{,Item...}]", "Hardware asynchronous serial ouput."},
    {"I2CRead", "I2CREAD DataPin,ClockPin,Control,{Address,}[Var{,Var...}]{,Label}", "Read byte from I2C device."},
    {"I2CWrite", "I2CWRITE DataPin,ClockPin,Control,{Address,}[Value{,Value...}]{,Label}", "Write byte to I2C device."},
    {"IF", "IF Comp {AND/OR Comp...} THEN Label", "Coditionally execute statements."},
    {"Then", "IF Comp {AND/OR Comp...} THEN Label", "Coditionally execute statements."},
    {"Else", "ELSE", "Coditionally execute statements."},
    {"EndIF", "ENDIF", "End IF statement."},
    {"Input", "INPUT Pin", "Make pin an input."},
    {"LET", "{LET} Var = Value", "Assign result of an expression to a variable."},
    {"LCDOut", "LCDOUT Item{,Item...}", "Display characters on LCD."},
    {"LookDown", "LOOKDOWN Search,[Constant{,Constant...}],Var", "Search constant table for value."},
    {"LookDown2", "LOOKDOWN2 Search,{Test}[Value{,Value...}],Var", "Search constant/variable table for value."},
    {"LookUp", "LOOKUP Index,[Constant{,Constant...}],Var", "Fetch constant value from table."},
    {"LookUp2", "LOOKUP2 Index,[Value{,Value...}],Var", "Fetch constant/variable value from table."},
    {"Low", "LOW Pin", "Make pin output low."},
    {"NAP", "NAP Period", "Power down processor for short period of time."},
    {"INTERRUPT", "ON INTERRUPT GOTO Label", "Execute BASIC subroutine on an interrupt."},
    {"Output", "OUTPUT Pin", "Make pin an output."},
    {"Pause", "PAUSE Period", "Delay (1mSec resolution)."},
    {"PauseUs", "PAUSEUS Period", "Delay (1uSec resolution)."},
    {"Peek", "PEEK Address,Var", "Read byte from register."},
    {"Poke", "POKE Address,Value", "Write byte to register."},
    {"Pot", "POT Pin,Scale,Var", "Read potentiometer on specified pin."},
    {"PulsIn", "PULSIN Pin,State,Var", "Measure pulse width on a pin."},
    {"PulsOut", "PULSOUT Pin,Period", "Generate pulse to a pin."},
    {"PWM", "PWM Pin,Duty,Cycle", "Output pulse width modulated pulse train to pin."},
    {"Random", "RANDOM Var", "Generate pseudo-random number."},
    {"RCTime", "RCTIME Pin,State,Var", "Measure pulse width on a pin."},
    {"Read", "READ Address,Var", "Read byte from on-chip EEPROM."},
    {"Resume", "RESUME {Label}", "Continue execution after interrupt handling."},
    {"Return", "RETURN", "Continue at statement following last GOSUB."},
    {"Reverse", "REVERSE Pin", "Make output pin an input or an input pin an output."},
    {"SerIn", "SERIN Pin,Mode,{Timeout,Label,}{[Qual...],}{Item...}", "Asynchronous Serial input (BS1 Style)."},
    {"SerIn2", "SERIN2 DataPin{\\FlowPin},Mode,{ParityLabel,}{Timeout,Label,}[Item...]", "Asynchronous serial input (BS2 style)."},
    {"SerOut", "SEROUT Pin,Mode,[Item{,Item...}]", "Asynchronous serial output (BS1 style)."},
    {"SerOut2", "SEROUT2 DataPin,{\\FlowPin},Mode,{Pace,}{Timeout,Label,}[Item...]", "Asynchronous serial output (BS2 style)."},
    {"ShiftIn", "SHIFTIN DataPin,ClockPin,Mode,[Var{\\Bits}...]", "Synchronous serial input."},
    {"ShiftOut", "SHIFTOUT DataPin,ClockPin,Mode,[Var{\\Bits}...]", "Synchronous serial output."},
    {"Sleep", "SLEEP Period", "Power down processor for a period of time."},
    {"Sound", "SOUND Pin,[Note,Duration{,Note,Duration...}]", "Generate tone or white-nose on specified pin."},
    {"Stop", "STOP", "Stop program execution."},
    {"Swap", "SWAP Var,Var", "Exchange the values of two variables."},
    {"Toggle", "TOGGLE Pin", "Make pin an output and toggle state."},
    {"While", "WHILE Condition", "Execute statements while condition is true."},
    {"Wend", "WEND", "Execute statements while condition is true."},
    {"Write", "WRITE Address,Value", "Write byte to on-chip EEPROM."},
    {"XIN", "XIN DataPin,ZeroPin,{Timeout,Label,}[var{,...}]", "X-10 input."},
    {"XOUT", "XOUT DataPin,ZeroPin,[HouseCode\\KeyCode{\\Repeate}{....}]", "X-10 output."},
    {"VAR", "Label VAR Size", ""},
    {"CON", "Label CON Constant", ""},
    {"AND", "AND", ""},
    {"INCLUDE", "INCLUDE", ""},
    {"Next", "NEXT {Count}", ""},
    {"ADCIN", "ADCIN Channel,Variable", "Read A/D Channel x"},
    {"LCDIN", "LCDIN {address,}[variable{,...}]", "Read LCD RAM."},
    {"ClearWDT", "ClearWDT", "Clear Watchdog Timer."},
    {"DebugIn", "DEBUGIN {Timeout, Label,}[Item{,Item...}]", ""},
    {"Div32", "", ""},
    {"HPwm", "", ""},
    {"OWIn", "", ""},
    {"OWOut", "", ""},
    {"Select", "", ""},
    {"Case", "", ""},
    {"Is", "", ""},
    {"USBInit", "", ""},
    {"USBIn", "", ""},
    {"USBOut", "", ""},
    {"ON", "", ""},
    {"ReadCode", "", "Read the word-sized code at location Address into Var"},
    {"WriteCode", "", "Write the word-sized Value to the code space at location Address."},
    {"PeakCode", "", ""},
    {"PokeCode", "", ""},
    {"EraseCode", "", ""},
    {"TO", "", ""},
    {"STEP", "", ""},
};

const TextRow kPBCRows[kPBCCodeRows] = {
    {"Branch", "BRANCH Offset, (Label {,Label...})", "Branch to a different label based on index value."},
    {"Button", "BUTTON Pin,Down,Delay,Rate,BVar,Action,Label", "Debounce and auto-repeat input on specified pin."},
    {"Call", "CALL Label", "CALL assembly language subroutine."},
    {"Debug", "Debugging statement not supported by PBC.", "Debugging statement not supported by PBC."},
    {"EEPROM", "EEPROM {Location,}[Constant{,Constant...}]", "Define initial contents of on-chip EEPROM."},
    {"End", "END", "Stop execution and enter low power mode."},
    {"For", "FOR Count = Start TO End {STEP {-} Inc}", "Repeatedly execute statements."},
    {"GoSub", "GOSUB Label", "Call BASIC subroutine at specified label."},
    {"GoTo", "GOTO Label", "Continue execution at specified label."},
    {"High", "HIGH Pin", "Make pin output high."},
    {"I2CIN", "I2CIN Control, Address, Var {,Var...}", "Read byte from I2C device."},
    {"I2COUT", "I2COUT Control, Address, (Value {,Value...})", "Write byte to I2C device."},
    {"IF", "IF Comp {AND/OR Comp...} THEN Label", "Coditionally execute statements."},
    {"Then", "IF Comp {AND/OR Comp...} THEN Label", "Coditionally execute statements."},
    {"Input", "INPUT Pin", "Make pin an input."},
    {"LET", "{LET} Var = Value", "Assign result of an expression to a variable."},
    {"LookDown", "LOOKDOWN Search,(Constant{,Constant...}),Var", "Search constant table for value."},
    {"LookUp", "LOOKUP Index,(Constant{,Constant...}),Var", "Fetch constant value from table."},
    {"Low", "LOW Pin", "Make pin output low."},
    {"NAP", "NAP Period", "Power down processor for short period of time."},
    {"Output", "OUTPUT Pin", "Make pin an output."},
    {"Pause", "PAUSE Period", "Delay (1mSec resolution)."},
    {"PauseUs", "PAUSEUS Period", "Delay (1uSec resolution)."},
    {"Peek", "PEEK Address,Var", "Read byte from register."},
    {"Poke", "POKE Address,Value", "Write byte to register."},
    {"Pot", "POT Pin,Scale,Var", "Read potentiometer on specified pin."},
    {"PulsIn", "PULSIN Pin,State,Var", "Measure pulse width on a pin."},
    {"PulsOut", "PULSOUT Pin,Period", "Generate pulse to a pin."},
    {"PWM", "PWM Pin,Duty,Cycle", "Output pulse width modulated pulse train to pin."},
    {"Random", "RANDOM Var", "Generate pseudo-random number."},
    {"Read", "READ Address,Var", "Read byte from on-chip EEPROM."},
    {"Return", "RETURN", "Continue at statement following last GOSUB."},
    {"Reverse", "REVERSE Pin", "Make output pin an input or an input pin an output."},
    {"SerIn", "SERIN Pin, Mode, [ (Qual {,Qual...}), ] Item {,Item...}", "Asynchronous Serial input (BS1 Style)."},
    {"SerOut", "SEROUT Pin, Mode, Item{,Item...}", "Asynchronous serial output (BS1 style)."},
    {"Sleep", "SLEEP Period", "Power down processor for a period of time."},
    {"Sound", "SOUND Pin, (Note, Duration {,Note,Duration...})", "Generate tone or white-nose on specified pin."},
    {"Toggle", "TOGGLE Pin", "Make pin an output and toggle state."},
    {"Write", "WRITE Address,Value", "Write byte to on-chip EEPROM."},
    {"Next", "NEXT {Count}", ""},
};

// "ADC_SAMPLEUS 50" carries its value and can never match a word; "INTLHAND" stands twice. Both as shipped.
const char* const kDefines[kPBPDefineCount] = {
    "DEFINE", "ADC_BITS", "ADC_CLOCK", "ADC_SAMPLEUS 50", "BUTTON_PAUSE", "CHAR_PACING", "DEBUG_REG", "DEBUG_BIT",
    "DEBUG_BAUD", "DEBUG_MODE", "DEBUG_PACING", "DEBUGIN_REG", "DEBUGIN_BIT", "DEBUGIN_MODE", "HSER_RCSTA",
    "HSER_TXSTA", "HSER_BAUD", "HSER_EVEN", "HSER_ODD", "I2C_HOLD", "I2C_INTERNAL", "I2C_SCLOUT", "I2C_SLOW",
    "LCD_DREG", "LCD_DBIT", "LCD_RSREG", "LCD_RSBIT", "LCD_RWREG", "LCD_RWBIT", "LCD_EREG", "LCD_EBIT", "LCD_BITS",
    "LCD_LINES", "OSC", "OSCCAL_1K", "OSCCAL_2K", "SER2_BITS", "SHIFT_PAUSEUS", "HSER_SPBRG", "INTHAND",
    "ADC_SAMPLEUS", "HSER_CLROERR", "INTLHAND", "INTLHAND", "INTHAND8", "INTHAND10", "INTHAND18", "INTHAND20",
    "LCD_COMMANDUS", "LCD_DATAUS", "LOADER_USED", "SER2_ODD", "USE_LFSR", "NO_CLRWDT", "HPWM2_TMR", "HPWM3_TMR",
    "CCP1_REG", "CCP1_BIT", "CCP2_REG", "CCP2_BIT", "PULSIN_MAX", "I2C_SDA", "I2C_SCL", "ONINT_USED", "XINXLAT_OFF",
    "XOUTXLAT_OFF",
};

constexpr int kStatementClass = 10;

void writeRows(const TextRow* rows, int count, PBPCodeTable& codes) {
    for (int r = 0; r < count; ++r)
        for (int c = 0; c < 3; ++c)
            codes[r][c] = QString::fromLatin1(rows[r][c]);
}

QChar upper(QChar c) {
    const char16_t u = c.unicode();
    if (u >= u'a' && u <= u'z')
        return QChar(char16_t(u - 32));
    return u < 128 ? c : c.toUpper();
}

// Both sides upper-cased one character at a time, as the word sets match, so a word that colours as a
// statement finds its row.
bool sameUpper(QStringView a, QStringView b) {
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i)
        if (a[i] != b[i] && upper(a[i]) != upper(b[i]))
            return false;
    return true;
}

}  // namespace

void fillStatementTable(bool usePBP, PBPCodeTable& codes, PBPDefineTable& defines) {
    if (!usePBP) {
        writeRows(kPBCRows, kPBCCodeRows, codes);
        return;
    }
    writeRows(kPBPRows, kPBPCodeRows, codes);
    for (int i = 0; i < kPBPDefineCount; ++i)
        defines[i] = QString::fromLatin1(kDefines[i]);
}

bool statementTableFits(bool usePBP, const PBPCodeTable& codes) {
    return (codes[0][kCodeKey] == u"@") == usePBP;
}

const PBPCodeRow* statementRow(QStringView word, const PBPCodeTable& codes) {
    // Unlike the word sets, the search doesn't end at an empty key: all rows are tried.
    for (const PBPCodeRow& row : codes)
        if (sameUpper(word, row[kCodeKey]))
            return &row;
    return nullptr;
}

std::optional<QString> statementTip(QStringView word, const PBPCodeTable& codes) {
    if (const PBPCodeRow* row = statementRow(word, codes))
        return (*row)[kCodeTip];
    return std::nullopt;
}

std::optional<QString> caretTip(int tokenClass, QStringView line, int start, int length, const PBPCodeTable& codes) {
    if (tokenClass != kStatementClass)
        return QString();
    if (start < 0 || length < 0)
        throw invalidProcedureCall();
    // Past the end of the line the word is empty; a length past it takes what is there.
    const qsizetype from = std::min<qsizetype>(start, line.size());
    return statementTip(line.mid(from, std::min<qsizetype>(length, line.size() - from)), codes);
}

std::optional<QString> callTip(QStringView line, int caret, const PBPCodeTable& codes) {
    if (caret < 2 || caret > line.size() || (line[caret - 1] != u' ' && line[caret - 1] != u'\t'))
        return std::nullopt;
    // The last piece before the caret: none inside a comment, a string is no word.
    lexer::LineLexer lex(line.first(caret));
    lexer::Pieces pieces;
    lexer::Piece last{lexer::Kind::Char, lexer::Key::None, 0, -1};
    while (lex.next(pieces))
        if (!pieces.empty())
            last = pieces.back();
    if (last.end != caret - 1 || (last.kind != lexer::Kind::Word && !lex.is(last, u'@')))
        return std::nullopt;
    const PBPCodeRow* row = statementRow(lex.text(last), codes);
    if (!row || (*row)[kCodeSyntax].isEmpty())
        return std::nullopt;
    return (*row)[kCodeSyntax];
}
