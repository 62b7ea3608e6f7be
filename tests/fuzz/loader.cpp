// A source file as any bytes: loading it into an editing control and saving it unchanged writes the same
// bytes, or the load is refused with a Failure (and then the file can't be saved over).
#include "FuzzWorld.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "platform/Failure.h"

#include <QApplication>
#include <QFileInfo>

namespace {

FuzzWorld* world;
SourceView* view;

QByteArray readAll(const QString& path) {
    QFile f(path);
    FUZZ_CHECK(f.open(QIODevice::ReadOnly), "cannot read back %s", qPrintable(path));
    return f.readAll();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    new QApplication(*argc, *argv);
    // Every save ends in a sync to disk; in memory that costs nothing, and the run gets many more files.
    if (QFileInfo(QStringLiteral("/dev/shm")).isWritable())
        qputenv("TMPDIR", "/dev/shm");
    world = new FuzzWorld;
    view = new SourceView;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes = fuzzBytes(data, size);
    const QString source = world->file(QStringLiteral("in.pbp"));
    const QString copy = world->file(QStringLiteral("out.pbp"));
    world->write(QStringLiteral("in.pbp"), bytes);
    QFile::remove(copy);

    Document& doc = view->document();
    try {
        doc.LoadFile(source);
    } catch (const Failure&) {
        FUZZ_CHECK(doc.NumLines() == 1 && doc.GetLineLength(0) == 0, "a refused load left text");
        bool saved = true;
        try {
            doc.SaveFile(source);
        } catch (const Failure&) {
            saved = false;
        }
        FUZZ_CHECK(!saved, "saved over a file whose load was refused");
        FUZZ_CHECK(readAll(source) == bytes, "the refused file changed");
        return 0;
    }
    FUZZ_CHECK(!doc.Modified(), "modified right after loading");
    doc.SaveFile(copy);
    const QByteArray out = readAll(copy);
    if (out != bytes) {
        qsizetype at = 0;
        while (at < out.size() && at < bytes.size() && out[at] == bytes[at])
            ++at;
        FUZZ_CHECK(false, "saved %lld bytes of %lld, first difference at %lld", static_cast<long long>(out.size()),
                   static_cast<long long>(bytes.size()), static_cast<long long>(at));
    }
    // Saving over the file it came from gives the same bytes too.
    doc.SaveFile(source);
    FUZZ_CHECK(readAll(source) == bytes, "saving over the loaded file changed it");
    return 0;
}
