#include "programmer/ProgramAfterCompile.h"

#include <QFile>

#include <filesystem>
#include <system_error>

namespace {

std::optional<std::filesystem::file_time_type> modified(const QString& path) {
    std::error_code ec;
    const auto t = std::filesystem::last_write_time(std::filesystem::path(QFile::encodeName(path).toStdString()), ec);
    if (ec)
        return std::nullopt;
    return t;
}

}  // namespace

std::optional<QString> notProgrammedReason(const CompileResult& r) {
    const QString no = QStringLiteral("Not programmed: ");
    if (r.errorLine)
        return no + QStringLiteral("the output has an error line.");
    if (!r.exitStatus)
        return no + QStringLiteral("the compiler left no exit status.");
    if (*r.exitStatus != 0)
        return no + QStringLiteral("the compiler's exit status is %1.").arg(*r.exitStatus);
    const auto hex = modified(r.hexFile);
    if (!hex)
        return no + QStringLiteral("there is no hex file %1.").arg(r.hexFile);
    // The same stamp counts as newer: file systems stamp in steps of milliseconds or coarser, and a fast
    // compiler writes within the step of the save that came just before it.
    if (const auto source = modified(r.source); source && *hex < *source)
        return no + QStringLiteral("the hex file %1 is older than the source.").arg(r.hexFile);
    return std::nullopt;
}
