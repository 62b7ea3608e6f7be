// The compile script from any paths, options and device: sh accepts it, and the compiler, here a fake that
// writes its arguments, gets the option words, then the device and the document as one argument each.
//
// Input: fields parted by NUL bytes (no path holds one): document path, options, device, compiler
// directory, then the compiler's and the document's Windows forms for the run through wine.
#include "FuzzWorld.h"
#include "compile/CompileScript.h"
#include "core/Convert.h"

#include <QDir>

#include <cerrno>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

FuzzWorld* world;
QString appNative, appWine;  // the application directories: where each script's output goes
QString compiler;            // the fake compiler
QString driver;              // checks and runs the two scripts

// Both scripts are checked with sh -n, then run, each in a subshell of one sh: rm, mv, cat and sed are
// functions that do nothing, so that only the fake compiler is a process of its own. It writes its
// arguments to the script's name with ".args" behind it: its output goes through sed under wine, which
// takes lines apart, and arguments may hold line breaks.
const char kDriver[] = R"(rm() { :; }; mv() { :; }; cat() { :; }; sed() { :; }
for s in "$@"; do /bin/sh -n "$s" || exit 99; done
for s in "$@"; do ( ARGS=$s.args; export ARGS; . "$s" ); done
)";

// sh with the arguments, its own output thrown away; the exit status, or -1.
int runSh(const QStringList& args) {
    QList<QByteArray> bytes{QByteArray("/bin/sh")};
    for (const QString& a : args)
        bytes << a.toUtf8();
    std::vector<char*> argv;
    for (QByteArray& b : bytes)
        argv.push_back(b.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    pid_t pid = 0;
    const int err = posix_spawn(&pid, "/bin/sh", &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (err != 0)
        return -1;
    int status = 0;
    pid_t done;
    do
        done = waitpid(pid, &status, 0);  // libFuzzer's timer interrupts the wait
    while (done < 0 && errno == EINTR);
    if (done != pid || !WIFEXITED(status))
        return -1;
    return WEXITSTATUS(status);
}

QStringList argumentsIn(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {QStringLiteral("<no output>")};
    QStringList args;
    for (const QByteArray& a : f.readAll().split('\0'))
        args << QString::fromUtf8(a);
    args.removeLast();  // behind the last argument's NUL
    return args;
}

QString describe(const QStringList& list) {
    return QLatin1Char('[') + list.join(QStringLiteral("] [")) + QLatin1Char(']');
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    world = new FuzzWorld;
    // Directories whose names a shell would take apart if they went in unquoted.
    appNative = world->file(QStringLiteral("app 'x' $HOME ;"));
    appWine = world->file(QStringLiteral("wine app *"));
    const QString bin = world->file(QStringLiteral("bin `id` \"q\""));
    for (const QString& d : {appNative, appWine, bin})
        QDir().mkpath(d);
    driver = world->file(QStringLiteral("driver.sh"));
    world->write(QStringLiteral("driver.sh"), kDriver);
    compiler = bin + QStringLiteral("/PBPW *");
    QFile f(compiler);
    if (!f.open(QIODevice::WriteOnly) ||
        f.write("#!/bin/sh\nfor a in \"$@\"; do printf '%s\\0' \"$a\"; done >\"$ARGS\"\n") < 0 ||
        !f.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)) {
        std::fprintf(stderr, "cannot write the fake compiler\n");
        std::abort();
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QList<QByteArray> fields = fuzzBytes(data, size).split('\0');
    const auto field = [&](int i) { return QString::fromUtf8(fields.value(i)); };
    CompileInputs in;
    // The document's path as GetDosPath gives it: absolute.
    in.D = field(0).startsWith(QLatin1Char('/')) ? field(0) : QLatin1Char('/') + field(0);
    in.O = field(1);
    in.M = field(2);
    in.C = field(3);
    in.P = compiler;
    const WineForms win{.wine = compiler, .P = field(4), .D = field(5), .C = compilerDirectory(field(4), '\\')};

    const QStringList native = optionWords(trimBlanks(in.O)) + QStringList{QStringLiteral("-p") + in.M, in.D};
    const QStringList wine = QStringList{win.P} + optionWords(in.O) + QStringList{QStringLiteral("-p") + in.M, win.D};

    in.S = appNative;
    const QByteArray nativeScript = runpbSh(in);
    in.S = appWine;
    const QByteArray wineScript = runpbShWine(in, win);
    world->write(QStringLiteral("native.sh"), nativeScript);
    world->write(QStringLiteral("wine.sh"), wineScript);
    const QString statusFile = QStringLiteral("/temp.dat.status");
    for (const QString& old : {appNative + statusFile, appWine + statusFile, world->file(QStringLiteral("native.sh.args")),
                               world->file(QStringLiteral("wine.sh.args"))})
        QFile::remove(old);

    const int status = runSh({driver, world->file(QStringLiteral("native.sh")), world->file(QStringLiteral("wine.sh"))});
    FUZZ_CHECK(status != 99, "sh refuses a script:\n%s\n%s", nativeScript.constData(), wineScript.constData());
    FUZZ_CHECK(status == 0, "the scripts did not run (%d)", status);
    // The status goes where the script's own output names say.
    for (const QString& app : {appNative, appWine}) {
        QFile f(app + statusFile);
        FUZZ_CHECK(f.open(QIODevice::ReadOnly) && f.readAll() == "0\n", "no status in %s", qPrintable(app));
    }
    const QStringList gotNative = argumentsIn(world->file(QStringLiteral("native.sh.args")));
    FUZZ_CHECK(gotNative == native, "native: got %s, wanted %s\n%s", qPrintable(describe(gotNative)),
               qPrintable(describe(native)), nativeScript.constData());
    const QStringList gotWine = argumentsIn(world->file(QStringLiteral("wine.sh.args")));
    FUZZ_CHECK(gotWine == wine, "wine: got %s, wanted %s\n%s", qPrintable(describe(gotWine)),
               qPrintable(describe(wine)), wineScript.constData());
    return 0;
}
