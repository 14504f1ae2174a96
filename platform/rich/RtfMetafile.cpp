// Bitmaps out of metafiles. All numbers are little-endian; every read is checked, one beyond the end gives 0.
#include "platform/rich/RtfPicture.h"

#include <QBuffer>
#include <QImageReader>
#include <QtEndian>
#include <algorithm>
#include <cstdlib>

namespace vardelin {

namespace {

constexpr qint64 kMostPixels = 40'000'000;

quint32 u32(QByteArrayView bytes, qsizetype at)
{
    return at >= 0 && at + 4 <= bytes.size() ? qFromLittleEndian<quint32>(bytes.data() + at) : 0;
}

quint16 u16(QByteArrayView bytes, qsizetype at)
{
    return at >= 0 && at + 2 <= bytes.size() ? qFromLittleEndian<quint16>(bytes.data() + at) : quint16(0);
}

// The part from at on, of at most length bytes; empty if it begins beyond the end.
QByteArrayView part(QByteArrayView bytes, quint32 at, quint32 length)
{
    if (qint64(at) >= bytes.size())
        return {};
    return bytes.sliced(at, std::min<qint64>(length, bytes.size() - at));
}

struct DibHeader
{
    quint32 size = 0;
    qint64 width = 0, height = 0;
    int bits = 0;
    quint32 compression = 0, colours = 0;
};

DibHeader headerOf(QByteArrayView dib)
{
    DibHeader header;
    header.size = u32(dib, 0);
    if (header.size == 12) { // the oldest kind, with 16-bit sides
        header.width = u16(dib, 4);
        header.height = u16(dib, 6);
        header.bits = u16(dib, 10);
        return header;
    }
    header.width = qint32(u32(dib, 4));
    header.height = std::abs(qint64(qint32(u32(dib, 8))));
    header.bits = u16(dib, 14);
    header.compression = u32(dib, 16);
    header.colours = u32(dib, 32);
    return header;
}

qint64 paletteBytes(const DibHeader &header)
{
    constexpr quint32 kBitFields = 3;
    if (header.size == 12)
        return header.bits <= 8 ? 3LL << header.bits : 0;
    const qint64 masks = header.size == 40 && header.compression == kBitFields ? 12 : 0;
    const qint64 all = header.bits <= 8 ? 1LL << header.bits : 0;
    const qint64 colours = header.colours == 0 ? all : std::min<qint64>(header.colours, 256);
    return masks + colours * 4;
}

// Where the bitmap of a record stands in it, 0 if the record draws none. Offsets are from the record's start.
qsizetype dibOffset(quint16 function)
{
    switch (function) {
    case 0x0940: // DIBBITBLT
        return 22;
    case 0x0B41: // DIBSTRETCHBLT
        return 26;
    case 0x0D33: // SETDIBTODEV
        return 24;
    case 0x0F43: // STRETCHDIB
        return 28;
    default:
        return 0;
    }
}

QByteArray largestInWmf(QByteArrayView bytes)
{
    constexpr quint32 kPlaceable = 0x9AC6CDD7;
    qsizetype at = u32(bytes, 0) == kPlaceable ? 22 : 0;
    at += qsizetype(u16(bytes, at + 2)) * 2; // the header tells its own size, in words
    QByteArrayView largest;
    while (at + 6 <= bytes.size()) {
        const qint64 size = qint64(u32(bytes, at)) * 2;
        if (size < 6)
            break;
        const QByteArrayView record = bytes.sliced(at, std::min<qint64>(size, bytes.size() - at));
        const qsizetype offset = dibOffset(u16(record, 4));
        if (offset > 0 && record.size() - offset > largest.size())
            largest = record.sliced(offset);
        at += std::min<qint64>(size, bytes.size() - at);
    }
    return largest.toByteArray();
}

QByteArray largestInEmf(QByteArrayView bytes)
{
    QByteArray largest;
    qsizetype at = 0;
    while (at + 8 <= bytes.size()) {
        const quint32 type = u32(bytes, at), size = u32(bytes, at + 4);
        if (size < 8)
            break;
        const QByteArrayView record = part(bytes, quint32(at), size);
        // BITBLT 76 and STRETCHBLT 77 tell header and bits from byte 84 on, STRETCHDIBITS 81 from byte 48 on.
        const qsizetype fields = type == 81 ? 48 : type == 76 || type == 77 ? 84 : 0;
        if (fields > 0) {
            const QByteArrayView header = part(record, u32(record, fields), u32(record, fields + 4));
            const QByteArrayView bits = part(record, u32(record, fields + 8), u32(record, fields + 12));
            if (header.size() + bits.size() > largest.size())
                largest = header.toByteArray() + bits.toByteArray();
        }
        at += record.size();
    }
    return largest;
}

} // namespace

QImage imageOfDib(QByteArrayView dib)
{
    const DibHeader header = headerOf(dib);
    const bool fits = header.width > 0 && header.height > 0 && header.width * header.height <= kMostPixels;
    if (header.size < 12 || header.size > 256 || header.bits > 32 || !fits)
        return {};
    const qint64 bitsAt = 14 + qint64(header.size) + paletteBytes(header);
    QByteArray file(14, '\0');
    file[0] = 'B';
    file[1] = 'M';
    qToLittleEndian(quint32(std::min<qint64>(14 + dib.size(), 0x7FFFFFFF)), file.data() + 2);
    qToLittleEndian(quint32(bitsAt), file.data() + 10);
    file += dib;
    QBuffer buffer(&file);
    return QImageReader(&buffer, "bmp").read();
}

QImage imageInMetafile(QByteArrayView bytes, RtfPicture::Kind kind)
{
    return imageOfDib(kind == RtfPicture::Kind::Emf ? largestInEmf(bytes) : largestInWmf(bytes));
}

} // namespace vardelin
