// Reading and writing source files: byte-exact round trips, the user's code page, and failures that lose nothing.
#include "core/Settings.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/SourceViewEditor.h"
#include "document/TextFormat.h"
#include "platform/Failure.h"
#include "support/Doubles.h"
#include "support/Files.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

class DocumentFile : public ::testing::Test {
protected:
    TestWorld world;  // a file that isn't UTF-8 is Windows-1252 here, whatever the machine's locale
    SourceView view;
    Document& doc = view.document();
    Failure last;

    void SetUp() override { saveSetting(Key::LegacyEncoding, kWindows1252); }
    QString path(const QString& name) const { return world.file(name); }
    QString write(const QString& name, const QByteArray& bytes) const { return world.write(name, bytes); }
    void typeAtEnd(const QString& text) {
        const int end = doc.NumLines() - 1;
        doc.InsertImpl(doc.GetLineLength(end), end, text);
        doc.UpdateViews();
    }
    // The Failure's number, or 0 when it went through.
    long attempt(void (Document::*op)(const QString&), const QString& p) try {
        (doc.*op)(p);
        return 0;
    } catch (const Failure& f) {
        last = f;
        return f.number;
    }
    long load(const QString& p) { return attempt(&Document::LoadFile, p); }
    long save(const QString& p) { return attempt(&Document::SaveFile, p); }
};

constexpr uid_t kNobody = 65534;

}  // namespace

TEST_F(DocumentFile, UnchangedFilesRoundTripByteForByteAndEnterTakesTheFirstLineEnding) {
    QByteArray high;  // 0x80..0x9F, the five undefined bytes among them
    for (int b = 0x80; b <= 0x9F; ++b)
        high.append(char(b));
    const auto crlf = QsciScintilla::EolWindows, lf = QsciScintilla::EolUnix, cr = QsciScintilla::EolMac;
    const std::tuple<const char*, QByteArray, int, QsciScintilla::EolMode> cases[] = {  // bytes, lines, Enter
        {"cp1252 CRLF", "' caf\xE9 \x80 test\r\nx = 1 ' " + high + "\r\nGOTO loop\r\n", 4, crlf},
        {"UTF-8 LF", "' caf\xC3\xA9 \xE2\x82\xAC\nx = 1\n", 3, lf},
        {"UTF-8 with BOM", "\xEF\xBB\xBF' bom\r\nx = 1\r\n", 3, crlf},
        {"CR", "a = 1\rb = 2\r\n", 3, cr},
        {"mixed endings", "a\nb\r\nc\rd\r\n\n\re", 7, lf},
        {"no final newline", "x = 1\r\ny = 2", 2, crlf},
        {"empty", "", 1, lf},
    };
    for (const auto& [name, bytes, lines, enter] : cases) {
        SCOPED_TRACE(name);
        const QString p = write("in.pbp", bytes);
        ASSERT_EQ(load(p), 0);
        EXPECT_EQ(std::make_pair(doc.NumLines(), SourceViewEditor::of(view).eolMode()), std::make_pair(lines, enter));
        EXPECT_FALSE(doc.GetLine(0).startsWith(QChar(0xFEFF)));
        for (const QString& out : {path("out.pbp"), p}) {  // a new file, and over itself
            ASSERT_EQ(save(out), 0);
            EXPECT_EQ(readFile(out), bytes);
        }
        EXPECT_FALSE(doc.Modified());
    }
}

TEST_F(DocumentFile, ATurkishFileKeepsItsCodePageUntilAskedToBecomeUtf8) {
    saveSetting(Key::LegacyEncoding, legacyEncodingFor(QLocale("tr_TR")));
    const QByteArray bytes("' \xDE\xFE\xFD\xF0 \xE7\xF6z\xFCm\r\nHIGH PORTB.0\r\n");
    const QString p = write("turkish.pbp", bytes);
    doc.LoadFile(p);
    EXPECT_EQ(doc.GetLine(0), QStringLiteral("' Şşığ çözüm"));
    ASSERT_EQ(save(p), 0);
    EXPECT_EQ(readFile(p), bytes);
    typeAtEnd(QStringLiteral("' €"));  // in the code page: no question
    ASSERT_EQ(save(p), 0);
    EXPECT_EQ(readFile(p), bytes + "' \x80");
    EXPECT_TRUE(world.prompts.boxes.empty());

    typeAtEnd(QStringLiteral(" ✓"));
    world.prompts.answers = {Answer::No, Answer::No};
    EXPECT_EQ(save(p), kCancelError);
    EXPECT_EQ(save(path("copy.pbp")), kCancelError);  // Save As asks too, and makes no file
    EXPECT_EQ(readFile(p), bytes + "' \x80");
    EXPECT_FALSE(QFile::exists(path("copy.pbp")));
    EXPECT_TRUE(doc.Modified());
    ASSERT_EQ(world.prompts.boxes.size(), 2u);
    const Box& box = world.prompts.boxes[0];
    for (const QString& told : {p, QStringLiteral("windows-1254"), QStringLiteral("\"✓\" (line 3"),
                                QStringLiteral("UTF-8")})
        EXPECT_TRUE(box.text.contains(told)) << box.text.toStdString();
    EXPECT_EQ(std::make_pair(box.icon, box.buttons), std::make_pair(Icon::Exclamation, Buttons::YesNo));

    world.prompts.answers = {Answer::Yes};
    ASSERT_EQ(save(p), 0);
    EXPECT_EQ(readFile(p), QStringLiteral("' Şşığ çözüm\r\nHIGH PORTB.0\r\n' € ✓").toUtf8());
    EXPECT_FALSE(doc.Modified());
    typeAtEnd(QStringLiteral("γ"));  // UTF-8 from now on: no more questions
    ASSERT_EQ(save(p), 0);
    EXPECT_EQ(world.prompts.boxes.size(), 3u);
}

TEST_F(DocumentFile, ARefusedFileIsNeverSavedOverButAMissingOneMayBe) {
    ASSERT_TRUE(QFile::resize(write("big.pbp", ""), Document::kMaxFileBytes + 1));  // sparse
    QDir(world.appDir()).mkdir("folder.pbp");
    const std::tuple<QString, long, const char*> refused[] = {  // the file, its errno, what the message says
        {path("big.pbp"), EFBIG, "too large"},
        {path("folder.pbp"), EISDIR, ""},
        {"/proc/self/mem", EIO, "Input/output error"},  // opens, but address 0 can't be read
        {write("prog.hex", QByteArray("MZ\x90\0\x03\0\0\0binary", 14)), EILSEQ, "binary"},
    };
    for (const auto& [file, error, told] : refused) {
        SCOPED_TRACE(file.toStdString());
        const qint64 size = QFileInfo(file).size();
        doc.LoadFile(write("full.pbp", "x = 1\n"));
        EXPECT_EQ(load(file), error);
        EXPECT_TRUE(last.description.contains(told)) << last.description.toStdString();
        EXPECT_EQ(doc.GetLine(0), "");
        typeAtEnd("typed after the refusal");
        const QFileInfo info(file);  // and by another spelling
        for (const QString& q : {file, info.path() + "/./sub/../" + info.fileName()})
            EXPECT_EQ(save(q), EPERM) << q.toStdString();
        EXPECT_TRUE(last.description.contains("Save under another name"));
        EXPECT_EQ(QFileInfo(file).size(), size);
        EXPECT_TRUE(doc.Modified());
    }
    EXPECT_EQ(save(path("elsewhere.pbp")), 0);
    write("prog.hex", "now text\n");  // a later successful load lifts the refusal
    ASSERT_EQ(load(path("prog.hex")), 0);
    EXPECT_EQ(save(path("prog.hex")), 0);

    // Missing: an empty, unmodified document that may be saved, there being nothing to lose.
    EXPECT_EQ(load(path("Untitled.pbp")), ENOENT);
    EXPECT_TRUE(last.description.contains("Untitled.pbp"));
    EXPECT_EQ(std::make_tuple(doc.NumLines(), doc.Modified(), doc.CanUndo()), std::make_tuple(1, false, false));
    typeAtEnd("x");
    EXPECT_EQ(save(path("Untitled.pbp")), 0);
    EXPECT_EQ(readFile(path("Untitled.pbp")), QByteArray("x"));

    // The limit is far above any real source.
    const QByteArray line("    LCDOut $FE, 1, \"Count: \", DEC4 counter ' show the count\r\n");
    const int lines = int(50LL * 1024 * 1024 / line.size()) + 1;
    ASSERT_EQ(load(write("big.pbp", line.repeated(lines))), 0);
    EXPECT_EQ(doc.NumLines(), lines + 1);
}

// The folder's own refusal is told, not the "No such file" a look at the missing file would give; a
// file size limit stands in for a full disk.
TEST_F(DocumentFile, FailedSavesNameTheirRealCauseAndLeaveTheOldFileWhole) {
    const QByteArray old("old text that must survive\r\n");
    const QString p = write("a.pbp", old);
    doc.LoadFile(p);
    typeAtEnd(QString(10000, u'x'));  // less than QFileDevice buffers, more than the limit
    const std::pair<QString, std::vector<long>> cases[] = {
        {path("no/such/folder/a.pbp"), {ENOENT}},
        {write("plain.txt", "x") + "/a.pbp", {ENOTDIR}},
        {"/proc/1/a.pbp", {EACCES, EPERM}},  // root too may make no file there
    };
    for (const auto& [file, causes] : cases) {
        SCOPED_TRACE(file.toStdString());
        const long err = save(file);
        EXPECT_NE(std::find(causes.begin(), causes.end(), err), causes.end()) << err;
        EXPECT_TRUE(last.description.contains(QString::fromLocal8Bit(std::strerror(int(err)))))
            << last.description.toStdString();
    }
    auto* previous = std::signal(SIGXFSZ, SIG_IGN);
    rlimit saved{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &saved), 0);
    const rlimit small{4096, saved.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const long err = save(p);
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, previous);
    EXPECT_EQ(err, EFBIG);
    EXPECT_EQ(readFile(p), old);
    EXPECT_TRUE(doc.Modified());
    EXPECT_EQ(QDir(world.appDir()).entryList(QDir::Files), QStringList({"a.pbp", "plain.txt"}));
    EXPECT_EQ(save(p), 0);  // with room again the same save goes through
    EXPECT_EQ(readFile(p).size(), old.size() + 10000);
}

// The user's own file in a folder that takes no new file is saved in place, the atomic rename being
// refused. Root may write anywhere, so as root the saves run in a child that has become "nobody".
TEST_F(DocumentFile, AFileInAFolderThatTakesNoNewFileIsSavedInPlace) {
    const QString folder = path("shared");
    const QString owned = write("shared/owned.pbp", "old\n");
    const bool root = geteuid() == 0;
    ASSERT_EQ(::chown(owned.toLocal8Bit().constData(), root ? kNobody : geteuid(), gid_t(-1)), 0);
    ASSERT_EQ(::chmod(folder.toLocal8Bit().constData(), 0555), 0);
    ASSERT_EQ(::chmod(world.appDir().toLocal8Bit().constData(), 0755), 0);
    doc.LoadFile(owned);
    typeAtEnd("new");
    // A bit for each thing that went wrong, for the child's exit status.
    auto saves = [&] {
        int wrong = (save(owned) != 0 || doc.Modified()) ? 1 : 0;
        typeAtEnd(" more");
        if (save(folder + "/new.pbp") != EACCES || !last.description.contains("Permission denied"))
            wrong |= 2;
        return wrong | (doc.Modified() ? 0 : 4);
    };
    int wrong = 0;
    if (!root) {
        wrong = saves();
    } else {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            if (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0)
                _exit(64);
            _exit(saves());
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status));
        wrong = WEXITSTATUS(status);
    }
    ::chmod(folder.toLocal8Bit().constData(), 0755);
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(readFile(owned), QByteArray("old\nnew"));
    EXPECT_EQ(QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{"owned.pbp"});
}
