#pragma once
// The send field's hex form: bytes as hex digits, "48 65 6C 6C 6F 0D 0A", "48656C6C6F0D0A" or
// "0x48,0x65". Blanks and commas part the groups; a group is an even run of digits, or a single digit for
// one byte ("D" is 0D), with "0x" in front or not.

#include <QByteArray>
#include <QString>
#include <QStringView>

struct HexInput {
    QByteArray bytes;
    // Where the text stops being hex, from 0; -1 when all of it was read.
    qsizetype errorAt = -1;
    bool ok() const { return errorAt < 0; }
};

HexInput parseHexInput(QStringView text);
// Bytes as the hex form writes them: two upper-case digits each, a blank between.
QString hexText(const QByteArray& bytes);
