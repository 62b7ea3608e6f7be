#include "shell/RecentFiles.h"

#include "core/Settings.h"
#include "core/ToolIds.h"
#include "shell/ToolModel.h"

Tool& recentFileEntry(ToolModel& tools, int entry) {
    static constexpr const char* kEntries[] = {ToolId::File1, ToolId::File2, ToolId::File3, ToolId::File4};
    // Any other entry is a tool the menu doesn't hold.
    const char* id = entry >= 1 && entry <= 4 ? kEntries[entry - 1] : "";
    return tools.Tools().Item(QLatin1String(ToolId::File)).Menu().Tools().Item(QLatin1String(id));
}

void loadRecentFiles(ToolModel& tools) {
    for (int i = 1; i <= 4; ++i) {
        const QString value = setting(recentFileKey(i));
        if (value.isEmpty())
            continue;
        Tool& e = recentFileEntry(tools, i);
        // Taken as stored, prefix and all.
        e.setCaption(value);
        e.setVisible(true);
    }
}

void enterRecentFile(ToolModel& tools, const QString& pathName) {
    for (int i = 4; i >= 2; --i) {
        Tool& above = recentFileEntry(tools, i - 1);
        if (!above.Visible())
            continue;
        Tool& e = recentFileEntry(tools, i);
        // The tail is the blank and the path: the caption from its third character on.
        e.setCaption(QLatin1Char('&') + QString::number(i) + above.Caption().mid(2));
        e.setVisible(true);
    }
    Tool& first = recentFileEntry(tools, 1);
    if (!first.Visible())
        first.setVisible(true);
    first.setCaption(QStringLiteral("&1 ") + pathName);
}

QString recentFilePath(ToolModel& tools, int entry) { return recentFileEntry(tools, entry).Caption().mid(3); }

void saveRecentFiles(ToolModel& tools) {
    for (int i = 1; i <= 4; ++i) {
        Tool& e = recentFileEntry(tools, i);
        if (e.Visible())
            saveSetting(recentFileKey(i), e.Caption());
    }
}
