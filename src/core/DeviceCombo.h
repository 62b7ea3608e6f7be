#pragma once
// What the device catalogue needs of the device list (the combo of the tool ID_Device).

#include <QString>
#include <QStringList>

class DeviceCombo {
public:
    virtual ~DeviceCombo() = default;
    virtual void Clear() = 0;
    // Adds an entry at the end of the list.
    virtual void AddItem(const QString& text) = 0;
    // Adds entries at the end, in their order; a list that shows them may take them in one go.
    virtual void AddItems(const QStringList& texts) {
        for (const QString& t : texts)
            AddItem(t);
    }
    virtual int ListCount() const = 0;
    // The entry text at index i; empty for an index outside the list.
    virtual QString List(int i) const = 0;
    // The selected index, -1 for none.
    virtual int ListIndex() const = 0;
    // Raises nothing: an index outside the list leaves the combo without a selection.
    virtual void SetListIndex(int i) = 0;
};

// The device a compile or a programmer is for: a selection outside the list, or none, becomes the first
// entry and stays selected. Gives the entry without its first three characters, the "PIC" (PIC16F84 gives
// 16F84). An empty list has no entry to select: Failure 380, as for any index outside the list.
QString selectDeviceForTools(DeviceCombo& combo);
