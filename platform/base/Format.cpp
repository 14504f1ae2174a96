#include "platform/base/Format.h"

#include "platform/base/Dates.h"
#include "platform/base/Mask.h"
#include "platform/base/RunTimeError.h"

namespace vardelin {

using namespace Qt::StringLiterals;

namespace {

enum class MaskKind { Literal, Number, Date, Text };

struct NamedMask
{
    QStringView name;
    QStringView mask;
};

constexpr NamedMask kNamedMasks[] = {
    {u"Currency", u"$#,##0.00;($#,##0.00)"},
    {u"Fixed", u"0.00"},
    {u"Standard", u"#,##0.00"},
    {u"Percent", u"0.00%"},
    {u"Scientific", u"0.00E+00"},
    {u"Yes/No", u"\"Yes\";\"Yes\";\"No\""},
    {u"True/False", u"\"True\";\"True\";\"False\""},
    {u"On/Off", u"\"On\";\"On\";\"Off\""},
    {u"General Date", u"c"},
    {u"Long Date", u"dddd, mmmm d, yyyy"},
    {u"Medium Date", u"dd-mmm-yy"},
    {u"Short Date", u"m/d/yyyy"},
    {u"Long Time", u"h:nn:ss AM/PM"},
    {u"Medium Time", u"hh:nn AM/PM"},
    {u"Short Time", u"hh:nn"},
};

QStringView withoutName(QStringView mask)
{
    for (const NamedMask &named : kNamedMasks) {
        if (named.name.compare(mask, Qt::CaseInsensitive) == 0)
            return named.mask;
    }
    return mask;
}

std::vector<Mask> sectionsOf(QStringView mask)
{
    std::vector<Mask> sections(1);
    bool quoted = false;
    for (qsizetype at = 0; at < mask.size(); ++at) {
        const QChar c = mask[at];
        if (c == u'"')
            quoted = !quoted;
        else if (quoted)
            sections.back().push_back({c, true});
        else if (c == u'\\' && at + 1 < mask.size())
            sections.back().push_back({mask[++at], true});
        else if (c == u';')
            sections.emplace_back();
        else
            sections.back().push_back({c, false});
    }
    return sections;
}

// The first character that can't be anything else decides; what doesn't fit the kind stands for itself, as
// the "hours" of
// "#,###.0 hours" does.
MaskKind kindOf(const std::vector<Mask> &sections)
{
    for (const Mask &section : sections) {
        for (const MaskChar &mark : section) {
            if (mark.literal)
                continue;
            if (u"0#%"_s.contains(mark.c))
                return MaskKind::Number;
            if (u"@&<>!"_s.contains(mark.c))
                return MaskKind::Text;
            if (u"cdhmnqswy"_s.contains(mark.c, Qt::CaseInsensitive) || u"tT"_s.contains(mark.c))
                return MaskKind::Date;
        }
    }
    // Sections of literals only still go by the sign of a number.
    return sections.size() > 1 ? MaskKind::Number : MaskKind::Literal;
}

QString literalText(const Mask &mask)
{
    QString text;
    for (const MaskChar &mark : mask)
        text += mark.c;
    return text;
}

// The number in a value, nullopt where it isn't one. A mask shows 15 digits, and all those of money.
std::optional<DigitString> numberIn(const Value &value)
{
    if (const auto *text = std::get_if<QString>(&value.variant())) {
        std::optional<DigitString> number = digitsFromText(*text);
        if (number)
            number->roundToSignificant(kDoubleDigits);
        return number;
    }
    if (const auto *money = std::get_if<Currency>(&value.variant()))
        return Decimal(*money).digitString();
    if (const auto *number = std::get_if<Decimal>(&value.variant()))
        return number->digitString();
    const double number = toDouble(value);
    if (number - number != 0) // neither infinite nor no number at all
        return std::nullopt;
    return digitsOf(number);
}

std::optional<DateSerial> dateIn(const Value &value)
{
    try {
        return toDate(value);
    } catch (const RunTimeError &) {
        return std::nullopt;
    }
}

QString formatNull(MaskKind kind, const std::vector<Mask> &sections)
{
    if (kind == MaskKind::Number && sections.size() > 3)
        return literalText(sections[3]);
    if (kind == MaskKind::Text && sections.size() > 1)
        return literalText(sections[1]);
    return {};
}

} // namespace

QString format(const Value &value, QStringView mask)
{
    if (mask.isEmpty() || mask.compare(u"General Number", Qt::CaseInsensitive) == 0)
        return joinText(value);
    const std::vector<Mask> sections = sectionsOf(withoutName(mask));
    const MaskKind kind = kindOf(sections);
    if (value.isNull() || value.isEmpty())
        return formatNull(kind, sections);
    switch (kind) {
    case MaskKind::Number:
        if (const std::optional<DigitString> number = numberIn(value))
            return formatNumber(*number, sections);
        return toText(value);
    case MaskKind::Date:
        if (const std::optional<DateSerial> date = dateIn(value))
            return formatDate(*date, sections.front());
        return toText(value);
    case MaskKind::Text:
        return formatText(toText(value), sections.front());
    case MaskKind::Literal:
        break;
    }
    return literalText(sections.front());
}

} // namespace vardelin
