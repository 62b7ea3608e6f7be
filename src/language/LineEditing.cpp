#include "language/LineEditing.h"

#include <algorithm>
#include <climits>

namespace {

bool isBlank(QChar c) { return c == u' ' || c == u'\t'; }

int indentOf(QStringView line) {
    int i = 0;
    while (i < line.size() && isBlank(line[i]))
        ++i;
    return i;
}

bool blankLine(QStringView line) { return indentOf(line) == line.size(); }

}  // namespace

std::vector<LineEdit> toggleComment(const QStringList& lines) {
    bool allCommented = true, any = false;
    int column = INT_MAX;
    for (const QString& line : lines) {
        if (blankLine(line))
            continue;
        any = true;
        const int indent = indentOf(line);
        column = std::min(column, indent);
        allCommented = allCommented && line[indent] == u'\'';
    }
    std::vector<LineEdit> edits;
    if (!any)
        return edits;
    for (int i = 0; i < lines.size(); ++i) {
        if (blankLine(lines[i]))
            continue;
        if (allCommented)
            edits.push_back({i, indentOf(lines[i]), 1, QString()});
        else
            edits.push_back({i, column, 0, QStringLiteral("'")});
    }
    return edits;
}

QStringList applyEdits(QStringList lines, const std::vector<LineEdit>& edits) {
    for (const LineEdit& e : edits) {
        if (e.line < 0 || e.line >= lines.size())
            continue;
        QString& line = lines[e.line];
        const int column = std::clamp(e.column, 0, int(line.size()));
        line.replace(column, std::clamp(e.remove, 0, int(line.size()) - column), e.insert);
    }
    return lines;
}

QString lineIndent(QStringView lineAbove) { return lineAbove.first(indentOf(lineAbove)).toString(); }
