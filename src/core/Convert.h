#pragma once
// Reading a stored text as the number its reader wants. A text that isn't one is a failure at the reader.

#include "platform/Blanks.h"

#include <QString>
#include <QtGlobal>

// Blanks around the number are allowed; anything else that isn't a decimal number throws Failure 13.
double numberOf(const QString& text);
// Rounded to the nearest whole number (halves to even); outside the type's range throws Failure 6.
qint16 int16Of(const QString& text);
qint32 int32Of(const QString& text);
float singleOf(const QString& text);

