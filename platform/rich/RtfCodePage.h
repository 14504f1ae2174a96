#pragma once
// Text in the code pages that RTF may name.

#include <QByteArrayView>
#include <QString>
#include <array>
#include <map>

namespace vardelin {

// Windows' number of the code page of a font's \fcharset; 0 if the charset says none, so that the document's
// page counts.
int codePageOfCharset(int charset);

// Decodes bytes of a code page (Windows' numbers: 437, 850, 874, 932, 936, 949, 950, 1250-1258, 1361, 10000,
// 65001). An unknown page is read as 1252. Bytes without a meaning become U+FFFD, those of the C1 range stay
// as they are. Keeps the tables it has made; not for use by two threads at once.
class CodePages
{
public:
    QString decode(QByteArrayView bytes, int page);

private:
    using Table = std::array<char16_t, 128>;
    const Table &tableOf(int page);

    std::map<int, Table> m_tables; // of the pages with one byte a character, for the bytes from 128
};

} // namespace vardelin
