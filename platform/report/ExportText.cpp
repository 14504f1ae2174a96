// Reports as web page, plain text and table of values.

#include "platform/report/ReportExport.h"

#include "platform/base/RunTimeError.h"

#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr double kTwipsPerPoint = 20;
constexpr double kTwipsPerColumn = 115; // about the mean width of a letter
constexpr double kEmptyLine = 0.6;      // of a line: a larger gap becomes one
constexpr int kDiskFull = 61;

void write(QIODevice &device, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    if (device.write(bytes) != bytes.size())
        throw RunTimeError(kDiskFull);
}

QString fontStyle(const ReportFont &font)
{
    QString family = font.Name;
    family.remove(u'"').remove(u'<').remove(u';');
    const bool serif = family.contains("Times"_L1) || family.contains("Serif"_L1);
    return u"font:%1%2pt '%3',%4;"_s.arg(font.Bold ? u"bold "_s : QString())
        .arg(font.Size, 0, 'g', 4)
        .arg(family, serif ? u"'Liberation Serif',serif"_s : u"'Liberation Sans',sans-serif"_s);
}

// The fonts of a design as classes: f0, f1 ... Sizes that a line was set smaller in aren't among them.
std::vector<ReportFont> fontsOf(const ReportDesign &design)
{
    std::vector<ReportFont> fonts;
    for (const ReportSection &section : design.sections)
        for (const ReportControl &control : section.controls)
            if (std::ranges::find(fonts, control.Font) == fonts.end())
                fonts.push_back(control.Font);
    return fonts;
}

QString points(double twips)
{
    return QString::number(twips / kTwipsPerPoint, 'f', 1) + "pt"_L1;
}

// A page with one element for each text: its lines in a row stay together, so that they are copied as one.
QString htmlOf(const ReportPage &page, const std::vector<ReportFont> &fonts)
{
    QString html = u"<section class=\"page\" aria-label=\"Page %1\">\n"_s.arg(page.number);
    for (std::size_t i = 0; i < page.items.size(); ++i) {
        const ReportItem &item = page.items[i];
        if (item.isRule()) {
            html += u"<hr style=\"left:%1;top:%2;width:%3;height:%4\">\n"_s.arg(
                points(item.left), points(item.top), points(std::max(10.0, item.width)),
                points(std::max(10.0, item.height)));
            continue;
        }
        QString text = item.text.toHtmlEscaped();
        const ReportItem *last = &item;
        while (i + 1 < page.items.size()) {
            const ReportItem &next = page.items[i + 1];
            if (next.isRule() || next.control != item.control || next.record != item.record ||
                next.section != item.section || next.left != item.left || next.top - last->bottom() > 1)
                break;
            text += u'\n' + next.text.toHtmlEscaped();
            last = &next;
            ++i;
        }
        const auto known = std::ranges::find(fonts, item.font);
        html += known == fonts.end() ? u"<p style=\""_s + fontStyle(item.font)
                                     : u"<p class=\"f%1\" style=\""_s.arg(known - fonts.begin());
        html += u"left:%1;top:%2;line-height:%3\">%4</p>\n"_s.arg(points(item.left), points(item.top),
                                                                  points(item.height), text);
    }
    return html + "</section>\n"_L1;
}

QString rowText(const PageRow &row, double left)
{
    QString text;
    for (const ReportItem *item : row.items) {
        const auto column = static_cast<qsizetype>((item->left - left) / kTwipsPerColumn);
        const qsizetype from = text.isEmpty() ? column : std::max(column, text.size() + 2);
        text = text.leftJustified(std::max<qsizetype>(0, from)) + item->text;
    }
    return text;
}

QString quoted(const QString &field)
{
    const bool plain = std::none_of(field.cbegin(), field.cend(), [](QChar letter) {
        return letter == u'"' || letter == u',' || letter == u'\r' || letter == u'\n';
    });
    return plain ? field : u'"' + QString(field).replace(u'"', u"\"\""_s) + u'"';
}

QString csvLine(const QStringList &fields)
{
    QStringList written;
    for (const QString &field : fields)
        written += quoted(field);
    return written.join(u',') + "\r\n"_L1;
}

} // namespace

bool writeHtml(ReportPages &pages, QIODevice &device, const ReportProgress &progress)
{
    const std::vector<ReportFont> fonts = fontsOf(pages.design());
    QString style;
    for (std::size_t i = 0; i < fonts.size(); ++i)
        style += u".f%1{%2}\n"_s.arg(i).arg(fontStyle(fonts[i]));
    write(
        device,
        u"<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>%1</title>\n<style>\n"
        "body{background:#777;margin:0}\n"
        ".page{position:relative;width:%2;height:%3;margin:12pt auto;background:#fff;color:#000}\n"
        "p,hr{position:absolute;margin:0;white-space:pre}\nhr{border:0;background:#000}\n"
        "@page{size:%2 %3;margin:0}\n@media print{.page{margin:0;break-after:page}}\n%4"
        "</style>\n</head>\n<body>\n"_s.arg(pages.design().Caption.toHtmlEscaped(),
                                            points(pages.paper().width), points(pages.paper().height),
                                            style));
    if (!forEachPage(pages, progress, [&](const ReportPage &page) { write(device, htmlOf(page, fonts)); }))
        return false;
    write(device, u"</body>\n</html>\n"_s);
    return true;
}

bool writeText(ReportPages &pages, QIODevice &device, const ReportProgress &progress)
{
    const double left =
        std::min<double>(pages.design().margin, (pages.paper().width - pages.design().Width) / 2.0);
    return forEachPage(pages, progress, [&](const ReportPage &page) {
        const PageRow *before = nullptr;
        const std::vector<PageRow> rows = rowsOf(page);
        QString text;
        for (const PageRow &row : rows) {
            if (before && row.top - before->bottom > kEmptyLine * (row.bottom - row.top))
                text += u'\n';
            text += rowText(row, left) + u'\n';
            before = &row;
        }
        write(device, text + u'\f');
    });
}

bool writeCsv(ReportPages &pages, QIODevice &device, const ReportProgress &progress)
{
    QStringList columns;
    if (const ReportSection *detail = pages.design().section(ReportSection::Kind::Detail))
        for (const ReportControl &control : detail->controls)
            if (control.kind == ReportControl::Kind::Text)
                columns += control.DataField;
    write(device, QChar(QChar::ByteOrderMark) + csvLine(columns));
    const ReportRecords &records = pages.records();
    for (int record = 0, count = records.count(); record < count; ++record) {
        if (const auto values = records.values(record, columns)) {
            QStringList fields;
            for (const Value &value : *values)
                fields += joinText(value);
            write(device, csvLine(fields));
        }
        if (!progress(record + 1, count))
            return false;
    }
    return true;
}

bool forEachPage(ReportPages &pages, const ReportProgress &progress,
                 const std::function<void(const ReportPage &page)> &take)
{
    constexpr int kParts = 10'000;
    if (pages.printsCount())
        pages.count();
    for (int number = 1; number <= pages.found() || pages.findNext(); ++number) {
        take(pages.page(number));
        const bool going = pages.complete() ? progress(number, pages.found())
                                            : progress(static_cast<int>(pages.progress() * kParts), kParts);
        if (!going)
            return false;
    }
    return true;
}

bool exportReport(ReportPages &pages, const QString &path, ReportWriter writer,
                  const ReportProgress &progress)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw RunTimeError(RunTime::PathFileAccess);
    if (!writer(pages, file, progress))
        return false; // the file that was there stays
    if (!file.commit())
        throw RunTimeError(RunTime::PathFileAccess);
    return true;
}

} // namespace vardelin
