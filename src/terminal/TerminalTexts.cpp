#include "terminal/TerminalTexts.h"

#include "platform/Failure.h"
#include "terminal/TerminalSettings.h"

#include <cerrno>

QString terminalTitle() { return QStringLiteral("Serial Terminal"); }
QString notConnectedText() { return QStringLiteral("not connected"); }

QString connectedText(const SerialSettings& s) {
    return QStringLiteral("connected to %1 at %2 %3").arg(serialPortPath(s.port)).arg(s.baud).arg(frameText(s));
}

QString vanishedText(const QString& port, const QString& why) {
    QString text = QStringLiteral("disconnected: %1 went away").arg(port);
    if (!why.isEmpty())
        text += QStringLiteral(" (%1)").arg(why);
    return text;
}

QString lentText(const QString& port) {
    return QStringLiteral("disconnected while a programmer uses %1").arg(port);
}

QString notRegainedText(const QString& port, const Failure& f) {
    return QStringLiteral("disconnected: %1 could not be opened again after the programmer (%2)").arg(port, f.description);
}

QString dialoutCommand() { return QStringLiteral("sudo usermod -aG dialout $USER"); }

QString openFailureText(const QString& port, const Failure& f) {
    switch (f.number) {
    case EACCES:
        return QStringLiteral("You may not open %1.\n\nSerial ports belong to the group dialout. Join it with\n\n"
                              "    %2\n\nthen log out and in again.")
            .arg(port, dialoutCommand());
    case EBUSY:
        return QStringLiteral("%1 is in use by another program. Close that program, or choose another port.").arg(port);
    case ENOENT:
        return QStringLiteral("There is no serial port %1. Plug in the adapter, or choose another port.").arg(port);
    default:
        return QStringLiteral("%1 could not be opened: %2").arg(port, f.description);
    }
}

QString noPortText() { return QStringLiteral("Choose a port from the list, or type its path."); }

QString badBaudText() { return QStringLiteral("The baud rate is a whole number from 300 to 921600."); }

QString notHexText(const QString& text, qsizetype column) {
    return QStringLiteral("The send field isn't hex from column %1 on: \"%2\".\n\nType bytes as pairs of hex digits, "
                          "such as 48 65 6C 6C 6F 0D 0A.")
        .arg(column + 1)
        .arg(text.mid(column));
}
