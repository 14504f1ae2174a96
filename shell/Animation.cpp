#include "shell/Animation.h"

#include <QPainter>
#include <QPainterPath>

namespace vardelin {

namespace {

const QColor kFace(0xfb, 0xf7, 0xec);
const QColor kRim(0x1f, 0x4b, 0x5a);
const QColor kGold(0xd9, 0x9a, 0x2b);

// All lengths in a square of 100.
void drawFace(QPainter &painter)
{
    painter.setPen(QPen(kRim, 7));
    painter.setBrush(kFace);
    painter.drawEllipse(QPointF(50, 50), 42, 42);
    painter.setPen(QPen(kRim, 3, Qt::SolidLine, Qt::RoundCap));
    for (int hour = 0; hour < 12; ++hour) {
        painter.save();
        painter.translate(50, 50);
        painter.rotate(30.0 * hour);
        painter.drawLine(QPointF(0, -36), QPointF(0, hour % 3 == 0 ? -29 : -33));
        painter.restore();
    }
}

// The tenth of an hour that has just passed, as a golden slice, and the hand at its end.
void drawHand(QPainter &painter, int frame)
{
    const double angle = 360.0 / kAnimationFrames * frame;
    QPainterPath slice(QPointF(50, 50));
    slice.arcTo(QRectF(22, 22, 56, 56), 90 - angle, 360.0 / kAnimationFrames);
    slice.closeSubpath();
    painter.fillPath(slice, QColor(kGold.red(), kGold.green(), kGold.blue(), 110));
    painter.translate(50, 50);
    painter.rotate(angle);
    painter.setPen(QPen(kGold, 5, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(0, 0), QPointF(0, -27));
    painter.setPen(Qt::NoPen);
    painter.setBrush(kRim);
    painter.drawEllipse(QPointF(0, 0), 5, 5);
}

} // namespace

QPixmap animationFrame(int frame, int size, qreal pixelRatio)
{
    QPixmap picture(QSize(size, size) * pixelRatio);
    picture.setDevicePixelRatio(pixelRatio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 100.0, size / 100.0);
    drawFace(painter);
    drawHand(painter, frame);
    return picture;
}

} // namespace vardelin
