#include "platform/base/Dates.h"
#include "platform/base/Mask.h"

#include <array>

namespace vardelin {

using namespace Qt::StringLiterals;

namespace {

// The names are those of the United States setting, whatever the machine's.
constexpr std::array<QStringView, 12> kMonths = {u"January",   u"February", u"March",    u"April",
                                                 u"May",       u"June",     u"July",     u"August",
                                                 u"September", u"October",  u"November", u"December"};
constexpr std::array<QStringView, 7> kDays = {u"Sunday",   u"Monday", u"Tuesday", u"Wednesday",
                                              u"Thursday", u"Friday", u"Saturday"};

struct HalfOfDay
{
    QStringView mask, morning, afternoon;
};
constexpr HalfOfDay kHalves[] = {{u"AM/PM", u"AM", u"PM"},
                                 {u"am/pm", u"am", u"pm"},
                                 {u"A/P", u"A", u"P"},
                                 {u"a/p", u"a", u"p"},
                                 {u"AMPM", u"AM", u"PM"}};

const HalfOfDay *halfAt(const Mask &mask, std::size_t at)
{
    const auto matches = [&](QStringView text, Qt::CaseSensitivity sensitivity) {
        if (mask.size() - at < static_cast<std::size_t>(text.size()))
            return false;
        for (qsizetype i = 0; i < text.size(); ++i) {
            const MaskChar &mark = mask[at + static_cast<std::size_t>(i)];
            if (mark.literal || QStringView(&mark.c, 1).compare(text.sliced(i, 1), sensitivity) != 0)
                return false;
        }
        return true;
    };
    for (const Qt::CaseSensitivity sensitivity : {Qt::CaseSensitive, Qt::CaseInsensitive}) {
        for (const HalfOfDay &half : kHalves) {
            if (matches(half.mask, sensitivity))
                return &half;
        }
    }
    return nullptr;
}

QString padded(int number, std::size_t width)
{
    return QString::number(number).rightJustified(static_cast<qsizetype>(width), u'0');
}

class DateWriter
{
public:
    DateWriter(DateSerial date, const Mask &mask);
    QString write();

private:
    void writeField(QChar letter, std::size_t count);
    void writeDay(std::size_t count);
    void writeMonth(std::size_t count);
    int dayOfYear() const
    {
        return static_cast<int>(serialOf(dayOnly()).days - serialOf({m_parts.year, 1, 1, 0, 0, 0}).days) + 1;
    }
    int weekOfYear() const;
    DateParts dayOnly() const { return {m_parts.year, m_parts.month, m_parts.day, 0, 0, 0}; }

    DateSerial m_date;
    DateParts m_parts;
    const Mask &m_mask;
    bool m_twelveHours = false;
    bool m_afterHour = false; // then an m is minutes
    QString m_text;
};

DateWriter::DateWriter(DateSerial date, const Mask &mask) : m_date(date), m_parts(partsOf(date)), m_mask(mask)
{
    for (std::size_t at = 0; at < mask.size(); ++at)
        m_twelveHours = m_twelveHours || halfAt(mask, at);
}

// How many of a letter make one field; a longer run begins another.
std::size_t longestRun(QChar letter)
{
    switch (letter.unicode()) {
    case u'd':
        return 6;
    case u'm':
    case u'y':
        return 4;
    case u'h':
    case u'n':
    case u's':
    case u'w':
        return 2;
    case u't':
        return 5;
    case u'c':
    case u'q':
        return 1;
    default:
        return 0;
    }
}

int DateWriter::weekOfYear() const
{
    const int firstWeekday = weekdayOf(serialOf({m_parts.year, 1, 1, 0, 0, 0}));
    return (dayOfYear() - 1 + firstWeekday - 1) / 7 + 1;
}

void DateWriter::writeDay(std::size_t count)
{
    const QStringView name = kDays[static_cast<std::size_t>(weekdayOf(serialOf(dayOnly()))) - 1];
    if (count <= 2)
        m_text += padded(m_parts.day, count);
    else if (count <= 4)
        m_text += count == 3 ? name.first(3) : name;
    else if (count == 5)
        m_text += u"%1/%2/%3"_s.arg(m_parts.month).arg(m_parts.day).arg(m_parts.year);
    else
        m_text += u"%1, %2 %3, %4"_s.arg(name, kMonths[static_cast<std::size_t>(m_parts.month) - 1])
                      .arg(m_parts.day)
                      .arg(m_parts.year);
}

void DateWriter::writeMonth(std::size_t count)
{
    const QStringView name = kMonths[static_cast<std::size_t>(m_parts.month) - 1];
    if (count <= 2)
        m_text += padded(m_afterHour ? m_parts.minute : m_parts.month, count);
    else
        m_text += count == 3 ? name.first(3) : name;
}

void DateWriter::writeField(QChar letter, std::size_t count)
{
    switch (letter.unicode()) {
    case u'd':
        return writeDay(count);
    case u'm':
        return writeMonth(count);
    case u'y':
        if (count == 1)
            m_text += QString::number(dayOfYear());
        else
            m_text += count == 2 ? padded(m_parts.year % 100, 2) : padded(m_parts.year, 4);
        return;
    case u'h':
        m_text += padded(m_twelveHours ? (m_parts.hour + 11) % 12 + 1 : m_parts.hour, count);
        return;
    case u'n':
        m_text += padded(m_parts.minute, count);
        return;
    case u's':
        m_text += padded(m_parts.second, count);
        return;
    case u'w':
        m_text += QString::number(count == 1 ? weekdayOf(serialOf(dayOnly())) : weekOfYear());
        return;
    case u'q':
        m_text += QString::number((m_parts.month + 2) / 3);
        return;
    case u't':
        m_text += dateText(serialOf({1899, 12, 30, m_parts.hour, m_parts.minute, m_parts.second}));
        return;
    default: // c
        m_text += dateText(m_date);
    }
}

QString DateWriter::write()
{
    for (std::size_t at = 0; at < m_mask.size();) {
        const MaskChar &mark = m_mask[at];
        if (const HalfOfDay *half = halfAt(m_mask, at)) {
            m_text += m_parts.hour < 12 ? half->morning : half->afternoon;
            at += static_cast<std::size_t>(half->mask.size());
            continue;
        }
        const QChar letter = mark.literal ? QChar() : mark.c.toLower();
        std::size_t count = 0;
        while (count < longestRun(letter) && at + count < m_mask.size() && !m_mask[at + count].literal &&
               m_mask[at + count].c.toLower() == letter)
            ++count;
        if (letter == u'y' && count == 3)
            count = 2;
        if (count == 0 || (letter == u't' && count < 5)) {
            m_text += mark.c;
            ++at;
            continue;
        }
        writeField(letter, count);
        m_afterHour = letter == u'h';
        at += count;
    }
    return m_text;
}

} // namespace

QString formatDate(DateSerial date, const Mask &mask)
{
    return DateWriter(date, mask).write();
}

} // namespace vardelin
