#include "platform/ProgramHost.h"

#include "platform/Failure.h"
#include "platform/PeImage.h"
#include "platform/Wine.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <optional>

namespace {

class NativeHost final : public ProgramHost {
public:
    explicit NativeHost(Paths& paths) : paths_(paths) {}
    QString fullPath(const QString& path) override { return path; }
    QString shortPath(const QString& path) override { return paths_.shortPath(path); }
    QByteArray compileScript(const CompileInputs& in, const QString&, const QString&) override {
#ifdef Q_OS_WIN
        return runpbBat(in);
#else
        return runpbSh(in);
#endif
    }

private:
    Paths& paths_;
};

class WineHost final : public ProgramHost {
public:
    WineHost(QString wine, Paths& paths, WineState& state) : wine_(std::move(wine)), paths_(paths), state_(state) {}

    QString fullPath(const QString& path) override { return wineWindowsPath(path); }

    QString shortPath(const QString& path) override {
        const QString posix = paths_.shortPath(path);
        if (posix.isEmpty())
            return {};
        fetch({posix});
        return state_.shortForms.value(key(posix));
    }

    void prepareCompile(const QStringList& paths) override {
        // A server that the compile's own wine starts ends with the compile, and every compile would boot
        // the prefix anew.
        keepWineServerWarm(state_.server, QDateTime::currentMSecsSinceEpoch());
        QStringList posix;
        for (const QString& p : paths)
            if (const QString s = paths_.shortPath(p); !s.isEmpty())
                posix << s;
        fetch(posix);
    }

    QByteArray compileScript(const CompileInputs& in, const QString& P, const QString& D) override {
        return runpbShWine(in, {.wine = wine_, .P = P, .D = D, .C = compilerDirectory(P, QLatin1Char('\\'))});
    }

    void compileStarting(const CompileInputs& in, const QString& P, const QString& D) override {
        compile_ = {in, P, D, noteAliasOutputs(in.D, D)};
    }

    QString compileEnded(const QString& output) override {
        if (!compile_)
            return output;
        const auto [in, P, D, noted] = *compile_;
        compile_.reset();
        const LongNames names = giveLongNames(noted, state_.longNamed);
        const QString docName = QFileInfo(in.D).fileName();
        QList<std::pair<QString, QString>> files{{D.mid(D.lastIndexOf(QLatin1Char('\\')) + 1), docName}};
        files << names.renamed;
        QString text = withUserNames(output,
                                     {{P, in.P}, {compilerDirectory(P, QLatin1Char('\\')), compilerDirectory(in.P)},
                                      {compilerDirectory(D, QLatin1Char('\\')), compilerDirectory(in.D)}},
                                     files);
        for (const QString& line : names.kept)
            text = withOutputLine(text, line);
        return text;
    }

    QString localPath(const QString& named, const QString& directory) override {
        // The forms this compile handed over are known; any other is looked for on the disk.
        for (auto f = state_.shortForms.cbegin(); f != state_.shortForms.cend(); ++f)
            if (f.value().compare(named, Qt::CaseInsensitive) == 0 && f.key().startsWith(key({})))
                return f.key().mid(key({}).size());
        return posixPathOfWindows(named, directory, winePrefix(), [this](const QStringList& posix) {
            fetch(posix);
            QStringList forms;
            for (const QString& p : posix)
                forms << state_.shortForms.value(key(p));
            return forms;
        });
    }

private:
    // Wine makes a file's short name from its long one, so a form once fetched stays right for that file in
    // that prefix; the cache keeps the two wine runs out of every compile but the first.
    static QString key(const QString& posix) { return qEnvironmentVariable("WINEPREFIX") + QLatin1Char('\n') + posix; }

    // The forms not known yet, in one question to wine.
    void fetch(const QStringList& posix) {
        QStringList missing;
        for (const QString& s : posix)
            if (!state_.shortForms.contains(key(s)) && !missing.contains(s))
                missing << s;
        if (missing.isEmpty())
            return;
        const QStringList dos = wineShortPaths(missing);
        for (qsizetype i = 0; i < missing.size(); ++i)
            if (!dos.value(i).isEmpty())
                state_.shortForms.insert(key(missing[i]), dos.value(i));
    }

    struct Compile {
        CompileInputs in;
        QString P, D;  // the compiler's and the document's DOS forms
        AliasOutputs noted;
    };

    QString wine_;
    Paths& paths_;
    WineState& state_;
    std::optional<Compile> compile_;
};

}  // namespace

std::unique_ptr<ProgramHost> ProgramHost::of(const QString& program, Paths& native, WineState& wine) {
#ifndef Q_OS_WIN
    if (needsWine(program)) {
        QString w = wineProgram();
        if (w.isEmpty())
            throw invalidProcedureCall(wineMissingMessage(program));
        // Such a wine runs a 32-bit program as if it had done nothing: an empty output and no error.
        if (peMachineOfFile(program) == kPeMachineI386 && !wineRuns32Bit(w))
            throw invalidProcedureCall(wine32MissingMessage(program));
        return std::make_unique<WineHost>(std::move(w), native, wine);
    }
#else
    (void)wine;
#endif
    return ProgramHost::native(native);
}

QString ProgramHost::nativePath(const QString& named, const QString& directory) {
    return named.isEmpty() ? QString() : QDir::cleanPath(QDir(directory).absoluteFilePath(named));
}

std::unique_ptr<ProgramHost> ProgramHost::native(Paths& paths) { return std::make_unique<NativeHost>(paths); }
