#include "core/DeviceCombo.h"

#include "platform/Failure.h"

QString selectDeviceForTools(DeviceCombo& combo) {
    // The combo itself takes index 0 of an empty list silently; the selection it stands for can't exist.
    const auto select0 = [&] {
        if (combo.ListCount() == 0)
            throw invalidPropertyValue();
        combo.SetListIndex(0);
    };
    if (combo.ListIndex() > combo.ListCount() - 1)
        select0();
    if (combo.ListIndex() == -1)
        select0();
    return combo.List(combo.ListIndex()).mid(3);
}
