// Programs in the code pages of Central and Eastern Europe, Greece, Turkey and the West open right under an
// English locale and save byte for byte; a guess on too little text falls back; Reopen with Encoding.
#include "core/Settings.h"
#include "document/CodePageGuess.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "document/TextFormat.h"
#include "document/frmEditor.h"
#include "document/frmEditorEncoding.h"
#include "support/Doubles.h"
#include "support/FakeFrame.h"
#include "support/Files.h"

#include <QDir>
#include <QListWidget>
#include <QLocale>
#include <QStringDecoder>
#include <gtest/gtest.h>

namespace {

// Each file's name starts with its language and its Windows code page: "tr-1254-...".
const QString kCorpus = QStringLiteral(QB_SOURCE_DIR "/tests/document/codepages");

struct Encodings : ::testing::Test {
    TestWorld world;
    FakeFrame frame;
    frmEditor ed{frame};
    Document& doc = ed.View->document();

    // The page an English locale falls back on: the detector alone can make these files right.
    void SetUp() override { saveSetting(Key::LegacyEncoding, legacyEncodingFor(QLocale::c())); }
    QString open(const QString& name, const QByteArray& bytes) {
        const QString p = world.write(name, bytes);
        doc.LoadFile(p);
        doc.setPathName(p);
        return p;
    }
};

}  // namespace

TEST_F(Encodings, EveryProgramOfTheCorpusOpensInItsCodePageAndSavesByteForByte) {
    ASSERT_EQ(setting(Key::LegacyEncoding), "windows-1252");
    const QStringList files = QDir(kCorpus).entryList({"*.pbp"}, QDir::Files);
    ASSERT_GE(files.size(), 12);
    QSet<QString> pages;
    for (const QString& name : files) {
        SCOPED_TRACE(name.toStdString());
        const QByteArray page = "windows-" + name.section('-', 1, 1).toLatin1();
        const QByteArray bytes = readFile(kCorpus + "/" + name);
        const QString p = open(name, bytes);
        EXPECT_EQ(doc.encoding(), page);
        EXPECT_EQ(ed.View->Text(), QStringDecoder(page.constData())(bytes));
        const QString out = world.file("saved-" + name);
        ASSERT_EQ(failureNumber([&] { doc.SaveFile(out); }), 0);
        EXPECT_EQ(readFile(out), bytes);
        pages << QString::fromLatin1(page);
    }
    EXPECT_EQ(pages.size(), 5);
    EXPECT_TRUE(world.prompts.boxes.empty());
}

TEST_F(Encodings, AGuessOnLittleOrAmbiguousTextFallsBackOnTheUsersPage) {
    const QByteArray turkish = readFile(kCorpus + "/tr-1254-yanip-sonen-led.pbp");
    const std::tuple<const char*, QByteArray, const char*, const char*> cases[] = {  // text, legacy, read in
        {"a Turkish program", turkish, "windows-1252", "windows-1254"},
        {"a Turkish word", "' \xDE\xFE\xFD\xF0\r\nHIGH PORTB.0\r\n", "windows-1252", "windows-1252"},
        {"the same for a Turkish user", "' \xDE\xFE\xFD\xF0\r\nHIGH PORTB.0\r\n", "windows-1254", "windows-1254"},
        {"one sign", "' \xA9 2004 ACME\r\nDEFINE OSC 4\r\n", "windows-1252", "windows-1252"},
        {"Russian words, for a Greek user", "' \xCF\xF0\xE8\xE2\xE5\xF2 \xEC\xE8\xF0\r\n", "windows-1253", "windows-1251"},
        {"as Spanish as Hungarian", readFile(kCorpus + "/hu-1250-kozlekedesi-lampa.pbp").first(167), "windows-1254",
         "windows-1254"},
    };
    for (const auto& [what, bytes, legacy, page] : cases) {
        SCOPED_TRACE(what);
        const TextFormat f = detectFormat(bytes, legacy);
        EXPECT_EQ(std::make_pair(f.encoding, f.codePage), std::make_pair(TextEncoding::CodePage, QByteArray(page)));
    }
    // The ISO page the detector names is read in the Windows page of the same script.
    EXPECT_EQ(guessCodePage(turkish), "windows-1254");
    EXPECT_EQ(guessCodePage(QByteArray(8192, 'x') + "' " + turkish), "windows-1254") << "the language lines only";
    EXPECT_EQ(guessCodePage(QByteArray(300, '\xE9')), std::nullopt);
}

TEST_F(Encodings, ReopenWithEncodingReadsTheFileAgainAskingFirstWhenModified) {
    const QByteArray bytes("' I\xFE\xFDk \xE7" "al\xFD\xFE\xFDyor\r\nHigh PORTB.0\r\n");  // too little to guess
    const QString p = open("isik.pbp", bytes);
    ASSERT_EQ(doc.encoding(), "windows-1252");
    EXPECT_EQ(doc.GetLine(0), "' Iþýk çalýþýyor");
    ed.View->SetSel(3, 1, 3, 1);
    ASSERT_TRUE(reopenIn(ed, "windows-1254"));
    EXPECT_EQ(std::make_tuple(doc.GetLine(0), doc.encoding(), doc.Modified(), ed.View->CaretY()),
              std::make_tuple(QString("' Işık çalışıyor"), QByteArray("windows-1254"), false, 1));
    ASSERT_EQ(failureNumber([&] { doc.SaveFile(p); }), 0);
    EXPECT_EQ(readFile(p), bytes);

    // Modified: asked first, No by default; an encoding that can't keep the bytes is said, and nothing changes.
    doc.InsertImpl(0, 1, "x");
    doc.UpdateViews();
    world.prompts.answers = {Answer::No, Answer::Yes, Answer::Ok, Answer::Yes};
    EXPECT_FALSE(reopenIn(ed, "windows-1251"));
    EXPECT_FALSE(reopenIn(ed, kUtf8Name));
    EXPECT_FALSE(reopenIn(ed, "Shift_JIS"));
    ASSERT_EQ(world.prompts.boxes.size(), 5u);
    const Box& ask = world.prompts.boxes[0];
    EXPECT_EQ(ask.text, "Reopen " + QDir::toNativeSeparators(p) + " as windows-1251?\r\rThe changes made here are lost.");
    EXPECT_EQ(std::make_tuple(ask.title, ask.icon, ask.buttons),
              std::make_tuple(QString("Reopen with Encoding"), Icon::Question, Buttons::YesNoDefaultNo));
    EXPECT_TRUE(world.prompts.boxes[2].text.contains("not UTF-8 text"));
    EXPECT_TRUE(world.prompts.boxes[4].text.contains("Shift_JIS"));
    EXPECT_EQ(world.prompts.boxes[4].icon, Icon::Exclamation);
    EXPECT_EQ(std::make_tuple(doc.GetLine(1), doc.encoding(), doc.Modified()),
              std::make_tuple(QString("xHigh PORTB.0"), QByteArray("windows-1254"), true));

    // The list: UTF-8 first, the Windows pages, the file's own page when it is none of them; OK takes the row.
    frmEditorEncoding dlg(p, "ISO-8859-5");
    QStringList rows;
    for (int i = 0; i < dlg.lstEncoding->count(); ++i)
        rows << dlg.lstEncoding->item(i)->text();
    EXPECT_EQ(rows.size(), 11);
    EXPECT_EQ(rows.first(), "Unicode (UTF-8)");
    EXPECT_EQ(rows.filter("Turkish (Windows-1254)").size(), 1);
    EXPECT_EQ(rows.last(), "ISO-8859-5  (now)");
    EXPECT_EQ(dlg.chosen(), "ISO-8859-5");
    dlg.lstEncoding->setCurrentRow(5);
    dlg.cmdOK_Click();
    EXPECT_EQ(std::make_pair(dlg.result(), dlg.chosen()), std::make_pair(int(QDialog::Accepted), QByteArray("windows-1254")));
    reopenWithEncoding(ed);  // the frame's modal answers Cancel
    EXPECT_EQ(frame.modals, QStringList({"Reopen with Encoding"}));
}
