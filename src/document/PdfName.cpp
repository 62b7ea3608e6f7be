#include "document/PdfName.h"

QString pdfNameFor(const QString& documentPath) {
    // Only a dot within the file name starts an extension: "/a.b/prog" has none, nor has ".profile".
    const qsizetype slash = documentPath.lastIndexOf(u'/');
    const qsizetype dot = documentPath.lastIndexOf(u'.');
    const bool hasExtension = dot > slash + 1;
    return (hasExtension ? documentPath.left(dot) : documentPath) + QStringLiteral(".pdf");
}
