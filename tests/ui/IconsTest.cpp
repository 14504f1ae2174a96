#include "platform/ui/Icons.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace vardelin;

namespace {

// Mean brightness of what is drawn, 0 to 255; -1 where nothing is.
int brightness(const QImage &image)
{
    int drawn = 0, sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (pixel.alpha() > 200) {
                ++drawn;
                sum += qGray(pixel.rgb());
            }
        }
    }
    return drawn ? sum / drawn : -1;
}

TEST(Icons, thereIsAPictureForEachKeyAndTheyDiffer)
{
    QList<QImage> seen;
    for (const auto &key : {u"Back"_s, u"Forward"_s, u"Cut"_s, u"Copy"_s, u"Paste"_s, u"New"_s, u"Find"_s,
                            u"Help"_s, u"Print"_s, u"Save"_s, u"Properties"_s, u"View Details"_s,
                            u"Small Caps"_s, u"First"_s, u"Previous"_s, u"Next"_s, u"Last"_s}) {
        const QImage image = keyIcon(key).pixmap(24).toImage();
        EXPECT_EQ(image.size(), QSize(24, 24)) << key.toStdString();
        EXPECT_GE(brightness(image), 0) << key.toStdString();
        EXPECT_FALSE(seen.contains(image)) << key.toStdString();
        seen += image;
    }
    EXPECT_GE(brightness(programIcon().pixmap(64).toImage()), 0);
}

TEST(Icons, followThePaletteAndTheScale)
{
    const QIcon icon = keyIcon(u"Save"_s);
    const QPalette before = QApplication::palette();
    QPalette light, dark;
    light.setColor(QPalette::ButtonText, Qt::black);
    light.setColor(QPalette::Disabled, QPalette::ButtonText, Qt::gray);
    dark.setColor(QPalette::ButtonText, Qt::white);
    QApplication::setPalette(light);
    EXPECT_LT(brightness(icon.pixmap(24).toImage()), 40);
    EXPECT_GT(brightness(icon.pixmap(24, QIcon::Disabled).toImage()), 100);
    QApplication::setPalette(dark);
    EXPECT_GT(brightness(icon.pixmap(24).toImage()), 215) << "the same icon, after the change";

    const QPixmap sharp = icon.pixmap({24, 24}, 2.0);
    EXPECT_EQ(sharp.size(), QSize(48, 48));
    QImage canvas(48, 48, QImage::Format_ARGB32_Premultiplied);
    canvas.setDevicePixelRatio(2);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    icon.paint(&painter, 0, 0, 24, 24);
    painter.end();
    EXPECT_EQ(canvas.convertToFormat(QImage::Format_ARGB32).pixelColor(7, 20).alpha(),
              sharp.toImage().convertToFormat(QImage::Format_ARGB32).pixelColor(7, 20).alpha());
    QApplication::setPalette(before);
}

} // namespace
