#include "platform/jet/Error.h"

#include <gtest/gtest.h>

using namespace vardelin::jet;

TEST(Error, SaysWhatTheCallerMustKnow)
{
    const Error error(Code::FileNotFound, "/home/office/logs.mdb", "errno 2");
    EXPECT_EQ(error.number(), 3024);
    EXPECT_STREQ(error.what(), "Could not find file '/home/office/logs.mdb'.");
    EXPECT_EQ(error.reason(), "errno 2");
    EXPECT_STREQ(Error(Code::FileNotFound, "a%1b").what(), "Could not find file 'a%1b'.");
    EXPECT_STREQ(Error(Code::NoCurrentRecord).what(), "No current record.");
}

TEST(Error, TextChangesItsFormWithoutLossOrBreaksOnlyWhereItIsBroken)
{
    std::u16string every;
    for (char32_t c = 1; c < 0x110000; c += c < 0x900 ? 1 : 61) {
        if (c >= 0x10000) {
            every += static_cast<char16_t>(0xD7C0 + (c >> 10));
            every += static_cast<char16_t>(0xDC00 + (c & 0x3FF));
        } else if (c < 0xD800 || c >= 0xE000) {
            every += static_cast<char16_t>(c);
        }
    }
    EXPECT_EQ(toUtf16(toUtf8(every)), every);
    EXPECT_EQ(toUtf8(u"\u20ac\U0001F4CE"), "\xE2\x82\xAC\xF0\x9F\x93\x8E");

    const char16_t lone[] = {u'a', 0xD83D, u'b', 0xDCCE, 0xD83D, 0};
    EXPECT_EQ(toUtf16(toUtf8(lone)), u"a\uFFFDb\uFFFD\uFFFD");
    EXPECT_EQ(toUtf16("a\xC0\x80z\xE2\x82"),
              u"a\uFFFD\uFFFDz\uFFFD\uFFFD"); // too long a form, and one cut short
    EXPECT_EQ(toUtf16("\xED\xA0\x80\xF4\x90\x80\x80").find_first_not_of(u'\uFFFD'), std::u16string::npos);
}
