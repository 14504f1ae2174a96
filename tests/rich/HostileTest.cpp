// Damaged and hostile text: what can be read is read, in bounded time and memory.
#include "platform/rich/Rtf.h"
#include "tests/rich/Documents.h"

#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QTextBlock>
#include <random>

namespace vardelin::test {

using namespace Qt::StringLiterals;

namespace {

class Hostile : public testing::Test
{
protected:
    // Qt's picture readers say on the console what is wrong with a damaged picture; that is not a fault here.
    void SetUp() override { QLoggingCategory::setFilterRules(u"qt.gui.imageio*=false"_s); }
    void TearDown() override { QLoggingCategory::setFilterRules({}); }
};

// Reads it both ways, writes it, reads that: one text throughout, and the second writing is the first.
QString readThoroughly(const QByteArray &rtf)
{
    QTextDocument document, again;
    fromRtf(rtf, document);
    const QString text = plainText(document);
    EXPECT_EQ(utf8(plainTextOf(rtf)), utf8(text));
    const QByteArray written = toRtf(document);
    fromRtf(written, again);
    EXPECT_EQ(utf8(plainText(again)), utf8(text));
    EXPECT_TRUE(toRtf(again) == written) << "the second writing differs";
    return text;
}

QByteArray repeated(const QByteArray &text, int times)
{
    return text.repeated(times);
}

QByteArray sampleRtf()
{
    const QByteArray png = encoded(testImage(6, 5), "PNG").toHex();
    return "{\\rtf1\\ansi\\ansicpg1251\\deff0{\\fonttbl{\\f0\\fswiss\\fcharset0 Arial;}{\\f1\\fcharset128 "
           "M;}}"
           "{\\colortbl ;\\red1\\green2\\blue3;}{\\*\\generator X;}\\pard\\qc\\b "
           "Head\\b0\\par\\u8364?{\\f1\\'93\\'fa}\\line"
           "{\\pict\\pngblip\\picw6\\pich5\\picwgoal90 " +
           png +
           "}{\\field{\\*\\fldinst HYPERLINK \"x:y\"}{\\fldrslt l}}"
           "\\trowd\\cellx9\\pard\\intbl a\\cell b\\cell\\row\\pard{\\pntext "
           "1\\tab}{\\*\\pn\\pnlvlbody\\pndec}x\\par\\bin3 }}}}";
}

} // namespace

TEST_F(Hostile, TextComesThroughWhateverIsAroundIt)
{
    const QByteArray deep = repeated("{", 100000);
    struct Case
    {
        QByteArray rtf;
        const char *text;
    };
    const Case cases[] = {
        {"{\\rtf1 open {\\b brace", "open brace"},
        {"{\\rtf1 a} b}} c", "a b c"},
        {"{\\rtf1 " + deep + "deep", "deep"},
        {"{\\rtf1 " + deep + "in" + repeated("}", 100000) + " out}", "in out"},
        {"{\\rtf1 " + repeated("{\\b", 100000) + " deep", "deep"},
        {"{\\rtf1 " + repeated("}", 100000) + "after", "after"},
        {QByteArray("{\\rtf1 a\0b\0\0c}\0", 14), "abc"},
        {"{\\rtf1\\fs99999999999999999999 a\\fs-99999999999999999999 "
         "b\\li2147483647\\fi-2147483648\\sl2147483647 c}",
         "abc"},
        {"{\\rtf1\\u99999999999 ?a\\u-99999999 ?b\\uc99999999\\u65?c}", "abA"},
        {"{\\rtf1\\bin99999999 all}", ""},
        {"{\\rtf1\\" + repeated("w", 40) + " a}", "wwwwwwww a"},
        {"{\\rtf1\\bin-5 all}", "all"},
        {"{\\rtf1 a\\'zzb\\'4}", "a'zzb'4"},
        {"{\\rtf1 a\\", "a"},
        {"{\\rtf1 a\\'", "a'"},
        {"{\\rtf1\\f99999\\cf-1\\highlight-7\\deff-1\\plain a}", "a"},
        {"{\\rtf1{\\fonttbl{\\f0 " + repeated("x", 100000) + ";}}\\f0 a}", "a"},
        {"{\\rtf1{\\pict\\pngblip\\picw2147483647\\pich2147483647\\picwgoal2147483647 8950}a}", "a"},
        {"{\\rtf1{\\pict\\dibitmap0 " +
             QByteArray::fromRawData("\x28\0\0\0\xff\xff\xff\x7f\xff\xff\xff\x7f\1\0\x20\0", 16).toHex() +
             QByteArray(48, '0') + "}a}",
         "a"},
        {"{\\rtf1{\\pict\\wmetafile8 " + QByteArray(100, 'f') + "}{\\pict\\emfblip " + QByteArray(101, 'f') +
             "}a}",
         "a"},
        {"{\\rtf1\\row\\cell\\row a", "\n\na"},
        {"{\\rtf1 \\u65532?\\u64976?\\u64977?\\u8233?x}", "\uFFFD\uFFFD\uFFFD\nx"},
        // Found by the fuzzer: names that RTF can carry only in part.
        {"{\\rtf1{\\fonttbl{\\f0 A\tb\\u10?c\\~ ;}}\\f0 a}", "a"},
        {"{\\rtf1{\\field{\\*\\fldinst HYPERLINK \"x\ty\\u1?z\"}{\\fldrslt a}}}", "a"},
        {"{\\rtf1 {\\caps0 a}b{\\f7{\\scaps0 c}}d}", "abcd"},
        {"plain\fpage\vfeed", "plain\fpage\vfeed"},
        {"{\\rtf", ""},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.rtf.left(100).toStdString());
        const QString text = readThoroughly(c.rtf);
        EXPECT_EQ(utf8(text), utf8(QString::fromUtf8(c.text).replace(u"\n"_s, u"\r\n"_s)));
    }
}

TEST_F(Hostile, TablesThatWouldGrowBeyondTheirTextAreShownAsText)
{
    const QByteArray wide = repeated("\\cell", 3000) + "\\row ";
    const QByteArray text = "{\\rtf1\\intbl " + wide + repeated("a\\cell\\row ", 3000) + "\\pard b}";
    EXPECT_EQ(readThoroughly(text).count(u"a"), 3000);
}

TEST_F(Hostile, EveryBeginningOfAText)
{
    const QByteArray whole = sampleRtf();
    for (qsizetype length = 0; length <= whole.size(); ++length) {
        SCOPED_TRACE(length);
        readThoroughly(whole.first(length));
        if (testing::Test::HasFailure())
            return;
    }
}

TEST_F(Hostile, ThousandsOfMutations)
{
    const QByteArray whole = sampleRtf();
    const QByteArrayView parts[] = {
        "{",   "}",          "\\",      "\\par ",     "\\u",     "\\bin9 ",
        "\\'", "\\*",        "{\\pict", "\\cell",     "\\row",   "\\intbl",
        "-",   "9999999999", "\\uc9",   "{\\fonttbl", "\\trowd", "{\\*\\pn\\pnlvlblt",
        "\0"};
    std::mt19937 random(20240229); // the same mutations every time
    QElapsedTimer clock;
    clock.start();
    for (int round = 0; round < 4000; ++round) {
        QByteArray rtf = whole;
        for (unsigned changes = random() % 8 + 1; changes > 0; --changes) {
            const auto at = qsizetype(random() % unsigned(rtf.size() - 6)) + 5;
            switch (random() % 4) {
            case 0:
                rtf[at] = char(random() % 256);
                break;
            case 1:
                rtf.remove(at, qsizetype(random() % 20));
                break;
            case 2:
                rtf.insert(at, parts[random() % std::size(parts)].toByteArray());
                break;
            default:
                rtf.insert(at, rtf.mid(qsizetype(random() % unsigned(rtf.size())), qsizetype(random() % 60)));
                break;
            }
            if (rtf.size() < 20)
                rtf = whole;
        }
        SCOPED_TRACE(rtf.toStdString());
        readThoroughly(rtf);
        if (testing::Test::HasFailure())
            return;
    }
    EXPECT_LT(clock.elapsed(), 60000);
}

TEST_F(Hostile, LargeTextsTakeTimeInProportion)
{
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(readThoroughly("{\\rtf1 " + repeated("line {\\b of} text\\par ", 20000) + "}").count(u"\r\n"_s),
              19999);
    readThoroughly("{\\rtf1\\intbl " + repeated("a\\cell b\\cell\\row ", 4000) + "\\pard}");
    readThoroughly("{\\rtf1 " + repeated("{\\pict\\pngblip 89504e47}", 5000) + "}");
    readThoroughly("{\\rtf1 " + repeated("\\pard{\\*\\pn\\pnlvlbody\\pndec}a\\par", 5000) + "}");
    EXPECT_LT(clock.elapsed(), 30000);
}

} // namespace vardelin::test
