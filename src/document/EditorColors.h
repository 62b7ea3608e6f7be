#pragma once
// The colours and the font face of the settings, applied to a new view and saved from a closing one;
// the colour commands, which set a colour in every open document at once but not in the settings.

#include "core/Settings.h"

#include <optional>

class Frame;
class QString;
class SourceView;

// The colour key of a token class, for the classes that have one (2, 3, 5, 6, 7, 10 to 15).
std::optional<Key> colorKeyOf(int tokenClass);

// Font, selection colours, token colours and styles, background, print colours, in that order.
// A value that can't be applied is skipped.
void applyViewSettings(SourceView& view);

// Token colours the view holds as set, then background and selection colours.
void saveViewColors(SourceView& view);

// ID_SelectionTextForegroundColor, ID_SelectionTextBackgroundColor, ID_BackgroundColor, ID_TokenColor:
// asks for a colour through the frame's dialog and gives it to the views of all loaded documents.
// A cancelled dialog throws Failure kCancelError and changes nothing.
void colorCommand(Frame& frame, const QString& toolId);
