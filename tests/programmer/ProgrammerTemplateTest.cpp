// The command line template: token expansion, the token values, the hex file name, the programmer's
// directory and the split into arguments.
#include "platform/ProgramHost.h"
#include "programmer/ProgrammerTemplate.h"
#include "support/Doubles.h"
#include "support/FakeDeviceCombo.h"

#include <QMap>
#include <QProcess>
#include <gtest/gtest.h>

TEST(ProgrammerTemplate, ExpandsTokensWithTheCursorRules) {
    // Values by upper-case token; anything else is unknown and gives "".
    const QMap<QString, QString> values = {
        {"{DEVICENAME}", "16F84"},       {"{HEXFILEWINPATH}", "/w/blink.hex"},
        {"{ONE}", "1"},                  {"{INSIDE}", "/a/{DeviceName}/x"},
        {"{FIRST}", "{DeviceName}"},     {"{FILENAMEWINPATH}", "/p/{FileNameWinPath}.b"}};
    const std::pair<QString, QString> cases[] = {
        {R"(-dPIC{DeviceName} "{HexFileWinPath}")", R"(-dPIC16F84 "/w/blink.hex")"},
        {"", ""},
        {"-x \"z\" }", "-x \"z\" }"},
        {"a{Foo}b{}c", "abc"},
        {"{devicename}-{DeviceName}-{DEVICENAME}", "16F84-16F84-16F84"},
        {"{DeviceName} {x", "16F84 {x"},           // an open brace without a close stays
        {"} {DeviceName}", "} 16F84"},              // a close brace before any open is text
        {"{a{DeviceName}", ""},                     // one unknown token, up to the first close
        {"{Foo}{DeviceName}", "{DeviceName}"},      // behind a token that vanished: passed over
        {"{One}{DeviceName}", "116F84"},            // behind a value of one character: found
        {"{Inside}", "/a/16F84/x"},                 // a value is scanned from its second character on
        {"{First}", "{DeviceName}"},
        {"{FileNameWinPath} {filenamewinpath}", "/p/{FileNameWinPath}.b /p/{FileNameWinPath}.b"},
    };
    for (const auto& [options, expected] : cases) {
        QMap<QString, int> calls;
        QString text = options;
        ExpandCommandLineTokens(text, [&](const QString& token) {
            ++calls[token.toUpper()];
            return values.value(token.toUpper());
        });
        EXPECT_EQ(text, expected) << qPrintable(options);
        for (int n : calls)
            EXPECT_EQ(n, 1) << qPrintable(options) << ": each token is worked out once";
    }
}

TEST(ProgrammerTemplate, TokenValuesHexFileDirectoryAndArguments) {
    TestWorld w;
    FakeDeviceCombo combo;
    combo.entries = {"PIC16F84", "PIC12F675", "PIC"};
    const QString doc = w.write("blink.bas", "x"), hex = w.file("blink.hex");
    const auto host = ProgramHost::native(w.paths);
    auto value = [&](const char* token) { return TokenValue(token, doc, combo, *host); };
    EXPECT_EQ(QStringList({value("{FileNameWinPath}"), value("{FILENAMEDOSPATH}"), value("{hexfilewinpath}")}),
              QStringList({doc, doc, hex}));
    EXPECT_TRUE(w.prompts.boxes.empty());
    // Before the first compile the short form has no file: GetDosPath's message, and nothing.
    EXPECT_EQ(value("{HexFileDosPath}"), "");
    ASSERT_EQ(w.prompts.boxes.size(), 1u);
    EXPECT_TRUE(w.prompts.boxes[0].text.startsWith("Error! Invalid Path or File Name: " + hex + "\r"));
    w.write("blink.hex", ":00000001FF\n");
    EXPECT_EQ(value("{HexFileDosPath}"), hex);
    // "PIC" alone names none; the fallback to the first device is the compile test's.
    combo.index = 2;
    EXPECT_EQ(value("{DeviceName}"), "");

    // Cut at the first dot of the file's own name, never of a folder.
    const std::pair<QString, QString> hexNames[] = {
        {"/home/ann.lee/led/a.bas", "/home/ann.lee/led/a.hex"}, {"/home/ann/led/a.b.bas", "/home/ann/led/a.hex"},
        {"/home/ann.lee/Makefile", "/home/ann.lee/Makefile.hex"}, {"/w/.bas", "/w/.hex"},
        {R"(C:\work\blink.bas)", R"(C:\work\blink.hex)"}, {"blink", "blink.hex"}};
    for (const auto& [source, hex] : hexNames)
        EXPECT_EQ(hexFileName(source), hex);
    EXPECT_EQ(programmerDirectory("/opt/pic kit/pk2cmd"), "/opt/pic kit");
    EXPECT_EQ(programmerDirectory("/pk2cmd"), "/");
    EXPECT_EQ(programmerDirectory(R"(C:\MPLAB\MPLAB.EXE)"), std::nullopt);
    // The program path keeps its blanks; double quotes keep an argument together; no shell meaning.
    const ProgrammerCommand c = programmerCommand("  /opt/pic kit/pk2cmd ", R"( -p16F84 -f "/my led/a;b $(x).hex" )");
    EXPECT_EQ(c.program, "/opt/pic kit/pk2cmd");
    EXPECT_EQ(c.args, QStringList({"-p16F84", "-f", "/my led/a;b $(x).hex"}));
}

TEST(ProgrammerTemplate, EachTokenStaysWithinItsArgument) {
    const QMap<QString, QString> values = {{"{DEVICENAME}", "16F84"},
                                           {"{HEXFILEWINPATH}", "/home/ann lee/my \"led\"/a.hex"},
                                           {"{FILENAMEDOSPATH}", "/home/ann lee/a b.bas"},
                                           {"{EMPTY}", ""}};
    const std::pair<QString, QStringList> cases[] = {
        {"-f {HexFileWinPath}", {"-f", "/home/ann lee/my \"led\"/a.hex"}},
        {R"(-f "{hexfilewinpath}")", {"-f", "/home/ann lee/my \"led\"/a.hex"}},
        {"-f={HEXFILEWINPATH};{DeviceName}", {"-f=/home/ann lee/my \"led\"/a.hex;16F84"}},
        {"{FileNameDosPath} -p{DEVICEname}", {"/home/ann lee/a b.bas", "-p16F84"}},
        {R"("-i {DeviceName} x" {Foo} "{Empty}" -q)", {"-i 16F84 x", "-q"}},  // empty arguments vanish
        {R"(-t """{DeviceName}""" -u "a""b")", {"-t", "\"16F84\"", "-u", "ab"}},
        {"{Hex File} {DeviceName", {"{Hex", "File}", "{DeviceName"}},  // split first: no token in either
        {"  ", {}},
    };
    for (const auto& [options, expected] : cases) {
        QMap<QString, int> calls;
        const QStringList args = templateArguments(options, [&](const QString& token) {
            ++calls[token.toUpper()];
            return values.value(token.toUpper());
        });
        EXPECT_EQ(args, expected) << qPrintable(options);
        for (int n : calls)
            EXPECT_EQ(n, 1) << qPrintable(options) << ": each token is worked out once for the whole template";
        // The line shown to the user splits back into the same words.
        const ProgrammerCommand c{"/opt/pic kit/pk2cmd", args};
        EXPECT_EQ(QProcess::splitCommand(commandLineText(c)), QStringList{c.program} + args) << qPrintable(options);
    }
    EXPECT_EQ(commandLineText({"pk2cmd", {"-f", "/a b/\"x\".hex", ""}}), R"(pk2cmd -f "/a b/"""x""".hex" "")");
}
