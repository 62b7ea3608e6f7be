// The rules of a compile: the compiler kinds' keys, the banner, the error scan.
#include "compile/CompileRules.h"

#include <QBuffer>
#include <gtest/gtest.h>

// The options dialog's test holds the keys of each list index.
TEST(CompileRules, OnlyTheExactTextsZeroAndOneSelectACompiler) {
    EXPECT_EQ(compilerKindOf("0").value().pathKey, Key::CompilerPathName);
    EXPECT_EQ(compilerKindOf("1").value().pathKey, Key::CompilerPathName1);
    for (const char* other : {"", "2", " 0", "00", "1.0", "-1"})
        EXPECT_FALSE(compilerKindOf(other)) << other;
    EXPECT_FALSE(compilerKindAt(-1) || compilerKindAt(2));
}

TEST(CompileRules, BannerRunsToTheCharacterBehindTheFirstCommaOfTheWholeOutput) {
    const std::pair<const char*, const char*> cases[] = {
        {"PicBasic Pro(TM) Compiler 2.60, (c) 1998 x\nDone.", "PICBASIC PRO(TM) COMPILER 2.60, "},
        {"picbasic without a comma", "P"},
        {"a,b PICBASIC 3.0, x", "PIC"},  // the comma counts from the start of the whole text
        {"gpasm-1.5.2 #1325 (Jan 2023)", ""},
        {"", ""}};
    for (const auto& [output, banner] : cases)
        EXPECT_EQ(compilerVersionText(output), banner) << output;
}

TEST(CompileRules, AnyLineWithErrorInAnyCaseIsAnErrorLine) {
    const std::pair<QByteArray, bool> cases[] = {{"PICBASIC PRO\nERROR Line 5: Bad token.\n", true},
                                                 {"warning\r\nfatal error in c:\\x.bas\r\n", true},
                                                 {"C:\\ERRORS\\BLINK.BAS assembled", true},
                                                 {"last line without an end: Error", true},
                                                 {"PICBASIC PRO(TM) COMPILER 2.60\nDone. ERR OR\n", false},
                                                 {"", false}};
    for (auto [text, error] : cases) {
        QBuffer b(&text);
        b.open(QIODevice::ReadOnly);
        EXPECT_EQ(hasErrorLine(b), error) << text.constData();
    }
}
