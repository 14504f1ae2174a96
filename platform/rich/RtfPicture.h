#pragma once
// Pictures of RTF: their bytes as they came, the picture to show for them, and where a document keeps both.

#include "platform/base/Twips.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QImage>
#include <QSize>
#include <QString>
#include <vector>

class QTextDocument;
class QTextImageFormat;

namespace vardelin {

struct RtfPicture
{
    enum class Kind { Unknown, Png, Jpeg, Dib, Wmf, Emf };
    Kind kind = Kind::Unknown;
    QByteArray words; // the control words that tell how to read the bytes, such as \pngblip\picw10\pich10
    QByteArray
        object; // of an embedded object that the picture stands for: what its group holds beside the result
    QByteArray bytes;
    int width = 0, height = 0;         // \picw, \pich: pixels, or hundredths of a millimetre in metafiles
    int goalWidth = 0, goalHeight = 0; // displayed size in twips, 0 if not said
    int scaleX = 100, scaleY = 100;    // percent of the displayed size
};

// The displayed size in pixels of 96 an inch; never empty, never beyond what a page of any make needs.
QSizeF displaySize(const RtfPicture &picture, QSize pixels);

// Puts pictures into a document, each one decoded once, and all of them together within a bound of pixels:
// beyond it, and where the bytes can't be shown, a grey box stands. The bytes are kept beside it in any case.
class RtfPictureStore
{
public:
    explicit RtfPictureStore(QTextDocument &document) : m_document(document) {}
    QTextImageFormat add(const RtfPicture &picture);

private:
    QImage imageOf(const RtfPicture &picture);

    QTextDocument &m_document;
    qint64 m_pixelsLeft = 128'000'000;
};

// The group {\pict...} of a picture in a document; empty if the document doesn't hold it. Pictures that came
// through the store are written with the bytes that came, resources that are PNG or JPEG bytes as they are,
// all others as PNG.
QByteArray pictureGroup(const QTextDocument &document, const QTextImageFormat &format);

// What the pictures of one document consist of is put into the other; the text is the caller's business.
void copyPictures(const QTextDocument &from, QTextDocument &to);

// Lets go of the pictures that the document holds, ahead of its being filled anew. Only where nothing can be
// undone any more.
void releasePictures(QTextDocument &document);

// The image that a device independent bitmap (header, palette, bits, without a file header) holds; null if
// damaged or too large.
QImage imageOfDib(QByteArrayView dib);

// The largest bitmap drawn by a Windows metafile (kind Wmf, with or without a placeable header) or enhanced
// metafile (Emf).
QImage imageInMetafile(QByteArrayView bytes, RtfPicture::Kind kind);

} // namespace vardelin
