#include "core/Session.h"

#include "core/Convert.h"
#include "core/Settings.h"
#include "platform/Failure.h"

namespace {

const QString kSection = QStringLiteral("Session");

QString fileKey(int i) { return QStringLiteral("File") + QString::number(i); }
QString lineKey(int i) { return QStringLiteral("Line") + QString::number(i); }

// A stored whole number, or `otherwise` for anything else.
int wholeOr(const QString& text, int otherwise) {
    try {
        return int32Of(text);
    } catch (const Failure&) {
        return otherwise;
    }
}

}  // namespace

Session readSession() {
    const QString app = applicationName();
    const QHash<QString, QString> head =
        GetSettings(app, kSection, {QStringLiteral("Count"), QStringLiteral("Active")});
    const int count = qBound(0, wholeOr(head.value(QStringLiteral("Count")), 0), kSessionMaxDocuments);
    QStringList keys;
    for (int i = 1; i <= count; ++i)
        keys << fileKey(i) << lineKey(i);
    const QHash<QString, QString> values = GetSettings(app, kSection, keys);
    const int active = wholeOr(head.value(QStringLiteral("Active")), 0);
    Session s;
    for (int i = 1; i <= count; ++i) {
        const QString path = values.value(fileKey(i));
        if (path.isEmpty())
            continue;
        if (i == active)
            s.active = int(s.documents.size());
        s.documents.append({path, std::max(0, wholeOr(values.value(lineKey(i)), 1) - 1)});
    }
    return s;
}

void saveSession(const Session& session) {
    const int count = int(std::min<qsizetype>(session.documents.size(), kSessionMaxDocuments));
    QList<QPair<QString, QString>> values;
    values.append({QStringLiteral("Count"), QString::number(count)});
    values.append({QStringLiteral("Active"),
                   QString::number(session.active >= 0 && session.active < count ? session.active + 1 : 0)});
    for (int i = 0; i < count; ++i) {
        values.append({fileKey(i + 1), session.documents[i].path});
        values.append({lineKey(i + 1), QString::number(qint64(session.documents[i].line) + 1)});
    }
    SaveSettings(applicationName(), kSection, values);
}
