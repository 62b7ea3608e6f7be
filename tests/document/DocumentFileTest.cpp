// Reading and writing source files: byte-exact round trips, and failures that lose nothing.
#include "document/Document.h"
#include "document/SourceView.h"
#include "platform/Failure.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

namespace {

class DocumentFile : public ::testing::Test {
protected:
    QTemporaryDir dir;
    SourceView view;
    Document& doc = view.document();

    QString path(const QString& name) const { return dir.filePath(name); }
    QString write(const QString& name, const QByteArray& bytes) const {
        QFile f(path(name));
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
        return f.fileName();
    }
    static QByteArray read(const QString& p) {
        QFile f(p);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<unreadable>");
    }
    void typeAtEnd(const QString& text) {
        const int last = doc.NumLines() - 1;
        doc.InsertImpl(doc.GetLineLength(last), last, text, false);
        doc.UpdateViews(128, last, last, 0, last);
    }
    long loadFailure(const QString& p) {
        try {
            doc.LoadFile(p);
        } catch (const Failure& f) {
            lastFailure = f;
            return f.number;
        }
        return 0;
    }
    long saveFailure(const QString& p) {
        try {
            doc.SaveFile(p);
        } catch (const Failure& f) {
            lastFailure = f;
            return f.number;
        }
        return 0;
    }
    Failure lastFailure;
};

}  // namespace

TEST_F(DocumentFile, UnchangedFilesRoundTripByteForByte) {
    QByteArray high;  // 0x80..0x9F, the five undefined bytes among them
    for (int b = 0x80; b <= 0x9F; ++b)
        high.append(char(b));
    const std::vector<std::pair<const char*, QByteArray>> cases = {
        {"cp1252 CRLF", "' caf\xE9 \x80 test\r\nx = 1 ' " + high + "\r\nGOTO loop\r\n"},
        {"UTF-8 LF", "' caf\xC3\xA9 \xE2\x82\xAC\nx = 1\n"},
        {"UTF-8 with BOM", "\xEF\xBB\xBF' bom\r\nx = 1\r\n"},
        {"CR", "a = 1\rb = 2\r"},
        {"mixed endings", "a\r\nb\nc\rd\r\n\n\re"},
        {"no final newline", "x = 1\r\ny = 2"},
        {"empty", ""},
        {"only a line ending", "\r\n"},
    };
    for (const auto& [name, bytes] : cases) {
        SCOPED_TRACE(name);
        const QString p = write("in.pbp", bytes);
        ASSERT_NO_THROW(doc.LoadFile(p));
        EXPECT_FALSE(doc.Modified());
        ASSERT_NO_THROW(doc.SaveFile(path("out.pbp")));
        EXPECT_EQ(read(path("out.pbp")), bytes);
        ASSERT_NO_THROW(doc.SaveFile(p));  // over itself
        EXPECT_EQ(read(p), bytes);
        EXPECT_FALSE(doc.Modified());
    }
}

TEST_F(DocumentFile, Windows1252TextReadsAsCharactersAndLinesWithoutEndings) {
    doc.LoadFile(write("a.pbp", "' caf\xE9 \x80\x96\r\nGOTO x\r\n"));
    EXPECT_EQ(doc.NumLines(), 3);
    EXPECT_EQ(doc.GetLine(0), QString::fromUtf8("' caf\xC3\xA9 \xE2\x82\xAC\xE2\x80\x93"));
    EXPECT_EQ(doc.GetLineLength(0), 9);
    EXPECT_EQ(doc.GetLine(1), "GOTO x");
    EXPECT_EQ(doc.GetLine(2), "");
    EXPECT_EQ(doc.GetLine(7), "");  // no such line
}

TEST_F(DocumentFile, TheFirstLineEndingSetsWhatEnterInserts) {
    doc.LoadFile(write("crlf.pbp", "a\r\nb\n"));
    EXPECT_EQ(view.eolMode(), QsciScintilla::EolWindows);
    doc.LoadFile(write("cr.pbp", "a\rb\r\n"));
    EXPECT_EQ(view.eolMode(), QsciScintilla::EolMac);
    doc.LoadFile(write("lf.pbp", "a\nb\r\n"));
    EXPECT_EQ(view.eolMode(), QsciScintilla::EolUnix);
    doc.LoadFile(write("empty.pbp", ""));
    EXPECT_EQ(view.eolMode(), QsciScintilla::EolUnix);

    // An edit keeps the other lines' endings, and a new line gets the file's ending.
    const QString p = write("mixed.pbp", "a\r\nb\nc");
    doc.LoadFile(p);
    view.SendScintilla(QsciScintilla::SCI_DOCUMENTEND);
    view.SendScintilla(QsciScintilla::SCI_NEWLINE);
    view.SendScintilla(QsciScintilla::SCI_ADDTEXT, 1, "d");
    EXPECT_TRUE(doc.Modified());
    doc.SaveFile(p);
    EXPECT_EQ(read(p), QByteArray("a\r\nb\nc\r\nd"));
    EXPECT_FALSE(doc.Modified());
}

TEST_F(DocumentFile, A1252FileStaysInItsCodePageUnlessATypedCharacterDoesNotFit) {
    const QString p = write("a.pbp", "caf\xE9\r\n");
    doc.LoadFile(p);
    typeAtEnd(QString::fromUtf8("\xE2\x82\xAC"));  // € is in the code page
    doc.SaveFile(p);
    EXPECT_EQ(read(p), QByteArray("caf\xE9\r\n\x80"));
    typeAtEnd(QString::fromUtf8("\xE2\x98\x83"));  // ☃ isn't: UTF-8 keeps every character
    doc.SaveFile(p);
    EXPECT_EQ(read(p), QByteArray("caf\xC3\xA9\r\n\xE2\x82\xAC\xE2\x98\x83"));
    doc.LoadFile(p);
    EXPECT_EQ(doc.GetLine(0), QString::fromUtf8("caf\xC3\xA9"));
}

TEST_F(DocumentFile, AMissingFileGivesAnEmptyDocumentAndENOENT) {
    doc.LoadFile(write("full.pbp", "x = 1\n"));
    EXPECT_EQ(loadFailure(path("Untitled.pbp")), ENOENT);
    EXPECT_TRUE(lastFailure.description.contains("Untitled.pbp"));
    EXPECT_EQ(doc.NumLines(), 1);
    EXPECT_EQ(doc.GetLine(0), "");
    EXPECT_FALSE(doc.Modified());
    EXPECT_FALSE(doc.CanUndo());
    // A new document may be saved to its path: there was nothing there to lose.
    typeAtEnd("x");
    EXPECT_EQ(saveFailure(path("Untitled.pbp")), 0);
    EXPECT_EQ(read(path("Untitled.pbp")), QByteArray("x"));
}

TEST_F(DocumentFile, RefusedFilesAreNeverSavedOver) {
    const QByteArray binary("MZ\x90\0\x03\0\0\0binary", 14);
    const QString bin = write("prog.hex", binary);
    EXPECT_EQ(loadFailure(bin), EILSEQ);
    EXPECT_TRUE(lastFailure.description.contains("binary")) << lastFailure.description.toStdString();
    EXPECT_EQ(doc.GetLine(0), "");
    typeAtEnd("typed after the refusal");
    EXPECT_EQ(saveFailure(bin), EPERM);
    EXPECT_EQ(saveFailure(dir.path() + "/./sub/../prog.hex"), EPERM);  // the same file by another spelling
    EXPECT_TRUE(lastFailure.description.contains("Save under another name"));
    EXPECT_EQ(read(bin), binary);
    EXPECT_TRUE(doc.Modified());
    EXPECT_EQ(saveFailure(path("elsewhere.pbp")), 0);  // another name is fine

    // Too large: a sparse file of the limit and one byte.
    QFile big(path("big.pbp"));
    ASSERT_TRUE(big.open(QIODevice::WriteOnly));
    ASSERT_TRUE(big.resize(Document::kMaxFileBytes + 1));
    big.close();
    EXPECT_EQ(loadFailure(big.fileName()), EFBIG);
    EXPECT_TRUE(lastFailure.description.contains("too large"));
    EXPECT_EQ(saveFailure(big.fileName()), EPERM);
    EXPECT_EQ(QFileInfo(big.fileName()).size(), Document::kMaxFileBytes + 1);

    // A folder can't be read as a file.
    QDir(dir.path()).mkdir("folder.pbp");
    EXPECT_EQ(loadFailure(path("folder.pbp")), EISDIR);

    // A later successful load lifts the refusal of the earlier path.
    write("prog.hex", "now text\n");
    doc.LoadFile(bin);
    EXPECT_EQ(saveFailure(bin), 0);
}

TEST_F(DocumentFile, AnUnreadableFileIsRefusedWithTheSystemText) {
    // A file that opens but can't be read, whoever the user: memory at address 0.
    if (QFileInfo::exists("/proc/self/mem")) {
        EXPECT_EQ(loadFailure("/proc/self/mem"), EIO);
        EXPECT_TRUE(lastFailure.description.contains("Input/output error")) << lastFailure.description.toStdString();
        EXPECT_EQ(saveFailure("/proc/self/mem"), EPERM);
    }
    const QString p = write("secret.pbp", "x = 1\n");
    QFile::setPermissions(p, QFileDevice::WriteOwner);
    if (QFile f(p); f.open(QIODevice::ReadOnly))
        GTEST_SKIP() << "permissions don't bind this user (root)";
    EXPECT_EQ(loadFailure(p), EACCES);
    EXPECT_TRUE(lastFailure.description.contains("Permission denied"));
    EXPECT_EQ(saveFailure(p), EPERM);
}

TEST_F(DocumentFile, ASaveIntoAMissingFolderFailsAndTheDocumentStaysModified) {
    doc.LoadFile(write("a.pbp", "x\n"));
    typeAtEnd("y");
    EXPECT_EQ(saveFailure(path("no/such/folder/a.pbp")), ENOENT);
    EXPECT_TRUE(lastFailure.description.contains("No such file or directory"));
    EXPECT_TRUE(doc.Modified());
    EXPECT_FALSE(QFileInfo::exists(path("no")));
}

TEST_F(DocumentFile, ASaveIntoAReadOnlyFolderLeavesTheOldFileWhole) {
    QDir(dir.path()).mkdir("ro");
    const QString p = write("ro/a.pbp", "old text\r\n");
    QFile::setPermissions(path("ro"), QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    const bool binds = !QFile(path("ro/probe")).open(QIODevice::WriteOnly);
    QFile::remove(path("ro/probe"));
    if (!binds) {
        QFile::setPermissions(path("ro"), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        GTEST_SKIP() << "permissions don't bind this user (root)";
    }
    doc.LoadFile(p);
    typeAtEnd("new");
    EXPECT_EQ(saveFailure(p), EACCES);
    EXPECT_TRUE(lastFailure.description.contains("Permission denied"));
    EXPECT_EQ(read(p), QByteArray("old text\r\n"));
    EXPECT_TRUE(doc.Modified());
    QFile::setPermissions(path("ro"), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

// A full disk, as the process sees one: a file size limit makes the write fail with EFBIG part-way.
TEST_F(DocumentFile, ASaveThatRunsOutOfSpaceLeavesTheOldFileWhole) {
    const QByteArray old("old text that must survive\r\n");
    const QString p = write("a.pbp", old);
    doc.LoadFile(p);
    typeAtEnd(QString(10000, u'x'));  // less than QFileDevice buffers, more than the limit
    auto* previous = std::signal(SIGXFSZ, SIG_IGN);
    rlimit saved{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &saved), 0);
    rlimit small = saved;
    small.rlim_cur = 4096;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const long err = saveFailure(p);
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, previous);
    EXPECT_EQ(err, EFBIG);
    EXPECT_EQ(read(p), old);
    EXPECT_TRUE(doc.Modified());
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{"a.pbp"});  // no temporary left behind
    EXPECT_EQ(saveFailure(p), 0);  // with room again the same save goes through
    EXPECT_EQ(read(p).size(), old.size() + 10000);
}

TEST_F(DocumentFile, AFiftyMegabyteFileOpens) {
    QByteArray line("    LCDOut $FE, 1, \"Count: \", DEC4 counter ' show the count\r\n");
    const int lines = int(50LL * 1024 * 1024 / line.size()) + 1;
    QFile f(path("big.pbp"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    QByteArray chunk;
    for (int i = 0; i < 1000; ++i)
        chunk += line;
    for (int i = 0; i < lines / 1000; ++i)
        f.write(chunk);
    for (int i = 0; i < lines % 1000; ++i)
        f.write(line);
    f.close();
    ASSERT_GE(f.size(), 50LL * 1024 * 1024);
    ASSERT_NO_THROW(doc.LoadFile(f.fileName()));
    EXPECT_EQ(doc.NumLines(), lines + 1);
    EXPECT_EQ(doc.GetLine(lines - 1), QString::fromLatin1(line.chopped(2)));
    EXPECT_FALSE(doc.Modified());
}

TEST_F(DocumentFile, InsertAndDeleteRunsAreOneUndoStep) {
    doc.LoadFile(write("a.pbp", "a\nb\nc\n"));
    EXPECT_FALSE(doc.CanUndo());
    for (int line = 0; line < 3; ++line)
        doc.InsertImpl(0, line, "\t", false);
    doc.DeleteImpl(1, 2, 2, 2);
    doc.UpdateViews(128, 0, 2, 0, 2);
    EXPECT_EQ(view.Text(), "\ta\n\tb\n\t\n");
    EXPECT_TRUE(doc.Modified());
    doc.Undo();
    EXPECT_EQ(view.Text(), "a\nb\nc\n");
    EXPECT_FALSE(doc.CanUndo());
    EXPECT_TRUE(doc.CanRedo());
    EXPECT_FALSE(doc.Modified());  // back at the saved text
    doc.Redo();
    EXPECT_EQ(view.Text(), "\ta\n\tb\n\t\n");
    // Typing after a run is a step of its own.
    view.SendScintilla(QsciScintilla::SCI_DOCUMENTEND);
    view.SendScintilla(QsciScintilla::SCI_ADDTEXT, 1, "z");
    doc.Undo();
    EXPECT_EQ(view.Text(), "\ta\n\tb\n\t\n");
}
