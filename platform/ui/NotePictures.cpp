#include "platform/ui/NotePictures.h"

#include "platform/rich/RtfPicture.h"

#include <QBuffer>
#include <QImageReader>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QUrl>

namespace vardelin {

namespace {

RtfPicture encoded(RtfPicture::Kind kind, const QByteArray &bytes, QSize pixels)
{
    RtfPicture picture;
    picture.kind = kind;
    picture.words =
        (kind == RtfPicture::Kind::Jpeg ? "\\jpegblip" : "\\pngblip") +
        ("\\picw" + QByteArray::number(pixels.width()) + "\\pich" + QByteArray::number(pixels.height()));
    picture.bytes = bytes;
    picture.width = pixels.width();
    picture.height = pixels.height();
    return picture;
}

struct Place
{
    int position;
    QTextImageFormat format;
};

std::vector<Place> picturesIn(const QTextDocument &document)
{
    std::vector<Place> places;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            if (!it.fragment().charFormat().isImageFormat())
                continue;
            const auto format = it.fragment().charFormat().toImageFormat();
            for (int i = 0; i < it.fragment().length(); ++i) // equal neighbours share a fragment
                places.push_back({it.fragment().position() + i, format});
        }
    }
    return places;
}

std::optional<QTextImageFormat> addResource(QTextDocument &document, const QVariant &resource)
{
    if (resource.metaType() == QMetaType::fromType<QByteArray>())
        return addPicture(document, resource.toByteArray());
    return addPicture(document, resource.value<QImage>());
}

} // namespace

std::optional<QTextImageFormat> addPicture(QTextDocument &document, const QByteArray &file)
{
    QBuffer buffer;
    buffer.setData(file);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    const QByteArray kind = reader.format();
    const QSize pixels = reader.size();
    const bool turned = reader.transformation() != QImageIOHandler::TransformationNone;
    if (kind == "png" && pixels.isValid())
        return RtfPictureStore(document).add(encoded(RtfPicture::Kind::Png, file, pixels));
    if (kind == "jpeg" && pixels.isValid() && !turned)
        return RtfPictureStore(document).add(encoded(RtfPicture::Kind::Jpeg, file, pixels));
    return addPicture(document, reader.read());
}

std::optional<QTextImageFormat> addPicture(QTextDocument &document, const QImage &image)
{
    if (image.isNull())
        return std::nullopt;
    QBuffer buffer;
    image.save(&buffer, "PNG");
    return RtfPictureStore(document).add(encoded(RtfPicture::Kind::Png, buffer.data(), image.size()));
}

void adoptPictures(QTextDocument &pasted, QTextDocument &target)
{
    auto places = picturesIn(pasted);
    std::reverse(places.begin(), places.end()); // what is replaced moves only what was done already
    for (const Place &place : places) {
        const QVariant resource = pasted.resource(QTextDocument::ImageResource, QUrl(place.format.name()));
        QTextCursor cursor(&pasted);
        cursor.setPosition(place.position);
        cursor.setPosition(place.position + 1, QTextCursor::KeepAnchor);
        if (auto format = addResource(target, resource)) {
            if (place.format.width() > 0)
                format->setWidth(place.format.width());
            if (place.format.height() > 0)
                format->setHeight(place.format.height());
            cursor.insertImage(*format);
        } else {
            cursor.insertText(place.format.property(QTextFormat::ImageAltText).toString(), {});
        }
    }
}

} // namespace vardelin
