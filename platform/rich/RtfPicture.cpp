#include "platform/rich/RtfPicture.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QImageReader>
#include <QPixmap>
#include <QTextDocument>
#include <QTextImageFormat>
#include <QUrl>
#include <algorithm>
#include <cctype>
#include <cmath>
#include <set>

namespace vardelin {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kMostPixels = 40'000'000;
constexpr qint64 kCostOfFailure = 2'000'000;
constexpr double kLongestSide = 32767; // pixels
constexpr int kHexLine = 64;           // bytes a line
constexpr auto kImageScheme = "picture:"_L1;
constexpr auto kSourceScheme = "picture-source:"_L1; // of the bytes as they came

QImage placeholder()
{
    QImage image(16, 16, QImage::Format_RGB32);
    image.fill(qRgb(0xC0, 0xC0, 0xC0));
    return image;
}

QImage decoded(const QByteArray &bytes, const char *format)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer, format);
    const QSize size = reader.size();
    if (size.isEmpty() || qint64(size.width()) * size.height() > kMostPixels)
        return {};
    return reader.read();
}

bool isPng(QByteArrayView bytes)
{
    return bytes.startsWith(QByteArrayView("\x89PNG\r\n\x1a\n"));
}

// The picture library tells the console about a file that ends too soon, so such a one isn't given to it.
bool isWholePng(QByteArrayView bytes)
{
    return isPng(bytes) && bytes.lastIndexOf(QByteArrayView("IEND")) >= 0;
}

bool isJpeg(QByteArrayView bytes)
{
    return bytes.startsWith(QByteArrayView("\xFF\xD8\xFF"));
}

double sideOf(int goal, int scale, int given, int pixels, bool metafile)
{
    double twips = goal;
    if (goal <= 0)
        twips = metafile ? given * 1440.0 / 2540.0 : double(pixels > 0 ? pixels : given) * kTwipsPerPixel;
    if (scale > 0)
        twips = std::round(twips * scale / 100.0);
    return std::clamp(std::round(twips) / kTwipsPerPixel, 1.0, kLongestSide);
}

QUrl sourceUrlOf(QString name)
{
    return QUrl(name.replace(kImageScheme, kSourceScheme));
}

// The source of a picture in a document: control words, a NUL, an object's text, a NUL, bytes.
QByteArray sourceText(const RtfPicture &picture)
{
    return picture.words + '\0' + picture.object + '\0' + picture.bytes;
}

RtfPicture sourceOf(const QTextDocument &document, const QString &name)
{
    if (!name.startsWith(kImageScheme))
        return {};
    const QByteArray source = document.resource(QTextDocument::UserResource, sourceUrlOf(name)).toByteArray();
    const qsizetype wordsEnd = source.indexOf('\0');
    const qsizetype objectEnd = wordsEnd < 0 ? -1 : source.indexOf('\0', wordsEnd + 1);
    if (objectEnd < 0)
        return {};
    RtfPicture picture;
    picture.words = source.first(wordsEnd);
    picture.object = source.sliced(wordsEnd + 1, objectEnd - wordsEnd - 1);
    picture.bytes = source.sliced(objectEnd + 1);
    return picture;
}

RtfPicture encodedPicture(const QByteArray &bytes, const char *word, QSize pixels)
{
    RtfPicture picture;
    picture.words = word;
    picture.words +=
        "\\picw" + QByteArray::number(pixels.width()) + "\\pich" + QByteArray::number(pixels.height());
    picture.bytes = bytes;
    return picture;
}

QSize pixelsOf(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    return QImageReader(&buffer).size().expandedTo(QSize(0, 0));
}

RtfPicture pictureOfResource(const QVariant &resource)
{
    QImage image;
    if (resource.typeId() == QMetaType::QByteArray) {
        const QByteArray bytes = resource.toByteArray();
        if (isPng(bytes) || isJpeg(bytes))
            return encodedPicture(bytes, isPng(bytes) ? "\\pngblip" : "\\jpegblip", pixelsOf(bytes));
        image = QImage::fromData(bytes);
    } else if (resource.typeId() == QMetaType::QPixmap) {
        image = resource.value<QPixmap>().toImage();
    } else {
        image = resource.value<QImage>();
    }
    if (image.isNull())
        return {};
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return encodedPicture(png, "\\pngblip", image.size());
}

QSizeF naturalSize(const QVariant &resource)
{
    if (resource.typeId() == QMetaType::QByteArray)
        return pixelsOf(resource.toByteArray());
    if (resource.typeId() == QMetaType::QPixmap)
        return resource.value<QPixmap>().deviceIndependentSize();
    return resource.value<QImage>().deviceIndependentSize();
}

// The size Qt shows the picture in: a side that isn't set follows the other one.
QSizeF shownSize(const QTextImageFormat &format, const QSizeF &natural)
{
    const double width = format.width(), height = format.height();
    if (width > 0 && height > 0)
        return {width, height};
    if (natural.isEmpty())
        return {std::max(width, 1.0), std::max(height, 1.0)};
    if (width > 0)
        return {width, width * natural.height() / natural.width()};
    if (height > 0)
        return {height * natural.width() / natural.height(), height};
    return natural;
}

// Of everything that the document's text and its undo history refer to.
std::set<QString> pictureNames(const QTextDocument &document)
{
    std::set<QString> names;
    for (const QTextFormat &format : document.allFormats()) {
        if (format.isImageFormat())
            names.insert(format.toImageFormat().name());
    }
    return names;
}

} // namespace

QSizeF displaySize(const RtfPicture &picture, QSize pixels)
{
    const bool metafile = picture.kind == RtfPicture::Kind::Wmf || picture.kind == RtfPicture::Kind::Emf;
    return {sideOf(picture.goalWidth, picture.scaleX, picture.width, pixels.width(), metafile),
            sideOf(picture.goalHeight, picture.scaleY, picture.height, pixels.height(), metafile)};
}

QImage RtfPictureStore::imageOf(const RtfPicture &picture)
{
    if (m_pixelsLeft <= 0 || picture.kind == RtfPicture::Kind::Unknown)
        return {};
    QImage image;
    switch (picture.kind) {
    case RtfPicture::Kind::Png:
        if (isWholePng(picture.bytes))
            image = decoded(picture.bytes, "png");
        break;
    case RtfPicture::Kind::Jpeg:
        image = decoded(picture.bytes, "jpeg");
        break;
    case RtfPicture::Kind::Dib:
        image = imageOfDib(picture.bytes);
        break;
    case RtfPicture::Kind::Wmf:
    case RtfPicture::Kind::Emf:
        image = imageInMetafile(picture.bytes, picture.kind);
        break;
    case RtfPicture::Kind::Unknown:
        break;
    }
    // A failure counts as well: damaged data may cost as much time as a whole picture.
    m_pixelsLeft -= image.isNull() ? kCostOfFailure : qint64(image.width()) * image.height();
    return image;
}

QTextImageFormat RtfPictureStore::add(const RtfPicture &picture)
{
    // Named after the content, so that the same picture is kept and decoded once, and has the same name in
    // every document.
    const QByteArray source = sourceText(picture);
    const QString key =
        QString::fromLatin1(QCryptographicHash::hash(source, QCryptographicHash::Sha1).toHex());
    QTextImageFormat format;
    format.setName(kImageScheme + key);
    const QUrl sourceUrl = sourceUrlOf(format.name());
    QSize pixels;
    if (m_document.resource(QTextDocument::UserResource, sourceUrl).isValid()) {
        pixels =
            m_document.resource(QTextDocument::ImageResource, QUrl(format.name())).value<QImage>().size();
    } else {
        QImage image = imageOf(picture);
        pixels = image.size();
        if (image.isNull())
            image = placeholder();
        m_document.addResource(QTextDocument::UserResource, sourceUrl, source);
        m_document.addResource(QTextDocument::ImageResource, QUrl(format.name()), image);
    }
    const QSizeF size = displaySize(picture, pixels);
    format.setWidth(size.width());
    format.setHeight(size.height());
    return format;
}

namespace {

QByteArray objectGroup(const QByteArray &object, const QByteArray &result)
{
    QByteArray group = "{\\object";
    if (std::isalnum(uchar(object.front())) || object.front() == '-' || object.front() == ' ')
        group += ' '; // the word's end
    group += object;
    if (!result.isEmpty())
        group += "{\\result" + result + '}';
    return group + '}';
}

} // namespace

QByteArray pictureGroup(const QTextDocument &document, const QTextImageFormat &format)
{
    const QVariant resource = document.resource(QTextDocument::ImageResource, QUrl(format.name()));
    RtfPicture picture = sourceOf(document, format.name());
    if (!picture.object.isEmpty() && picture.bytes.isEmpty())
        return objectGroup(picture.object, {});
    if (picture.words.isEmpty() && picture.bytes.isEmpty())
        picture = pictureOfResource(resource);
    if (picture.words.isEmpty() && picture.bytes.isEmpty())
        return {};
    const QSizeF size = shownSize(format, naturalSize(resource));
    const auto twips = [](double pixels) {
        return QByteArray::number(qRound(std::min(pixels, kLongestSide) * kTwipsPerPixel));
    };
    QByteArray group =
        "{\\pict" + picture.words + "\\picwgoal" + twips(size.width()) + "\\pichgoal" + twips(size.height());
    group.reserve(group.size() + picture.bytes.size() * 2 + picture.bytes.size() / kHexLine * 2 + 16);
    for (qsizetype at = 0; at < picture.bytes.size(); at += kHexLine) {
        group += "\r\n";
        group += picture.bytes.mid(at, kHexLine).toHex();
    }
    group += '}';
    return picture.object.isEmpty() ? group : objectGroup(picture.object, group);
}

void copyPictures(const QTextDocument &from, QTextDocument &to)
{
    for (const QString &name : pictureNames(from)) {
        to.addResource(QTextDocument::ImageResource, QUrl(name),
                       from.resource(QTextDocument::ImageResource, QUrl(name)));
        to.addResource(QTextDocument::UserResource, sourceUrlOf(name),
                       from.resource(QTextDocument::UserResource, sourceUrlOf(name)));
    }
}

void releasePictures(QTextDocument &document)
{
    for (const QString &name : pictureNames(document)) {
        document.addResource(QTextDocument::ImageResource, QUrl(name), {});
        document.addResource(QTextDocument::UserResource, sourceUrlOf(name), {});
    }
}

} // namespace vardelin
