#pragma once
// What a fuzz target needs of the platform: an application directory of its own, message boxes that are
// recorded instead of shown, a device list without a window, and a way to stop on a broken property.

#include "support/FakeDeviceCombo.h"
#include "core/Globals.h"
#include "platform/Paths.h"
#include "platform/Prompts.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <cstdint>
#include <optional>
#include <vector>

// A broken property is a crash, so that libFuzzer keeps the input that broke it.
#define FUZZ_CHECK(cond, ...)                                                        \
    do {                                                                             \
        if (!(cond)) {                                                               \
            std::fprintf(stderr, "property broken: %s (%s:%d)\n", #cond, __FILE__, __LINE__); \
            __VA_OPT__(std::fprintf(stderr, __VA_ARGS__);)                           \
            std::fprintf(stderr, "\n");                                              \
            std::abort();                                                            \
        }                                                                            \
    } while (0)

inline QByteArray fuzzBytes(const uint8_t* data, size_t size) {
    return QByteArray(reinterpret_cast<const char*>(data), qsizetype(size));
}

struct RecordedBox {
    QString text;
    QString title;
    Icon icon;
};

class RecordingPrompts : public Prompts {
public:
    std::vector<RecordedBox> boxes;
    Answer message(const QString& text, const QString& title, Icon icon, Buttons) override {
        boxes.push_back({text, title, icon});
        return Answer::Ok;
    }
    std::optional<QString> openFile(const QString&, const QString&) override { return std::nullopt; }
    std::optional<QString> saveFile(const QString&, const QString&, int&) override { return std::nullopt; }
    std::optional<qint32> chooseColor(qint32) override { return std::nullopt; }
};

class TempPaths : public Paths {
public:
    explicit TempPaths(QString dir) : dir_(std::move(dir)) {}
    QString shortPath(const QString& path) override { return path; }
    QString applicationDirectory() override { return dir_; }
    QStringList searchRoots() override { return {dir_}; }

private:
    QString dir_;
};

using ListCombo = FakeDeviceCombo;

// A temporary application directory in globals() for the whole run.
struct FuzzWorld {
    QTemporaryDir dir;
    RecordingPrompts prompts;
    TempPaths paths{dir.path()};

    FuzzWorld() {
        if (!dir.isValid()) {
            std::fprintf(stderr, "no temporary directory\n");
            std::abort();
        }
        globals().prompts = &prompts;
        globals().paths = &paths;
    }
    QString file(const QString& name) const { return dir.filePath(name); }
    void write(const QString& name, const QByteArray& bytes) const {
        QFile f(file(name));
        if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(bytes) != bytes.size()) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(f.fileName()));
            std::abort();
        }
    }
};
