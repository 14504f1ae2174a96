#pragma once
// Exact decimal numbers for money: __int128 digits with a scale.

#include <QString>
#include <cstdint>
#include <optional>

namespace vardelin {

struct DigitString;

// Ten-thousandths of the unit of money; all of the engine's range.
struct Currency
{
    std::int64_t tenThousandths = 0;
    auto operator<=>(const Currency &) const = default;
};

// digits / 10^scale, scale 0 to 28, up to 96 bits of digits, as the run time's decimal. Sums and products
// are exact as long as the digits fit; where they don't, places behind the point are rounded off, halves to
// the even digit. RunTimeError 6 where the whole part alone is too big.
class Decimal
{
public:
    Decimal() = default;
    Decimal(std::int64_t whole) : m_digits(whole) {}
    explicit Decimal(Currency money) : m_digits(money.tenThousandths), m_scale(4) {}
    // The text forms of the run time: sign, thousands separators, currency sign, decimals, exponent, blanks
    // around. nullopt otherwise; RunTimeError 6 for a number that is too big.
    static std::optional<Decimal> fromText(QStringView text);

    static Decimal fromDigits(const DigitString &number); // RunTimeError 6
    // magnitude / 10^scale; nullopt beyond 96 bits or 28 places.
    __extension__ using Digits = __int128;
    static std::optional<Decimal> fromParts(bool negative, Digits magnitude, int scale);

    Decimal operator*(const Decimal &other) const;
    Decimal operator+(const Decimal &other) const;
    Decimal operator-(const Decimal &other) const;
    Decimal operator-() const;
    bool operator==(const Decimal &other) const; // by value: 1.50 equals 1.5
    bool operator<(const Decimal &other) const;

    Currency toCurrency() const; // halves to the even digit; RunTimeError 6 beyond the range
    double toDouble() const;
    QString toText() const; // "60.5": no zeros behind the last digit
    DigitString digitString() const;
    Digits digits() const { return m_digits; }
    int scale() const { return m_scale; }

private:
    Decimal(Digits digits, int scale);
    Digits m_digits = 0;
    int m_scale = 0;
};

Currency operator+(Currency left, Currency right); // RunTimeError 6 beyond the range
QString currencyText(Currency money);              // default form, no mask: 60 is "60", 60.5 is "60.5"

} // namespace vardelin
