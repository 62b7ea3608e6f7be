#include "core/Settings.h"
#include "shell/RecentFiles.h"
#include "shell/ToolModel.h"
#include "support/Doubles.h"

#include <gtest/gtest.h>

namespace {
// Shown entries as "n:caption", hidden ones as "n:-".
QStringList entries(ToolModel& m) {
    QStringList out;
    for (int i = 1; i <= 4; ++i) {
        Tool& e = recentFileEntry(m, i);
        out << QString::number(i) + ':' + (e.Visible() ? e.Caption() : QStringLiteral("-"));
    }
    return out;
}
QStringList stored() { return {setting(Key::File1), setting(Key::File2), setting(Key::File3), setting(Key::File4)}; }
}  // namespace

// A hidden entry moves nothing into the next, so the entry behind it stays where it was as well.
TEST(RecentFiles, AStoredSecondEntryAloneThenOneEnters) {
    TestWorld w;
    saveSetting(Key::File2, "&2 /old/two.pbp");
    ToolModel m;
    loadRecentFiles(m);
    EXPECT_EQ(entries(m), QStringList({"1:-", "2:&2 /old/two.pbp", "3:-", "4:-"}));
    enterRecentFile(m, "/p/a.pbp");
    EXPECT_EQ(entries(m), QStringList({"1:&1 /p/a.pbp", "2:&2 /old/two.pbp", "3:&3 /old/two.pbp", "4:-"}));
}

// A stored prefix is kept as it is; the path starts at the fourth character whatever stands in front.
TEST(RecentFiles, SaveWritesShownEntriesWithTheStoredPrefix) {
    TestWorld w;
    saveSetting(Key::File1, "&3 /kept/prefix.pbp");
    saveSetting(Key::File3, "no prefix");
    ToolModel m;
    loadRecentFiles(m);
    saveSetting(Key::File2, "&2 /stale.pbp");  // a hidden entry leaves its key alone
    saveRecentFiles(m);
    EXPECT_EQ(stored(), QStringList({"&3 /kept/prefix.pbp", "&2 /stale.pbp", "no prefix", ""}));
    enterRecentFile(m, "/top.pbp");
    saveRecentFiles(m);
    EXPECT_EQ(stored(), QStringList({"&1 /top.pbp", "&2 /kept/prefix.pbp", "no prefix", "&4 prefix"}));
}
