#pragma once
// Whether a program file is a Windows program, and for which processor: told by its content, never by
// its name.

#include <QByteArray>
#include <QString>
#include <optional>

// The first bytes of a file hold "MZ" at offset 0, a 32-bit little-endian offset at 0x3C, and "PE\0\0" at
// that offset. A file too short for either test is no PE image.
bool isPeImage(const QByteArray& head);

// Reads as much of the file as the test needs; a file that can't be read is no PE image.
bool isPeImageFile(const QString& path);

// The machine field of the file header, the 16 bits behind "PE\0\0": kPeMachineI386 for a 32-bit x86
// program, kPeMachineAmd64 for a 64-bit one. None for what is no PE image or ends before the field.
inline constexpr quint16 kPeMachineI386 = 0x14c;
inline constexpr quint16 kPeMachineAmd64 = 0x8664;
std::optional<quint16> peMachine(const QByteArray& head);
std::optional<quint16> peMachineOfFile(const QString& path);
