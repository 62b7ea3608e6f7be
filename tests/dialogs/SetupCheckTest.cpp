// The set-up check: every row ok on a machine that has everything, and each missing (or not needed) when
// the double lacks the one thing it is about; the window that shows the rows.
#include "dialogs/SetupCheck.h"
#include "dialogs/frmSetupCheck.h"
#include "platform/PeImage.h"
#include "support/Doubles.h"
#include "support/FakeSystemProbe.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QStyle>
#include <QTableWidget>
#include <QTextLayout>
#include <functional>
#include <gtest/gtest.h>

namespace {

using S = SetupState;

// A machine with a 32-bit Windows compiler and MPASM beside it, Wine that runs it, and pp3 on the
// terminal's port, which the user may open.
struct Machine {
    FakeSystemProbe probe;
    SetupInputs in;
    Machine() {
        probe.files = {"/opt/pbp/PBPW.EXE", "/opt/pbp/MPASMWIN.EXE", "/usr/local/bin/pp3"};
        probe.windowsPrograms = {{"/opt/pbp/PBPW.EXE", kPeMachineI386}, {"/opt/pbp/MPASMWIN.EXE", kPeMachineI386}};
        probe.executables = {"/usr/local/bin/pp3"};
        probe.winePath = "/usr/bin/wine";
        probe.directories = {"/home/ann/.wine", "/opt/pbp"};
        probe.devices = {"/dev/ttyACM0"};
        probe.deviceGroups = {{"/dev/ttyACM0", "dialout"}};
        probe.ports = {"/dev/ttyACM0", "/dev/ttyS0"};
        probe.session = probe.account = {"ann", "dialout"};
        in.compilerPath = "/opt/pbp/PBPW.EXE";
        in.compilerOptions = "-ampasm -oq";
        in.programmerKind = "Other";
        in.programmerPath = "/usr/local/bin/pp3";
        in.programmerArgs = {"-c", "/dev/ttyACM0", "-t", "16f628a", "/w/blink.hex"};
        in.programmerTakesTerminalPort = true;
        in.terminalPort = "/dev/ttyACM0";
    }
    SetupRow row(const QString& what) {
        for (const SetupRow& r : checkSetup(in, probe))
            if (r.what == what)
                return r;
        return {"no such row: " + what, S::Ok, {}, {}};
    }
};

const QStringList kRows = {"Compiler", "Windows or native", "Wine", "32-bit Wine", "Wine prefix",
                           "Assembler", "Programmer", "Group dialout", "Serial ports"};

}  // namespace

TEST(SetupCheck, AMachineWithEverythingHasEveryRowOk) {
    Machine m;
    const QList<SetupRow> rows = checkSetup(m.in, m.probe);
    QStringList names;
    for (const SetupRow& r : rows) {
        names << r.what;
        EXPECT_EQ(r.state, S::Ok) << qPrintable(r.what + ": " + r.detail);
        EXPECT_TRUE(r.fix.isEmpty()) << qPrintable(r.what);
    }
    EXPECT_EQ(names, kRows);
    EXPECT_EQ(m.row("Windows or native").detail, "Windows program, 32-bit: runs through Wine");
    EXPECT_EQ(m.row("Assembler").detail, "/opt/pbp/MPASMWIN.EXE");
    EXPECT_EQ(m.row("Programmer").detail, "Other: /usr/local/bin/pp3");
    EXPECT_EQ(m.row("Serial ports").detail, "present: /dev/ttyACM0, /dev/ttyS0");
}

TEST(SetupCheck, EachRowMissingOrNotNeededWithItsFix) {
    struct Case {
        const char* why;
        std::function<void(Machine&)> change;
        QString row;
        S state;
        QString fix;     // exact, when given
        QString detail;  // a part of the detail
    };
    const QString wine32 = "sudo dpkg --add-architecture i386 && sudo apt update && sudo apt install wine32";
    const Case cases[] = {
        {"compiler moved", [](Machine& m) { m.probe.files.remove("/opt/pbp/PBPW.EXE"); }, "Compiler", S::Missing,
         "Compile > Compiler Options > Compiler Pathname: browse to the program (it may have moved).",
         "/opt/pbp/PBPW.EXE is not there"},
        {"compiler moved", [](Machine& m) { m.probe.files.remove("/opt/pbp/PBPW.EXE"); }, "Windows or native",
         S::NotNeeded, "", "no compiler"},
        {"compiler is a folder", [](Machine& m) { m.in.compilerPath = "/opt/pbp"; }, "Compiler", S::Missing, "",
         "is a folder"},
        {"no compiler set", [](Machine& m) { m.in.compilerPath = " "; }, "Compiler", S::Missing,
         "Compile > Compiler Options > Compiler Pathname: enter the program's path.", "no path"},
        {"bare name not on PATH", [](Machine& m) { m.in.compilerPath = "pbpx"; }, "Compiler", S::Missing,
         "Install pbpx, or give its full path in Compile > Compiler Options > Compiler Pathname.", "not on PATH"},
        {"native compiler without x bit",
         [](Machine& m) { m.probe.windowsPrograms.remove("/opt/pbp/PBPW.EXE"); }, "Compiler", S::Missing,
         "chmod +x '/opt/pbp/PBPW.EXE'", "not executable"},
        {"64-bit compiler", [](Machine& m) { m.probe.windowsPrograms["/opt/pbp/PBPW.EXE"] = kPeMachineAmd64; },
         "Windows or native", S::Ok, "", "64-bit"},
        {"64-bit compiler", [](Machine& m) {
             m.probe.windowsPrograms["/opt/pbp/PBPW.EXE"] = kPeMachineAmd64;
             m.probe.wine32 = false;
         }, "32-bit Wine", S::NotNeeded, "", "no 32-bit"},
        {"native compiler",
         [](Machine& m) {
             m.probe.windowsPrograms.clear();
             m.probe.executables << "/opt/pbp/PBPW.EXE";
             m.probe.winePath.clear();
             m.probe.directories.remove("/home/ann/.wine");
         }, "Wine", S::NotNeeded, "", "neither"},
        {"native compiler", [](Machine& m) { m.probe.windowsPrograms.clear(); m.probe.executables << "/opt/pbp/PBPW.EXE"; },
         "Windows or native", S::Ok, "", "native program"},
        {"native compiler", [](Machine& m) { m.probe.windowsPrograms.clear(); }, "Wine prefix", S::NotNeeded, "", ""},
        {"no wine", [](Machine& m) { m.probe.winePath.clear(); }, "Wine", S::Missing, "sudo apt install wine",
         "PBPW.EXE needs it"},
        {"no wine", [](Machine& m) { m.probe.winePath.clear(); }, "32-bit Wine", S::Missing, wine32, "PBPW.EXE"},
        {"only 64-bit wine", [](Machine& m) { m.probe.wine32 = false; }, "32-bit Wine", S::Missing, wine32,
         "wine32 is missing"},
        {"windows programmer only",
         [](Machine& m) {
             m.probe.windowsPrograms = {{"/usr/local/bin/pp3", kPeMachineI386}};
             m.probe.executables << "/opt/pbp/PBPW.EXE";
             m.probe.wine32 = false;
         }, "32-bit Wine", S::Missing, wine32, "pp3"},
        {"no prefix", [](Machine& m) { m.probe.directories.remove("/home/ann/.wine"); }, "Wine prefix", S::Missing,
         "wineboot", "/home/ann/.wine has not been made"},
        {"no prefix named by WINEPREFIX",
         [](Machine& m) {
             m.probe.prefix = "/srv/ann's wine";
             m.probe.prefixFromEnvironment = true;
         }, "Wine prefix", S::Missing, R"(WINEPREFIX='/srv/ann'\''s wine' wineboot)", ""},
        {"no MPASM", [](Machine& m) { m.probe.files.remove("/opt/pbp/MPASMWIN.EXE"); }, "Assembler", S::Missing,
         "Put MPASMWIN.EXE in /opt/pbp or on PATH, or take -ampasm out of Compile > Compiler Options > Command "
         "Line Options.", "-ampasm is set"},
        {"MPASM on PATH in any case",
         [](Machine& m) {
             m.probe.files.remove("/opt/pbp/MPASMWIN.EXE");
             m.probe.onPath["MPASMWIN.EXE"] = "/usr/bin/MPASMWIN.EXE";
         }, "Assembler", S::Ok, "", "/usr/bin/MPASMWIN.EXE"},
        {"lower-case MPASM beside the compiler",
         [](Machine& m) {
             m.probe.files.remove("/opt/pbp/MPASMWIN.EXE");
             m.probe.files << "/opt/pbp/mpasmwin.exe";
         }, "Assembler", S::Ok, "", "/opt/pbp/mpasmwin.exe"},
        {"no assembler option", [](Machine& m) { m.in.compilerOptions = "-oq"; }, "Assembler", S::NotNeeded, "", "own"},
        {"programmer gone", [](Machine& m) { m.probe.files.remove("/usr/local/bin/pp3"); }, "Programmer", S::Missing,
         "Programmer > Programmer Options > Programmer Pathname: browse to the program (it may have moved).", ""},
        {"programmer by name on PATH",
         [](Machine& m) {
             m.in.programmerPath = "pp3";
             m.probe.onPath["pp3"] = "/usr/local/bin/pp3";
         }, "Programmer", S::Ok, "", "/usr/local/bin/pp3"},
        {"programmer by name, not on PATH", [](Machine& m) { m.in.programmerPath = "pk2cmd"; }, "Programmer", S::Missing,
         "Install pk2cmd, or give its full path in Programmer > Programmer Options > Programmer Pathname.", ""},
        {"not in dialout", [](Machine& m) { m.probe.session = m.probe.account = {"ann"}; }, "Group dialout", S::Missing,
         "sudo usermod -aG dialout $USER, then log out and in.", "/dev/ttyACM0"},
        {"root, in no group",
         [](Machine& m) {
             m.probe.session = m.probe.account = {"root"};
             m.probe.superuser = true;
         }, "Group dialout", S::Ok, "", "root"},
        {"added, not logged in again", [](Machine& m) { m.probe.session = {"ann"}; }, "Group dialout", S::Missing,
         "Log out and in again (or restart), then start the program again.", "session"},
        {"port of another group",
         [](Machine& m) {
             m.probe.deviceGroups["/dev/ttyACM0"] = "uucp";
             m.probe.account << "uucp";
         }, "Group uucp", S::Missing, "Log out and in again (or restart), then start the program again.", ""},
        {"terminal port alone",
         [](Machine& m) {
             m.in.programmerArgs = {"-x"};
             m.probe.session = m.probe.account = {"ann"};
         }, "Group dialout", S::Missing, "sudo usermod -aG dialout $USER, then log out and in.", "/dev/ttyACM0"},
        {"no port named",
         [](Machine& m) {
             m.in.programmerArgs = {"-x"};
             m.in.terminalPort.clear();
             m.in.programmerTakesTerminalPort = false;
             m.probe.session = {};
         }, "Group dialout", S::NotNeeded, "", "neither"},
        {"adapter pulled",
         [](Machine& m) {
             m.probe.ports = {"/dev/ttyS0"};
             m.probe.devices.clear();
         }, "Serial ports", S::Missing, "", "/dev/ttyACM0 is not there (present: /dev/ttyS0)"},
        {"terminal port not chosen",
         [](Machine& m) {
             m.in.terminalPort.clear();
             m.in.programmerArgs = {"-c", "-t", "16f628a"};
         }, "Serial ports", S::Missing, "View > Serial Terminal: choose the board's port.", "none is chosen"},
        {"no port anywhere",
         [](Machine& m) {
             m.in.programmerArgs = {"-x"};
             m.in.terminalPort.clear();
             m.in.programmerTakesTerminalPort = false;
             m.probe.ports.clear();
         }, "Serial ports", S::NotNeeded, "", "none present"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.why) + " / " + c.row.toStdString());
        Machine m;
        c.change(m);
        const SetupRow r = m.row(c.row);
        EXPECT_EQ(r.what, c.row);
        EXPECT_EQ(r.state, c.state) << qPrintable(r.detail);
        if (!c.fix.isEmpty()) {
            EXPECT_EQ(r.fix, c.fix);
        }
        EXPECT_EQ(r.fix.isEmpty(), c.state != S::Missing) << qPrintable(r.fix);
        EXPECT_TRUE(r.detail.contains(c.detail)) << qPrintable(r.detail);
    }
}

TEST(SetupCheck, PortsAndAssemblerAreReadFromTheCommandLines) {
    EXPECT_EQ(portsNamedIn({"-c/dev/ttyACM0", "--port=/dev/ttyUSB0", "/dev/ttyS0", "-p", "/dev/ttyS0", "x/dev"}),
              QStringList({"/dev/ttyACM0", "/dev/ttyUSB0", "/dev/ttyS0"}));
    const std::pair<QString, QString> options[] = {
        {"-ampasm -oq", "mpasm"}, {"-OQ -AMPASM", "MPASM"}, {"-apm", "pm"}, {"-a", ""}, {"-oq -v", ""}, {"", ""}};
    for (const auto& [text, assembler] : options)
        EXPECT_EQ(assemblerOption(text), assembler) << qPrintable(text);
    const QString report = setupReportText({{"Wine", S::Missing, "no wine", "sudo apt install wine"},
                                            {"Assembler", S::NotNeeded, "own", ""}});
    EXPECT_EQ(report, "Wine: MISSING - no wine\n    fix: sudo apt install wine\nAssembler: not needed - own\n");
}

TEST(SetupCheck, TheWindowShowsTheRowsAndChecksAgain) {
    TestWorld w;
    Machine m;
    m.probe.winePath.clear();
    int asked = 0;
    frmSetupCheck dlg(nullptr, [&] { ++asked; return m.in; }, m.probe);
    ASSERT_EQ(dlg.Rows->rowCount(), kRows.size());
    EXPECT_EQ(asked, 1);
    QStringList states;
    for (int i = 0; i < dlg.Rows->rowCount(); ++i)
        states << dlg.Rows->item(i, 0)->text() + "=" + dlg.Rows->item(i, 1)->text();
    EXPECT_EQ(states, QStringList({"Compiler=ok", "Windows or native=ok", "Wine=missing", "32-bit Wine=missing",
                                   "Wine prefix=ok", "Assembler=ok", "Programmer=ok", "Group dialout=ok",
                                   "Serial ports=ok"}));
    EXPECT_EQ(dlg.Rows->item(2, 3)->text(), "sudo apt install wine");
    EXPECT_TRUE(dlg.Summary->text().startsWith("2 things are missing."));
    // Installed meanwhile: Check Again asks the settings and the machine anew.
    m.probe.winePath = "/usr/bin/wine";
    dlg.cmdAgain->click();
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(dlg.Rows->item(2, 1)->text(), "ok");
    EXPECT_EQ(dlg.Summary->text(), "Everything a compile and a launch need is here.");
    dlg.cmdCopy->click();
    EXPECT_EQ(QApplication::clipboard()->text(), setupReportText(dlg.rows()));

    // Long fixes wrap, a folder's path broken anywhere as it is drawn: shown, the window grows to show every
    // row, and each row holds its text whole as the window narrows.
    m.probe.files.remove("/opt/pbp/MPASMWIN.EXE");
    m.in.compilerPath = "/home/ann/Programs/microcontrollers/picbasic-pro-compiler-3.1.5-full/PBPW.EXE";
    m.probe.files << m.in.compilerPath;
    m.probe.windowsPrograms.insert(m.in.compilerPath, kPeMachineI386);
    dlg.cmdAgain->click();
    ASSERT_EQ(dlg.Rows->item(5, 1)->text(), "missing");
    dlg.show();
    QCoreApplication::processEvents();
    EXPECT_FALSE(dlg.Rows->verticalScrollBar()->isVisible());
    const int margin = dlg.Rows->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, dlg.Rows) + 1;
    for (int width = dlg.width(); width > dlg.width() / 2; width -= 2) {
        dlg.resize(width, dlg.height());
        QCoreApplication::processEvents();
        for (int row = 0; row < dlg.Rows->rowCount(); ++row)
            for (int column : {2, 3}) {
                QTextLayout drawn(dlg.Rows->item(row, column)->text(), dlg.Rows->font());
                QTextOption wrap;
                wrap.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
                drawn.setTextOption(wrap);
                qreal height = 0;
                drawn.beginLayout();
                for (QTextLine line = drawn.createLine(); line.isValid(); line = drawn.createLine()) {
                    line.setLineWidth(dlg.Rows->columnWidth(column) - 2 * margin);
                    height += line.height();
                }
                drawn.endLayout();
                EXPECT_LE(height, dlg.Rows->rowHeight(row)) << width << " " << row << " " << column;
            }
    }
}
