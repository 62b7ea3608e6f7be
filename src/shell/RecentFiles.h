#pragma once
// The four recent file entries of the File menu. The entries' captions are the list: "&1 " and the
// path for entry 1, and so on; the settings hold those captions whole.

#include <QString>

class ToolModel;
class Tool;

// Entry 1..4: the tool ID_File1..ID_File4 as a member of the File menu.
Tool& recentFileEntry(ToolModel& tools, int entry);

// Fills the entries from the settings File1..File4; an empty value leaves its entry as it is.
void loadRecentFiles(ToolModel& tools);

// Puts a path on top: each shown entry moves down one, the fourth falls off. No duplicate test, and
// a hidden entry stops nothing from moving past it.
void enterRecentFile(ToolModel& tools, const QString& pathName);

// The path an entry names: its caption from the fourth character on.
QString recentFilePath(ToolModel& tools, int entry);

// Writes each shown entry's whole caption to its setting; a hidden entry leaves its setting alone.
void saveRecentFiles(ToolModel& tools);
