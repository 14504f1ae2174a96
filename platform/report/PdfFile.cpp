#include "platform/report/PdfFile.h"

#include "platform/base/RunTimeError.h"

#include <QDateTime>
#include <QIODevice>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr int kDiskFull = 61;
constexpr int kQtPrefix = 4; // bytes that qCompress puts ahead of the stream

} // namespace

QByteArray pdfNumber(double number)
{
    QByteArray text = QByteArray::number(number, 'f', 2);
    while (text.endsWith('0'))
        text.chop(1);
    if (text.endsWith('.'))
        text.chop(1);
    return text;
}

QByteArray pdfText(const QString &text)
{
    QByteArray bytes("\xFE\xFF", 2);
    for (const QChar letter : text) {
        bytes += static_cast<char>(letter.unicode() >> 8);
        bytes += static_cast<char>(letter.unicode() & 0xFF);
    }
    return '<' + bytes.toHex() + '>';
}

QByteArray pdfReference(int object)
{
    return QByteArray::number(object) + " 0 R";
}

PdfFile::PdfFile(QIODevice &device) : m_device(device), m_tree(newObject()), m_resources(newObject())
{
    put("%PDF-1.5\n%\xE2\xE3\xCF\xD3\n");
}

void PdfFile::put(const QByteArray &bytes)
{
    if (m_device.write(bytes) != bytes.size())
        throw RunTimeError(kDiskFull);
    m_written += bytes.size();
}

int PdfFile::newObject()
{
    m_places.push_back(0);
    return static_cast<int>(m_places.size());
}

void PdfFile::begin(int object)
{
    m_places[static_cast<std::size_t>(object - 1)] = m_written;
    put(QByteArray::number(object) + " 0 obj\n");
}

void PdfFile::write(int object, const QByteArray &content)
{
    begin(object);
    put(content + "\nendobj\n");
}

void PdfFile::writeStream(int object, const QByteArray &dictionary, const QByteArray &content)
{
    const QByteArray packed = qCompress(content).mid(kQtPrefix);
    begin(object);
    put("<<" + dictionary + "/Filter/FlateDecode/Length " + QByteArray::number(packed.size()) +
        ">>\nstream\n");
    put(packed);
    put("\nendstream\nendobj\n");
}

void PdfFile::addPage(const QSizeF &points, const QByteArray &content)
{
    const int stream = newObject(), page = newObject();
    writeStream(stream, {}, content);
    write(page, "<</Type/Page/Parent " + pdfReference(m_tree) + "/MediaBox[0 0 " + pdfNumber(points.width()) +
                    ' ' + pdfNumber(points.height()) + "]/Resources " + pdfReference(m_resources) +
                    "/Contents " + pdfReference(stream) + ">>");
    m_pages.push_back(page);
}

// The outline's object.
int PdfFile::writeOutline(const std::vector<PdfBookmark> &bookmarks)
{
    const int outline = newObject(), count = static_cast<int>(bookmarks.size()), first = outline + 1;
    for (int i = 0; i < count; ++i) {
        const PdfBookmark &mark = bookmarks[static_cast<std::size_t>(i)];
        write(newObject(), "<</Title" + pdfText(mark.title) + "/Parent " + pdfReference(outline) +
                               (i > 0 ? "/Prev " + pdfReference(first + i - 1) : QByteArray()) +
                               (i + 1 < count ? "/Next " + pdfReference(first + i + 1) : QByteArray()) +
                               "/Dest[" + pdfReference(m_pages[static_cast<std::size_t>(mark.page - 1)]) +
                               "/XYZ 0 " + pdfNumber(mark.top) + " 0]>>");
    }
    write(outline, "<</Type/Outlines/First " + pdfReference(first) + "/Last " +
                       pdfReference(first + count - 1) + "/Count " + QByteArray::number(count) + ">>");
    return outline;
}

void PdfFile::finish(const QByteArray &resources, const QString &title,
                     const std::vector<PdfBookmark> &bookmarks)
{
    write(m_resources, resources);
    QByteArray kids;
    for (const int page : m_pages)
        kids += pdfReference(page) + '\n';
    write(m_tree, "<</Type/Pages/Count " + QByteArray::number(pageCount()) + "/Kids[" + kids + "]>>");
    QByteArray outline;
    if (!bookmarks.empty())
        outline = "/PageMode/UseOutlines/Outlines " + pdfReference(writeOutline(bookmarks));
    const int catalog = newObject(), info = newObject();
    write(catalog, "<</Type/Catalog/Lang(en)/ViewerPreferences<</DisplayDocTitle true>>/Pages " +
                       pdfReference(m_tree) + outline + ">>");
    write(info, "<</Title" + pdfText(title) + "/Creator(Vardelin)/CreationDate(D:" +
                    QDateTime::currentDateTimeUtc().toString(u"yyyyMMddHHmmss"_s).toLatin1() + "Z)>>");
    const qint64 table = m_written;
    const QByteArray size = QByteArray::number(m_places.size() + 1);
    QByteArray entries = "xref\n0 " + size + "\n0000000000 65535 f \n";
    for (const qint64 place : m_places)
        entries += QByteArray::number(place).rightJustified(10, '0') + " 00000 n \n";
    put(entries + "trailer\n<</Size " + size + "/Root " + pdfReference(catalog) + "/Info " +
        pdfReference(info) + ">>\nstartxref\n" + QByteArray::number(table) + "\n%%EOF\n");
}

} // namespace vardelin
