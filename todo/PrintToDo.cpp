#include "todo/PrintToDo.h"

#include "platform/base/Value.h"
#include "platform/print/Printer.h"
#include "shell/state/Global.h"

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

// All in inches from the paper's corner.
constexpr std::array kLeft{0.6, 1.0, 2.7, 5.94, 6.72};
constexpr double kGap = 0.2; // that a fitted text keeps from the next column
constexpr double kTop = 1.0; // a page on which nothing stands yet
constexpr double kFirstRow = 1.4;

class ToDoPrinting
{
public:
    explicit ToDoPrinting(Global &global)
        : m_global(global), m_printer(global.services.printer),
          m_size(toDouble(Value(global.DefaultPrintFont.size)))
    {
        for (double *margin : {&global.PrintTopMargin, &global.PrintBottomMargin, &global.PrintLeftMargin,
                               &global.PrintRightMargin})
            if (*margin == 0)
                *margin = 1;
        m_printer.SetScaleMode(PrintScale::Inches);
        m_printer.SetFontName(global.DefaultPrintFont.name);
        m_printer.SetFontSize(m_size);
    }

    void print(const std::vector<ToDoRow> &rows)
    {
        for (const ToDoRow &row : rows)
            printRow(row);
        m_printer.EndDoc();
    }

private:
    void printAt(double x, double y, const QString &text)
    {
        m_printer.SetCurrentX(x);
        m_printer.SetCurrentY(y);
        m_printer.Print(text);
    }

    void printRow(const ToDoRow &row)
    {
        if (m_y == kTop) {
            for (std::size_t column = 0; column < kToDoColumns; ++column)
                printAt(kLeft[column], kTop, kToDoHeadings[column]);
            m_y = kFirstRow;
        }
        printAt(kLeft[0], m_y, row[0]);
        const double height = m_printer.TextHeight(row[1]);
        for (const std::size_t column : {1u, 2u})
            printFitted(column, row[column], height);
        for (const std::size_t column : {3u, 4u})
            printAt(kLeft[column], m_y, row[column]);
        if (m_printer.CurrentY() > bottom())
            closePage();
        else
            m_y += height;
    }

    // A point smaller at a time, down to the printer's smallest size, and in the middle of the row's height.
    void printFitted(std::size_t column, const QString &text, double height)
    {
        const double limit = kLeft[column + 1] - kLeft[column] - kGap;
        double y = m_y;
        if (m_printer.TextWidth(text) > limit) {
            for (double size = m_size;
                 m_printer.TextWidth(text) > limit && size > Printer::kSmallestFontSize;) {
                m_printer.SetFontSize(m_printer.FontSize() - 1);
                size = m_printer.FontSize();
            }
            y += (height - m_printer.TextHeight(text)) / 2;
        }
        printAt(kLeft[column], y, text);
        m_printer.SetFontSize(m_size);
    }

    void closePage()
    {
        const QString number = u"- %1 -"_s.arg(m_printer.Page());
        printAt(m_printer.ScaleWidth() / 2 - m_printer.TextWidth(number) / 2, bottom(), number);
        m_printer.NewPage();
        m_y = kTop;
    }

    double bottom() { return m_printer.ScaleHeight() - m_global.PrintBottomMargin; }

    Global &m_global;
    Printer &m_printer;
    double m_size; // points
    double m_y = kTop;
};

} // namespace

void printToDo(Global &global, const std::vector<ToDoRow> &rows)
{
    if (!rows.empty())
        ToDoPrinting(global).print(rows);
}

} // namespace vardelin
