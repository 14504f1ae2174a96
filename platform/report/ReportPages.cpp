#include "platform/report/ReportPages.h"

#include "platform/base/Format.h"
#include "platform/base/RunTimeError.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vardelin {

namespace {

using Kind = ReportSection::Kind;

constexpr double kSlack = 0.01;      // twips, for sums of fractions
constexpr double kLeastShare = 0.25; // of a page, that a section longer than one page begins on

QString shown(const Value &value, const QString &mask)
{
    return mask.isEmpty() ? joinText(value) : format(value, mask);
}

// Infinities and what is no number at all, which a damaged or foreign file may hold, are left out.
bool isSummed(const Value &value)
{
    return !value.isEmpty() && !value.isNull() && isNumeric(value) && std::isfinite(toDouble(value));
}

// Exact, as money is. A number too large for that makes the sum a floating one.
Value sumOf(const Value &total, const Value &value)
{
    try {
        return toDecimal(total) + toDecimal(value);
    } catch (const RunTimeError &) {
        return toDouble(total) + toDouble(value);
    }
}

double inkBottom(const LaidSection &laid)
{
    double bottom = 0;
    for (const ReportItem &item : laid.items)
        bottom = std::max(bottom, item.bottom());
    return bottom;
}

// The lowest place above `cut` that no line of text stands across.
double cutBetweenLines(const LaidSection &laid, double offset, double cut)
{
    for (bool moved = true; moved;) {
        moved = false;
        for (const ReportItem &item : laid.items) {
            if (!item.isRule() && item.top >= offset && item.top < cut && item.bottom() > cut + kSlack) {
                cut = item.top;
                moved = true;
            }
        }
    }
    return cut;
}

} // namespace

// A page while it is filled, and what is left of it.
struct ReportPages::Sheet
{
    ReportPage page;
    double left = 0, y = 0, bottom = 0;
    double whole = 0; // height between the page's header and footer
    bool fresh = true;

    // What of a section lies between two of its heights.
    void add(const LaidSection &laid, double from, double to, int record)
    {
        for (const ReportItem &item : laid.items) {
            const bool within = item.isRule() && item.height > 0 ? item.bottom() > from && item.top < to
                                                                 : item.top >= from - kSlack && item.top < to;
            if (!within)
                continue;
            ReportItem placed = item;
            placed.record = record;
            if (item.isRule() && item.height > 0) {
                placed.top = std::max(item.top, from);
                placed.height = std::min(item.bottom(), to) - placed.top;
            }
            placed.left += left;
            placed.top += y - from;
            page.items.push_back(std::move(placed));
        }
    }
};

QString withPageCodes(QString caption, int page, int count)
{
    const QString countText = count > 0 ? QString::number(count) : QString(QChar(0x2026));
    caption.replace(QStringLiteral("%P"), countText);
    const qsizetype first = caption.indexOf(QStringLiteral("%p"));
    if (first < 0)
        return caption;
    const QString rest = caption.mid(first + 2).replace(QStringLiteral("%p"), countText);
    return caption.left(first) + QString::number(page) + rest;
}

ReportPages::ReportPages(const ReportDesign &design, const ReportRecords &records,
                         const TextMeasurer &measurer, const Paper &paper)
    : m_design(design), m_records(records), m_measurer(measurer), m_paper(paper)
{
    for (const ReportSection &section : m_design.sections) {
        for (const ReportControl &control : section.controls) {
            if (control.DataField.isEmpty())
                continue;
            auto column = m_columns.indexOf(control.DataField);
            if (column < 0) {
                column = m_columns.size();
                m_columns.append(control.DataField);
            }
            m_columnOf[&control] = static_cast<int>(column);
            if (control.kind == ReportControl::Kind::Sum)
                m_sums[&control] = Value();
        }
    }
    m_headerHeight = layBand(Kind::PageHeader, 1).height;
    m_footerHeight = layBand(Kind::PageFooter, 1).height;
}

const ReportSection &ReportPages::section(Kind kind) const
{
    static const ReportSection none;
    const ReportSection *found = m_design.section(kind);
    return found ? *found : none;
}

// values: of m_columns; empty where there is no record.
std::vector<QString> ReportPages::textsOf(const ReportSection &section,
                                          const std::vector<Value> &values) const
{
    std::vector<QString> texts;
    texts.reserve(section.controls.size());
    for (const ReportControl &control : section.controls) {
        QString text = control.Caption;
        if (control.kind == ReportControl::Kind::Sum) {
            text = shown(m_sums.at(&control), control.DataFormat);
        } else if (control.kind == ReportControl::Kind::Text) {
            const auto column = m_columnOf.find(&control);
            text = column == m_columnOf.end() || values.empty()
                       ? QString()
                       : shown(values[static_cast<std::size_t>(column->second)], control.DataFormat);
        }
        texts.push_back(std::move(text));
    }
    return texts;
}

LaidSection ReportPages::layBand(Kind kind, int page) const
{
    const ReportSection &band = section(kind);
    std::vector<QString> texts = textsOf(band, {});
    for (QString &text : texts)
        text = withPageCodes(text, page, m_complete ? found() : 0);
    return laySection(band, texts, m_measurer);
}

void ReportPages::addToSums(const std::vector<Value> &values)
{
    for (auto &[control, total] : m_sums)
        if (const Value &value = values[static_cast<std::size_t>(m_columnOf.at(control))]; isSummed(value))
            total = sumOf(total, value);
}

// Every record is laid once in order while the pages are found, and added to the sums then.
const LaidSection *ReportPages::layRecord(int record)
{
    if (m_laidRecord != record) {
        m_laid.reset();
        if (const auto values = m_records.values(record, m_columns)) {
            if (record == m_summed)
                addToSums(*values);
            const ReportSection &detail = section(Kind::Detail);
            m_laid = laySection(detail, textsOf(detail, *values), m_measurer);
        }
        m_laidRecord = record;
        m_summed = std::max(m_summed, record + 1);
    }
    return m_laid ? &*m_laid : nullptr;
}

const LaidSection &ReportPages::layEnd(Kind kind)
{
    const auto known = m_ends.find(kind);
    if (known != m_ends.end())
        return known->second;
    std::optional<std::vector<Value>> values;
    if (const int count = m_records.count(); count > 0 && !m_columns.empty())
        values = m_records.values(kind == Kind::ReportHeader ? 0 : count - 1, m_columns);
    const ReportSection &end = section(kind);
    return m_ends[kind] = laySection(end, textsOf(end, values.value_or(std::vector<Value>())), m_measurer);
}

// Puts what is left of a section, or what the page has room for, on the page. True: it is finished.
bool ReportPages::place(Sheet &sheet, const LaidSection &laid, bool keepTogether, double &offset,
                        int record) const
{
    const double ink = inkBottom(laid);
    const double room = sheet.bottom - sheet.y + kSlack;
    const bool begun = offset > 0;
    if (laid.height <= room && !begun) {
        sheet.add(laid, 0, laid.height + ink, record);
    } else if (ink - offset <= room && (begun || sheet.fresh)) { // blank behind the last line needs no room
        sheet.add(laid, offset, laid.height + ink, record);
    } else {
        const bool wantsWhole = ink <= sheet.whole + kSlack || room < sheet.whole * kLeastShare;
        if (!begun && !sheet.fresh && keepTogether && wantsWhole)
            return false;
        double first = std::numeric_limits<double>::max(), firstBottom = first;
        for (const ReportItem &item : laid.items) {
            if (item.top >= offset - kSlack && item.top < first) {
                first = item.top;
                firstBottom = item.bottom();
            }
        }
        double cut = cutBetweenLines(laid, offset, offset + room);
        if (cut <= first) {
            if (!sheet.fresh)
                return false;
            cut = firstBottom; // a line higher than the page
        }
        sheet.add(laid, offset, cut, record);
        double next = std::numeric_limits<double>::max();
        for (const ReportItem &item : laid.items) {
            if (item.top >= cut)
                next = std::min(next, item.top);
            else if (item.isRule() && item.bottom() > cut)
                next = cut;
        }
        sheet.fresh = false;
        sheet.y = sheet.bottom;
        const bool finished = next == std::numeric_limits<double>::max();
        offset = finished ? 0 : next;
        return finished;
    }
    sheet.y = std::min(sheet.bottom, sheet.y + laid.height - offset);
    sheet.fresh = false;
    offset = 0;
    return true;
}

// True: the report ends on this page.
bool ReportPages::fill(Sheet &sheet, Place &at)
{
    if (at.stage == Stage::ReportHeader) {
        if (!place(sheet, layEnd(Kind::ReportHeader), section(Kind::ReportHeader).KeepTogether, at.offset,
                   -1))
            return false;
        at = {Stage::Records, 0, 0};
        if (sheet.y + m_headerHeight > sheet.bottom + kSlack)
            return false;
        const LaidSection header = layBand(Kind::PageHeader, sheet.page.number);
        sheet.add(header, 0, header.height + inkBottom(header), -1);
        sheet.y += m_headerHeight;
    }
    if (at.stage == Stage::Records) {
        const bool together = section(Kind::Detail).KeepTogether;
        for (const int count = m_records.count(); at.record < count; ++at.record) {
            const LaidSection *laid = layRecord(at.record);
            if (laid && !place(sheet, *laid, together, at.offset, at.record))
                return false;
            at.offset = 0;
        }
        at.stage = Stage::ReportFooter;
    }
    if (!place(sheet, layEnd(Kind::ReportFooter), section(Kind::ReportFooter).KeepTogether, at.offset, -1))
        return false;
    at.stage = Stage::End;
    return true;
}

ReportPage ReportPages::make(Place &at, int number)
{
    Sheet sheet;
    sheet.page.number = number;
    sheet.page.paper = m_paper;
    const int margin = m_design.margin;
    sheet.left = std::min<double>(margin, (m_paper.width - m_design.Width) / 2.0);
    sheet.y = margin;
    sheet.bottom = m_paper.height - margin - m_footerHeight;
    sheet.whole = sheet.bottom - sheet.y - m_headerHeight;
    if (at.stage != Stage::ReportHeader) {
        const LaidSection header = layBand(Kind::PageHeader, number);
        sheet.add(header, 0, header.height + inkBottom(header), -1);
        sheet.y += m_headerHeight;
    }
    fill(sheet, at);
    sheet.y = sheet.bottom;
    const LaidSection footer = layBand(Kind::PageFooter, number);
    sheet.add(footer, 0, footer.height + inkBottom(footer), -1);
    return std::move(sheet.page);
}

double ReportPages::progress() const
{
    const int count = m_records.count();
    return m_complete ? 1.0 : count == 0 ? 0.0 : static_cast<double>(m_next.record) / count;
}

bool ReportPages::findNext()
{
    if (m_complete)
        return false;
    m_starts.push_back(m_next);
    m_made = make(m_next, found());
    m_complete = m_next.stage == Stage::End;
    if (m_complete && printsCount())
        m_made.reset(); // wasn't known yet
    return true;
}

int ReportPages::count()
{
    while (findNext())
        ;
    return found();
}

bool ReportPages::printsCount() const
{
    for (const Kind kind : {Kind::PageHeader, Kind::PageFooter})
        for (const ReportControl &control : section(kind).controls)
            if (withPageCodes(control.Caption, 1, 1) != withPageCodes(control.Caption, 1, 2))
                return true;
    return false;
}

ReportPage ReportPages::page(int number)
{
    while (found() < number && findNext())
        ;
    if (number < 1 || number > found())
        throw RunTimeError(RunTime::SubscriptOutOfRange);
    if (m_made && m_made->number == number)
        return *m_made;
    Place at = m_starts[static_cast<std::size_t>(number - 1)];
    return make(at, number);
}

std::vector<ReportPage> layoutReport(const ReportDesign &design, const ReportRecords &records,
                                     const TextMeasurer &measurer, const Paper &paper)
{
    ReportPages laid(design, records, measurer, paper);
    std::vector<ReportPage> pages;
    for (int number = 1, count = laid.count(); number <= count; ++number)
        pages.push_back(laid.page(number));
    return pages;
}

} // namespace vardelin
