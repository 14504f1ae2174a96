#pragma once
// A number as its decimal digits: what parsing gives and printing takes.

#include <QString>
#include <optional>
#include <string>

namespace vardelin {

// 0.d1d2d3... times 10 to the power `point`; no digits is zero. normalise() keeps the first and the last
// digit from being '0'.
struct DigitString
{
    bool negative = false;
    std::string digits;
    int point = 0;

    bool isZero() const { return digits.empty(); }
    char at(int place) const; // place 0 is the units, 1 the tens, -1 the tenths; '0' beyond the digits
    void normalise();
    void roundToPlaces(int places); // behind the decimal point, halves away from zero; places may be negative
    void roundToSignificant(int count); // halves away from zero
};

inline constexpr int kDoubleDigits = 15;
inline constexpr int kSingleDigits = 7;

// The digits that the run time shows of a floating number. It must be finite.
DigitString digitsOf(double value);
DigitString digitsOf(float value);

// The whole of `text` as a number: blanks, one sign before or behind, a dollar sign, parentheses for a
// negative number, thousands separators, exponents with E or D, &H and &O. nullopt where it is none.
std::optional<DigitString> digitsFromText(QStringView text);

// The nearest double; RunTimeError 6 beyond its range.
double toDouble(const DigitString &number);

// Plain or exponent form, as numberText says.
QString generalText(const DigitString &number, int significant);

} // namespace vardelin
