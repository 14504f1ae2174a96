#include "platform/report/PdfBookmarks.h"

#include <QIODevice>
#include <QList>

namespace vardelin {

namespace {

constexpr qint64 kTail = 2048; // bytes in which the trailer stands
constexpr qint64 kEntry = 20;  // bytes of an entry of the cross reference table

// The number behind a word; -1 where there is none.
int numberAfter(const QByteArray &text, const QByteArray &word)
{
    const qsizetype at = text.indexOf(word);
    if (at < 0)
        return -1;
    qsizetype from = at + word.size();
    while (from < text.size() && (text[from] == ' ' || text[from] == '\n' || text[from] == '\r'))
        ++from;
    qsizetype end = from;
    while (end < text.size() && text[end] >= '0' && text[end] <= '9')
        ++end;
    return end > from ? text.mid(from, end - from).toInt() : -1;
}

class PdfFile
{
public:
    explicit PdfFile(QIODevice &pdf) : m_pdf(pdf)
    {
        m_pdf.seek(std::max<qint64>(0, m_pdf.size() - kTail));
        const QByteArray tail = m_pdf.readAll();
        const qsizetype trailer = tail.lastIndexOf("trailer");
        if (trailer < 0)
            return;
        m_trailer = tail.mid(trailer, tail.lastIndexOf("startxref") - trailer);
        table = numberAfter(tail.mid(tail.lastIndexOf("startxref")), "startxref");
        size = numberAfter(m_trailer, "/Size");
        root = numberAfter(m_trailer, "/Root");
        m_pdf.seek(table);
        m_pdf.readLine(); // xref
        m_pdf.readLine(); // 0 and the count
        m_entries = m_pdf.pos();
    }
    bool valid() const { return table > 0 && size > 0 && root > 0; }

    // What stands between "obj" and "endobj".
    QByteArray object(int number)
    {
        m_pdf.seek(m_entries + number * kEntry);
        const qint64 offset = m_pdf.read(10).toLongLong();
        m_pdf.seek(offset);
        QByteArray text;
        while (!m_pdf.atEnd() && !text.contains("endobj"))
            text += m_pdf.read(kTail);
        const qsizetype from = text.indexOf("obj") + 3;
        return text.mid(from, text.indexOf("endobj") - from);
    }
    // The trailer's entry for the document's title and date.
    QByteArray info() const
    {
        const int number = numberAfter(m_trailer, "/Info");
        return number > 0 ? "/Info " + QByteArray::number(number) + " 0 R\n" : QByteArray();
    }

    int table = -1, size = -1, root = -1;

private:
    QIODevice &m_pdf;
    QByteArray m_trailer;
    qint64 m_entries = 0;
};

QList<int> pagesOf(const QByteArray &tree)
{
    QList<int> pages;
    const qsizetype from = tree.indexOf('['), to = tree.indexOf(']');
    if (from < 0 || to < from)
        return pages;
    const QList<QByteArray> words = tree.mid(from + 1, to - from - 1).simplified().split(' ');
    for (qsizetype i = 0; i + 2 < words.size(); i += 3) // "7 0 R"
        pages += words[i].toInt();
    return pages;
}

QByteArray hexText(const QString &text)
{
    QByteArray bytes("\xFE\xFF", 2);
    for (const QChar letter : text) {
        bytes += static_cast<char>(letter.unicode() >> 8);
        bytes += static_cast<char>(letter.unicode() & 0xFF);
    }
    return '<' + bytes.toHex() + '>';
}

QByteArray reference(const char *name, int object)
{
    return QByteArray(name) + ' ' + QByteArray::number(object) + " 0 R\n";
}

// Objects that are put behind the file, with their places.
class Update
{
public:
    explicit Update(qint64 from) : m_from(from) {}
    void add(int number, const QByteArray &content)
    {
        m_places.emplace_back(number, m_from + m_bytes.size());
        m_bytes += QByteArray::number(number) + " 0 obj\n" + content + "\nendobj\n";
    }
    QByteArray finished(const PdfFile &file, int size)
    {
        const qint64 table = m_from + m_bytes.size();
        m_bytes += "xref\n";
        for (const auto &[number, place] : m_places)
            m_bytes += QByteArray::number(number) + " 1\n" +
                       QByteArray::number(place).rightJustified(10, '0') + " 00000 n \n";
        m_bytes += "trailer\n<<\n/Size " + QByteArray::number(size) + '\n' + reference("/Root", file.root) +
                   file.info() + "/Prev " + QByteArray::number(file.table) + "\n>>\nstartxref\n" +
                   QByteArray::number(table) + "\n%%EOF\n";
        return m_bytes;
    }

private:
    const qint64 m_from;
    QByteArray m_bytes;
    std::vector<std::pair<int, qint64>> m_places;
};

} // namespace

QByteArray bookmarkUpdate(QIODevice &pdf, const std::vector<PdfBookmark> &bookmarks)
{
    PdfFile file(pdf);
    if (bookmarks.empty() || !file.valid())
        return {};
    QByteArray catalog = file.object(file.root);
    const QList<int> pages = pagesOf(file.object(numberAfter(catalog, "/Pages")));
    const qsizetype end = catalog.lastIndexOf(">>");
    if (end < 0 || pages.size() < bookmarks.back().page)
        return {};
    const int outline = file.size, first = outline + 1, count = static_cast<int>(bookmarks.size());
    Update update(pdf.size());
    update.add(file.root, catalog.left(end) + reference("/Outlines", outline) + "/PageMode /UseOutlines\n" +
                              catalog.mid(end));
    update.add(outline, "<<\n/Type /Outlines\n" + reference("/First", first) +
                            reference("/Last", first + count - 1) + "/Count " + QByteArray::number(count) +
                            "\n>>");
    for (int i = 0; i < count; ++i) {
        const PdfBookmark &mark = bookmarks[static_cast<std::size_t>(i)];
        update.add(first + i, "<<\n/Title " + hexText(mark.title) + '\n' + reference("/Parent", outline) +
                                  (i > 0 ? reference("/Prev", first + i - 1) : QByteArray()) +
                                  (i + 1 < count ? reference("/Next", first + i + 1) : QByteArray()) +
                                  "/Dest [" + QByteArray::number(pages[mark.page - 1]) + " 0 R /XYZ 0 " +
                                  QByteArray::number(mark.top, 'f', 1) + " 0]\n>>");
    }
    return update.finished(file, first + count);
}

} // namespace vardelin
