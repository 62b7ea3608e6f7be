#pragma once
#include "platform/Launcher.h"

class PosixLauncher : public Launcher {
public:
    void startDetached(const QString& program, const QStringList& args, const QString& workDir) override;
    std::unique_ptr<WatchedProcess> startWatched(const QString& program, const QStringList& args,
                                                 const QString& workDir, ProcessEvents events) override;
    std::unique_ptr<HiddenProcess> startHidden(const QString& script, const QString& workDir) override;
    bool startInTerminal(const QString& script, const QString& workDir) override;
    bool openUrl(const QString& url) override;

    // The sh command line the terminal runs for a script: the script, then a prompt that keeps the
    // window open.
    static QString terminalCommand(const QString& script);
};
