// The rules of a compile: the compiler kinds' keys, the banner, the error scan.
#include "compile/CompileRules.h"

#include <QBuffer>
#include <gtest/gtest.h>

TEST(CompileRules, OnlyTheExactTextsZeroAndOneSelectACompiler) {
    ASSERT_TRUE(compilerKindOf("0"));
    EXPECT_EQ(compilerKindOf("0")->pathKey, Key::CompilerPathName);
    EXPECT_EQ(compilerKindOf("0")->optionsKey, Key::CompilerCommandLineOptions);
    EXPECT_EQ(compilerKindOf("0")->panelText, "PBP");
    ASSERT_TRUE(compilerKindOf("1"));
    EXPECT_EQ(compilerKindOf("1")->pathKey, Key::CompilerPathName1);
    EXPECT_EQ(compilerKindOf("1")->optionsKey, Key::CompilerCommandLineOptions1);
    EXPECT_EQ(compilerKindOf("1")->panelText, "PBC");
    for (const char* other : {"", "2", " 0", "00", "1.0", "-1"})
        EXPECT_FALSE(compilerKindOf(other)) << other;
    EXPECT_FALSE(compilerKindAt(-1));
    EXPECT_FALSE(compilerKindAt(2));
}

TEST(CompileRules, BannerRunsToTheCharacterBehindTheFirstCommaOfTheWholeOutput) {
    // First comma at position 31 (from 1): the first 32 characters, in upper case.
    const QString out = "PicBasic Pro(TM) Compiler 2.60, (c) 1998 microEngineering Labs\nDone.";
    ASSERT_EQ(out.indexOf(',') + 1, 31);
    EXPECT_EQ(compilerVersionText(out), "PICBASIC PRO(TM) COMPILER 2.60, ");
    // No comma: the one character at the start of the banner.
    EXPECT_EQ(compilerVersionText("picbasic without a comma"), "P");
    // A comma ahead of the banner counts from the start of the whole text.
    EXPECT_EQ(compilerVersionText("a,b PICBASIC 3.0, x"), "PIC");
    EXPECT_EQ(compilerVersionText("gpasm-1.5.2 #1325 (Jan 2023)"), "");
    EXPECT_EQ(compilerVersionText(""), "");
}

TEST(CompileRules, AnyLineWithErrorInAnyCaseIsAnErrorLine) {
    auto scan = [](QByteArray text) {
        QBuffer b(&text);
        b.open(QIODevice::ReadOnly);
        return hasErrorLine(b);
    };
    EXPECT_TRUE(scan("PICBASIC PRO\nERROR Line 5: Bad token.\n"));
    EXPECT_TRUE(scan("warning\r\nfatal error in c:\\x.bas\r\n"));
    EXPECT_TRUE(scan("C:\\ERRORS\\BLINK.BAS assembled"));  // a path with the word is one too
    EXPECT_TRUE(scan("last line without an end: Error"));
    EXPECT_FALSE(scan("PICBASIC PRO(TM) COMPILER 2.60\nDone. ERR OR\n"));
    EXPECT_FALSE(scan(""));
}

TEST(CompileRules, TheWaitEndsAtTheThirtiethTick) {
    EXPECT_FALSE(compileTimedOut(1));
    EXPECT_FALSE(compileTimedOut(29));
    EXPECT_TRUE(compileTimedOut(30));
    EXPECT_TRUE(compileTimedOut(31));
}
