#pragma once
// The file a print to PDF proposes for a document.

#include <QString>

// The document's path with ".pdf" in place of its extension (or added, when it has none): the PDF lies
// beside the source. "/work/blink.pbp" gives "/work/blink.pdf".
QString pdfNameFor(const QString& documentPath);
