#pragma once
// A face in a PDF: the glyphs that the pages use, with the text that they stand for.

#include <QByteArray>
#include <QRawFont>
#include <map>
#include <vector>

namespace vardelin {

class PdfFile;

// TrueType faces are carried with the outlines in use. Of others the outlines are written as drawings, 256 to
// a font of the file.
class PdfFont
{
public:
    // The name that content knows it by, as "F1". bold: asked for; a face that isn't is drawn thicker.
    PdfFont(QRawFont face, QByteArray name, bool bold);

    const QRawFont &face() const { return m_face; }
    bool isTrueType() const { return m_trueType; } // so all glyphs are in one font of the file
    bool isThickened() const { return m_thickened; }
    // The glyph of a character that stands for itself; 0: the face has none.
    quint32 glyphOf(QChar letter)
    {
        const char16_t code = letter.unicode();
        return code < m_known.size() && m_known[code] != 0 ? m_known[code] : find(letter);
    }
    // Takes a glyph of a shaped text in. False: what it stands for can't be told of it alone.
    bool tells(quint32 glyph) { return !taken(glyph).text.isEmpty(); }
    // Adds a text of one glyph that was taken in, as it stands between the brackets of a string, and the name
    // of the font that it is in.
    void append(QByteArray &content, quint32 glyph) const;
    QByteArray nameFor(quint32 glyph) const;
    // The entries of its fonts in the resources.
    QByteArray write(PdfFile &file) const;

private:
    struct Use
    {
        int number = 0; // in the order of their coming
        QString text = {};
    };
    Use &taken(quint32 glyph);
    quint32 find(QChar letter);
    double share(double design) const; // of the size, in thousandths
    double advance(quint32 glyph) const;
    QByteArray meaning(int part) const;
    int writeMeaning(PdfFile &file, int part) const;
    int writeDescriptor(PdfFile &file, const QByteArray &name) const;
    int writeTrueType(PdfFile &file) const;
    int writeDrawn(PdfFile &file, int part) const;
    QByteArray drawing(quint32 glyph) const;

    QRawFont m_face; // as large as its design
    const QByteArray m_name;
    const bool m_trueType, m_thickened;
    std::vector<quint32> m_known; // glyphs by character
    std::map<quint32, Use> m_used;
};

} // namespace vardelin
