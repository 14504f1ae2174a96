#pragma once
// A printer that notes down what stands where on which page.

#include "platform/base/RunTimeError.h"
#include "platform/base/Twips.h"
#include "platform/print/PrintDevice.h"

#include <QFont>
#include <QPaintEngine>
#include <QPainter>
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <vector>

namespace vardelin::testing_support {

struct PrintedPiece
{
    enum class Kind { Text, Picture, Line };
    Kind kind = Kind::Text;
    int page = 1;
    double x = 0, y = 0, width = 0, height = 0; // inches from the paper's corner
    QString text, font = {};
    double points = 0;
};

class RecordingPrintDevice final : public PrintDevice
{
public:
    QSizeF paper() override
    {
        fail(484, !present);
        return {inches.width() * kTwipsPerInch, inches.height() * kTwipsPerInch};
    }
    QPainter &begin() override
    {
        fail(484, !present);
        pieces.clear();
        m_page = 1;
        m_painter.begin(&m_paper);
        return m_painter;
    }
    void newPage() override { ++m_page; }
    void end() override
    {
        m_painter.end();
        ++printed;
        pages = m_page;
    }
    void abort() noexcept override
    {
        m_painter.end();
        ++dropped;
    }

    // The texts of a page (0: of all) from top to bottom as they were printed.
    QStringList texts(int page = 0) const
    {
        QStringList all;
        for (const PrintedPiece &piece : pieces)
            if (piece.kind == PrintedPiece::Kind::Text && (page == 0 || piece.page == page))
                all += piece.text;
        return all;
    }
    // A line for each piece: page, left, top in hundredths of an inch, and what it is.
    QStringList lines() const
    {
        QStringList all;
        for (const PrintedPiece &piece : pieces)
            all += QStringLiteral("%1 %2 %3 %4")
                       .arg(piece.page)
                       .arg(piece.x, 5, 'f', 2)
                       .arg(piece.y, 5, 'f', 2)
                       .arg(whatIs(piece));
        return all;
    }

    bool present = true; // or there is no printer at all
    QSizeF inches{8.5, 11};
    std::vector<PrintedPiece> pieces; // of the last document
    int pages = 0;                    // of the last one that was ended
    int printed = 0, dropped = 0;     // documents

private:
    // Takes what is painted, whose unit is the twip.
    class Engine final : public QPaintEngine
    {
    public:
        explicit Engine(RecordingPrintDevice &device) : QPaintEngine(AllFeatures), m_device(device) {}
        bool begin(QPaintDevice *) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState &changed) override
        {
            if (changed.state() & DirtyTransform)
                m_transform = changed.transform();
        }
        void drawTextItem(const QPointF &at, const QTextItem &item) override
        {
            const QFont font = item.font();
            const double size = font.pixelSize() > 0 ? font.pixelSize() : font.pointSizeF() * 96 / 72;
            note(PrintedPiece::Kind::Text,
                 {at.x(), at.y() - item.ascent(), item.width(), item.ascent() + item.descent()}, item.text());
            m_device.pieces.back().font = font.family();
            m_device.pieces.back().points = std::round(size * m_transform.m22() / 20 * 2) / 2;
        }
        void drawPixmap(const QRectF &rect, const QPixmap &, const QRectF &) override
        {
            note(PrintedPiece::Kind::Picture, rect, {});
        }
        void drawImage(const QRectF &rect, const QImage &, const QRectF &, Qt::ImageConversionFlags) override
        {
            note(PrintedPiece::Kind::Picture, rect, {});
        }
        void drawLines(const QLineF *lines, int count) override
        {
            for (int i = 0; i < count; ++i)
                note(PrintedPiece::Kind::Line,
                     QRectF(lines[i].p1(), QSizeF(lines[i].dx(), lines[i].dy())).normalized(), {});
        }
        void drawRects(const QRectF *, int) override {}
        void drawPath(const QPainterPath &) override {}
        void drawPolygon(const QPointF *, int, PolygonDrawMode) override {}
        Type type() const override { return User; }

    private:
        void note(PrintedPiece::Kind kind, const QRectF &place, const QString &text)
        {
            const QRectF twips = m_transform.mapRect(place);
            m_device.pieces.push_back({.kind = kind,
                                       .page = m_device.m_page,
                                       .x = twips.x() / kTwipsPerInch,
                                       .y = twips.y() / kTwipsPerInch,
                                       .width = twips.width() / kTwipsPerInch,
                                       .height = twips.height() / kTwipsPerInch,
                                       .text = text});
        }

        RecordingPrintDevice &m_device;
        QTransform m_transform;
    };
    class Paper final : public QPaintDevice
    {
    public:
        explicit Paper(RecordingPrintDevice &device) : m_device(device), m_engine(device) {}
        QPaintEngine *paintEngine() const override { return &m_engine; }
        int metric(PaintDeviceMetric metric) const override
        {
            switch (metric) {
            case PdmWidth:
                return int(m_device.inches.width() * kTwipsPerInch);
            case PdmHeight:
                return int(m_device.inches.height() * kTwipsPerInch);
            case PdmDpiX:
            case PdmDpiY:
            case PdmPhysicalDpiX:
            case PdmPhysicalDpiY:
                return kTwipsPerInch;
            case PdmWidthMM:
                return int(m_device.inches.width() * 25.4);
            case PdmHeightMM:
                return int(m_device.inches.height() * 25.4);
            case PdmDevicePixelRatio:
                return 1;
            case PdmDevicePixelRatioScaled:
                return int(devicePixelRatioFScale());
            default:
                return QPaintDevice::metric(metric);
            }
        }

    private:
        RecordingPrintDevice &m_device;
        mutable Engine m_engine;
    };

    static void fail(int number, bool really)
    {
        if (really)
            throw RunTimeError(number);
    }
    static QString whatIs(const PrintedPiece &piece)
    {
        switch (piece.kind) {
        case PrintedPiece::Kind::Text:
            return QStringLiteral("%1 %2: %3").arg(piece.font).arg(piece.points).arg(piece.text);
        case PrintedPiece::Kind::Picture:
            return QStringLiteral("picture, %1 x %2")
                .arg(piece.width, 0, 'f', 2)
                .arg(piece.height, 0, 'f', 2);
        default:
            return QStringLiteral("line, %1 x %2").arg(piece.width, 0, 'f', 2).arg(piece.height, 0, 'f', 2);
        }
    }

    Paper m_paper{*this};
    QPainter m_painter;
    int m_page = 1;
};

} // namespace vardelin::testing_support
