#include "platform/print/PrintDevice.h"

#include "platform/base/RunTimeError.h"
#include "platform/base/Twips.h"

#include <QCoreApplication>
#include <QFile>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QPrinterInfo>

namespace vardelin {

namespace {

constexpr int kPrinterError = 482;
constexpr int kNoPrinter = 484;
constexpr int kTwipsPerPoint = 20;

// What is common to Qt's paged devices. They are made when first asked for and let go at a document's end, so
// that the next one finds the printer as it is then.
class PagedPrintDevice : public PrintDevice
{
public:
    QSizeF paper() override { return paged().pageLayout().fullRectPoints().size() * kTwipsPerPoint; }

    QPainter &begin() override
    {
        if (!m_painter.begin(&paged())) {
            m_paged.reset();
            throw RunTimeError(kPrinterError);
        }
        const double perTwip = double(paged().logicalDpiX()) / kTwipsPerInch;
        m_painter.scale(perTwip, perTwip);
        return m_painter;
    }
    void newPage() override
    {
        if (!paged().newPage())
            throw RunTimeError(kPrinterError);
    }
    void end() override
    {
        const bool printed = m_painter.end();
        m_paged.reset();
        if (!printed)
            throw RunTimeError(kPrinterError);
    }
    void abort() noexcept override
    {
        if (m_paged)
            drop(*m_paged);
        m_painter.end();
        m_paged.reset();
    }

protected:
    virtual std::unique_ptr<QPagedPaintDevice> make() = 0;
    virtual void drop(QPagedPaintDevice &paged) noexcept = 0; // ahead of the painter's end

private:
    QPagedPaintDevice &paged()
    {
        if (!m_paged)
            m_paged = make();
        return *m_paged;
    }

    std::unique_ptr<QPagedPaintDevice> m_paged;
    QPainter m_painter; // ends ahead of its device
};

class DesktopPrintDevice final : public PagedPrintDevice
{
    // Without the check Qt would take a PDF file for the printer.
    std::unique_ptr<QPagedPaintDevice> make() override
    {
        QPrinterInfo info = QPrinterInfo::defaultPrinter();
        if (info.isNull()) {
            const QStringList names = QPrinterInfo::availablePrinterNames();
            if (names.isEmpty())
                throw RunTimeError(kNoPrinter);
            info = QPrinterInfo::printerInfo(names.first());
        }
        auto printer = std::make_unique<QPrinter>(info, QPrinter::HighResolution);
        printer->setDocName(QCoreApplication::applicationName());
        printer->setFullPage(true);
        return printer;
    }
    // Where the printer is one of CUPS, Qt hands over the pages there are all the same.
    void drop(QPagedPaintDevice &paged) noexcept override { static_cast<QPrinter &>(paged).abort(); }
};

class PdfPrintDevice final : public PagedPrintDevice
{
public:
    PdfPrintDevice(const QString &path, QPageSize::PageSizeId size) : m_path(path), m_size(size) {}

private:
    std::unique_ptr<QPagedPaintDevice> make() override
    {
        auto writer = std::make_unique<QPdfWriter>(m_path);
        writer->setResolution(kTwipsPerInch);
        writer->setPageLayout(QPageLayout(m_size, QPageLayout::Portrait, QMarginsF()));
        writer->setTitle(QCoreApplication::applicationName());
        return writer;
    }
    void drop(QPagedPaintDevice &) noexcept override { QFile::remove(m_path); }

    const QString m_path;
    const QPageSize m_size;
};

} // namespace

std::unique_ptr<PrintDevice> desktopPrintDevice()
{
    return std::make_unique<DesktopPrintDevice>();
}

std::unique_ptr<PrintDevice> pdfPrintDevice(const QString &path, QPageSize::PageSizeId size)
{
    return std::make_unique<PdfPrintDevice>(path, size);
}

} // namespace vardelin
