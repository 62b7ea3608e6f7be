#pragma once
// What the editing keys do to lines: Ctrl+/ toggles ' comments over the selected lines, Enter keeps the
// indent of the line above. Given as edits so that the control applies them as one undo step and keeps its
// caret, selection and markers.

#include <QString>
#include <QStringList>
#include <QStringView>
#include <vector>

struct LineEdit {
    int line = 0;    // index into the lines given
    int column = 0;  // where the text is removed, then inserted
    int remove = 0;  // characters removed there
    QString insert;
    bool operator==(const LineEdit&) const = default;
};

// The lines that hold more than blanks decide, and only they change: when each starts (after its blanks)
// with ', the first ' goes from each; else each gets a ' at the smallest indent among them, so the
// lines keep their shape and a second toggle gives them back. Lines of blanks stay as they are.
std::vector<LineEdit> toggleComment(const QStringList& lines);

// The lines with the edits made, in the given order.
QStringList applyEdits(QStringList lines, const std::vector<LineEdit>& edits);

// The blanks (spaces and tabs) that start the line: what Enter puts at the start of the new line.
QString lineIndent(QStringView lineAbove);
