#pragma once
// File > Reopen with Encoding: the encodings to read a document's file again in, and the reading.

#include <QByteArray>
#include <QDialog>

class QLabel;
class QListWidget;
class QPushButton;
class frmEditor;

class frmEditorEncoding : public QDialog {
    Q_OBJECT
public:
    // current: the encoding the file was read in, selected at the start.
    frmEditorEncoding(const QString& path, const QByteArray& current, QWidget* parent = nullptr);

    QLabel* lblFile;
    QListWidget* lstEncoding;
    QPushButton* cmdOK;
    QPushButton* cmdCancel;

    // The encoding of the selected row: kUtf8Name or a code page; empty with none selected.
    QByteArray chosen() const;
    void cmdOK_Click();
    void cmdCancel_Click();
};

// Shows the choice for the document and, on OK, reads its file again in the encoding chosen.
void reopenWithEncoding(frmEditor& doc);
// Reads the document's file again in encoding, asking first when it is modified; a file that can't be
// read so is said and the text stays. True when the file was read again.
bool reopenIn(frmEditor& doc, const QByteArray& encoding);
