#pragma once
// Blanks (spaces only, no other white space) removed from both ends, as the compilers' and programmers'
// options and paths are taken: a tab at either end is the user's and stays.

#include <QString>

inline QString trimBlanks(const QString& text) {
    qsizetype from = 0;
    qsizetype to = text.size();
    while (from < to && text[from] == QLatin1Char(' '))
        ++from;
    while (to > from && text[to - 1] == QLatin1Char(' '))
        --to;
    return text.mid(from, to - from);
}
