#pragma once
// A PDF file, written as it comes: what stands in it costs no memory. Qt's own writer places every glyph by
// itself, which for long reports was three times the work and five times the file.

#include <QByteArray>
#include <QSizeF>
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

// Everything that writes throws RunTimeError 61 where the device takes no more.
class PdfFile
{
public:
    explicit PdfFile(QIODevice &device); // open for writing; which outlives this

    int newObject(); // the number of an object that is still to be written
    void write(int object, const QByteArray &content);
    // dictionary: without its brackets, and without length and filter.
    void writeStream(int object, const QByteArray &dictionary, const QByteArray &content);
    void addPage(const QSizeF &points, const QByteArray &content);
    int pageCount() const { return static_cast<int>(m_pages.size()); }
    // resources: the dictionary of all pages. Nothing can be written after this.
    void finish(const QByteArray &resources, const QString &title, const std::vector<PdfBookmark> &bookmarks);

private:
    void put(const QByteArray &bytes);
    void begin(int object);
    int writeOutline(const std::vector<PdfBookmark> &bookmarks);

    QIODevice &m_device;
    qint64 m_written = 0;
    std::vector<qint64> m_places; // of the objects, from number 1
    std::vector<int> m_pages;     // their objects
    int m_tree, m_resources;
};

QByteArray pdfNumber(double number); // of two digits behind the point at most
QByteArray pdfText(const QString &text);
QByteArray pdfReference(int object);

} // namespace vardelin
