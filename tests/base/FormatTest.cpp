#include "platform/base/Format.h"
#include "platform/base/Dates.h"

#include <gtest/gtest.h>

using namespace vardelin;
using namespace Qt::StringLiterals;

namespace {

struct Case
{
    Value value;
    const char16_t *mask;
    const char16_t *text;
};

template <std::size_t N>
void check(const Case (&cases)[N])
{
    for (const Case &c : cases)
        EXPECT_EQ(format(c.value, c.mask), QString::fromUtf16(c.text))
            << qPrintable(QString::fromUtf16(c.mask)) << " of " << qPrintable(joinText(c.value));
}

} // namespace

TEST(FormatTest, NumberMasks)
{
    const Case cases[] = {
        {0.4, u"##.0", u".4"},
        {0.05, u"##.0", u".1"},
        {0.0, u"##.0", u".0"},
        {25.38333333, u"##.0", u"25.4"},
        {1234.0, u"##.0", u"1234.0"},
        {-1.25, u"##.0", u"-1.3"},
        {-0.04, u"##.0", u".0"},   // nothing is left of it, not even the sign
        {2.675, u"0.00", u"2.68"}, // by its decimal digits, though the number itself lies below the half
        {1.005, u"0.00", u"1.01"},
        {0.5, u"0", u"1"},
        {2.5, u"0", u"3"},
        {-2.5, u"0", u"-3"},
        {60.0, u"\"$\"#,##0.00", u"$60.00"},
        {Currency{12345678900}, u"\"$\"#,##0.00", u"$1,234,567.89"},
        {Currency{-50}, u"\"$\"#,##0.00", u"-$0.01"},
        {Currency{9223372036854775807}, u"#,##0.0000", u"922,337,203,685,477.5807"},
        {0.0, u"\"$\"#,##0.00", u"$0.00"},
        {1234.56, u"$#,##0.00", u"$1,234.56"},
        {12.5f, u"#,###.0 hours", u"12.5 hours"},
        {1234.5, u"#,###.0 hours", u"1,234.5 hours"},
        {0.25, u"#,###.0 hours", u".3 hours"},
        {u"5551234567"_s, u"(###) ###-####", u"(555) 123-4567"},
        {u"5551234"_s, u"(###) ###-####", u"() 555-1234"},
        {u"15551234567"_s, u"(###) ###-####", u"(1555) 123-4567"},
        {u"(555) 123-4567"_s, u"(###) ###-####", u"(555) 123-4567"}, // no number: it stays as it is
        {u"(___) ___-____"_s, u"(###) ###-####", u"(___) ___-____"},
        {u""_s, u"(###) ###-####", u""},
        {u"941101234"_s, u"#####-####", u"94110-1234"},
        {1234567.0, u"#,##0", u"1,234,567"},
        {999.0, u"#,##0", u"999"},
        {5.0, u"000", u"005"},
        {1234.0, u"0,000,000", u"0,001,234"},
        {0.0, u"#", u""},
        {5.0, u"0.##", u"5."},
        {5.25, u"0.0##", u"5.25"},
        {12.3, u".00", u"12.30"},
        {0.256, u"0.0%", u"25.6%"},
        {1234567.0, u"#,##0,", u"1,235"},
        {1234567.0, u"0.0,,", u"1.2"},
        {12345.678, u"0.00E+00", u"1.23E+04"},
        {0.00012345, u"0.0E-0", u"1.2E-4"},
        {9.996, u"0.00E+00", u"1.00E+01"},
        {-5.0, u"0.0;(0.0)", u"(5.0)"},
        {-5.0, u"0.0;;\"none\"", u"-5.0"},
        {0.0, u"0.0;(0.0);\"none\"", u"none"},
        {0.01, u"0.0;(0.0);\"none\"", u"none"},
        {NullValue(), u"0.0;(0.0);\"none\";\"no value\"", u"no value"},
        {NullValue(), u"0.0", u""},
        {Value(), u"0.0", u""},
        {true, u"0", u"-1"},
        {true, u"Yes/No", u"Yes"},
        {false, u"on/off", u"Off"},
        {1234.5, u"Currency", u"$1,234.50"},
        {-1234.5, u"currency", u"($1,234.50)"},
        {1234.5, u"Fixed", u"1234.50"},
        {1234.5, u"Standard", u"1,234.50"},
        {0.125, u"Percent", u"12.50%"},
        {1234.5, u"General Number", u"1234.5"},
        {5.0, u"0 \\h \"0 of\" 0", u"0 h 0 of 5"},
        {1e20, u"#,##0", u"100,000,000,000,000,000,000"},
        {DateSerial{45000}, u"0", u"45000"},
        {u"abc"_s, u"0.00", u"abc"},
        {u" 7.5 "_s, u"0.00", u"7.50"},
        {12.5, u"", u"12.5"},
    };
    check(cases);
}

TEST(FormatTest, DateMasks)
{
    const Value evening(serialOf({2026, 10, 6, 21, 4, 33}));
    const Case cases[] = {
        {evening, u"mmmm d, yyyy", u"October 6, 2026"},
        {evening, u"MMMM d, yyyy", u"October 6, 2026"},
        {evening, u"m/d/yy h:nn AM/PM", u"10/6/26 9:04 PM"},
        {evening, u"M/d/yyyy", u"10/6/2026"},
        {evening, u"MM/dd/yyyy", u"10/06/2026"},
        {evening, u"yyyy-mm-dd hh:mm:ss", u"2026-10-06 21:04:33"},
        {evening, u"h:mm am/pm", u"9:04 pm"},
        {evening, u"h a/p", u"9 p"},
        {evening, u"dddd, mmm d", u"Tuesday, Oct 6"},
        {evening, u"ddd w ww q y", u"Tue 3 41 4 279"},
        {evening, u"c", u"10/6/2026 9:04:33 PM"},
        {evening, u"ddddd ttttt", u"10/6/2026 9:04:33 PM"},
        {evening, u"Short Date", u"10/6/2026"},
        {evening, u"Long Date", u"Tuesday, October 6, 2026"},
        {evening, u"Medium Date", u"06-Oct-26"},
        {evening, u"Long Time", u"9:04:33 PM"},
        {evening, u"Short Time", u"21:04"},
        {evening, u"\"day\" d", u"day 6"},
        {serialOf({2026, 1, 2, 0, 5, 0}), u"h:nn AM/PM", u"12:05 AM"},
        {u"10/6/2026"_s, u"mmmm d, yyyy", u"October 6, 2026"},
        {u"45000"_s, u"m/d/yyyy", u"3/15/2023"},
        {u"soon"_s, u"mmmm d, yyyy", u"soon"},
        {45000.25, u"h:nn", u"6:00"},
        {NullValue(), u"mmmm d, yyyy", u""},
    };
    check(cases);
}

TEST(FormatTest, TextMasks)
{
    const Case cases[] = {
        {u"5551234567"_s, u"(@@@) @@@-@@@@", u"(555) 123-4567"},
        {u"1234"_s, u"@@@@@@", u"  1234"},
        {u"1234"_s, u"&&&&&&", u"1234"},
        {u"1234"_s, u"!@@@@@@", u"1234  "},
        {u"123456"_s, u"@@@-@@", u"1234-56"},
        {u"123456"_s, u"!@@@-@@", u"123-456"},
        {u"Last, First"_s, u">", u"LAST, FIRST"},
        {u"Last"_s, u"<@", u"last"},
        {42, u"@@@", u" 42"},
        {NullValue(), u"@;\"nothing\"", u"nothing"},
    };
    check(cases);
}
