#pragma once
// What Printer prints on: the desktop's printer, a PDF file, or a recording of a test.

#include <QPageSize>
#include <QSizeF>
#include <QString>
#include <memory>

class QPainter;

namespace vardelin {

// One document at a time: begin(), newPage() for each further page, then end() or abort(). paper() may be
// asked at any time. All throw RunTimeError 484 where there is no printer, 482 where printing fails.
class PrintDevice
{
public:
    virtual ~PrintDevice() = default;
    virtual QSizeF paper() = 0; // in twips, of the document that is open or of the next one
    // The painter of all pages, which the device keeps until the document's end. Its unit is the twip, its
    // origin the paper's upper left corner, whatever part of the paper the printer can reach.
    virtual QPainter &begin() = 0;
    virtual void newPage() = 0;
    virtual void end() = 0;
    virtual void abort() noexcept = 0; // nothing of the document is printed, as far as that can be held up
};

// The default printer of the desktop, or the first one where none is the default; looked for anew for every
// document, without a dialog.
std::unique_ptr<PrintDevice> desktopPrintDevice();

// Writes each document to a file, which it replaces.
std::unique_ptr<PrintDevice> pdfPrintDevice(const QString &path,
                                            QPageSize::PageSizeId size = QPageSize::Letter);

} // namespace vardelin
