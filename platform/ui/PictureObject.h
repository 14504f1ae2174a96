#pragma once
// Pictures in a text document, drawn no larger than the page they stand on.

#include <QCache>
#include <QPixmap>
#include <QTextObjectInterface>

namespace vardelin {

// Takes the place of the document layout's own drawing of pictures. What is stored (the picture's resource,
// and width and height in its format) is never changed: a picture that is too wide is only shown smaller.
class PictureObject final : public QObject, public QTextObjectInterface
{
    Q_OBJECT
    Q_INTERFACES(QTextObjectInterface)
public:
    // Belongs to the document's layout from then on.
    static void install(QTextDocument &document);

    QSizeF intrinsicSize(QTextDocument *document, int position, const QTextFormat &format) override;
    void drawObject(QPainter *painter, const QRectF &rect, QTextDocument *document, int position,
                    const QTextFormat &format) override;

private:
    using QObject::QObject;
    QCache<QString, QPixmap> m_drawn; // at the size it is shown; costs are bytes
};

} // namespace vardelin
