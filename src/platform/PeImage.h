#pragma once
// Whether a program file is a Windows program: told by its content, never by its name.

#include <QByteArray>
#include <QString>

// The first bytes of a file hold "MZ" at offset 0, a 32-bit little-endian offset at 0x3C, and "PE\0\0" at
// that offset. A file too short for either test is no PE image.
bool isPeImage(const QByteArray& head);

// Reads as much of the file as the test needs; a file that can't be read is no PE image.
bool isPeImageFile(const QString& path);
