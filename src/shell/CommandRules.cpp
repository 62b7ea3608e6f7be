#include "shell/CommandRules.h"

#include "core/ToolIds.h"
#include "core/Version.h"
#include "platform/Paths.h"

QString untitledPath(const QString& sourceCodePath, int n) {
    const QString sep = sourceCodePath.endsWith(pathSeparator()) ? QString() : pathSeparator();
    return sourceCodePath + sep + QStringLiteral("Untitled") + QString::number(n) + QStringLiteral(".pbp");
}

int untitledNumber(const QStringList& titles, const QString& sourceCodePath) {
    int n = 1;
    for (const QString& title : titles)
        if (untitledPath(sourceCodePath, n).contains(title, Qt::CaseInsensitive))
            ++n;
    return n;
}

bool isAlreadyOpen(const QStringList& documentTitles, const QString& path) {
    const QString p = path.toUpper();
    for (const QString& t : documentTitles)
        if (t.toUpper() == p)
            return true;
    return false;
}

namespace {
// The hosts of every web link, in one place.
const QString kMakerSite = QStringLiteral("http://www.quillbay.example");
const QString kSupportAddress = QStringLiteral("support@quillbay.example");
const QString kMelabsSite = QStringLiteral("http://www.melabs.com");
}  // namespace

QString webLinkFor(const QString& toolId) {
    if (toolId == QLatin1String(ToolId::Update))
        return kMakerSite + QStringLiteral("/check4update.aspx?app=Tarnlet&ver=") + versionDigits();
    if (toolId == QLatin1String(ToolId::OrderOnline) || toolId == QLatin1String(ToolId::QuillbayHomePage))
        return kMakerSite + QStringLiteral("/Category.aspx?CategoryID=2");
    if (toolId == QLatin1String(ToolId::ProductUpdates))
        return kMakerSite + QStringLiteral("/ViewPage.aspx?ContentCode=TARNLETVersionInfo");
    if (toolId == QLatin1String(ToolId::BugReport))
        return QStringLiteral("mailto:") + kSupportAddress + QStringLiteral("?subject=[Tarnlet] Version: ") +
               versionDigits();
    if (toolId == QLatin1String(ToolId::VelnorSystemsHomePage))
        return kMakerSite;
    if (toolId == QLatin1String(ToolId::melabs))
        return kMelabsSite;
    return {};
}
