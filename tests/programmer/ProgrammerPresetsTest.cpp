// The Linux programmers' presets: each one's command line for a device and a hex path with blanks, the
// device and port tokens, where a preset finds its program, and the options dialog's preset list.
#include "core/Settings.h"
#include "platform/ProgramHost.h"
#include "programmer/ProgrammerPresets.h"
#include "programmer/ProgrammerTemplate.h"
#include "programmer/frmProgrammer.h"
#include "support/Doubles.h"
#include "support/FakeDeviceCombo.h"
#include "support/FakeFrame.h"
#include "support/FakeSystemProbe.h"

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <gtest/gtest.h>

namespace {

const ProgrammerPreset& preset(const QString& program) {
    for (const ProgrammerPreset& p : programmerPresets())
        if (p.program == program)
            return p;
    throw std::runtime_error("no preset for " + program.toStdString());
}

}  // namespace

TEST(ProgrammerPresets, EachPresetsArgumentsForADeviceAndAHexPathWithBlanks) {
    TestWorld w;
    QDir(w.appDir()).mkpath("my led");
    const QString doc = w.write("my led/blink v2.bas", "x");
    const QString hex = w.file("my led/blink v2.hex");
    FakeDeviceCombo combo;
    combo.entries = {"PIC16F84", "PIC16F628A"};
    combo.index = 1;
    saveSetting(Key::Port, "ttyACM0");
    const auto host = ProgramHost::native(w.paths);
    // The command lines of the tools' own manuals, with this device, hex file and port.
    const std::pair<QString, QStringList> cases[] = {
        {"pk2cmd", {"-PPIC16F628A", "-F" + hex, "-M", "-Y"}},
        {"ipecmd.sh", {"-TPPK4", "-P16F628A", "-F" + hex, "-M", "-Y"}},
        {"picpro", {"program", "-p", "/dev/ttyACM0", "-i", hex, "-t", "16F628A"}},
        {"pp3", {"-c", "/dev/ttyACM0", "-t", "16f628a", hex}},
        {"ardpicprog", {"-d", "pic16f628a", "-p", "/dev/ttyACM0", "--erase", "--burn", "-i", hex}},
        {"usbpicprog", {"-p", "PIC16F628A", "-e", "-w", "-f", hex}},
    };
    ASSERT_EQ(programmerPresets().size(), std::size(cases));
    for (const auto& [program, argv] : cases) {
        const ProgrammerCommand c = programmerCommand("/usr/bin/" + program, preset(program).options,
                                                      [&](const QString& t) { return TokenValue(t, doc, combo, *host); });
        EXPECT_EQ(c.args, argv) << qPrintable(program);
    }
    EXPECT_TRUE(w.prompts.boxes.empty());
}

TEST(ProgrammerPresets, DeviceFormsAndThePortToken) {
    const std::tuple<QString, QString, QString, QString, QString> forms[] = {
        // entry, {DeviceName}, {DeviceNameLower}, {DeviceFullName}, {DeviceFullNameLower}
        {"PIC16F628A", "16F628A", "16f628a", "PIC16F628A", "pic16f628a"},
        {"PIC18F2550", "18F2550", "18f2550", "PIC18F2550", "pic18f2550"},
        {"PIC12F675", "12F675", "12f675", "PIC12F675", "pic12f675"},
    };
    for (const auto& [entry, name, lower, full, fullLower] : forms) {
        EXPECT_EQ(QStringList({deviceTokenValue("{DeviceName}", entry), deviceTokenValue("{devicenamelower}", entry),
                               deviceTokenValue("{DEVICEFULLNAME}", entry),
                               deviceTokenValue("{DeviceFullNameLower}", entry)}),
                  QStringList({name, lower, full, fullLower}));
        EXPECT_EQ(deviceTokenValue("{DeviceNameUpper}", entry), "");
    }

    TestWorld w;
    FakeDeviceCombo combo;
    combo.entries = {"PIC16F877A", "PIC12F675"};
    const auto host = ProgramHost::native(w.paths);
    // No selection: the full forms select the first device, as {DeviceName} does.
    EXPECT_EQ(TokenValue("{DeviceFullNameLower}", "/w/a.bas", combo, *host), "pic16f877a");
    EXPECT_EQ(combo.index, 0);
    combo.index = 5;
    EXPECT_EQ(TokenValue("{DeviceFullName}", "/w/a.bas", combo, *host), "PIC16F877A");
    EXPECT_EQ(combo.index, 0);

    // The serial terminal's port: a bare name lies in /dev; a path stays, blanks and all, in one argument;
    // with none chosen the argument it was goes.
    const auto value = [&](const QString& token) { return TokenValue(token, "/w/a.bas", combo, *host); };
    const std::pair<QString, QStringList> ports[] = {
        {"ttyUSB0", {"-c", "/dev/ttyUSB0", "-x"}},
        {"/dev/pts/7", {"-c", "/dev/pts/7", "-x"}},
        {" /tmp/my board ", {"-c", "/tmp/my board", "-x"}},
        {"", {"-c", "-x"}},
    };
    for (const auto& [port, argv] : ports) {
        saveSetting(Key::Port, port);
        EXPECT_EQ(templateArguments("-c {SerialPort} -x", value), argv) << qPrintable(port);
    }
    saveSetting(Key::Port, "ttyACM1");
    EXPECT_EQ(templateArguments("--port={serialport}", value), QStringList({"--port=/dev/ttyACM1"}));
}

TEST(ProgrammerPresets, AProgramIsFoundOnPathThenInItsUsualPlaceElseTypicalOrBare) {
    FakeSystemProbe probe;
    const ProgrammerPreset& pk2 = preset("pk2cmd");
    const ProgrammerPreset& ipe = preset("ipecmd.sh");
    using F = PresetPath::Found;
    auto where = [&](const ProgrammerPreset& p) {
        const PresetPath at = presetPath(p, probe);
        return std::pair{at.path, at.found};
    };
    EXPECT_EQ(where(pk2), std::pair(QString("pk2cmd"), F::NotFound));
    EXPECT_EQ(where(ipe), std::pair(ipe.typicalPath, F::NotFound));
    EXPECT_TRUE(ipe.typicalPath.startsWith("/opt/microchip/mplabx/"));
    EXPECT_TRUE(presetPathNote(pk2, presetPath(pk2, probe)).contains("bare name"));
    EXPECT_TRUE(presetPathNote(ipe, presetPath(ipe, probe)).contains("typical install path"));

    probe.files = {"/usr/share/pk2/pk2cmd"};
    EXPECT_EQ(where(pk2), std::pair(QString("/usr/share/pk2/pk2cmd"), F::UsualPlace));
    probe.onPath["pk2cmd"] = "/home/ann/bin/pk2cmd";
    EXPECT_EQ(where(pk2), std::pair(QString("/home/ann/bin/pk2cmd"), F::OnPath));
    EXPECT_EQ(presetPathNote(pk2, presetPath(pk2, probe)), "pk2cmd found on PATH.");

    // MPLAB X's version folders: the newest by number, not by letters (v6.20 after v6.5).
    const QString ipeIn = "/mplab_platform/mplab_ipe/ipecmd.sh";
    for (const QString v : {"v5.50", "v6.20", "v6.5"}) {
        probe.directories << "/opt/microchip/mplabx/" + v;
        probe.files << "/opt/microchip/mplabx/" + v + ipeIn;
    }
    probe.directories << "/opt/microchip/mplabx/v6.25";  // a version without the IPE
    EXPECT_EQ(where(ipe), std::pair("/opt/microchip/mplabx/v6.20" + ipeIn, F::UsualPlace));
    EXPECT_TRUE(presetPathNote(ipe, presetPath(ipe, probe)).contains("not on PATH"));
}

TEST(ProgrammerPresets, TheDialogFillsTheOtherKindAndKeepsItsOwnControls) {
    TestWorld w;
    FakeFrame frame;
    FakeSystemProbe probe;
    probe.onPath["ardpicprog"] = "/usr/local/bin/ardpicprog";
    saveSetting(Key::ProgrammerType, "1");
    frmProgrammer dlg(frame);
    dlg.probe = &probe;
    // The system's controls stand where they stood; the presets lie below the buttons.
    EXPECT_EQ(dlg.Programmer->count(), 4);
    EXPECT_EQ(dlg.Programmer->currentText(), "melabs Loader");
    EXPECT_GT(dlg.Preset->y(), dlg.cmdOK->geometry().bottom());
    EXPECT_GT(dlg.PresetNote->y(), dlg.Preset->geometry().bottom());
    EXPECT_LE(dlg.PresetNote->geometry().bottom(), dlg.height());
    EXPECT_EQ(dlg.Preset->count(), programmerPresets().size() + 1);

    const auto choose = [&](const QString& name) {
        dlg.Preset->setCurrentIndex(dlg.Preset->findText(name));
        dlg.Preset_Click();
    };
    choose("ardpicprog");
    EXPECT_EQ(QStringList({dlg.Programmer->currentText(), dlg.ProgrammerPath->text(), dlg.CommandOptions->text()}),
              QStringList({"Other", "/usr/local/bin/ardpicprog", preset("ardpicprog").options}));
    EXPECT_EQ(dlg.PresetNote->text(), "ardpicprog found on PATH.");
    choose("usbpicprog");  // already "Other": the fields still change
    EXPECT_EQ(QStringList({dlg.ProgrammerPath->text(), dlg.CommandOptions->text()}),
              QStringList({"usbpicprog", preset("usbpicprog").options}));
    EXPECT_TRUE(dlg.PresetNote->text().contains("not found"));
    // The first entry chooses nothing: the fields stay.
    dlg.Preset->setCurrentIndex(0);
    dlg.Preset_Click();
    EXPECT_EQ(dlg.ProgrammerPath->text(), "usbpicprog");
    EXPECT_TRUE(dlg.PresetNote->text().isEmpty());
    // OK stores it as the "Other" kind's, and nothing of the melabs Loader's.
    dlg.cmdOK_Click();
    EXPECT_EQ(QStringList({setting(Key::ProgrammerType), setting(Key::ProgrammerPathNameOther),
                           setting(Key::ProgrammerCommandLineOptionsOther)}),
              QStringList({"3", "usbpicprog", preset("usbpicprog").options}));
}
