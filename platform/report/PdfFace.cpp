#include "platform/report/PdfFace.h"

#include "platform/base/RunTimeError.h"

#include <cairo-ft.h>
#include <cmath>
#include <fontconfig/fontconfig.h>

namespace vardelin {

namespace {

constexpr int kPrintingFailed = 482;

using FontFace = std::unique_ptr<cairo_font_face_t, Freed<cairo_font_face_destroy>>;

const FcChar8 *words(const QByteArray &utf8)
{
    return reinterpret_cast<const FcChar8 *>(utf8.constData());
}

constexpr double kSameWidth = 0.01; // of the em

QRawFont asDesigned(QRawFont face)
{
    face.setPixelSize(face.unitsPerEm());
    return face;
}

// Whether both number their glyphs alike and make them as wide: a face may be installed in files of several
// formats, and a condensed one bears the names of the normal one.
bool agree(cairo_font_face_t *drawn, const QRawFont &face)
{
    constexpr char kSample[] = "Hamburgefonstiv 0123456789 \xC3\xA9\xC3\xB1";
    const double em = face.pixelSize();
    cairo_matrix_t unit, size;
    cairo_matrix_init_identity(&unit);
    cairo_matrix_init_scale(&size, em, em);
    const std::unique_ptr<cairo_font_options_t, Freed<cairo_font_options_destroy>> options(
        cairo_font_options_create());
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    const std::unique_ptr<cairo_scaled_font_t, Freed<cairo_scaled_font_destroy>> font(
        cairo_scaled_font_create(drawn, &size, &unit, options.get()));
    cairo_glyph_t *glyphs = nullptr;
    int count = 0;
    if (cairo_scaled_font_text_to_glyphs(font.get(), 0, 0, kSample, -1, &glyphs, &count, nullptr, nullptr,
                                         nullptr) != CAIRO_STATUS_SUCCESS)
        return false;
    const std::unique_ptr<cairo_glyph_t, Freed<cairo_glyph_free>> owned(glyphs);
    const QList<quint32> wanted = face.glyphIndexesForString(QString::fromUtf8(kSample));
    const QList<QPointF> advances = face.advancesForGlyphIndexes(wanted);
    if (wanted.size() != count || advances.size() != count)
        return false;
    double pen = 0;
    for (int i = 0; i < count; ++i) {
        if (glyphs[i].index != wanted[i] || std::abs(glyphs[i].x - pen) > kSameWidth * em)
            return false;
        pen += advances[i].x();
    }
    return true;
}

// The file among those that bear the names which Qt has from fontconfig too; null if there is none.
FontFace drawnFace(const QRawFont &face)
{
    const std::unique_ptr<FcPattern, Freed<FcPatternDestroy>> asked(FcPatternCreate());
    FcPatternAddString(asked.get(), FC_FAMILY, words(face.familyName().toUtf8()));
    FcPatternAddString(asked.get(), FC_STYLE, words(face.styleName().toUtf8()));
    FcPatternAddBool(asked.get(), FC_SCALABLE, FcTrue);
    const std::unique_ptr<FcObjectSet, Freed<FcObjectSetDestroy>> told(
        FcObjectSetBuild(FC_FILE, FC_INDEX, nullptr));
    const std::unique_ptr<FcFontSet, Freed<FcFontSetDestroy>> files(
        FcFontList(nullptr, asked.get(), told.get()));
    FontFace drawn;
    for (int i = 0; files && i < files->nfont; ++i) {
        drawn.reset(cairo_ft_font_face_create_for_pattern(files->fonts[i]));
        if (agree(drawn.get(), face))
            break;
    }
    return drawn;
}

} // namespace

PdfFace::PdfFace(const QRawFont &face, bool bold)
    : m_face(asDesigned(face)), m_bold(bold), m_drawn(drawnFace(m_face)), m_glyphs(kFirstShaped),
      m_known(kFirstShaped)
{
    if (!m_drawn)
        throw RunTimeError(kPrintingFailed);
    if (bold && face.weight() < QFont::DemiBold)
        cairo_ft_font_face_set_synthesize(m_drawn.get(), CAIRO_FT_SYNTHESIZE_BOLD);
}

const PdfFace::Glyph &PdfFace::glyphOf(QChar letter)
{
    Glyph &glyph = m_glyphs[letter.unicode()];
    if (!m_known[letter.unicode()]) {
        m_known[letter.unicode()] = true;
        glyph.index = m_face.glyphIndexesForString(letter).value(0);
        glyph.advance = m_face.advancesForGlyphIndexes({glyph.index}).value(0).x() / m_face.pixelSize();
    }
    return glyph;
}

} // namespace vardelin
