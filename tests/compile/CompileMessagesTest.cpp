// The messages read from a compile's output, the .ASM tags, and the messages placed at their files here.
#include "compile/AsmTags.h"
#include "compile/CompileMessages.h"
#include "support/Files.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

using S = CompileMessage::Severity;

struct Expected {
    S severity;
    QString file;
    int line;
    QString text;
    bool fromAssembler;
};

}  // namespace

void PrintTo(const AsmTag& t, std::ostream* os) { *os << t.asmLine << ": " << t.file.toStdString() << " " << t.line; }
void PrintTo(const CompileMessage& m, std::ostream* os) {
    *os << int(m.severity) << " " << m.file.toStdString() << ":" << m.line << " \"" << m.text.toStdString() << "\" @"
        << m.outputLine << " asm " << m.asmFile.toStdString() << ":" << m.asmLine;
}
void PrintTo(const OutputMessage& m, std::ostream* os) {
    PrintTo(m.message, os);
    *os << (m.fromAssembler ? " (assembler)" : "");
}

TEST(CompileMessages, EachFormatGivesItsSeverityFileLineAndText) {
    const std::pair<const char*, Expected> lines[] = {
        // The BASIC compilers, with and without the file, with and without the line.
        {"ERROR Line 12: Bad expression. (blink.pbp)", {S::Error, "blink.pbp", 12, "Bad expression.", false}},
        {"ERROR Line 12: Bad expression.", {S::Error, "", 12, "Bad expression.", false}},
        {"WARNING Line 3: Variable already an internal variable. (C:\\PBP\\INC\\MY LIB.BAS)",
         {S::Warning, "C:\\PBP\\INC\\MY LIB.BAS", 3, "Variable already an internal variable.", false}},
        {"  ERROR  LINE 7 :  Syntax error.  ", {S::Error, "", 7, "Syntax error.", false}},
        {"ERROR Line 5: Bad variable (PORTB.0)", {S::Error, "", 5, "Bad variable (PORTB.0)", false}},
        {"ERROR Line 5: Bad value (x + y)", {S::Error, "", 5, "Bad value (x + y)", false}},
        {"ERROR Line 5: Bad(blink.pbp)", {S::Error, "", 5, "Bad(blink.pbp)", false}},
        {"ERROR Line 5: (my led/blink.pbp)", {S::Error, "my led/blink.pbp", 5, "", false}},
        {"ERROR: Unable to open file BLINK.PBP", {S::Error, "", 0, "Unable to open file BLINK.PBP", false}},
        {"Fatal: Unable to open file. (blink.pbp)", {S::Error, "blink.pbp", 0, "Unable to open file.", false}},
        {"FATAL ERROR Line 9: Too many errors. (blink.pbp)", {S::Error, "blink.pbp", 9, "Too many errors.", false}},
        {"Fatal out of memory", {S::Error, "", 0, "out of memory", false}},
        {"Warning: Device not known", {S::Warning, "", 0, "Device not known", false}},
        // The PM assembler.
        {"Error BLINK.ASM 47 : [202] illegal character", {S::Error, "BLINK.ASM", 47, "[202] illegal character", true}},
        {"Warning my led/b.asm 8: [107] label", {S::Warning, "my led/b.asm", 8, "[107] label", true}},
        // MPASM: the path may hold blanks and digits.
        {"Error[113] C:\\PBP\\BLINK.ASM 47 : Symbol not previously defined (nowhere)",
         {S::Error, "C:\\PBP\\BLINK.ASM", 47, "[113] Symbol not previously defined (nowhere)", true}},
        {"Warning[205]   Z:\\HOME\\ANN\\LED 2 WORK\\BLIN~4HD.ASM 120 : Found directive in column 1. (LIST)",
         {S::Warning, "Z:\\HOME\\ANN\\LED 2 WORK\\BLIN~4HD.ASM", 120, "[205] Found directive in column 1. (LIST)",
          true}},
        {"Message[302] C:\\PBP\\BLINK.ASM 61 : Register in operand not in bank 0.",
         {S::Note, "C:\\PBP\\BLINK.ASM", 61, "[302] Register in operand not in bank 0.", true}},
        {"Error[173] : source file path exceeds 62 characters", {S::Error, "", 0, "[173] source file path exceeds 62 characters", true}},
        // gpasm as it prints, and with a blank before the number; a Windows path keeps its colon.
        {"blink.asm:47:Error[113]   Symbol not previously defined: \"nowhere\"",
         {S::Error, "blink.asm", 47, "[113] Symbol not previously defined: \"nowhere\"", true}},
        {"blink.asm:47:Error [113] Symbol", {S::Error, "blink.asm", 47, "[113] Symbol", true}},
        {"/home/ann/led work/blink.asm:4:Warning[219] Invalid RAM location specified.",
         {S::Warning, "/home/ann/led work/blink.asm", 4, "[219] Invalid RAM location specified.", true}},
        {"C:\\A\\B.ASM:6:Message[302] Register in operand", {S::Note, "C:\\A\\B.ASM", 6, "[302] Register in operand", true}},
    };
    for (const auto& [line, e] : lines) {
        const OutputMessage want{{e.severity, e.file, e.line, e.text, 0, {}, 0}, e.fromAssembler};
        EXPECT_EQ(parseMessageLine(QString::fromUtf8(line)), want) << line;
    }
}

TEST(CompileMessages, OtherLinesAreNoMessages) {
    const char* plain[] = {
        "", "E", "PICBASIC PRO(TM) Compiler 3.1.5, (c) 1997, 2022 microEngineering Labs, Inc.",
        "Errors: 0", "ERRORS Line 3: x", "Warnings 2", "1 error in blink.pbp", "ERROR in first",
        "ERROR Line x: Syntax error.", "ERROR Line 1234567890: too far", "Message: hello",
        "ERROR[113] C:\\A.ASM 4 : x", "error Line 3: lower case", "Error BLINK.ASM : no line",
        "blink.asm:47:Note[113] x", "blink.asm:47:Error 113 x", "blink.asm:x:Error[113] x", ":47:Error[1] x",
        "wine: could not load kernel32.dll", "exit status 1", "Fatal", "FATALITY: none",
    };
    for (const char* line : plain)
        EXPECT_EQ(parseMessageLine(QString::fromUtf8(line)), std::nullopt) << line;
}

TEST(CompileMessages, OutputLinesAreCountedAcrossCrlfLfAndCr) {
    for (const char* end : {"\n", "\r\n", "\r"}) {
        SCOPED_TRACE(end);
        const QString e = QString::fromLatin1(end);
        const QString output = "PICBASIC PRO(TM) Compiler 3.1.5" + e + e + "ERROR Line 2: a. (x.pbp)" + e +
                               "blink.asm:4:Warning[219] b" + e + "done" + e + "Error[113] B.ASM 9 : c";
        const auto messages = parseOutputMessages(output);
        ASSERT_EQ(messages.size(), 3u);
        EXPECT_EQ(QList<int>({messages[0].message.outputLine, messages[1].message.outputLine,
                              messages[2].message.outputLine}),
                  QList<int>({2, 3, 5}));
        EXPECT_EQ(messages[0].message.text, "a.");
        EXPECT_EQ(messages[2].message.text, "[113] c");
    }
    // A CR LF pair is one line end, a LF CR pair two.
    EXPECT_EQ(parseOutputMessages(u"\n\r\r\nERROR: x").at(0).message.outputLine, 3);
    EXPECT_TRUE(parseOutputMessages(u"").empty());
}

TEST(CompileMessages, CountTextNamesErrorsAndWarningsButNotNotes) {
    auto of = [](std::initializer_list<S> severities) {
        std::vector<CompileMessage> ms;
        for (S s : severities)
            ms.push_back({s, {}, 0, {}, 0, {}, 0});
        return messageCountText(ms);
    };
    EXPECT_EQ(of({}), "no errors");
    EXPECT_EQ(of({S::Note, S::Note}), "no errors");
    EXPECT_EQ(of({S::Error}), "1 error");
    EXPECT_EQ(of({S::Warning}), "1 warning");
    EXPECT_EQ(of({S::Error, S::Warning, S::Note, S::Error}), "2 errors, 1 warning");
    EXPECT_EQ(of({S::Warning, S::Warning, S::Error}), "1 error, 2 warnings");
}

TEST(AsmTags, TagsAreTheCommentsThatNameAFileAndALine) {
    const QByteArray text = "; PBP generated\r\n"
                            "; C:\\PBP\\BLINK~1.PBP\t00012\tHIGH PORTB.0\r\n"  // line 2
                            "\tbsf PORTB, 0\r\n"
                            ";\tZ:\\HOME\\ANN\\MY LED\\INC.BAS\t00003\t\n"     // 4: no statement
                            "  ; /home/ann/lib.pbp\t7\tGOTO x\n"              // 5: any number of digits
                            "; comment\twith a tab\n"
                            "; \t00012\tno file\n"
                            "; a.pbp\t\tno line\n"
                            "; a.pbp\t1234567890\ttoo long\n"
                            "; a.pbp\t12x\tnot a number\n"
                            "\tgoto x ; a.pbp\t00001\tnot at the start\n"
                            "; caf\xe9.pbp\t00002\tLatin-1\n"                 // 12
                            "; caf\xc3\xa9.pbp\t00009";                        // 13: UTF-8, no line end
    const std::vector<AsmTag> tags = readAsmTags(text);
    const std::vector<AsmTag> want{{2, "C:\\PBP\\BLINK~1.PBP", 12},
                                   {4, "Z:\\HOME\\ANN\\MY LED\\INC.BAS", 3},
                                   {5, "/home/ann/lib.pbp", 7},
                                   {12, QString::fromUtf8("caf\xc3\xa9.pbp"), 2},
                                   {13, QString::fromUtf8("caf\xc3\xa9.pbp"), 9}};
    EXPECT_EQ(tags, want);
    // The nearest tag at or above a line.
    const std::pair<int, int> above[] = {{1, -1}, {2, 0}, {3, 0}, {4, 1}, {11, 2}, {12, 3}, {99, 4}};
    for (auto [line, index] : above)
        EXPECT_EQ(tagAbove(tags, line), index < 0 ? nullptr : &tags[size_t(index)]) << line;
    EXPECT_EQ(tagAbove({}, 5), nullptr);
    EXPECT_TRUE(asmTagsOfFile("/no/such/file.asm").empty());
}

TEST(PlaceMessages, AssemblerMessagesGoToTheTaggedBasicLineAndKeepTheirOwn) {
    QTemporaryDir dir;
    const QString asmFile = dir.filePath("blink.asm");
    const QByteArray asmText = "\tlist p=16f84a\n"
                               "; BLINK~1.PBP\t00003\tHIGH PORTB.0\n"
                               "\tbsf PORTB, 0\n"
                               "; INC\\LIB.BAS\t00010\tGOTO nowhere\n"
                               "\tgoto nowhere\n";
    ASSERT_TRUE(writeFile(asmFile, asmText));
    const QString output = "blink.asm:1:Warning[205] before any tag\n"
                           "blink.asm:5:Error[113] Symbol not previously defined\n"
                           "Error BLINK.ASM 3 : [202] illegal character\n"
                           "ERROR Line 4: Bad expression. (INC\\LIB.BAS)\n"
                           "ERROR Line 2: no file\n"
                           "Error[113] gone.asm 4 : no such .ASM\n";
    // The host's reading of names: upper-case DOS names are the lower-case files here.
    QStringList asked;
    const auto local = [&](const QString& named) {
        asked << named;
        return dir.filePath(QString(named).replace('\\', '/').toLower());
    };
    QStringList read;
    const auto tagsOf = [&](const QString& path) {
        read << path;
        return asmTagsOfFile(path);
    };
    const std::vector<CompileMessage> placed = placeMessages(parseOutputMessages(output), local, tagsOf);
    const QString pbp = dir.filePath("blink~1.pbp"), lib = dir.filePath("inc/lib.bas");
    const std::vector<CompileMessage> want{
        {S::Warning, asmFile, 1, "[205] before any tag", 0, {}, 0},
        {S::Error, lib, 10, "[113] Symbol not previously defined", 1, asmFile, 5},
        {S::Error, pbp, 3, "[202] illegal character", 2, asmFile, 3},
        {S::Error, lib, 4, "Bad expression.", 3, "", 0},
        {S::Error, "", 2, "no file", 4, "", 0},
        {S::Error, dir.filePath("gone.asm"), 4, "[113] no such .ASM", 5, "", 0},
    };
    ASSERT_EQ(placed.size(), want.size());
    for (size_t i = 0; i < want.size(); ++i)
        EXPECT_EQ(placed[i], want[i]) << i;
    // Each name is looked up once, each .ASM read once.
    EXPECT_EQ(asked, QStringList({"blink.asm", "INC\\LIB.BAS", "BLINK.ASM", "BLINK~1.PBP", "gone.asm"}));
    EXPECT_EQ(read, QStringList({asmFile, dir.filePath("gone.asm")}));
}
