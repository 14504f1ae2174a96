#include "platform/ui/PictureObject.h"

#include <QAbstractTextDocumentLayout>
#include <QImage>
#include <QPainter>
#include <QTextDocument>
#include <QTextImageFormat>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr int kDrawnBytes = 32 * 1024 * 1024;
constexpr qreal kFinestScreen = 4; // times 96 dots an inch
constexpr QSizeF kMissing(16, 16); // of a picture that the document doesn't hold

QImage imageOf(const QTextDocument &document, const QString &name)
{
    const QVariant resource = document.resource(QTextDocument::ImageResource, QUrl(name));
    if (resource.metaType() == QMetaType::fromType<QByteArray>())
        return QImage::fromData(resource.toByteArray());
    return resource.value<QImage>(); // converts a pixmap, too
}

// The size that the format tells; what it leaves out follows from the picture's own.
QSizeF storedSize(const QTextDocument &document, const QTextImageFormat &format)
{
    QSizeF size(format.width(), format.height());
    if (size.width() > 0 && size.height() > 0)
        return size;
    const QImage image = imageOf(document, format.name());
    const QSizeF own = image.isNull() ? kMissing : image.deviceIndependentSize();
    if (size.width() > 0)
        return {size.width(), size.width() * own.height() / own.width()};
    if (size.height() > 0)
        return {size.height() * own.width() / own.height(), size.height()};
    return own;
}

} // namespace

void PictureObject::install(QTextDocument &document)
{
    QAbstractTextDocumentLayout *layout = document.documentLayout();
    auto *pictures = new PictureObject(layout);
    pictures->m_drawn.setMaxCost(kDrawnBytes);
    layout->registerHandler(QTextFormat::ImageObject, pictures);
}

QSizeF PictureObject::intrinsicSize(QTextDocument *document, int, const QTextFormat &format)
{
    QSizeF size = storedSize(*document, format.toImageFormat());
    const QSizeF page = document->pageSize();
    const qreal width = page.width() - 2 * document->documentMargin();
    const qreal height = page.height() - 2 * document->documentMargin(); // of paper; a screen's has no end
    if (width >= 1 && size.width() > width)
        size.scale(width, size.height(), Qt::KeepAspectRatio);
    if (height >= 1 && size.height() > height)
        size.scale(size.width(), height, Qt::KeepAspectRatio);
    return size;
}

void PictureObject::drawObject(QPainter *painter, const QRectF &rect, QTextDocument *document, int,
                               const QTextFormat &format)
{
    const QString name = format.toImageFormat().name();
    const qreal ratio = painter->device()->devicePixelRatioF();
    if (painter->deviceTransform().m11() > kFinestScreen) { // paper, which takes the picture as it is
        painter->drawImage(rect, imageOf(*document, name));
        return;
    }
    const QSize pixels = (rect.size() * ratio).toSize().expandedTo({1, 1});
    const auto key = u"%1 %2x%3"_s.arg(name).arg(pixels.width()).arg(pixels.height());
    QPixmap drawn;
    if (const QPixmap *kept = m_drawn.object(key)) {
        drawn = *kept;
    } else {
        const QImage image = imageOf(*document, name);
        if (image.isNull())
            return;
        drawn = QPixmap::fromImage(image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        m_drawn.insert(key, new QPixmap(drawn), 4 * pixels.width() * pixels.height());
    }
    painter->drawPixmap(rect, drawn, QRectF(drawn.rect()));
}

} // namespace vardelin
