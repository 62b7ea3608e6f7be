#include "shell/WindowList.h"

#include "core/ToolIds.h"
#include "platform/Failure.h"
#include "shell/ToolModel.h"

namespace {

ToolList& windowMenu(ToolModel& tools) { return tools.Tools().Item(QLatin1String(ToolId::Window)).Menu().Tools(); }

}  // namespace

void AddWindowEntry(ToolModel& tools, const QString& title, int docCount,
                    const std::function<void(const QString&)>& setTag, const QString& beforeId) {
    int n = 0;
    skipOnFailure([&] { n = windowMenu(tools).Count(); });
    skipOnFailure([&] {
        ToolList& menu = windowMenu(tools);
        const Tool* before = beforeId.isEmpty() ? nullptr : menu.find(beforeId);
        menu.Add(title, before ? menu.indexOf(*before) + 1 : n + 1);
    });
    if (setTag)
        skipOnFailure([&] { setTag(title); });
    // Only the first entry after the four arrange tools makes five: the separator goes in once.
    skipOnFailure([&] {
        if (windowMenu(tools).Count() == 5)
            windowMenu(tools).Add(QStringLiteral("separator"), 5);
    });
    skipOnFailure([&] { setOpenDocsCaption(tools, docCount); });
}

void removeWindowEntry(ToolModel& tools, const QString& id) { windowMenu(tools).Remove(id); }

void setOpenDocsCaption(ToolModel& tools, int docCount) {
    tools.Bands(QLatin1String(kStandardBand)).Tools().Item(QLatin1String(ToolId::OpenDocs))
        .setCaption(QStringLiteral("Files: ") + QString::number(docCount));
}
