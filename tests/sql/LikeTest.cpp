#include "platform/sql/Like.h"
#include "platform/base/RunTimeError.h"
#include "platform/sql/EqualText.h"
#include "platform/sql/Operators.h"
#include "platform/sql/StoredText.h"

#include <QRegularExpression>
#include <algorithm>
#include <gtest/gtest.h>
#include <random>

using namespace vardelin;
using namespace vardelin::sql;
using namespace Qt::StringLiterals;

namespace {

std::vector<std::byte> narrow(const QString &text)
{
    std::vector<std::byte> bytes{std::byte{0xFF}, std::byte{0xFE}};
    for (const QChar c : text)
        bytes.push_back(static_cast<std::byte>(c.unicode()));
    return bytes;
}

std::vector<std::byte> wide(const QString &text)
{
    std::vector<std::byte> bytes;
    for (const QChar c : text) {
        bytes.push_back(static_cast<std::byte>(c.unicode() & 0xFF));
        bytes.push_back(static_cast<std::byte>(c.unicode() >> 8));
    }
    return bytes;
}

QString randomText(std::mt19937 &random, const QString &letters, int most)
{
    QString text;
    for (int size = std::uniform_int_distribution(0, most)(random); size > 0; --size)
        text += letters[std::uniform_int_distribution<qsizetype>(0, letters.size() - 1)(random)];
    return text;
}

} // namespace

TEST(LikeTest, Patterns)
{
    const struct
    {
        const char16_t *text, *pattern;
        bool matches;
    } cases[] = {
        {u"Last, First", u"last, FIRST", true},
        {u"Last, First", u"Last", false},
        {u"Last, First", u"last%", true},
        {u"Last, First", u"%first", true},
        {u"Last, First", u"%T, F%", true},
        {u"Last, First", u"l_st%", true},
        {u"", u"%%", true},
        {u"", u"", true},
        {u"", u"_", false},
        {u"a*b?c#", u"a*b?c#", true}, // no wildcards of this dialect
        {u"axb", u"a*b", false},
        {u"50%", u"50[%]", true},
        {u"50x", u"50[%]", false},
        {u"cat", u"[a-c]at", true},
        {u"Bat", u"[a-c]at", true},
        {u"rat", u"[a-c]at", false},
        {u"rat", u"[!a-c]at", true},
        {u"bat", u"[!a-c]at", false},
        {u"a-b", u"a[-]b", true},
        {u"a-b", u"a[x-]b", true},
        {u"a!b", u"a[!]b", true},
        {u"ab", u"a[]b", true}, // stands for nothing
        {u"a]b", u"a]b", true},
        {u"\u00C4rger", u"\u00E4r%", true},
        {u"\u0416uk", u"%\u0436u%", true},
        {u"\u212Aelvin", u"%kel%", true}, // the Kelvin sign is a K
        {u"kelvin", u"%\u212Ael%", true},
        {u"aaaaab", u"%aab%", true},
        {u"aaaaab", u"%aac%", false},
        {u"abcabcabd", u"%abd", true},
    };
    for (const auto &c : cases) {
        const QString text = QString::fromUtf16(c.text);
        const LikePattern pattern{QStringView(c.pattern)};
        EXPECT_EQ(pattern.matches(text), c.matches)
            << qPrintable(text) << " like " << qPrintable(QString::fromUtf16(c.pattern));
        EXPECT_EQ(pattern.matchesStored(wide(text)), c.matches) << qPrintable(text);
        if (std::ranges::all_of(text, [](QChar u) { return u.unicode() < 0x100; })) {
            EXPECT_EQ(pattern.matchesStored(narrow(text)), c.matches) << qPrintable(text);
        }
    }
    for (const char16_t *bad : {u"[", u"a[bc", u"[z-a]"})
        EXPECT_THROW(LikePattern{QStringView(bad)}, RunTimeError);
}

TEST(LikeTest, AgreesWithRegularExpressions)
{
    std::mt19937 random(4);
    const QString letters = u"aAbB\u00E9\u00C9"_s;
    for (int i = 0; i < 5000; ++i) {
        const QString text = randomText(random, letters, 12),
                      pattern = randomText(random, u"aB\u00E9%_%"_s, 6);
        QString expression;
        for (const QChar c : pattern)
            expression += c == u'%' ? u".*"_s : c == u'_' ? u"."_s : QString(c);
        const QRegularExpression oracle(QRegularExpression::anchoredPattern(expression),
                                        QRegularExpression::CaseInsensitiveOption |
                                            QRegularExpression::DotMatchesEverythingOption);
        const bool expected = oracle.match(text).hasMatch();
        const LikePattern like(pattern);
        ASSERT_EQ(like.matches(text), expected) << qPrintable(text) << " like " << qPrintable(pattern);
        ASSERT_EQ(like.matchesStored(narrow(text)), expected);
        ASSERT_EQ(like.matchesStored(wide(text)), expected);
    }
}

// A text wherever it stands in a long one, in either case, at any address. U+017F and U+212A are forms of s
// and k that differ in more than one bit; U+00B5 has its other forms beyond the narrow texts.
TEST(LikeTest, FindsTextsInLongOnes)
{
    std::mt19937 random(5);
    for (const QString &needle : {u"estoppel"_s, u"Ask"_s, u"s"_s, u"\u00B5m"_s, u"\u0436a 1"_s, u"q"_s}) {
        const LikePattern pattern(u'%' + needle + u'%');
        for (int i = 0; i < 400; ++i) {
            QString text = randomText(random, u"xyz ,-w"_s, 300);
            ASSERT_FALSE(pattern.matchesStored(wide(text))) << qPrintable(text);
            QString found = i % 2 == 0 ? needle.toUpper() : needle.toLower();
            if (i % 4 == 1)
                found.replace(u's', QChar(0x17F)).replace(u'k', QChar(0x212A));
            text.insert(std::uniform_int_distribution<qsizetype>(0, text.size())(random), found);
            std::vector<std::byte> shifted = wide(text);
            shifted.insert(shifted.begin(), std::byte{0});
            ASSERT_TRUE(pattern.matches(text)) << qPrintable(text);
            ASSERT_TRUE(pattern.matchesStored(std::span(shifted).subspan(1))) << qPrintable(text);
            if (std::ranges::all_of(text, [](QChar c) { return c.unicode() <= 0xFF; })) {
                ASSERT_TRUE(pattern.matchesStored(narrow(text))) << qPrintable(text);
            }
        }
    }
}

TEST(LikeTest, ManyPercentSignsDontTakeForever)
{
    QString pattern;
    for (int i = 0; i < 200; ++i)
        pattern += u"%a_"_s;
    EXPECT_FALSE(LikePattern(pattern + u'b').matches(QString(20000, u'a')));
}

TEST(LikeTest, StoredTextWithBothWidths)
{
    std::vector<std::byte> mixed = narrow(u"ab"_s);
    for (const int byte : {0x00, 0x16, 0x04, 0x17, 0x04, 0x00, 0x63})
        mixed.push_back(static_cast<std::byte>(byte));
    EXPECT_EQ(decodeStored(mixed), u"ab\u0416\u0417c"_s);
    EXPECT_TRUE(LikePattern(u"%\u0437C"_s).matchesStored(mixed));
    EXPECT_EQ(decodeStored(narrow(u"Zo\u00EB"_s)), u"Zo\u00EB"_s);
    EXPECT_EQ(decodeStored({}), QString());
    EXPECT_EQ(decodeStored(std::vector(3, std::byte{'a'})).size(), 1); // half a character is left out
}

// Letters alike but for case or mark, characters without weight or with that of several letters.
TEST(EqualTextTest, AgreesWithTheOrderOfTexts)
{
    std::mt19937 random(20261123);
    const QString letters = u"aAbB19\u00E4\u00C4\u00DF\u00E6'- ,\u00AD"_s;
    QString room;
    int equal = 0;
    for (int i = 0; i < 20000; ++i) {
        const QString left = randomText(random, letters, 3), right = randomText(random, letters, 3);
        const bool expected = compareTexts(left, right) == 0;
        equal += expected;
        ASSERT_EQ(EqualText(right).matchesStored(narrow(left), room), expected) << qPrintable(left + right);
        ASSERT_EQ(EqualText(right).matchesStored(wide(left), room), expected) << qPrintable(left + right);
    }
    EXPECT_GT(equal, 100);
    // The order itself tells every two plain letters and digits apart, whatever stands behind them.
    const QString plain = u"abcdefghijklmnopqrstuvwxyz0123456789"_s;
    for (const QChar a : plain) {
        for (const QChar b : plain)
            ASSERT_EQ(compareTexts(a + u"e-h"_s, b + u"e-h"_s) == 0, a == b);
    }
}
