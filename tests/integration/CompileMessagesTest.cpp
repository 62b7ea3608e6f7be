// A compile's messages as its session holds them: read from the output of compiler doubles, with their
// files as paths here and assembler lines led back to the tagged BASIC lines (real gpasm: CompileTest).
#include "RunningFrame.h"

#include <QStandardPaths>
#include <QTemporaryDir>

using S = CompileMessage::Severity;

void PrintTo(const CompileMessage& m, std::ostream* os) {
    *os << int(m.severity) << " " << m.file.toStdString() << ":" << m.line << " \"" << m.text.toStdString() << "\" @"
        << m.outputLine << " asm " << m.asmFile.toStdString() << ":" << m.asmLine;
}

namespace {

// A compiler double that prints a message of every format, with CRLF and LF line ends, and fails.
const QByteArray kEveryFormat =
    "#!/bin/sh\n"
    "for a; do src=$a; done\n"
    "dir=$(dirname \"$src\")\n"
    "printf 'PICBASIC PRO(TM) Compiler 3.1.5, (c) 1997, 2022 microEngineering Labs, Inc.\\r\\n'\n"
    "printf 'ERROR Line 12: Bad expression. (blink.pbp)\\r\\n'\n"
    "printf 'ERROR Line 4: Bad expression.\\r\\n'\n"
    "printf 'WARNING Line 3: Unused label. (inc/lib.pbp)\\n'\n"
    "printf 'Fatal: Too many errors.\\n'\n"
    "printf '\\n'\n"
    "printf 'Error BLINK.ASM 47 : [202] illegal character\\n'\n"
    "printf 'Error[113] %s/blink.asm 5 : Symbol not previously defined (x)\\n' \"$dir\"\n"
    "printf 'Message[302] blink.asm 9 : Register in operand not in bank 0.\\r\\n'\n"
    "printf 'blink.asm:7:Error[113]   Symbol not previously defined: \"y\"\\n'\n"
    "printf 'Assembly finished with 3 errors\\n'\n"
    "exit 1\n";

// A BASIC compiler double that writes a tagged .asm as the compiler does: every statement's file (as the
// compiler names it: the source as given, an INCLUDEd file as the INCLUDE names it), line and text in a
// comment before its code, an INCLUDE's statements in its place. GOTO becomes a goto, anything else a
// nop, and a bad opcode stands before the first tag. Then the real gpasm assembles it.
const QByteArray kTaggingCompiler =
    "#!/bin/sh\n"
    "for a; do src=$a; done\n"
    "base=${src%.*}\n"
    "awk -v src=\"$src\" -v dir=\"$(dirname \"$src\")\" '\n"
    "function tagged(file, name,   line, n, inc, w) {\n"
    "  while ((getline line < file) > 0) {\n"
    "    n++; sub(/\\r$/, \"\", line)\n"
    "    printf \"; %s\\t%05d\\t%s\\n\", name, n, line\n"
    "    if (line ~ /^INCLUDE \"/) { inc = line; sub(/^INCLUDE \"/, \"\", inc); sub(/\".*/, \"\", inc);"
    " tagged(dir \"/\" inc, inc) }\n"
    "    else if (line ~ /^GOTO /) { split(line, w, \" \"); print \"\\tgoto \" w[2] }\n"
    "    else print \"\\tnop\"\n"
    "  }\n"
    "  close(file)\n"
    "}\n"
    "BEGIN { print \"\\tlist p=16f84a\"; print \"\\tbogus\"; tagged(src, src); print \"\\tend\" }' > \"$base.asm\"\n"
    "gpasm \"$(basename \"$base\").asm\"\n";

}  // namespace

TEST(CompileMessages, EveryFormatOfACompilerDoubleWithItsFilesHere) {
    QTemporaryDir scratch;
    CompileFrame t("x\r\n", writeProgram(scratch.filePath("PBPW"), kEveryFormat), true, "my 'led' work/blink.pbp");
    t.click(ToolId::Compile);
    EXPECT_TRUE(t.run().messages().empty());
    ASSERT_TRUE(t.waitAndTick());
    const QString dir = t.w.file("my 'led' work"), asmFile = dir + "/blink.asm";
    const std::vector<CompileMessage> want{
        {S::Error, dir + "/blink.pbp", 12, "Bad expression.", 1, {}, 0},
        {S::Error, {}, 4, "Bad expression.", 2, {}, 0},
        {S::Warning, dir + "/inc/lib.pbp", 3, "Unused label.", 3, {}, 0},
        {S::Error, {}, 0, "Too many errors.", 4, {}, 0},
        {S::Error, dir + "/BLINK.ASM", 47, "[202] illegal character", 6, {}, 0},
        {S::Error, asmFile, 5, "[113] Symbol not previously defined (x)", 7, {}, 0},
        {S::Note, asmFile, 9, "[302] Register in operand not in bank 0.", 8, {}, 0},
        {S::Error, asmFile, 7, "[113] Symbol not previously defined: \"y\"", 9, {}, 0},
    };
    EXPECT_EQ(t.run().messages(), want);
    // The lines they came from are the screen's lines; the status line behind the output is none.
    const QStringList shown = t.screen().CompilerOutput->Text().split(QRegularExpression("\r\n|\n"));
    EXPECT_EQ(shown.value(want.back().outputLine), "blink.asm:7:Error[113]   Symbol not previously defined: \"y\"");
    EXPECT_EQ(shown.value(want.back().outputLine + 2), "exit status 1");
    EXPECT_EQ(messageCountText(t.run().messages()), "6 errors, 1 warning");
}

TEST(CompileMessages, AssemblerErrorsInTheCompilersAsmLeadToTheTaggedBasicLines) {
    if (QStandardPaths::findExecutable("gpasm").isEmpty() || QStandardPaths::findExecutable("awk").isEmpty())
        GTEST_SKIP() << "gpasm or awk is not installed";
    QTemporaryDir scratch;
    CompileFrame t("HIGH PORTB.0\r\nINCLUDE \"inc/lib.pbp\"\r\nGOTO nowhere\r\n",
                   writeProgram(scratch.filePath("PBPW"), kTaggingCompiler), true, "my 'led' work/blink.pbp");
    const QString lib = t.w.write("my 'led' work/inc/lib.pbp", "' a library\r\nGOTO missing\r\n");
    t.click(ToolId::Compile);
    ASSERT_TRUE(t.waitAndTick());
    const QString source = t.w.file("my 'led' work/blink.pbp"), asmFile = t.w.file("my 'led' work/blink.asm");
    // asm line 2 stands before any tag; 9 is the INCLUDEd file's second statement, 11 the source's third.
    const std::vector<std::tuple<QString, int, QString, int>> want{
        {asmFile, 2, {}, 0}, {lib, 2, asmFile, 9}, {source, 3, asmFile, 11}};
    std::vector<std::tuple<QString, int, QString, int>> got;
    for (const CompileMessage& m : t.run().messages())
        got.push_back({m.file, m.line, m.asmFile, m.asmLine});
    EXPECT_EQ(got, want) << t.run().output().toStdString();
    EXPECT_TRUE(t.run().failed());
}
