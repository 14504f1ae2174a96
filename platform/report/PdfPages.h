#pragma once
// Pages of a report as a PDF, through cairo: texts in one piece that can be searched, and the glyphs in use
// of each face.

#include "platform/report/PdfFace.h"
#include "platform/report/ReportPages.h"

class QGlyphRun;
class QIODevice;

namespace vardelin {

// Everything that writes throws RunTimeError 61 where the device takes no more.
class PdfPages
{
public:
    PdfPages(QIODevice &device, const QString &title); // open for writing; which outlives this

    void add(const ReportPage &page);
    // page: from 1, may be still to come; top: twips.
    void addBookmark(const QString &title, int page, double top);
    void finish(); // nothing can be added after this

private:
    struct Cluster // characters that are drawn together
    {
        double left = 0;
        QString text;
        QList<QGlyphRun> runs;
    };
    PdfFace &face(const ReportFont &font);
    PdfFace &faceOf(const QRawFont &raw, bool bold);
    void setFont(const PdfFace &face, double points);
    void addText(const ReportItem &item);
    bool addPlain(const ReportItem &item);
    void addShaped(const ReportItem &item);
    void addCluster(const Cluster &cluster, const ReportItem &item, double ascent);
    void check() const;

    std::unique_ptr<cairo_surface_t, Freed<cairo_surface_destroy>> m_surface;
    std::unique_ptr<cairo_t, Freed<cairo_destroy>> m_context;
    std::vector<std::pair<ReportFont, PdfFace *>> m_asked; // the size is of no account
    std::vector<std::unique_ptr<PdfFace>> m_faces;
    const PdfFace *m_set = nullptr; // what the context draws with
    double m_size = 0;              // points
    std::vector<cairo_glyph_t> m_glyphs;
    std::vector<cairo_text_cluster_t> m_clusters;
};

} // namespace vardelin
