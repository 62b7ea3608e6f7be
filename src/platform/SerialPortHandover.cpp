#include "platform/SerialPortHandover.h"

#include <QFileInfo>

#include <algorithm>

SerialPortLease::~SerialPortLease() {
    for (SerialPortHolder* h : released_)
        if (handover_.has(h))
            h->reacquire();
}

void SerialPortHandover::add(SerialPortHolder* holder) {
    if (!has(holder))
        holders_.push_back(holder);
}

void SerialPortHandover::remove(SerialPortHolder* holder) {
    holders_.erase(std::remove(holders_.begin(), holders_.end(), holder), holders_.end());
}

bool SerialPortHandover::has(const SerialPortHolder* holder) const {
    return std::find(holders_.begin(), holders_.end(), holder) != holders_.end();
}

std::unique_ptr<SerialPortLease> SerialPortHandover::releasePortsNamedIn(const QStringList& args) {
    std::vector<SerialPortHolder*> released;
    // A copy: a holder may leave the list while it lets go.
    const std::vector<SerialPortHolder*> holders = holders_;
    for (SerialPortHolder* h : holders) {
        const QString port = h->heldPort();
        if (port.isEmpty())
            continue;
        const bool named = std::any_of(args.begin(), args.end(),
                                       [&](const QString& a) { return argumentNamesPort(a, port); });
        if (named && h->release(port))
            released.push_back(h);
    }
    return std::make_unique<SerialPortLease>(*this, std::move(released));
}

namespace {

// The path part of an argument: all of it, or what follows "=", or an option's letters.
QString pathPart(const QString& arg) {
    if (const qsizetype eq = arg.indexOf(QLatin1Char('=')); eq >= 0)
        return arg.mid(eq + 1);
    if (arg.startsWith(QLatin1Char('-'))) {
        const qsizetype slash = arg.indexOf(QLatin1Char('/'));
        return slash < 0 ? QString() : arg.mid(slash);
    }
    return arg;
}

QString resolved(const QString& path) {
    const QString c = QFileInfo(path).canonicalFilePath();
    return c.isEmpty() ? path : c;
}

}  // namespace

bool argumentNamesPort(const QString& arg, const QString& port) {
    const QString part = pathPart(arg.trimmed());
    if (part.isEmpty() || port.isEmpty())
        return false;
    if (part == port)
        return true;
    // Only a path can be a link; a word like "16f628a" is never looked up.
    return part.startsWith(QLatin1Char('/')) && resolved(part) == resolved(port);
}
