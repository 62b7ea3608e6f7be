#pragma once
// Everything that blocks on a person: message boxes and the file and colour dialogs.

#include <QString>
#include <QtGlobal>
#include <optional>

enum class Icon { None, Critical, Question, Exclamation, Information };
// YesNoDefaultNo: No is the default button, for a question whose Yes loses something.
enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel, YesNoDefaultNo };
enum class Answer { Ok, Cancel, Yes, No };

class Prompts {
public:
    virtual ~Prompts() = default;
    // An empty title means the application's title.
    virtual Answer message(const QString& text, const QString& title, Icon icon, Buttons buttons) = 0;
    // The same box with OK and one more button, extra, that leads on (such as "Check Set-up..."); true
    // when the user chose it. A prompt that has no such button shows the plain box.
    virtual bool messageOffering(const QString& text, const QString& title, Icon icon, const QString& extra) {
        (void)extra;
        message(text, title, icon, Buttons::Ok);
        return false;
    }
    // filter is in the dialog's own form: "description|pattern|description|pattern|". A dialog starts in the
    // folder of fileName. nullopt when the user cancelled.
    virtual std::optional<QString> openFile(const QString& filter, const QString& fileName) = 0;
    // filterIndex: the filter shown first (from 0), and afterwards the one the user chose.
    virtual std::optional<QString> saveFile(const QString& filter, const QString& fileName, int& filterIndex) = 0;
    // Colours are 0x00BBGGRR; nullopt on cancel.
    virtual std::optional<qint32> chooseColor(qint32 initial) = 0;
};

// A message's text as a box shows it: a carriage return, alone or before a line feed, breaks the line.
inline QString displayedMessageText(QString text) {
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text;
}

// The button that leads from a failure to the set-up check.
inline QString checkSetupCaption() { return QStringLiteral("Check Set-up..."); }

// The title every box without one of its own carries.
inline QString applicationTitle() { return QStringLiteral("Quillbay Lite"); }
