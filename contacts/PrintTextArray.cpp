#include "contacts/PrintTextArray.h"

#include "platform/print/Printer.h"
#include "shell/state/Global.h"

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr double kInch = 1;
constexpr double kTitleY = 0.5; // inches

QStringList linesOf(QString text)
{
    QStringList lines;
    for (qsizetype end = text.indexOf(u'\r'); end >= 0; end = text.indexOf(u'\r')) {
        lines += text.left(end);
        text.remove(0, end + 2);
    }
    if (!text.isEmpty())
        lines += text;
    return lines;
}

class TextArrayPrinting
{
public:
    explicit TextArrayPrinting(Global &global) : m_global(global), m_printer(global.services.printer) {}

    void print(const std::vector<PrintBlock> &blocks)
    {
        for (double *margin : {&m_global.PrintTopMargin, &m_global.PrintBottomMargin,
                               &m_global.PrintLeftMargin, &m_global.PrintRightMargin})
            if (*margin == 0)
                *margin = kInch;
        step([&] {
            m_printer.SetScaleMode(PrintScale::Inches);
            m_printer.SetCurrentY(m_global.PrintTopMargin);
        });
        for (const PrintBlock &block : blocks)
            printBlock(block);
        if (m_printer.Page() != 1)
            step([&] { printFooter(); });
        step([&] { m_printer.EndDoc(); });
    }

private:
    // Goes on with the next statement after a failure, which costs a message.
    template <class Statement>
    void step(Statement &&statement)
    {
        try {
            statement();
        } catch (const RunTimeError &error) {
            m_global.services.dialogs.msgBox({error.description() + u" in PrintTextArray function"_s});
        }
    }

    double printableWidth()
    {
        return m_printer.ScaleWidth() - (m_global.PrintLeftMargin + m_global.PrintRightMargin);
    }
    double bottomLine() { return m_printer.ScaleHeight() - m_global.PrintBottomMargin; }

    void printFooter()
    {
        const QString number = u"- %1 -"_s.arg(m_printer.Page());
        m_printer.SetCurrentY(bottomLine());
        m_printer.SetCurrentX(m_printer.ScaleWidth() / 2 - m_printer.TextWidth(number) / 2);
        m_printer.Print(number);
    }

    void nextPage()
    {
        printFooter();
        m_printer.NewPage();
        m_printer.SetCurrentY(m_global.PrintTopMargin);
    }

    void printBlock(const PrintBlock &block)
    {
        step([&] { m_printer.SetFontName(block.FontName); });
        step([&] { m_printer.SetFontSize(toDouble(Value(block.FontSize))); });
        for (const QString &line : linesOf(block.Text))
            printLine(block, line);
    }

    // Width is measured with the blank behind the last word. A word that is wider than the paper is a line of
    // its own and runs over the margin.
    void printLine(const PrintBlock &block, const QString &line)
    {
        m_global.PrintWordRest = line;
        QString printed;
        bool more = true;
        while (more) {
            step([&] {
                more = false; // what can't be measured is not gone on with
                for (NextPrintWord(m_global); !m_global.PrintWord.isEmpty(); NextPrintWord(m_global)) {
                    const QString candidate = printed + m_global.PrintWord;
                    if (m_printer.TextWidth(candidate) > printableWidth()) {
                        more = true;
                        break;
                    }
                    printed = candidate;
                }
                const QString finished = std::exchange(printed, m_global.PrintWord);
                if (more)
                    printWrapped(block, finished);
                else
                    printLast(block, finished);
            });
        }
    }

    // The two tests of the page's end differ: a wrapped line may begin on the bottom line itself.
    void printWrapped(const PrintBlock &block, const QString &text)
    {
        if (m_printer.CurrentY() + toDouble(block.Spacing) > bottomLine())
            nextPage();
        m_printer.SetCurrentX(m_global.PrintLeftMargin);
        m_printer.Print(text);
    }

    void printLast(const PrintBlock &block, const QString &text)
    {
        const QString code = block.Tag.startsWith(":>"_L1) ? block.Tag.mid(2, 2) : QString();
        if (code == "03"_L1)
            m_printer.SetCurrentY(kTitleY);
        const double x = placeOf(code, text);
        if (m_printer.CurrentY() + m_printer.TextHeight(text) > bottomLine())
            nextPage();
        m_printer.SetCurrentX(x);
        m_printer.Print(text);
    }

    double placeOf(const QString &code, const QString &text)
    {
        const double middle = m_printer.ScaleWidth() / 2;
        if (code == "01"_L1 || code == "03"_L1)
            return middle - m_printer.TextWidth(text) / 2;
        if (code == "02"_L1)
            return middle;
        return m_global.PrintLeftMargin;
    }

    Global &m_global;
    Printer &m_printer;
};

} // namespace

void NextPrintWord(Global &global)
{
    const qsizetype blank = global.PrintWordRest.indexOf(u' ');
    const qsizetype length = blank < 0 ? global.PrintWordRest.size() : blank + 1;
    global.PrintWord = global.PrintWordRest.left(length);
    global.PrintWordRest.remove(0, length);
}

void PrintTextArray(Global &global, const std::vector<PrintBlock> &blocks)
{
    TextArrayPrinting(global).print(blocks);
}

} // namespace vardelin
