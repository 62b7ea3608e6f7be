#pragma once
// The Window menu's document entries and the open documents label on the toolbar.

#include <QString>

#include <functional>

class ToolModel;

// Enters a document title at the end of the Window menu, puts in the separator ahead of the first
// entry, and shows docCount on the label. setTag, when given, runs where the active window's Tag
// takes the title. A failing step is skipped, so the label is right even when the entry is refused.
// With beforeId the entry goes in ahead of that entry instead, when the menu has it.
void AddWindowEntry(ToolModel& tools, const QString& title, int docCount,
                    const std::function<void(const QString&)>& setTag = {}, const QString& beforeId = {});

// Takes the entry with this id out of the Window menu; an unknown id is a failure.
void removeWindowEntry(ToolModel& tools, const QString& id);

// "Files: " and the count, on the label of the band Standard.
void setOpenDocsCaption(ToolModel& tools, int docCount);
