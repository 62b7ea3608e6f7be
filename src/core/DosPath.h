#pragma once
// The short form of a path that the compile script and the programmer's command line use.

#include <QString>

class ShortPaths;

// The short form of an existing path as forms gives it (the platform's own paths, or the host of the
// program that reads it); for a path without one, the system's message and the empty string. The caller
// goes on in either case.
QString GetDosPath(const QString& path, ShortPaths& forms);
// With the platform's own paths.
QString GetDosPath(const QString& path);
