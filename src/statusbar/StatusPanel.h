#pragma once
// One panel of the status bar, as the bar keeps it.

#include "statusbar/DrawingTarget.h"

#include <QString>

struct StatusPanel {
    QString sKey;
    qint32 lItemData = 0;
    qint32 iImgIndex = -1;
    IconHandle hIcon = 0;  // owned: destroyed when replaced, when the panel goes, when the bar ends
    QString sText;
    qint32 lMinWidth = 0;
    qint32 lIdealWidth = 0;
    bool bSpring = false;
    bool bFitContents = false;
    qint32 eStyle = 0;
    BarRect rect;  // from the last layout
};
