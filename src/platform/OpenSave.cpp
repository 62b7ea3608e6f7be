#include "platform/OpenSave.h"

#include "platform/Failure.h"
#include "platform/Prompts.h"

#include <QFileInfo>

QStringList filterExtensions(const QString& filter) {
    QStringList out;
    const QStringList parts = filter.split(QLatin1Char('|'));
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString pattern = parts[i + 1].trimmed();
        const bool one = pattern.startsWith(QStringLiteral("*.")) && pattern.size() > 2 &&
                         !pattern.contains(QLatin1Char(';')) && !pattern.mid(2).contains(QLatin1Char('*')) &&
                         !pattern.mid(2).contains(QLatin1Char('?'));
        out << (one ? pattern.mid(2).toLower() : QString());
    }
    return out;
}

QString withFilterExtension(const QString& fileName, const QString& extension) {
    const QFileInfo info(fileName);
    if (fileName.isEmpty() || extension.isEmpty() || !info.suffix().isEmpty() || fileName.endsWith(QLatin1Char('.')) ||
        info.fileName().isEmpty())
        return fileName;
    return fileName + QLatin1Char('.') + extension;
}

void OpenSave::cancelled() {
    if (CancelError)
        throw cancelError();
    FileName.clear();
}

bool OpenSave::ShowOpen() {
    if (!prompts_)
        throw objectNotSet();
    if (auto f = prompts_->openFile(Filter, FileName)) {
        FileName = *f;
        return true;
    }
    cancelled();
    return false;
}

bool OpenSave::ShowSave() {
    if (!prompts_)
        throw objectNotSet();
    const QStringList extensions = filterExtensions(Filter);
    if (const qsizetype own = extensions.indexOf(QFileInfo(FileName).suffix().toLower());
        !QFileInfo(FileName).suffix().isEmpty() && own >= 0)
        FilterIndex = int(own) + 1;
    int index = FilterIndex >= 1 && FilterIndex <= extensions.size() ? FilterIndex - 1 : 0;
    if (auto f = prompts_->saveFile(Filter, FileName, index)) {
        FilterIndex = index + 1;
        FileName = withFilterExtension(*f, extensions.value(index));
        return true;
    }
    cancelled();
    return false;
}

bool OpenSave::ShowColor() {
    if (!prompts_)
        throw objectNotSet();
    if (auto c = prompts_->chooseColor(Color)) {
        Color = *c;
        return true;
    }
    if (CancelError)
        throw cancelError();
    return false;
}
