#include "platform/base/Mask.h"

#include <algorithm>
#include <cstdlib>

namespace vardelin {

namespace {

// What a section asks for, before any digit is there.
struct Layout
{
    int whole = 0;    // places ahead of the point
    int fraction = 0; // places behind it
    int shift = 0;    // powers of ten: 2 for each %, -3 for each comma at the end of the whole part
    bool thousands = false;
    bool scientific = false;
};

bool isPlace(const MaskChar &mark)
{
    return mark.is(u'0') || mark.is(u'#');
}

bool beginsExponent(const Mask &mask, std::size_t at)
{
    return (mask[at].is(u'E') || mask[at].is(u'e')) && at + 1 < mask.size() &&
           (mask[at + 1].is(u'+') || mask[at + 1].is(u'-'));
}

Layout layoutOf(const Mask &mask)
{
    Layout layout;
    bool behindPoint = false;
    int commas = 0;
    for (std::size_t at = 0; at < mask.size(); ++at) {
        const MaskChar &mark = mask[at];
        if (isPlace(mark)) {
            layout.thousands = layout.thousands || (commas > 0 && !behindPoint);
            commas = 0;
            ++(behindPoint ? layout.fraction : layout.whole);
        } else if (mark.is(u'.') && !behindPoint) {
            behindPoint = true;
            layout.shift -= 3 * commas;
            commas = 0;
        } else if (mark.is(u',') && layout.whole > 0) {
            ++commas;
        } else if (mark.is(u'%')) {
            layout.shift += 2;
        } else if (beginsExponent(mask, at)) {
            layout.scientific = true;
            break;
        }
    }
    layout.shift -= 3 * commas;
    return layout;
}

// Writes one number into one section, left to right.
class NumberWriter
{
public:
    NumberWriter(const Mask &mask, const Layout &layout, DigitString number);
    QString write();
    bool isZero() const { return m_number.isZero(); }

private:
    void writeWholePlace(const MaskChar &mark);
    void writeWholeDigit(int place);
    void writeFractionPlace();
    std::size_t writeExponent(std::size_t at);

    const Mask &m_mask;
    Layout m_layout;
    DigitString m_number;
    int m_exponent = 0;
    int m_nextWhole = 0;    // places of the mask's whole part that are still to come
    int m_nextFraction = 0; // places behind the point that were written
    int m_forcedFraction = 0;
    bool m_zeroSeen = false; // from the first 0 on every place shows a digit
    bool m_behindPoint = false;
    QString m_text;
};

NumberWriter::NumberWriter(const Mask &mask, const Layout &layout, DigitString number)
    : m_mask(mask), m_layout(layout), m_number(std::move(number)), m_nextWhole(layout.whole)
{
    if (m_number.isZero())
        return;
    if (layout.scientific) {
        m_number.roundToSignificant(std::max(layout.whole, 1) + layout.fraction);
        m_exponent = m_number.point - std::max(layout.whole, 1);
        m_number.point -= m_exponent;
    } else {
        m_number.point += layout.shift;
        m_number.roundToPlaces(layout.fraction);
    }
}

void NumberWriter::writeWholeDigit(int place)
{
    m_text += QLatin1Char(m_number.at(place));
    if (m_layout.thousands && place > 0 && place % 3 == 0)
        m_text += u',';
}

void NumberWriter::writeWholePlace(const MaskChar &mark)
{
    if (m_nextWhole == m_layout.whole) {
        for (int place = m_number.point - 1; place >= m_layout.whole; --place)
            writeWholeDigit(place);
    }
    const int place = --m_nextWhole;
    m_zeroSeen = m_zeroSeen || mark.is(u'0');
    if (m_zeroSeen || place < m_number.point)
        writeWholeDigit(place);
}

void NumberWriter::writeFractionPlace()
{
    const int shown = static_cast<int>(m_number.digits.size()) - m_number.point; // digits behind the point
    const int place = m_nextFraction++;
    if (place < shown || place < m_forcedFraction)
        m_text += QLatin1Char(m_number.at(-place - 1));
}

// E+00 and its kin; gives the place behind it.
std::size_t NumberWriter::writeExponent(std::size_t at)
{
    m_text += m_mask[at].c;
    if (m_exponent < 0)
        m_text += u'-';
    else if (m_mask[at + 1].is(u'+'))
        m_text += u'+';
    at += 2;
    int width = 0;
    for (; at < m_mask.size() && isPlace(m_mask[at]); ++at)
        width += m_mask[at].is(u'0') ? 1 : 0;
    m_text += QString::number(std::abs(m_exponent)).rightJustified(width, u'0');
    return at;
}

QString NumberWriter::write()
{
    int places = 0;
    bool behindPoint = false;
    for (const MaskChar &mark : m_mask) {
        behindPoint = behindPoint || mark.is(u'.');
        if (behindPoint && isPlace(mark) && ++places && mark.is(u'0') && places <= m_layout.fraction)
            m_forcedFraction = places;
    }
    for (std::size_t at = 0; at < m_mask.size(); ++at) {
        const MaskChar &mark = m_mask[at];
        if (isPlace(mark)) {
            m_behindPoint ? writeFractionPlace() : writeWholePlace(mark);
        } else if (mark.is(u'.') && !m_behindPoint) {
            m_behindPoint = true;
            for (int place = m_number.point - 1; m_layout.whole == 0 && place >= 0; --place)
                writeWholeDigit(place);
            m_text += u'.';
        } else if (m_layout.scientific && beginsExponent(m_mask, at)) {
            at = writeExponent(at) - 1;
        } else if (!mark.is(u',') || m_layout.whole == 0) {
            m_text += mark.c;
        }
    }
    return m_text;
}

QString writeSection(const Mask &mask, const DigitString &number, bool withSign)
{
    NumberWriter writer(mask, layoutOf(mask), number);
    const QString text = writer.write();
    return withSign && number.negative && !writer.isZero() ? u'-' + text : text;
}

} // namespace

QString formatNumber(DigitString number, const std::vector<Mask> &sections)
{
    const auto given = [&](std::size_t section) {
        return sections.size() > section && !sections[section].empty();
    };
    const bool ownNegative = number.negative && given(1);
    const Mask &mask = ownNegative ? sections[1] : sections[0];
    const bool vanishes = NumberWriter(mask, layoutOf(mask), number).isZero();
    if ((number.isZero() || vanishes) && given(2))
        return writeSection(sections[2], {}, false);
    return writeSection(mask, number, !ownNegative);
}

} // namespace vardelin
