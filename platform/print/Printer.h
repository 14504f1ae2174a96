#pragma once
// The printer as the commands see it: a page to write on at a current place, with the measure of a text.

#include <QFont>
#include <QSizeF>
#include <QString>
#include <optional>

class QPainter;

namespace vardelin {

class PrintDevice;

enum class PrintScale { Twips = 1, Inches = 5 };

// Places and lengths count from the upper left corner of the paper, in the unit of the scale mode, twips at
// first. The document begins with the first thing printed and ends with EndDoc or KillDoc; where there is no
// printer, whatever asks for the page or prints throws RunTimeError 484, and a failing one 482. Interface
// thread only.
class Printer
{
public:
    explicit Printer(PrintDevice &device); // which outlives the printer
    ~Printer();                            // a document that wasn't ended is dropped
    Printer(const Printer &) = delete;
    Printer &operator=(const Printer &) = delete;

    void SetScaleMode(PrintScale scale); // the current place on the paper stays
    double ScaleWidth();                 // of the page, which is the whole paper
    double ScaleHeight();
    double Width(); // of the paper, always in twips
    double Height();

    double CurrentX() const { return m_x / m_unit; }
    double CurrentY() const { return m_y / m_unit; }
    void SetCurrentX(double x) { m_x = x * m_unit; }
    void SetCurrentY(double y) { m_y = y * m_unit; }

    // Points. A size below the smallest one becomes that, a size that isn't a number or too large is error
    // 380.
    static constexpr double kSmallestFontSize = 1;
    QString FontName() const { return m_font.family(); }
    double FontSize() const { return m_points; }
    void SetFontName(const QString &name);
    void SetFontSize(double points);

    // In the current font. A text of several lines is as wide as the widest and as high as all; an empty one
    // is as high as a line.
    double TextWidth(const QString &text) const;
    double TextHeight(const QString &text) const;

    // Prints at the current place, which goes down by the text's height and to the left edge. Further lines
    // of the text begin below the first. A tab is as wide as eight blanks.
    void Print(const QString &text);
    void Line(double x1, double y1, double x2, double y2); // the current place goes to its end

    int Page() const { return m_page; } // of the document, from 1
    // The current place goes to the upper left corner. A page on which nothing is printed before the
    // document's end is none.
    void NewPage();
    void EndDoc();           // prints; nothing where nothing was printed
    void KillDoc() noexcept; // doesn't

    // The painter of the current page: unit twip, origin the paper's corner. Restore what you change in it.
    QPainter &hDC();

private:
    QSizeF paper();
    void startAfresh() noexcept;

    PrintDevice &m_device;
    QPainter *m_painter = nullptr; // while a document is open
    bool m_pageIsDue = false;      // NewPage came, and nothing since
    int m_page = 1;
    double m_unit = 1; // twips
    double m_x = 0, m_y = 0;
    QFont m_font;
    double m_points = 12;
};

} // namespace vardelin
