#include "devices/DeviceCatalogue.h"

#include "platform/Failure.h"
#include "platform/Paths.h"
#include "platform/Prompts.h"
#include "core/Globals.h"
#include "core/Settings.h"

#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QTextStream>

const std::array<QString, kPortCount> kPortMarks = {
    QStringLiteral("GPIO="),  QStringLiteral("PORTA="), QStringLiteral("PORTB="), QStringLiteral("PORTC="),
    QStringLiteral("PORTD="), QStringLiteral("PORTE="), QStringLiteral("PORTF="), QStringLiteral("PORTG="),
    QStringLiteral("PORTH="), QStringLiteral("PORTJ="),
};

namespace {

// Thrown when the catalogue is not there at all; every other failure is a Failure.
struct CatalogueMissing {};

// The catalogue's lines. A line ends at CR LF, LF or a lone CR, so a file from any system reads alike.
class CatalogueFile {
public:
    CatalogueFile() {
        QFile file(deviceCataloguePath());
        if (!QFileInfo::exists(file.fileName()))
            throw CatalogueMissing{};
        if (!file.open(QIODevice::ReadOnly))
            throw fileAccessFailure(file.errorString());
        const QByteArray bytes = file.readAll();
        if (file.error() != QFileDevice::NoError)
            throw fileAccessFailure(file.errorString());
        text_ = QString::fromLocal8Bit(bytes);
    }
    bool readLine(QString& line) {
        if (at_ >= text_.size())
            return false;
        qsizetype end = at_;
        while (end < text_.size() && text_[end] != QLatin1Char('\n') && text_[end] != QLatin1Char('\r'))
            ++end;
        line = text_.mid(at_, end - at_);
        at_ = end;
        if (at_ < text_.size() && text_[at_] == QLatin1Char('\r'))
            ++at_;
        if (at_ < text_.size() && text_[at_] == QLatin1Char('\n'))
            ++at_;  // LF alone, or the LF of CR LF
        return true;
    }

private:
    QString text_;
    qsizetype at_ = 0;
};

// Runs one catalogue operation and reports its failure in the operation's own words; false after one.
template <class Body>
bool reportingFailures(const QString& operation, Body&& body) {
    try {
        body();
        return true;
    } catch (const CatalogueMissing&) {
        globals().prompts->message(QStringLiteral("File: ") + deviceCataloguePath() + QStringLiteral(" not found"),
                                   operation, Icon::Critical, Buttons::Ok);
    } catch (const Failure& f) {
        globals().prompts->message(operation + QStringLiteral(": ") + f.description, QString(), Icon::None,
                                   Buttons::Ok);
    }
    return false;
}

}  // namespace

QString deviceCataloguePath() {
    const QString own = inApplicationDirectory(QStringLiteral("device.ide"));
    if (QFileInfo::exists(own))
        return own;
    // An installed program ships its catalogue apart from the user's files; a user's own one wins.
    Paths* paths = globals().paths;
    const QString shipped = paths ? paths->installedDataDirectory() : QString();
    if (!shipped.isEmpty()) {
        const QString path = shipped + pathSeparator() + QStringLiteral("device.ide");
        if (QFileInfo::exists(path))
            return path;
    }
    return own;
}

void GetDevices(DeviceCombo& combo) {
    reportingFailures(QStringLiteral("Get Micro Listing Error"), [&] {
        combo.Clear();
        CatalogueFile file;
        const bool usePBP = globals().UsePBP;
        // The list takes its entries in one go; what was read before a failure still comes in.
        QStringList read;
        const auto add = qScopeGuard([&] { combo.AddItems(read); });
        QString line;
        while (file.readLine(line)) {
            // The mark is looked for in the line as it stands, so only an upper-case "PBC" counts.
            if (!usePBP && !line.contains(QLatin1String("PBC")))
                continue;
            const qsizetype colon = line.indexOf(QLatin1Char(':'));
            if (colon < 0)
                continue;
            read.append(line.left(colon));
        }
    });
}

void readPortMarks(const QString& upperLine, PortTable& ports) {
    for (int i = 0; i < kPortCount; ++i) {
        const qsizetype at = upperLine.indexOf(kPortMarks[i]);
        if (at < 0) {
            ports[i] = 0;
            continue;
        }
        const qsizetype digitAt = at + kPortMarks[i].size();
        const QChar c = digitAt < upperLine.size() ? upperLine[digitAt] : QChar();
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            throw typeMismatch();
        ports[i] = c.unicode() - u'0';
    }
}

void GetDeviceData(DeviceCombo& combo, bool ReloadWords, const std::function<void()>& LoadReservedWords) {
    const bool read = reportingFailures(QStringLiteral("Get Device Data Error"), [&] {
        CatalogueFile file;
        const int index = combo.ListIndex();
        // No selection matches no line, and Ports stays as it is.
        if (index < 0 || index >= combo.ListCount())
            return;
        const QString name = combo.List(index);
        QString line;
        while (file.readLine(line)) {
            const QString upper = line.toUpper();
            const qsizetype colon = upper.indexOf(QLatin1Char(':'));
            if (colon < 0 || QStringView(upper).left(colon) != name)
                continue;
            // Written straight into the table: what was read before a failure stays.
            readPortMarks(upper, globals().Ports);
            break;
        }
    });
    if (read && ReloadWords && LoadReservedWords)
        LoadReservedWords();
}
