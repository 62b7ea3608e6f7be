#pragma once
// The prompts of a benchmark: none is expected, and a box means the figures measure a failure.

#include "platform/Prompts.h"

#include <cstdio>
#include <cstdlib>

class NoPrompts : public Prompts {
public:
    Answer message(const QString& text, const QString&, Icon, Buttons) override {
        std::fprintf(stderr, "unexpected message: %s\n", qPrintable(text));
        std::abort();
    }
    std::optional<QString> openFile(const QString&, const QString&) override { return std::nullopt; }
    std::optional<QString> saveFile(const QString&, const QString&, int&) override { return std::nullopt; }
    std::optional<qint32> chooseColor(qint32) override { return std::nullopt; }
};
