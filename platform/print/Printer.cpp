#include "platform/print/Printer.h"

#include "platform/base/RunTimeError.h"
#include "platform/base/Twips.h"
#include "platform/print/PrintDevice.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr int kInvalidPropertyValue = 380;
constexpr double kLargestFontSize = 2160;
constexpr double kTwipsPerPoint = 20;
constexpr double kLineWidth = 10; // twips

QStringList linesOf(QString text)
{
    text.replace("\r\n"_L1, "\n"_L1).replace(u'\r', u'\n').replace(u'\t', u"        "_s);
    return text.split(u'\n');
}

} // namespace

Printer::Printer(PrintDevice &device) : m_device(device)
{
    m_font.setHintingPreference(QFont::PreferNoHinting);
    SetFontSize(m_points);
}

Printer::~Printer()
{
    KillDoc();
}

QSizeF Printer::paper()
{
    return m_device.paper();
}

void Printer::SetScaleMode(PrintScale scale)
{
    m_unit = scale == PrintScale::Inches ? kTwipsPerInch : 1;
}

double Printer::ScaleWidth()
{
    return paper().width() / m_unit;
}

double Printer::ScaleHeight()
{
    return paper().height() / m_unit;
}

double Printer::Width()
{
    return paper().width();
}

double Printer::Height()
{
    return paper().height();
}

void Printer::SetFontName(const QString &name)
{
    m_font.setFamily(name);
}

// The painter's unit being the twip, a font's size in pixels is its size in twips: the same on every device.
void Printer::SetFontSize(double points)
{
    if (!(points <= kLargestFontSize))
        throw RunTimeError(kInvalidPropertyValue);
    m_points = std::max(points, kSmallestFontSize);
    m_font.setPixelSize(int(std::lround(m_points * kTwipsPerPoint)));
}

double Printer::TextWidth(const QString &text) const
{
    const QFontMetricsF metrics(m_font);
    double widest = 0;
    for (const QString &line : linesOf(text))
        widest = std::max(widest, metrics.horizontalAdvance(line));
    return widest / m_unit;
}

double Printer::TextHeight(const QString &text) const
{
    return QFontMetricsF(m_font).height() * double(linesOf(text).size()) / m_unit;
}

void Printer::Print(const QString &text)
{
    QPainter &painter = hDC();
    const QFontMetricsF metrics(m_font);
    painter.setFont(m_font);
    for (const QString &line : linesOf(text)) {
        painter.drawText(QPointF(m_x, m_y + metrics.ascent()), line);
        m_y += metrics.height();
    }
    m_x = 0;
}

void Printer::Line(double x1, double y1, double x2, double y2)
{
    QPainter &painter = hDC();
    painter.setPen(QPen(Qt::black, kLineWidth));
    painter.drawLine(QPointF(x1, y1) * m_unit, QPointF(x2, y2) * m_unit);
    SetCurrentX(x2);
    SetCurrentY(y2);
}

void Printer::NewPage()
{
    hDC();
    m_pageIsDue = true;
    ++m_page;
    m_x = m_y = 0;
}

void Printer::EndDoc()
{
    const bool begun = m_painter;
    startAfresh();
    if (begun)
        m_device.end();
}

void Printer::KillDoc() noexcept
{
    const bool begun = m_painter;
    startAfresh();
    if (begun)
        m_device.abort();
}

void Printer::startAfresh() noexcept
{
    m_painter = nullptr;
    m_pageIsDue = false;
    m_page = 1;
    m_x = m_y = 0;
}

QPainter &Printer::hDC()
{
    if (!m_painter)
        m_painter = &m_device.begin();
    if (m_pageIsDue) {
        m_device.newPage();
        m_pageIsDue = false;
    }
    return *m_painter;
}

} // namespace vardelin
