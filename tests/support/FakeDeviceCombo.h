#pragma once
// A device list without a window, behaving as the combo of ID_Device does.

#include "core/DeviceCombo.h"

#include <QStringList>

class FakeDeviceCombo : public DeviceCombo {
public:
    QStringList entries;
    int index = -1;

    void Clear() override { entries.clear(); index = -1; }
    void AddItem(const QString& text) override { entries << text; }
    int ListCount() const override { return int(entries.size()); }
    QString List(int i) const override { return entries.value(i); }
    int ListIndex() const override { return index; }
    void SetListIndex(int i) override { index = i >= 0 && i < entries.size() ? i : -1; }
};
