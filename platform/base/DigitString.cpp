#include "platform/base/DigitString.h"

#include "platform/base/RunTimeError.h"
#include "platform/base/Value.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace vardelin {

namespace {

// Any exponent beyond this overflows or vanishes in every type; it bounds what a hostile text can ask for.
constexpr int kExponentLimit = 100000;

// Enough digits that cutting the exact value there can't turn a number that isn't a half into one.
constexpr int kExactDigits = 40;

template <class Float>
DigitString exactDigits(Float value)
{
    DigitString number;
    number.negative = std::signbit(value);
    std::array<char, 64> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(value),
                                   std::chars_format::scientific, kExactDigits)
                         .ptr;
    const std::string_view text(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
    const std::size_t mark = text.find('e');
    number.digits.assign(text.substr(0, 1));
    number.digits.append(text.substr(2, mark - 2));
    const std::string_view exponent = text.substr(text[mark + 1] == '+' ? mark + 2 : mark + 1);
    std::from_chars(exponent.data(), exponent.data() + exponent.size(), number.point);
    ++number.point;
    number.normalise();
    return number;
}

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

QChar lower(QChar c)
{
    return c >= u'A' && c <= u'Z' ? QChar(c.unicode() + 32) : c;
}

// Reads from the front of a text what belongs to a number.
class NumberReader
{
public:
    explicit NumberReader(QStringView text) : m_text(text) {}

    bool readPrefix();
    bool readRadix();
    bool readMantissa(bool separators);
    void readExponent(bool required);
    bool readSuffix();
    bool failed() const { return m_failed; }
    bool atRadix() const { return peek() == u'&'; }
    DigitString take();

private:
    QChar peek(qsizetype ahead = 0) const
    {
        return m_at + ahead < m_text.size() ? m_text[m_at + ahead] : QChar();
    }
    void skipBlanks()
    {
        while (m_at < m_text.size() && m_text[m_at].isSpace())
            ++m_at;
    }
    bool readSign();

    QStringView m_text;
    qsizetype m_at = 0;
    DigitString m_number;
    bool m_signed = false, m_dollar = false, m_bracket = false, m_failed = false;
};

bool NumberReader::readSign()
{
    if (m_signed || (peek() != u'-' && peek() != u'+'))
        return false;
    m_number.negative = peek() == u'-';
    m_signed = true;
    ++m_at;
    return true;
}

bool NumberReader::readPrefix()
{
    for (;;) {
        skipBlanks();
        if (readSign())
            continue;
        if (peek() == u'$' && !m_dollar)
            m_dollar = true;
        else if (peek() == u'(' && !m_bracket && !m_signed)
            m_bracket = m_signed = m_number.negative = true;
        else
            return m_at < m_text.size();
        ++m_at;
    }
}

// &H and &O: up to 16 bits are a signed 16-bit number, unless a & behind them says otherwise; up to 32 bits a
// signed 32-bit one.
bool NumberReader::readRadix()
{
    const QChar kind = lower(peek(1));
    if (kind != u'h' && kind != u'o')
        return false;
    const std::uint64_t radix = kind == u'h' ? 16 : 8;
    m_at += 2;
    std::uint64_t bits = 0;
    qsizetype count = 0;
    for (;; ++m_at, ++count) {
        const QChar c = lower(peek());
        const int digit = isDigit(c)               ? c.unicode() - u'0'
                          : c >= u'a' && c <= u'f' ? c.unicode() - u'a' + 10
                                                   : 99;
        if (static_cast<std::uint64_t>(digit) >= radix)
            break;
        bits = bits * radix + static_cast<std::uint64_t>(digit);
        if (bits > 0xFFFFFFFFu)
            throw RunTimeError(RunTime::Overflow);
    }
    const bool asLong = peek() == u'&';
    m_at += asLong ? 1 : 0;
    std::int64_t value =
        bits > 0xFFFF || asLong ? static_cast<std::int32_t>(bits) : static_cast<std::int16_t>(bits);
    m_number.negative = m_number.negative != (value < 0);
    m_number.digits = std::to_string(std::abs(value));
    m_number.point = static_cast<int>(m_number.digits.size());
    return count > 0;
}

bool NumberReader::readMantissa(bool separators)
{
    bool any = false, behindPoint = false;
    for (;; ++m_at) {
        const QChar c = peek();
        if (isDigit(c)) {
            any = true;
            m_number.digits.push_back(static_cast<char>(c.unicode()));
            m_number.point += behindPoint ? 0 : 1;
        } else if (c == u'.' && !behindPoint) {
            behindPoint = true;
        } else if (!(c == u',' && separators && any && !behindPoint)) {
            return any;
        }
    }
}

// required: letters that begin an exponent and don't go on as one are an error, rather than the end of the
// number.
void NumberReader::readExponent(bool required)
{
    const QChar mark = lower(peek());
    if (mark != u'e' && mark != u'd')
        return;
    const bool hasSign = peek(1) == u'+' || peek(1) == u'-';
    const bool negative = peek(1) == u'-';
    if (!isDigit(peek(hasSign ? 2 : 1))) {
        m_failed = required;
        return;
    }
    m_at += hasSign ? 2 : 1;
    int exponent = 0;
    for (; isDigit(peek()); ++m_at)
        exponent = std::min(kExponentLimit, exponent * 10 + (peek().unicode() - u'0'));
    m_number.point += negative ? -exponent : exponent;
}

bool NumberReader::readSuffix()
{
    for (;;) {
        skipBlanks();
        if (readSign())
            continue;
        if (peek() == u'$' && !m_dollar)
            m_dollar = true;
        else if (peek() == u')' && m_bracket)
            m_bracket = false;
        else
            return m_at == m_text.size() && !m_bracket;
        ++m_at;
    }
}

DigitString NumberReader::take()
{
    m_number.normalise();
    return std::move(m_number);
}

} // namespace

char DigitString::at(int place) const
{
    const int index = point - 1 - place;
    return index >= 0 && index < static_cast<int>(digits.size()) ? digits[static_cast<std::size_t>(index)]
                                                                 : '0';
}

void DigitString::normalise()
{
    const std::size_t first = digits.find_first_not_of('0');
    if (first == std::string::npos) {
        *this = {};
        return;
    }
    digits.erase(0, first);
    point -= static_cast<int>(first);
    digits.erase(digits.find_last_not_of('0') + 1);
}

void DigitString::roundToSignificant(int count)
{
    if (count >= static_cast<int>(digits.size()))
        return;
    if (count < 0) {
        *this = {};
        return;
    }
    const bool up = digits[static_cast<std::size_t>(count)] >= '5';
    digits.resize(static_cast<std::size_t>(count));
    if (up) {
        auto digit = digits.rbegin();
        for (; digit != digits.rend() && *digit == '9'; ++digit)
            *digit = '0';
        if (digit != digits.rend()) {
            ++*digit;
        } else {
            digits.insert(digits.begin(), '1');
            ++point;
        }
    }
    normalise();
}

void DigitString::roundToPlaces(int places)
{
    roundToSignificant(point + places);
}

DigitString digitsOf(double value)
{
    DigitString number = exactDigits(value);
    number.roundToSignificant(kDoubleDigits);
    return number;
}

DigitString digitsOf(float value)
{
    DigitString number = exactDigits(value);
    number.roundToSignificant(kSingleDigits);
    return number;
}

std::optional<DigitString> digitsFromText(QStringView text)
{
    NumberReader reader(text);
    if (!reader.readPrefix())
        return std::nullopt;
    if (reader.atRadix()) {
        if (!reader.readRadix())
            return std::nullopt;
    } else {
        if (!reader.readMantissa(true))
            return std::nullopt;
        reader.readExponent(true);
    }
    if (reader.failed() || !reader.readSuffix())
        return std::nullopt;
    return reader.take();
}

double val(QStringView text)
{
    QString tight;
    for (const QChar c : text) {
        if (c != u' ' && c != u'\t' && c != u'\n' && c != u'\r')
            tight.append(c);
    }
    const qsizetype signs = tight.startsWith(u'-') || tight.startsWith(u'+') ? 1 : 0;
    if (tight.size() > signs && (tight[signs] == u'$' || tight[signs] == u'('))
        return 0;
    NumberReader reader(tight);
    try {
        if (reader.readPrefix()) {
            if (reader.atRadix())
                return reader.readRadix() ? toDouble(reader.take()) : 0;
            if (reader.readMantissa(false)) {
                reader.readExponent(false);
                return toDouble(reader.take());
            }
        }
    } catch (const RunTimeError &) {
        // Beyond every number: there is no number that it begins with.
    }
    return 0;
}

double toDouble(const DigitString &number)
{
    if (number.isZero())
        return 0;
    const std::string text = "0." + number.digits + "e" + std::to_string(number.point);
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        if (number.point > 0)
            throw RunTimeError(RunTime::Overflow);
        return 0;
    }
    return number.negative ? -value : value;
}

QString generalText(const DigitString &number, int significant)
{
    if (number.isZero())
        return QStringLiteral("0");
    const int count = static_cast<int>(number.digits.size());
    std::string text = number.negative ? "-" : "";
    if (number.point > significant || count - number.point > significant) {
        text += number.digits.substr(0, 1);
        if (count > 1)
            text += "." + number.digits.substr(1);
        const int exponent = number.point - 1;
        const std::string size = std::to_string(std::abs(exponent));
        text += (exponent < 0 ? "E-" : "E+") + std::string(size.size() < 2 ? "0" : "") + size;
    } else {
        for (int place = std::max(number.point - 1, 0); place >= std::min(number.point - count, 0); --place) {
            if (place == -1)
                text += '.';
            text += number.at(place);
        }
    }
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace vardelin
