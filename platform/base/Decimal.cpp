#include "platform/base/Decimal.h"

#include "platform/base/DigitString.h"
#include "platform/base/RunTimeError.h"

#include <algorithm>
#include <array>
#include <limits>

namespace vardelin {

namespace {

__extension__ using UInt128 = unsigned __int128;

constexpr int kMaxScale = 28;
constexpr int kMaxBits = 96;

// An unsigned whole number of 256 bits: room for the product of two decimals, and for one brought to the
// scale of another.
class Wide
{
public:
    Wide() = default;
    explicit Wide(UInt128 value)
    {
        for (std::size_t i = 0; i < 4; ++i)
            m_limb[i] = static_cast<std::uint32_t>(value >> (32 * i));
    }

    bool fits() const
    {
        return std::all_of(m_limb.begin() + kMaxBits / 32, m_limb.end(), [](auto l) { return l == 0; });
    }
    bool isOdd() const { return (m_limb[0] & 1) != 0; }
    UInt128 low() const
    {
        UInt128 value = 0;
        for (std::size_t i = 4; i-- > 0;)
            value = value << 32 | m_limb[i];
        return value;
    }

    void timesPlus(std::uint32_t factor, std::uint32_t addend)
    {
        std::uint64_t carry = addend;
        for (std::uint32_t &limb : m_limb) {
            carry += std::uint64_t{limb} * factor;
            limb = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
    }

    std::uint32_t divideByTen()
    {
        std::uint64_t remainder = 0;
        for (auto limb = m_limb.rbegin(); limb != m_limb.rend(); ++limb) {
            remainder = remainder << 32 | *limb;
            *limb = static_cast<std::uint32_t>(remainder / 10);
            remainder %= 10;
        }
        return static_cast<std::uint32_t>(remainder);
    }

    friend Wide operator*(const Wide &left, const Wide &right) // both of up to 128 bits
    {
        Wide product;
        for (std::size_t i = 0; i < 4; ++i) {
            std::uint64_t carry = 0;
            for (std::size_t j = 0; j < 4; ++j) {
                carry += std::uint64_t{left.m_limb[i]} * right.m_limb[j] + product.m_limb[i + j];
                product.m_limb[i + j] = static_cast<std::uint32_t>(carry);
                carry >>= 32;
            }
            product.m_limb[i + 4] = static_cast<std::uint32_t>(carry);
        }
        return product;
    }

    Wide &operator+=(const Wide &other)
    {
        std::uint64_t carry = 0;
        for (std::size_t i = 0; i < m_limb.size(); ++i) {
            carry += std::uint64_t{m_limb[i]} + other.m_limb[i];
            m_limb[i] = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
        return *this;
    }

    Wide &operator-=(const Wide &smaller)
    {
        std::int64_t carry = 0;
        for (std::size_t i = 0; i < m_limb.size(); ++i) {
            carry += std::int64_t{m_limb[i]} - std::int64_t{smaller.m_limb[i]};
            m_limb[i] = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
        return *this;
    }

    bool operator<(const Wide &other) const
    {
        return std::lexicographical_compare(m_limb.rbegin(), m_limb.rend(), other.m_limb.rbegin(),
                                            other.m_limb.rend());
    }

private:
    std::array<std::uint32_t, 8> m_limb{}; // least significant first
};

struct Scaled
{
    bool negative = false;
    Wide magnitude;
    int scale = 0;
};

Scaled scaled(const Decimal &number)
{
    const bool negative = number.digits() < 0;
    const auto magnitude = static_cast<UInt128>(negative ? -number.digits() : number.digits());
    return {negative, Wide(magnitude), number.scale()};
}

// Takes digits off the end, halves to the even digit, until it fits the scale and 96 bits. sticky: something
// that isn't zero was cut off behind the last digit before.
Scaled fitted(Scaled number, int maxScale, bool sticky = false)
{
    std::uint32_t last = 0;
    const auto dropDigit = [&] {
        sticky = sticky || last != 0;
        last = number.magnitude.divideByTen();
        --number.scale;
    };
    while (number.scale > maxScale || (!number.magnitude.fits() && number.scale > 0))
        dropDigit();
    if (last > 5 || (last == 5 && (sticky || number.magnitude.isOdd())))
        number.magnitude += Wide(1);
    if (!number.magnitude.fits() && number.scale > 0)
        return fitted(number, number.scale - 1);
    if (!number.magnitude.fits())
        throw RunTimeError(RunTime::Overflow);
    return number;
}

Scaled sum(Scaled left, Scaled right)
{
    for (; left.scale < right.scale; ++left.scale)
        left.magnitude.timesPlus(10, 0);
    for (; right.scale < left.scale; ++right.scale)
        right.magnitude.timesPlus(10, 0);
    if (left.negative == right.negative) {
        left.magnitude += right.magnitude;
        return left;
    }
    if (left.magnitude < right.magnitude)
        std::swap(left, right);
    left.magnitude -= right.magnitude;
    return left;
}

Decimal::Digits signedDigits(const Scaled &number)
{
    const auto digits = static_cast<Decimal::Digits>(number.magnitude.low());
    return number.negative ? -digits : digits;
}

} // namespace

Decimal::Decimal(Digits digits, int scale) : m_digits(digits), m_scale(scale) {}

std::optional<Decimal> Decimal::fromParts(bool negative, Digits magnitude, int scale)
{
    if (magnitude < 0 || magnitude >> kMaxBits != 0 || scale < 0 || scale > kMaxScale)
        return std::nullopt;
    return Decimal(negative ? -magnitude : magnitude, scale);
}

std::optional<Decimal> Decimal::fromText(QStringView text)
{
    const std::optional<DigitString> number = digitsFromText(text);
    if (!number)
        return std::nullopt;
    return fromDigits(*number);
}

Decimal Decimal::fromDigits(const DigitString &number)
{
    // Digits that no decimal can hold only count as "not a half".
    constexpr int kEnough = 60;
    if (number.isZero() || number.point < -kMaxScale)
        return {};
    if (number.point > kMaxScale + 1)
        throw RunTimeError(RunTime::Overflow);
    const int count = std::min(static_cast<int>(number.digits.size()), kEnough);
    const int whole = std::max(count, number.point);
    Scaled value{number.negative, Wide(), std::max(whole - number.point, 0)};
    for (int i = 0; i < whole; ++i) {
        const char digit = i < count ? number.digits[static_cast<std::size_t>(i)] : '0';
        value.magnitude.timesPlus(10, static_cast<std::uint32_t>(digit - '0'));
    }
    const Scaled fit = fitted(value, kMaxScale, static_cast<int>(number.digits.size()) > kEnough);
    return {signedDigits(fit), fit.scale};
}

Decimal Decimal::operator*(const Decimal &other) const
{
    const Scaled left = scaled(*this), right = scaled(other);
    const Scaled product =
        fitted({left.negative != right.negative, left.magnitude * right.magnitude, left.scale + right.scale},
               kMaxScale);
    return {signedDigits(product), product.scale};
}

Decimal Decimal::operator+(const Decimal &other) const
{
    const Scaled total = fitted(sum(scaled(*this), scaled(other)), kMaxScale);
    return {signedDigits(total), total.scale};
}

Decimal Decimal::operator-(const Decimal &other) const
{
    return *this + -other;
}

Decimal Decimal::operator-() const
{
    return {-m_digits, m_scale};
}

bool Decimal::operator==(const Decimal &other) const
{
    return !(*this < other) && !(other < *this);
}

bool Decimal::operator<(const Decimal &other) const
{
    const Scaled difference = sum(scaled(*this), scaled(-other));
    return difference.negative && Wide() < difference.magnitude;
}

Currency Decimal::toCurrency() const
{
    Scaled number = fitted(scaled(*this), 4);
    for (; number.scale < 4; ++number.scale)
        number.magnitude.timesPlus(10, 0);
    const Digits digits = signedDigits(number);
    using Limits = std::numeric_limits<std::int64_t>;
    if (!number.magnitude.fits() || digits < Limits::min() || digits > Limits::max())
        throw RunTimeError(RunTime::Overflow);
    return {static_cast<std::int64_t>(digits)};
}

DigitString Decimal::digitString() const
{
    DigitString number;
    number.negative = m_digits < 0;
    auto magnitude = static_cast<UInt128>(number.negative ? -m_digits : m_digits);
    for (; magnitude != 0; magnitude /= 10)
        number.digits.insert(number.digits.begin(),
                             static_cast<char>('0' + static_cast<int>(magnitude % 10)));
    number.point = static_cast<int>(number.digits.size()) - m_scale;
    number.normalise();
    return number;
}

double Decimal::toDouble() const
{
    return vardelin::toDouble(digitString());
}

QString Decimal::toText() const
{
    // Never in exponent form: it has 29 places before the point and 28 behind it at most.
    return generalText(digitString(), kMaxScale + 1);
}

Currency operator+(Currency left, Currency right)
{
    Currency total;
    if (__builtin_add_overflow(left.tenThousandths, right.tenThousandths, &total.tenThousandths))
        throw RunTimeError(RunTime::Overflow);
    return total;
}

QString currencyText(Currency money)
{
    return Decimal(money).toText();
}

} // namespace vardelin
