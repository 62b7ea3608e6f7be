// Files in the user's own code page: shown with the right letters, kept byte for byte, and never
// silently rewritten as UTF-8.
#include "core/Settings.h"
#include "document/Document.h"
#include "document/SourceView.h"
#include "platform/Failure.h"
#include "support/Doubles.h"

#include <QFile>
#include <QLocale>
#include <gtest/gtest.h>

namespace {

class Encoding : public ::testing::Test {
protected:
    TestWorld world;
    SourceView view;
    Document& doc = view.document();

    static QByteArray read(const QString& p) {
        QFile f(p);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<unreadable>");
    }
    void typeAtEnd(const QString& text) {
        const int end = doc.NumLines() - 1;
        doc.InsertImpl(doc.GetLineLength(end), end, text, false);
        doc.UpdateViews(128, end, end, 0, end);
    }
    // The Failure's number, or 0 when the save went through.
    long save(const QString& p) try {
        doc.SaveFile(p);
        return 0;
    } catch (const Failure& f) {
        return f.number;
    }
};

}  // namespace

TEST_F(Encoding, ATurkishFileShowsItsLettersAndAsksBeforeItBecomesUtf8) {
    saveSetting(Key::LegacyEncoding, legacyEncodingFor(QLocale("tr_TR")));
    const QByteArray bytes("' \xDE\xFE\xFD\xF0 \xE7\xF6z\xFCm\r\nHIGH PORTB.0\r\n");
    const QString p = world.write("turkish.pbp", bytes);
    doc.LoadFile(p);
    EXPECT_EQ(doc.GetLine(0), QStringLiteral("' Şşığ çözüm"));
    ASSERT_EQ(save(p), 0);
    EXPECT_EQ(read(p), bytes);

    typeAtEnd(QStringLiteral("' €"));  // in the code page: no question
    ASSERT_EQ(save(p), 0);
    EXPECT_EQ(read(p), bytes + "' \x80");
    EXPECT_TRUE(world.prompts.boxes.empty());

    const QByteArray before = read(p);
    typeAtEnd(QStringLiteral(" ✓"));
    world.prompts.answers = {Answer::No, Answer::No};
    EXPECT_EQ(save(p), kCancelError);
    EXPECT_EQ(save(world.file("copy.pbp")), kCancelError);  // Save As asks too, and makes no file
    EXPECT_EQ(read(p), before);
    EXPECT_FALSE(QFile::exists(world.file("copy.pbp")));
    EXPECT_TRUE(doc.Modified());
    ASSERT_EQ(world.prompts.boxes.size(), 2u);
    const Box& box = world.prompts.boxes[0];
    for (const QString& told : {p, QStringLiteral("windows-1254"), QStringLiteral("\"✓\" (line 3"),
                                QStringLiteral("UTF-8")})
        EXPECT_TRUE(box.text.contains(told)) << box.text.toStdString();
    EXPECT_EQ(std::make_pair(box.icon, box.buttons), std::make_pair(Icon::Exclamation, Buttons::YesNo));

    world.prompts.answers = {Answer::Yes};
    ASSERT_EQ(save(p), 0);
    EXPECT_EQ(read(p), QStringLiteral("' Şşığ çözüm\r\nHIGH PORTB.0\r\n' € ✓").toUtf8());
    EXPECT_FALSE(doc.Modified());
    typeAtEnd(QStringLiteral("γ"));  // UTF-8 from now on: no more questions
    ASSERT_EQ(save(p), 0);
    EXPECT_EQ(world.prompts.boxes.size(), 3u);
}

