#pragma once
// Puts other paths in globals() for as long as it lives: a run through Wine asks Wine for short forms.

#include "core/Globals.h"

class Paths;

class UsePaths {
public:
    explicit UsePaths(Paths& paths) : old_(globals().paths) { globals().paths = &paths; }
    ~UsePaths() { globals().paths = old_; }
    UsePaths(const UsePaths&) = delete;
    UsePaths& operator=(const UsePaths&) = delete;

private:
    Paths* old_;
};
