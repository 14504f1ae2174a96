#include "platform/report/PdfPages.h"

#include "platform/base/RunTimeError.h"
#include "platform/report/ReportFonts.h"

#include <QGlyphRun>
#include <QIODevice>
#include <QTextBoundaryFinder>
#include <QTextLayout>
#include <algorithm>
#include <cairo-pdf.h>

namespace vardelin {

namespace {

constexpr double kTwipsPerPoint = 20;
constexpr int kInternalError = 51, kDiskFull = 61;

constexpr int kRuleTwips = 10;
constexpr int kShaped = 2048; // pixels: texts are shaped this large, so that nothing is rounded
constexpr double kUnbroken = 1e7;

void require(cairo_status_t status)
{
    if (status != CAIRO_STATUS_SUCCESS)
        throw RunTimeError(status == CAIRO_STATUS_WRITE_ERROR ? kDiskFull : kInternalError);
}

cairo_status_t writeTo(void *device, const unsigned char *bytes, unsigned int length)
{
    const qint64 written =
        static_cast<QIODevice *>(device)->write(reinterpret_cast<const char *>(bytes), length);
    return written == static_cast<qint64>(length) ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_WRITE_ERROR;
}

// cairo refuses a text, and with it the file, that has a half of a pair or a code that is no character; one
// of code 0 would end it.
QByteArray utf8Of(const QString &text)
{
    QList<uint> letters = text.toUcs4(); // halves of pairs become replacement characters
    for (uint &letter : letters)
        if (QChar::isNonCharacter(letter) || letter == 0)
            letter = QChar::ReplacementCharacter;
    return QString::fromUcs4(reinterpret_cast<const char32_t *>(letters.constData()), letters.size())
        .toUtf8();
}

} // namespace

PdfPages::PdfPages(QIODevice &device, const QString &title)
    : m_surface(cairo_pdf_surface_create_for_stream(writeTo, &device, 1, 1)),
      m_context(cairo_create(m_surface.get()))
{
    cairo_pdf_surface_restrict_to_version(m_surface.get(), CAIRO_PDF_VERSION_1_5);
    cairo_pdf_surface_set_metadata(m_surface.get(), CAIRO_PDF_METADATA_TITLE, utf8Of(title).constData());
}

void PdfPages::check() const
{
    require(cairo_surface_status(m_surface.get()));
    require(cairo_status(m_context.get()));
}

void PdfPages::add(const ReportPage &page)
{
    cairo_pdf_surface_set_size(m_surface.get(), page.paper.width / kTwipsPerPoint,
                               page.paper.height / kTwipsPerPoint);
    cairo_identity_matrix(m_context.get());
    cairo_scale(m_context.get(), 1 / kTwipsPerPoint, 1 / kTwipsPerPoint);
    for (const ReportItem &item : page.items) {
        if (!item.isRule()) {
            addText(item);
            continue;
        }
        const bool across = item.width >= item.height;
        cairo_rectangle(m_context.get(), item.left, item.top, across ? item.width : kRuleTwips,
                        across ? kRuleTwips : item.height);
        cairo_fill(m_context.get());
    }
    cairo_show_page(m_context.get());
    check();
}

void PdfPages::addBookmark(const QString &title, int page, double top)
{
    // Whole points: cairo reads a fraction with the decimal sign of the user's country.
    const QByteArray place = "page=" + QByteArray::number(page) + " pos=[0 " +
                             QByteArray::number(static_cast<int>(top / kTwipsPerPoint)) + "]";
    cairo_pdf_surface_add_outline(m_surface.get(), CAIRO_PDF_OUTLINE_ROOT, utf8Of(title).constData(),
                                  place.constData(), static_cast<cairo_pdf_outline_flags_t>(0));
}

void PdfPages::finish()
{
    m_context.reset();
    cairo_surface_finish(m_surface.get());
    require(cairo_surface_status(m_surface.get()));
}

PdfFace &PdfPages::face(const ReportFont &font)
{
    for (const auto &[known, face] : m_asked)
        if (known.Bold == font.Bold && known.Name == font.Name)
            return *face;
    PdfFace &found = faceOf(QRawFont::fromFont(outlineFont(font, kShaped)), font.Bold);
    m_asked.emplace_back(font, &found);
    return found;
}

PdfFace &PdfPages::faceOf(const QRawFont &raw, bool bold)
{
    const auto known = std::ranges::find_if(m_faces, [&](const auto &face) {
        return face->bold() == bold && face->face().familyName() == raw.familyName() &&
               face->face().styleName() == raw.styleName();
    });
    return known != m_faces.end() ? **known : *m_faces.emplace_back(std::make_unique<PdfFace>(raw, bold));
}

void PdfPages::setFont(const PdfFace &face, double points)
{
    if (m_set == &face && m_size == points)
        return;
    cairo_set_font_face(m_context.get(), face.drawn());
    cairo_set_font_size(m_context.get(), points * kTwipsPerPoint);
    m_set = &face;
    m_size = points;
}

void PdfPages::addText(const ReportItem &item)
{
    if (!addPlain(item))
        addShaped(item);
}

// False where a character has to be shaped, or isn't in the face.
bool PdfPages::addPlain(const ReportItem &item)
{
    PdfFace &own = face(item.font);
    m_glyphs.clear();
    m_clusters.clear();
    double x = item.left;
    for (const QChar letter : item.text) {
        if (letter.unicode() >= PdfFace::kFirstShaped)
            return false;
        const PdfFace::Glyph &glyph = own.glyphOf(letter);
        if (glyph.index == 0)
            return false;
        m_glyphs.push_back({glyph.index, x, item.top + item.baseline});
        m_clusters.push_back({letter.unicode() < 0x80 ? 1 : 2, 1});
        x += glyph.advance * item.font.Size * kTwipsPerPoint;
    }
    setFont(own, item.font.Size);
    const QByteArray text = item.text.toUtf8();
    cairo_show_text_glyphs(m_context.get(), text.constData(), static_cast<int>(text.size()), m_glyphs.data(),
                           static_cast<int>(m_glyphs.size()), m_clusters.data(),
                           static_cast<int>(m_clusters.size()), {});
    return true;
}

// Character by character as one reads them, from the left, which is the order in which a PDF is read back.
void PdfPages::addShaped(const ReportItem &item)
{
    QTextLayout layout(item.text, outlineFont(item.font, kShaped));
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(kUnbroken);
    layout.endLayout();
    std::vector<Cluster> clusters;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, item.text);
    for (qsizetype from = 0, to = finder.toNextBoundary(); to >= 0; from = to, to = finder.toNextBoundary()) {
        const qsizetype length = to - from;
        QList<QGlyphRun> runs = layout.glyphRuns(static_cast<int>(from), static_cast<int>(length));
        std::ranges::sort(runs, {}, [](const QGlyphRun &run) { return run.positions().value(0).x(); });
        clusters.push_back({line.cursorToX(static_cast<int>(from)), item.text.mid(from, length), runs});
    }
    std::ranges::stable_sort(clusters, {}, &Cluster::left);
    for (const Cluster &cluster : clusters)
        addCluster(cluster, item, line.ascent());
}

// Where a mark comes from another face than its letter, each run of glyphs stands for as many of the
// characters as it has glyphs.
void PdfPages::addCluster(const Cluster &cluster, const ReportItem &item, double ascent)
{
    const double unit = item.font.Size * kTwipsPerPoint / kShaped;
    QList<char32_t> letters;
    for (const uint letter : cluster.text.toUcs4())
        letters.append(letter);
    for (qsizetype part = 0; part < cluster.runs.size(); ++part) {
        const QGlyphRun &run = cluster.runs[part];
        const QList<quint32> glyphs = run.glyphIndexes();
        const QList<QPointF> places = run.positions();
        m_glyphs.clear();
        for (qsizetype i = 0; i < glyphs.size(); ++i)
            m_glyphs.push_back({glyphs[i], item.left + places[i].x() * unit,
                                item.top + item.baseline + (places[i].y() - ascent) * unit});
        const bool last = part + 1 == cluster.runs.size();
        const qsizetype taken = last ? letters.size() : std::min(letters.size(), glyphs.size());
        const QByteArray text = utf8Of(QString::fromUcs4(letters.constData(), taken));
        letters.remove(0, taken);
        setFont(faceOf(run.rawFont(), item.font.Bold), item.font.Size);
        const int count = static_cast<int>(m_glyphs.size()), length = static_cast<int>(text.size());
        const cairo_text_cluster_t whole{length, count};
        cairo_show_text_glyphs(m_context.get(), text.constData(), length, m_glyphs.data(), count, &whole, 1,
                               {});
    }
}

} // namespace vardelin
