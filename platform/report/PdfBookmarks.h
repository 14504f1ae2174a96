#pragma once
// Bookmarks for a finished PDF file, which Qt's writer doesn't make.

#include <QByteArray>
#include <QString>
#include <vector>

class QIODevice;

namespace vardelin {

struct PdfBookmark
{
    QString title;
    int page = 1;
    double top = 0; // points above the foot of the page
};

// What is to be put behind the bytes of a PDF to give it an outline: an update with a new catalog, as the
// format provides for. Nothing where there are no bookmarks, or where the file isn't of the plain kind that
// Qt writes (one cross reference table, a flat list of pages).
QByteArray bookmarkUpdate(QIODevice &pdf, const std::vector<PdfBookmark> &bookmarks);

} // namespace vardelin
