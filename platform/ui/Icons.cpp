#include "platform/ui/Icons.h"

#include <QApplication>
#include <QBuffer>
#include <QFile>
#include <QIconEngine>
#include <QImageReader>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>

using namespace Qt::StringLiterals;

// A linker takes the pictures out of a static library only where they are asked for by name.
static void initResources()
{
    Q_INIT_RESOURCE(resources);
}

namespace vardelin {

namespace {

// Draws an SVG whose strokes are "currentColor" in the palette's own colour, so that one picture serves
// light, dark and disabled.
class KeyIconEngine final : public QIconEngine
{
public:
    explicit KeyIconEngine(const QString &path) : m_path(path) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal ratio = painter->device()->devicePixelRatio();
        painter->drawPixmap(rect, pixmap(rect.size() * ratio, mode, state));
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State) override
    {
        const QColor color = colorOf(mode);
        const auto key =
            u"%1 %2 %3x%4"_s.arg(m_path, color.name(QColor::HexArgb)).arg(size.width()).arg(size.height());
        QPixmap picture;
        if (!QPixmapCache::find(key, &picture)) {
            picture = drawn(size, color);
            QPixmapCache::insert(key, picture);
        }
        return picture;
    }

    QIconEngine *clone() const override { return new KeyIconEngine(*this); }
    QString key() const override { return u"vardelin"_s; }

private:
    static QColor colorOf(QIcon::Mode mode)
    {
        const QPalette palette = QApplication::palette();
        if (mode == QIcon::Disabled)
            return palette.color(QPalette::Disabled, QPalette::ButtonText);
        return palette.color(QPalette::Active,
                             mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText);
    }

    QPixmap drawn(const QSize &size, const QColor &color) const
    {
        QFile file(m_path);
        if (!file.open(QIODevice::ReadOnly))
            return {};
        QByteArray svg = file.readAll().replace("currentColor", color.name().toLatin1());
        QBuffer buffer(&svg);
        QImageReader reader(&buffer, "svg");
        reader.setScaledSize(size);
        return QPixmap::fromImage(reader.read());
    }

    QString m_path;
};

} // namespace

QIcon keyIcon(const QString &key)
{
    initResources();
    return QIcon(new KeyIconEngine(":/icons/"_L1 + key.toLower().replace(u' ', u'-') + ".svg"_L1));
}

QIcon programIcon()
{
    initResources();
    return QIcon(u":/icons/vardelin.svg"_s);
}

} // namespace vardelin
