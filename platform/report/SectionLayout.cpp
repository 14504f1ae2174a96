#include "platform/report/SectionLayout.h"

#include <algorithm>
#include <cmath>

namespace vardelin {

namespace {

constexpr double kSmallest = 0.7; // share of its size that a line may be set in to fit its box
constexpr double kSmallestNumber = 0.4;
constexpr double kUnbroken = 1e9;  // twips: the width of a line that isn't to be broken
constexpr double kLineSlack = 0.1; // of a line, by which the last one may stand out of a box
constexpr double kGap = 60;        // twips between texts of boxes that stand side by side

struct Block
{
    std::vector<TextLine> lines;
    ReportFont font;
    LineMetric metric;
    double height = 0; // of the box as laid
};

// A line of a box that doesn't grow, narrowed to it if that does.
void fitLine(Block &block, double width, const TextMeasurer &measurer)
{
    TextLine &line = block.lines.front();
    if (line.width <= width)
        return;
    if (line.width * kSmallest > width) {
        line = elided(line, block.font, width, measurer);
        return;
    }
    block.font.Size *= width / line.width;
    line.width = width;
}

bool isNumber(const ReportControl &control)
{
    return control.kind == ReportControl::Kind::Sum || control.DataFormat.contains(u'0') ||
           control.DataFormat.contains(u'#');
}

// A number is never shortened, for it would pass for another one: it runs over its box in the end.
void fitNumber(Block &block, double width)
{
    TextLine &line = block.lines.front();
    const double share = std::max(kSmallestNumber, width / line.width);
    if (share >= 1)
        return;
    block.font.Size *= share;
    line.width *= share;
}

void fitBox(Block &block, const QString &text, double width, const TextMeasurer &measurer)
{
    const auto capacity =
        static_cast<std::size_t>(std::max(1.0, std::floor(block.height / block.metric.height + kLineSlack)));
    if (block.lines.size() <= capacity)
        return;
    if (capacity == 1) {
        block.lines = breakLines(text, block.font, kUnbroken, measurer);
        const bool more = block.lines.size() > 1;
        block.lines.resize(1);
        if (more)
            block.lines.front() = elided(block.lines.front(), block.font, width, measurer);
        else
            fitLine(block, width, measurer);
        return;
    }
    block.lines.resize(capacity);
    block.lines.back().end = LineEnd::Hard;
    block.lines.back() = elided(block.lines.back(), block.font, width, measurer);
}

// The width that a control has for its text: that of its box, or less where the next box touches it, so that
// a wide text doesn't run into its neighbour's.
double roomOf(const ReportControl &control, const std::vector<ReportControl> &controls)
{
    const ReportBox &box = control.box;
    if (control.CanGrow || control.Alignment != ReportAlignment::Left)
        return box.width;
    const double right = box.left + box.width;
    for (const ReportControl &next : controls) {
        const ReportBox &other = next.box;
        if (next.kind != ReportControl::Kind::Line && other.left >= right && other.left < right + kGap &&
            other.top < box.top + box.height && box.top < other.top + other.height)
            return std::max(other.left - kGap - box.left, box.width / 2.0);
    }
    return box.width;
}

Block layBlock(const ReportControl &control, double room, const QString &text, const TextMeasurer &measurer)
{
    Block block;
    block.font = control.Font;
    block.height = control.box.height;
    if (control.kind == ReportControl::Kind::Line)
        return block;
    block.metric = measurer.lineMetric(control.Font);
    const bool number = isNumber(control);
    block.lines = breakLines(text, control.Font, number ? kUnbroken : room, measurer);
    if (block.lines.empty())
        return block;
    if (number)
        fitNumber(block, room);
    else if (!control.CanGrow)
        fitBox(block, text, room, measurer);
    const auto needed = static_cast<double>(control.CanGrow ? block.lines.size() : 1) * block.metric.height;
    block.height = std::max(block.height, needed);
    return block;
}

// How far down each control goes by what grew above it.
std::vector<double> shifts(const std::vector<ReportControl> &controls, const std::vector<Block> &blocks)
{
    std::vector<std::size_t> order(controls.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::ranges::stable_sort(order, {}, [&](std::size_t i) { return controls[i].box.top; });
    std::vector<double> down(controls.size(), 0.0);
    for (std::size_t place = 0; place < order.size(); ++place) {
        const std::size_t lower = order[place];
        for (std::size_t before = 0; before < place; ++before) {
            const std::size_t upper = order[before];
            const ReportBox &above = controls[upper].box;
            if (controls[upper].kind != ReportControl::Kind::Line && controls[lower].box.top > above.top &&
                controls[lower].box.top >= above.top + above.height / 2)
                down[lower] = std::max(down[lower], down[upper] + blocks[upper].height - above.height);
        }
    }
    return down;
}

double alignedLeft(const ReportControl &control, double width)
{
    const double spare = control.box.width - width;
    switch (control.Alignment) {
    case ReportAlignment::Left:
        return control.box.left;
    case ReportAlignment::Center:
        return control.box.left + spare / 2;
    case ReportAlignment::Right:
        return control.box.left + spare;
    }
    return control.box.left;
}

} // namespace

LaidSection laySection(const ReportSection &section, const std::vector<QString> &texts,
                       const TextMeasurer &measurer)
{
    const std::vector<ReportControl> &controls = section.controls;
    std::vector<Block> blocks;
    blocks.reserve(controls.size());
    for (std::size_t i = 0; i < controls.size(); ++i)
        blocks.push_back(layBlock(controls[i], roomOf(controls[i], controls), texts[i], measurer));
    const std::vector<double> down = shifts(controls, blocks);

    LaidSection laid;
    double growth = 0;
    for (std::size_t i = 0; i < controls.size(); ++i)
        growth = std::max(growth, down[i] + blocks[i].height - controls[i].box.height);
    laid.height = section.Height + growth;
    for (std::size_t i = 0; i < controls.size(); ++i) {
        const ReportControl &control = controls[i];
        ReportItem item;
        item.section = section.kind;
        item.control = static_cast<int>(i);
        item.top = control.box.top + down[i];
        if (control.kind == ReportControl::Kind::Line) {
            const bool whole = control.box.height >= section.Height && control.box.height > control.box.width;
            item.left = control.box.left;
            item.width = control.box.width;
            item.height = control.box.height + (whole ? growth : 0);
            laid.items.push_back(item);
            continue;
        }
        item.font = blocks[i].font;
        item.height = blocks[i].metric.height;
        item.baseline = blocks[i].metric.ascent;
        for (TextLine &line : blocks[i].lines) {
            item.left = alignedLeft(control, line.width);
            item.width = line.width;
            item.end = line.end;
            item.text = std::move(line.text);
            if (!item.text.isEmpty())
                laid.items.push_back(item);
            item.top += item.height;
        }
    }
    return laid;
}

} // namespace vardelin
