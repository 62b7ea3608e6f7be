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

namespace {

class DocumentFile : public ::testing::Test {
protected:
    QTemporaryDir dir;
    SourceView view;
    Document& doc = view.document();
    Failure last;

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
        const int end = doc.NumLines() - 1;
        doc.InsertImpl(doc.GetLineLength(end), end, text, false);
        doc.UpdateViews(128, end, end, 0, end);
    }
    // The Failure's errno, or 0 when the load or save went through.
    long attempt(void (Document::*op)(const QString&), const QString& p) {
        try {
            (doc.*op)(p);
        } catch (const Failure& f) {
            last = f;
            return f.number;
        }
        return 0;
    }
    long load(const QString& p) { return attempt(&Document::LoadFile, p); }
    long save(const QString& p) { return attempt(&Document::SaveFile, p); }
};

}  // namespace

TEST_F(DocumentFile, UnchangedFilesRoundTripByteForByte) {
    QByteArray high;  // 0x80..0x9F, the five undefined bytes among them
    for (int b = 0x80; b <= 0x9F; ++b)
        high.append(char(b));
    const auto crlf = QsciScintilla::EolWindows, lf = QsciScintilla::EolUnix, cr = QsciScintilla::EolMac;
    // Each file's bytes, its line count, and its first line ending, which is what Enter inserts.
    const std::tuple<const char*, QByteArray, int, QsciScintilla::EolMode> cases[] = {
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
        EXPECT_EQ(std::make_pair(doc.NumLines(), view.eolMode()), std::make_pair(lines, enter));
        EXPECT_FALSE(doc.GetLine(0).startsWith(QChar(0xFEFF)));
        for (const QString& out : {path("out.pbp"), p}) {  // a new file, and over itself
            ASSERT_EQ(save(out), 0);
            EXPECT_EQ(read(out), bytes);
        }
        EXPECT_FALSE(doc.Modified());
    }
    doc.LoadFile(write("a.pbp", "' caf\xE9 \x80\x96\r\n"));
    EXPECT_EQ(doc.GetLine(0), QString::fromUtf8("' caf\xC3\xA9 \xE2\x82\xAC\xE2\x80\x93"));
    EXPECT_EQ(doc.GetLineLength(0), 9);
    EXPECT_EQ(doc.GetLine(7), "");  // no such line
}

TEST_F(DocumentFile, EditsUndoInStepsAndKeepTheOtherLinesEndingsAndTheCodePageWhileItFits) {
    const QString p = write("mixed.pbp", "caf\xE9\r\nb\nc");
    doc.LoadFile(p);
    for (int line = 0; line < 3; ++line)  // a run of inserts and deletes is one undo step
        doc.InsertImpl(0, line, "\t", false);
    doc.DeleteImpl(1, 2, 2, 2);
    doc.UpdateViews(128, 0, 2, 0, 2);
    view.SendScintilla(QsciScintilla::SCI_DOCUMENTEND);
    view.SendScintilla(QsciScintilla::SCI_NEWLINE);  // typing after it is a step of its own
    doc.Undo();
    EXPECT_EQ(view.Text(), QString::fromUtf8("\tcaf\xC3\xA9\r\n\tb\n\t"));
    doc.Undo();
    EXPECT_FALSE(doc.CanUndo() || doc.Modified());  // back at the saved text

    view.SendScintilla(QsciScintilla::SCI_DOCUMENTEND);
    view.SendScintilla(QsciScintilla::SCI_NEWLINE);  // the file's first ending
    typeAtEnd(QString::fromUtf8("\xE2\x82\xAC"));    // € is in the code page
    doc.SaveFile(p);
    EXPECT_EQ(read(p), QByteArray("caf\xE9\r\nb\nc\r\n\x80"));
    EXPECT_FALSE(doc.Modified());
    typeAtEnd(QString::fromUtf8("\xE2\x98\x83"));  // ☃ isn't: UTF-8 keeps every character
    doc.SaveFile(p);
    EXPECT_EQ(read(p), QByteArray("caf\xC3\xA9\r\nb\nc\r\n\xE2\x82\xAC\xE2\x98\x83"));
}

TEST_F(DocumentFile, ARefusedFileIsNeverSavedOverButAMissingOneMayBe) {
    const QByteArray binary("MZ\x90\0\x03\0\0\0binary", 14);
    QFile big(path("big.pbp"));  // a sparse file of the limit and one byte
    ASSERT_TRUE(big.open(QIODevice::WriteOnly) && big.resize(Document::kMaxFileBytes + 1));
    big.close();
    QDir(dir.path()).mkdir("folder.pbp");
    const std::tuple<QString, long, const char*> refused[] = {  // the file, its errno, what the message says
        {big.fileName(), EFBIG, "too large"},
        {path("folder.pbp"), EISDIR, ""},
        {"/proc/self/mem", EIO, "Input/output error"},  // opens, but address 0 can't be read
        {write("prog.hex", binary), EILSEQ, "binary"},
    };
    for (const auto& [file, error, told] : refused) {
        SCOPED_TRACE(file.toStdString());
        if (!QFileInfo::exists(file))
            continue;
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
    EXPECT_EQ(read(path("prog.hex")), binary);
    EXPECT_EQ(save(path("elsewhere.pbp")), 0);  // another name is fine
    write("prog.hex", "now text\n");           // a later successful load lifts the refusal
    ASSERT_EQ(load(path("prog.hex")), 0);
    EXPECT_EQ(save(path("prog.hex")), 0);

    // A missing file gives an empty, unmodified document that may be saved: there was nothing to lose.
    EXPECT_EQ(load(path("Untitled.pbp")), ENOENT);
    EXPECT_TRUE(last.description.contains("Untitled.pbp"));
    EXPECT_EQ(doc.NumLines(), 1);
    EXPECT_FALSE(doc.Modified() || doc.CanUndo());
    typeAtEnd("x");
    EXPECT_EQ(save(path("Untitled.pbp")), 0);
    EXPECT_EQ(read(path("Untitled.pbp")), QByteArray("x"));
}

// A full disk, as the process sees one: a file size limit makes the write fail with EFBIG part-way.
TEST_F(DocumentFile, AFailedSaveLeavesTheOldFileWholeAndTheDocumentModified) {
    const QByteArray old("old text that must survive\r\n");
    const QString p = write("a.pbp", old);
    doc.LoadFile(p);
    typeAtEnd(QString(10000, u'x'));  // less than QFileDevice buffers, more than the limit
    EXPECT_EQ(save(path("no/such/folder/a.pbp")), ENOENT);
    EXPECT_TRUE(last.description.contains("No such file or directory"));
    EXPECT_FALSE(QFileInfo::exists(path("no")));
    EXPECT_TRUE(doc.Modified());

    auto* previous = std::signal(SIGXFSZ, SIG_IGN);
    rlimit saved{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &saved), 0);
    const rlimit small{4096, saved.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const long err = save(p);
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, previous);
    EXPECT_EQ(err, EFBIG);
    EXPECT_EQ(read(p), old);
    EXPECT_TRUE(doc.Modified());
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{"a.pbp"});  // no temporary left behind
    EXPECT_EQ(save(p), 0);  // with room again the same save goes through
    EXPECT_EQ(read(p).size(), old.size() + 10000);
}

TEST_F(DocumentFile, AFiftyMegabyteFileOpens) {
    const QByteArray line("    LCDOut $FE, 1, \"Count: \", DEC4 counter ' show the count\r\n");
    const int lines = int(50LL * 1024 * 1024 / line.size()) + 1;
    const QString p = write("big.pbp", line.repeated(lines));
    ASSERT_GE(QFileInfo(p).size(), 50LL * 1024 * 1024);
    ASSERT_EQ(load(p), 0);
    EXPECT_EQ(doc.NumLines(), lines + 1);
    EXPECT_EQ(doc.GetLine(lines - 1), QString::fromLatin1(line.chopped(2)));
    EXPECT_FALSE(doc.Modified());
}
