#include "platform/report/ReportFonts.h"

namespace vardelin {

QFont outlineFont(const ReportFont &font, int pixelSize)
{
    QFont face(font.Name);
    face.setPixelSize(pixelSize);
    face.setBold(font.Bold);
    face.setHintingPreference(QFont::PreferNoHinting);
    face.setKerning(false);
    return face;
}

} // namespace vardelin
