// From a compile's messages to their lines: the file a message leads to, the message of an output line,
// stepping round, and the tags.
#include "compile/MessageNavigation.h"

#include <gtest/gtest.h>

namespace {
CompileMessage at(int outputLine, const QString& file = {}, int line = 0) {
    CompileMessage m;
    m.outputLine = outputLine;
    m.file = file;
    m.line = line;
    return m;
}
}  // namespace

TEST(MessageNavigation, FilesAreTheSourceOrTakenInItsFolder) {
    const QString source = "/work/led/blink.pbp";
    const std::pair<QString, QString> cases[] = {
        {"", source},
        {"/work/led/inc/defs.pbp", "/work/led/inc/defs.pbp"},
        {"/work/led/./inc//defs.pbp", "/work/led/inc/defs.pbp"},
        {"defs.pbp", "/work/led/defs.pbp"},
        {"inc/defs.pbp", "/work/led/inc/defs.pbp"},
        {"../lib/util.bas", "/work/lib/util.bas"},
    };
    for (const auto& [file, path] : cases)
        EXPECT_EQ(messageFilePath(at(0, file), source), path) << file.toStdString();
}

TEST(MessageNavigation, LinesAndStepsGoRoundBothWays) {
    const std::vector<CompileMessage> ms = {at(2), at(5), at(9)};
    EXPECT_EQ((std::vector<int>{messageAtLine(ms, 0), messageAtLine(ms, 2), messageAtLine(ms, 5),
                                messageAtLine(ms, 9), messageAtLine(ms, 10)}),
              (std::vector<int>{-1, 0, 1, 2, -1}));
    struct Step {
        int from;
        bool forward;
        int to;
    };
    for (const Step s : {Step{-1, true, 0}, Step{-1, false, 2}, Step{0, true, 1}, Step{2, true, 0},
                         Step{0, false, 2}, Step{1, false, 0}, Step{7, true, 0}})
        EXPECT_EQ(stepMessage(ms, s.from, s.forward), s.to) << s.from << (s.forward ? " forward" : " back");
    EXPECT_EQ(stepMessage({}, -1, true), -1);
    EXPECT_EQ(stepMessage({at(4)}, 0, false), 0);
}

TEST(MessageNavigation, TagsAndTheNoteOfAMappedAssemblerMessage) {
    using S = CompileMessage::Severity;
    EXPECT_EQ(QStringList({messageTag(S::Error), messageTag(S::Warning), messageTag(S::Note)}),
              QStringList({"error", "warning", "note"}));
    CompileMessage mapped = at(3, "/work/led/blink.pbp", 12);
    mapped.asmFile = "/work/led/BLINK.ASM";
    mapped.asmLine = 47;
    EXPECT_EQ(mappedLineNote(mapped), QString::fromUtf8("\u2192 blink.pbp line 12"));
    EXPECT_EQ(mappedLineNote(at(3, "/work/led/blink.pbp", 12)), "") << "not from the assembler";
    CompileMessage unmapped = at(3, "/work/led/BLINK.ASM", 47);
    unmapped.asmFile = "/work/led/BLINK.ASM";
    unmapped.asmLine = 47;
    unmapped.line = 0;
    EXPECT_EQ(mappedLineNote(unmapped), "");
}
