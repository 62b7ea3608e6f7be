#include "dialogs/AboutRows.h"

QString aboutVersionText(int major, int minor, int revision) {
    return QStringLiteral("Version: ") + QString::number(major) + QLatin1Char('.') + QString::number(minor) +
           QStringLiteral(" Build: ") + QString::number(revision);
}

BinRows startingBinRows() {
    BinRows rows;
    rows[0] = QStringLiteral("1001001001111100000");
    rows[1] = QStringLiteral("1001001001111110011");
    rows[2] = QStringLiteral("1001001010000000011");
    rows[3] = QStringLiteral("1001001010000010011");
    // Row i takes row i mod 4 as it is by then, so a later row builds on a row already rotated.
    for (int i = 0, x = 0; i < kBinScrollRows; ++i, ++x) {
        if (x == 4)
            x = 0;
        const QString t = rows[x];
        rows[i] = t.mid(i) + t.left(i);
    }
    return rows;
}

void scrollBinRows(BinRows& rows) {
    // The bottom row is overwritten first, so its old text is lost and the top one shows twice.
    rows[kBinScrollRows - 1] = rows[0];
    for (int i = 0; i < kBinScrollRows - 1; ++i)
        rows[i] = rows[i + 1];
}

QString pbpVersionStartText() { return QStringLiteral("Click compile to get compiler version."); }
