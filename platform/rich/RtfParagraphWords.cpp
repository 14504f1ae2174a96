// What the control words of a paragraph's layout do.
#include "platform/rich/RtfReader.h"

#include <algorithm>
#include <cstdlib>

namespace vardelin {

namespace {

constexpr int kWidest = 15840; // twips: no margin moves text further than eleven inches
constexpr int kMostTabs = 64;
constexpr int kIndentWidth = 40; // pixels a QTextBlockFormat::indent() level takes

double pixels(int twips, int least, int most)
{
    return double(std::clamp(twips, least, most)) / kTwipsPerPixel;
}

} // namespace

void RtfReader::paragraphDefaults(const RtfToken &)
{
    state().block = {};
    state().list.reset();
    state().inTable = false;
    state().spacing = 0;
    state().nextTab = QTextOption::LeftTab;
}

void RtfReader::setAlignment(const RtfToken &token)
{
    switch (token.text[1]) {
    case 'r':
        state().block.setAlignment(Qt::AlignRight);
        break;
    case 'c':
        state().block.setAlignment(Qt::AlignHCenter);
        break;
    case 'l':
        state().block.setAlignment(Qt::AlignLeft);
        break;
    default:
        state().block.setAlignment(Qt::AlignJustify);
        break;
    }
}

void RtfReader::setIndent(const RtfToken &token)
{
    QTextBlockFormat &block = state().block;
    if (token.text == "li")
        block.setLeftMargin(pixels(token.parameter, 0, kWidest));
    else if (token.text == "ri")
        block.setRightMargin(pixels(token.parameter, 0, kWidest));
    else if (token.text == "fi")
        block.setTextIndent(pixels(token.parameter, -kWidest, kWidest));
    else if (token.text == "sb")
        block.setTopMargin(pixels(token.parameter, 0, kWidest));
    else
        block.setBottomMargin(pixels(token.parameter, 0, kWidest));
}

void RtfReader::setOwnIndent(const RtfToken &token)
{
    if (!m_ours)
        return;
    QTextBlockFormat &block = state().block;
    const int levels = std::clamp(token.parameter, 0, kWidest / kTwipsPerPixel / kIndentWidth);
    block.setIndent(levels);
    const double rest = block.leftMargin() - levels * kIndentWidth;
    if (rest > 0)
        block.setLeftMargin(rest);
    else
        block.clearProperty(QTextFormat::BlockLeftMargin);
}

void RtfReader::setSpacing(const RtfToken &token)
{
    QTextBlockFormat &block = state().block;
    if (token.text == "slmult") {
        if (token.isOn() && state().spacing != 0)
            block.setLineHeight(std::clamp(std::abs(state().spacing) / 2.4, 20.0, 2000.0),
                                QTextBlockFormat::ProportionalHeight);
        return;
    }
    state().spacing = std::clamp(token.parameter, -kWidest, kWidest);
    if (state().spacing == 0) {
        block.clearProperty(QTextFormat::LineHeight);
        block.clearProperty(QTextFormat::LineHeightType);
        return;
    }
    const bool exact = state().spacing < 0;
    block.setLineHeight(pixels(std::abs(state().spacing), 60, kWidest),
                        exact ? QTextBlockFormat::FixedHeight : QTextBlockFormat::MinimumHeight);
}

void RtfReader::setTab(const RtfToken &token)
{
    if (token.text != "tx") {
        state().nextTab = token.text == "tqr"   ? QTextOption::RightTab
                          : token.text == "tqc" ? QTextOption::CenterTab
                                                : QTextOption::DelimiterTab;
        return;
    }
    QList<QTextOption::Tab> tabs = state().block.tabPositions();
    if (tabs.size() < kMostTabs)
        tabs.append(QTextOption::Tab(pixels(token.parameter, 0, kWidest), state().nextTab));
    state().nextTab = QTextOption::LeftTab;
    state().block.setTabPositions(tabs);
}

void RtfReader::setFlow(const RtfToken &token)
{
    QTextBlockFormat &block = state().block;
    if (token.text == "keep")
        block.setNonBreakableLines(token.isOn());
    else if (token.text == "pagebb")
        block.setPageBreakPolicy(token.isOn() ? QTextFormat::PageBreak_AlwaysBefore
                                              : QTextFormat::PageBreak_Auto);
    else
        block.setLayoutDirection(token.text == "rtlpar" ? Qt::RightToLeft : Qt::LeftToRight);
}

void RtfReader::setInTable(const RtfToken &token)
{
    state().inTable = token.isOn();
}

} // namespace vardelin
