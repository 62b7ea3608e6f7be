#pragma once
// The short form of a path that the compile script and the programmer's command line use.

#include <QString>

// The platform's short form of an existing path; for a path without one, the system's message and the
// empty string. The caller goes on in either case.
QString GetDosPath(const QString& path);
