// Compile and Program: when an ended compile may start the programmer, and what it says when not.
#include "programmer/ProgramAfterCompile.h"

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

TEST(ProgramAfterCompile, TheFirstReasonNotToProgramIsSaid) {
    QTemporaryDir dir;
    const QString source = dir.filePath("blink.pbp"), hex = dir.filePath("blink.hex");
    const QDateTime saved = QDateTime::currentDateTime().addSecs(-60);
    const auto write = [](const QString& path, const QDateTime& when) {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("x");
        f.flush();  // else the close writes, and stamps the file anew
        ASSERT_TRUE(f.setFileTime(when, QFileDevice::FileModificationTime));
    };
    write(source, saved);
    struct Case {
        const char* name;
        bool errorLine;
        std::optional<int> status;
        std::optional<int> hexAge;  // seconds after the source; none: no hex file
        QString says;               // empty: programs
    };
    const QString no = "Not programmed: ";
    const Case cases[] = {
        {"good", false, 0, 5, ""},
        {"same stamp", false, 0, 0, ""},
        {"error line first", true, 2, std::nullopt, no + "the output has an error line."},
        {"error line, status 0", true, 0, 5, no + "the output has an error line."},
        {"no status", false, std::nullopt, 5, no + "the compiler left no exit status."},
        {"status", false, 3, 5, no + "the compiler's exit status is 3."},
        {"no hex", false, 0, std::nullopt, no + "there is no hex file " + hex + "."},
        {"older hex", false, 0, -1, no + "the hex file " + hex + " is older than the source."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        QFile::remove(hex);
        if (c.hexAge)
            write(hex, saved.addSecs(*c.hexAge));
        const auto reason = notProgrammedReason({c.errorLine, c.status, source, hex});
        EXPECT_EQ(reason.value_or(QString()), c.says);
    }
}
