#include "compile/MessageNavigation.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

QString messageFilePath(const CompileMessage& message, const QString& sourcePath) {
    if (message.file.isEmpty())
        return sourcePath;
    if (!QFileInfo(message.file).isRelative())
        return QDir::cleanPath(message.file);
    return QDir::cleanPath(QFileInfo(sourcePath).dir().filePath(message.file));
}

int messageAtLine(const std::vector<CompileMessage>& messages, int outputLine) {
    const auto it = std::find_if(messages.begin(), messages.end(),
                                 [&](const CompileMessage& m) { return m.outputLine == outputLine; });
    return it == messages.end() ? -1 : int(it - messages.begin());
}

int stepMessage(const std::vector<CompileMessage>& messages, int current, bool forward) {
    const int n = int(messages.size());
    if (n == 0)
        return -1;
    if (current < 0 || current >= n)
        return forward ? 0 : n - 1;
    return (current + (forward ? 1 : n - 1)) % n;
}

QString messageTag(CompileMessage::Severity severity) {
    switch (severity) {
    case CompileMessage::Severity::Error: return QStringLiteral("error");
    case CompileMessage::Severity::Warning: return QStringLiteral("warning");
    case CompileMessage::Severity::Note: break;
    }
    return QStringLiteral("note");
}

QString mappedLineNote(const CompileMessage& message) {
    if (message.asmFile.isEmpty() || message.line <= 0)
        return {};
    const QString name = message.file.isEmpty() ? QStringLiteral("the source") : QFileInfo(message.file).fileName();
    return QStringLiteral("\u2192 %1 line %2").arg(name).arg(message.line);
}
