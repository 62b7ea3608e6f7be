#pragma once
#include "platform/Paths.h"
#include "platform/Prompts.h"

#include <optional>

// Where the program keeps its files, decided from where its executable lies.
struct ApplicationPlaces {
    // Writable: the compile script, the compiler's output, new documents, a user's own device.ide.
    QString applicationDirectory;
    // The shipped data of an installed program; empty outside an installed tree.
    QString installedDataDirectory;
};

// An executable in <prefix>/bin with <prefix>/share/tarnlet beside it is installed: its files go to the
// per-user data directory (xdgDataHome, or home/.local/share when that is empty or relative) under
// "tarnlet", and the install tree is only read. Anywhere else (a build tree, a portable copy) the
// executable's own directory holds everything.
ApplicationPlaces applicationPlaces(const QString& executableDirectory, const QString& xdgDataHome,
                                    const QString& home);

// Makes dir and any missing parents; throws an osFailure naming the directory that could not be made.
void makeDirectory(const QString& dir);

class PosixPaths : public Paths {
public:
    // appDir empty: decided from the running executable and the environment, once, at first use.
    explicit PosixPaths(QString appDir = {});
    QString shortPath(const QString& path) override;
    QString applicationDirectory() override;
    QStringList searchRoots() override;
    QString installedDataDirectory() override;

    // Makes the application directory if it is missing (a first start of an installed program). When it
    // cannot be made, one message names it and the reason; false then.
    bool makeApplicationDirectory(Prompts& prompts);

private:
    const ApplicationPlaces& places();
    std::optional<ApplicationPlaces> places_;
};
