#pragma once
// A face of a report as cairo draws it: the very file that Qt measures by.

#include <QRawFont>
#include <cairo.h>
#include <memory>
#include <vector>

namespace vardelin {

template <auto Free>
struct Freed
{
    template <class T>
    void operator()(T *object) const
    {
        Free(object);
    }
};

class PdfFace
{
public:
    // bold: asked for; a face that isn't bold is drawn thicker.
    PdfFace(const QRawFont &face, bool bold);

    const QRawFont &face() const { return m_face; }
    bool bold() const { return m_bold; }
    cairo_font_face_t *drawn() const { return m_drawn.get(); }
    // Of a character that stands for itself, below kFirstShaped.
    struct Glyph
    {
        quint32 index = 0;  // 0: the face has none
        double advance = 0; // for a size of 1
    };
    static constexpr char16_t kFirstShaped = 0x300;
    const Glyph &glyphOf(QChar letter);

private:
    QRawFont m_face; // as large as its design
    bool m_bold;
    std::unique_ptr<cairo_font_face_t, Freed<cairo_font_face_destroy>> m_drawn;
    std::vector<Glyph> m_glyphs; // by character
    std::vector<bool> m_known;
};

} // namespace vardelin
