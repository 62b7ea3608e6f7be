// Compile and Program's decision in the cases a compile double can't easily give (the integration test has
// the rest): which reason comes first, no exit status, and a hex file stamped with the source's time.
#include "programmer/ProgramAfterCompile.h"

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

TEST(ProgramAfterCompile, TheFirstReasonIsSaidAndTheSameStampCountsAsNewer) {
    QTemporaryDir dir;
    const QString source = dir.filePath("blink.pbp"), hex = dir.filePath("blink.hex");
    const QDateTime saved = QDateTime::currentDateTime().addSecs(-60);
    for (const QString& path : {source, hex}) {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly) && f.write("x") == 1 && f.flush());  // the close stamps no more
        ASSERT_TRUE(f.setFileTime(saved, QFileDevice::FileModificationTime));
    }
    const QString no = "Not programmed: ";
    EXPECT_EQ(notProgrammedReason({true, 2, source, dir.filePath("none.hex")}), no + "the output has an error line.");
    EXPECT_EQ(notProgrammedReason({false, std::nullopt, source, hex}), no + "the compiler left no exit status.");
    EXPECT_EQ(notProgrammedReason({false, 0, source, hex}), std::nullopt);
}
