#include "document/TokenInfo.h"

#include "platform/Failure.h"

namespace {

void checkClass(int cls) {
    if (cls < 0 || cls >= TokenInfo::kClasses)
        throw subscriptOutOfRange(QStringLiteral("There is no token class %1; the classes are 0 to 15.").arg(cls));
}

}  // namespace

void TokenInfo::SetForegroundColor(int cls, qint32 color, bool set) {
    checkClass(cls);
    entries_[cls].fore = color;
    entries_[cls].foreSet = set;
    if (changed)
        changed();
}

void TokenInfo::GetForegroundColor(int cls, qint32& color, bool& set) const {
    checkClass(cls);
    color = entries_[cls].fore;
    set = entries_[cls].foreSet;
}

void TokenInfo::SetBackgroundColor(int cls, qint32 color, bool set) {
    checkClass(cls);
    entries_[cls].back = color;
    entries_[cls].backSet = set;
    if (changed)
        changed();
}

void TokenInfo::SetBackgroundColor(int cls, const QString& color, bool set) {
    bool ok = false;
    // Settings hold system colours as negative numbers, and a colour dialog may give an unsigned one.
    qint64 value = color.trimmed().toLongLong(&ok);
    if (!ok || value < INT32_MIN || value > qint64(UINT32_MAX))
        throw typeMismatch(QStringLiteral("\"%1\" is not a colour number.").arg(color));
    SetBackgroundColor(cls, qint32(quint32(value)), set);
}

void TokenInfo::SetFontStyle(int cls, int style, bool set) {
    checkClass(cls);
    entries_[cls].style = set ? style : 0;
    if (changed)
        changed();
}

qint32 TokenInfo::foreground(int cls) const { return entries_.at(cls).fore; }
bool TokenInfo::hasForeground(int cls) const { return entries_.at(cls).foreSet; }
qint32 TokenInfo::background(int cls) const { return entries_.at(cls).back; }
bool TokenInfo::hasBackground(int cls) const { return entries_.at(cls).backSet; }
int TokenInfo::fontStyle(int cls) const { return entries_.at(cls).style; }
