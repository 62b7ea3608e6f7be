#pragma once
// A panel named by its caller: a position from 1 or a key. Text that reads as a number is a position,
// so a key made only of digits can never be found by key.

#include <QString>

#include <concepts>
#include <optional>
#include <variant>

class PanelRef {
public:
    template <std::integral T>
    PanelRef(T position) : value_(qint64(position)) {}
    PanelRef(const QString& key) : value_(key) {}
    PanelRef(const char* key) : value_(QString::fromUtf8(key)) {}

    // The position this value stands for, rounded as a whole number; nothing when it is a key.
    std::optional<qint64> position() const;
    // As given: a number in decimal, a key as it is. Goes into messages and into PanelKey set.
    QString text() const;

private:
    std::variant<qint64, QString> value_;
};
