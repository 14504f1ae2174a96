// RTF as other programs write it.
#include "platform/rich/Rtf.h"
#include "tests/rich/Documents.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextList>
#include <QTextTable>

namespace vardelin::test {

using namespace Qt::StringLiterals;

namespace {

QTextCharFormat formatAt(const QTextDocument &document, const QString &text)
{
    const QTextCursor found = document.find(text);
    EXPECT_FALSE(found.isNull()) << utf8(text) << " is not in " << utf8(document.toPlainText());
    return found.charFormat();
}

struct TextCase
{
    const char *rtf;
    const char *text; // UTF-8, line ends \n
};

void expectTexts(std::initializer_list<TextCase> cases)
{
    for (const TextCase &c : cases) {
        SCOPED_TRACE(c.rtf);
        const std::string expected = utf8(QString::fromUtf8(c.text).replace(u"\n"_s, u"\r\n"_s));
        EXPECT_EQ(utf8(plainTextOf(c.rtf)), expected);
        QTextDocument document;
        fromRtf(c.rtf, document);
        EXPECT_EQ(utf8(plainText(document)), expected);
    }
}

// A notes field of the Windows kind.
constexpr const char *kRichField =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl{\\f0\\fnil\\fcharset0 MS Sans Serif;}"
    "{\\f1\\fnil\\fcharset2 Symbol;}{\\f2\\fswiss\\fprq2\\fcharset204{\\*\\fname Arial;}Arial CYR;}}\r\n"
    "{\\colortbl ;\\red0\\green0\\blue255;}\r\n"
    "\\viewkind4\\uc1\\pard\\f0\\fs17 Smith \\b v.\\b0  Jones\\par\r\n"
    "\\pard{\\pntext\\f1\\'B7\\tab}{\\*\\pn\\pnlvlblt\\pnf1\\pnindent0{\\pntxtb\\'B7}}\\fi-200\\li200 "
    "\\cf1 first\\cf0\\par\r\n{\\pntext\\f1\\'B7\\tab}second\\par\r\n"
    "\\pard\\qc\\f2 \\'cf\\'f0\\'e8\\'e2\\'e5\\'f2\\f0  caf\\'e9\\par\r\n}\r\n\0";

// A word processor's: style sheet, list table, header, field, revision marks, a table, a picture twice over.
constexpr const char *kWordProcessor =
    "{\\rtf1\\adeflang1025\\ansi\\ansicpg1252\\uc1\\adeff0\\deff0\\stshfdbch0\r\n"
    "{\\fonttbl{\\f0\\froman\\fcharset0\\fprq2{\\*\\panose 02020603050405020304}Times New Roman;}"
    "{\\f37\\fswiss\\fcharset0\\fprq2{\\*\\falt Helvetica}Calibri;}}"
    "{\\colortbl;\\red0\\green0\\blue0;\\red192\\green0\\blue0;\\cthemedark1 \\red5\\green99\\blue193;}"
    "{\\stylesheet{\\ql \\snext0 Normal;}{\\s1 heading "
    "1;}}{\\*\\listtable{\\list{\\listlevel{\\leveltext\\'01\\u-3913 ?;}}}}"
    "{\\*\\rsidtbl \\rsid1}{\\info{\\title Secret title}{\\author Nobody}}{\\*\\xmlnstbl {\\xmlns1 http://x}}"
    "{\\header \\pard Header text\\par}{\\footer\\pard Footer {\\field{\\*\\fldinst PAGE}{\\fldrslt 1}}\\par}"
    "\\pard\\plain \\ltrpar\\s1\\qj \\rtlch\\fcs1 \\af0\\afs24 \\ltrch\\fcs0 \\b\\f37\\fs28\\cf2 {\\rtlch "
    "\\ltrch \\insrsid1 Heading}"
    "{\\*\\bkmkstart a}{\\*\\bkmkend a}\\par "
    "\\pard\\plain \\f0\\fs24 See {\\field\\flddirty{\\*\\fldinst { HYPERLINK \"https://example.org/\" "
    "}}{\\fldrslt {\\ul\\cf3 the link}}}"
    " {\\*\\unknowngroup {\\deep text} \\u8364?}and \\ldblquote quotes\\rdblquote\\emdash\\~x{\\v "
    "hidden}.\\par "
    "{\\listtext\\pard\\plain \\u8226\\'95\\tab}\\ilvl0\\ls1 item\\par "
    "\\trowd \\cellx100\\cellx200\\pard\\intbl a\\cell b\\par bb\\cell\\row \\trowd\\cellx100\\cellx200 "
    "c\\cell d\\cell\\row"
    "\\pard {\\upr{ansi}{\\*\\ud{u\\u241\\'f1i}}} {\\shp{\\*\\shpinst\\shpleft0{\\sp{\\sn x}{\\sv "
    "12}}{\\shptxt \\pard box\\par}}"
    "{\\shprslt{\\do old}}}{\\object\\objemb{\\*\\objclass Paint}{\\*\\objdata 0105}{\\result "
    "{shown}}}\\par}";

} // namespace

TEST(Foreign, TheNotesFieldOfOldFiles)
{
    QTextDocument document;
    fromRtf(kRichField, document);
    EXPECT_EQ(utf8(document.toPlainText()), "Smith v. Jones\nfirst\nsecond\nПривет café");
    EXPECT_EQ(formatAt(document, u"Smith"_s).fontFamilies().toStringList(), QStringList{u"MS Sans Serif"_s});
    EXPECT_EQ(formatAt(document, u"Smith"_s).fontPointSize(), 8.5);
    EXPECT_EQ(formatAt(document, u"v."_s).fontWeight(), int(QFont::Bold));
    EXPECT_NE(formatAt(document, u"Jones"_s).fontWeight(), int(QFont::Bold));
    EXPECT_EQ(formatAt(document, u"first"_s).foreground().color(), QColor(0, 0, 255));
    EXPECT_FALSE(formatAt(document, u"second"_s).hasProperty(QTextFormat::ForegroundBrush));
    EXPECT_EQ(formatAt(document, u"Привет"_s).fontFamilies().toStringList(), QStringList{u"Arial CYR"_s});
    const QTextList *list = document.begin().next().textList();
    ASSERT_TRUE(list);
    EXPECT_EQ(list->count(), 2);
    EXPECT_EQ(list->format().style(), QTextListFormat::ListDisc);
    EXPECT_EQ(document.lastBlock().blockFormat().alignment(), Qt::AlignHCenter);
}

TEST(Foreign, TheTextOfAWordProcessor)
{
    QTextDocument document;
    fromRtf(kWordProcessor, document);
    EXPECT_EQ(utf8(document.toPlainText()),
              "Heading\nSee the link and “quotes”— xhidden.\n•\titem\na\nb\nbb\nc\nd\nuñi box\nshown\uFFFC");
    const QTextCharFormat heading = formatAt(document, u"Heading"_s);
    EXPECT_EQ(heading.fontFamilies().toStringList(), QStringList{u"Calibri"_s});
    EXPECT_EQ(heading.fontPointSize(), 14);
    EXPECT_EQ(heading.foreground().color(), QColor(192, 0, 0));
    EXPECT_EQ(formatAt(document, u"the link"_s).anchorHref(), u"https://example.org/"_s);
    EXPECT_EQ(formatAt(document, u"See"_s).anchorHref(), QString());
    const QTextTable *table = document.find(u"bb"_s).currentTable();
    ASSERT_TRUE(table);
    EXPECT_EQ(table->rows(), 2);
    EXPECT_EQ(table->columns(), 2);
    EXPECT_EQ(utf8(plainTextOf(kWordProcessor)), utf8(plainText(document)));
}

TEST(Foreign, CodePages)
{
    expectTexts({
        {"{\\rtf1\\ansi\\ansicpg1250 \\'9eena}", "žena"},
        {"{\\rtf1\\ansi\\ansicpg1251 \\'ff}", "я"},
        {"{\\rtf1\\ansi\\ansicpg1252 \\'80\\'92}", "€’"},
        {"{\\rtf1\\ansi\\ansicpg1253 \\'e1}", "α"},
        {"{\\rtf1\\ansi\\ansicpg1254 \\'fe}", "ş"},
        {"{\\rtf1\\ansi\\ansicpg1255 \\'f9\\'ec\\'e5\\'ed}", "שלום"},
        {"{\\rtf1\\ansi\\ansicpg1256 \\'c8}", "ب"},
        {"{\\rtf1\\ansi\\ansicpg1257 \\'e0}", "ą"},
        {"{\\rtf1\\ansi\\ansicpg1258 \\'f5}", "ơ"},
        {"{\\rtf1\\pc \\'84}", "ä"},
        {"{\\rtf1\\pca \\'9b}", "ø"},
        {"{\\rtf1\\mac \\'8a}", "ä"},
        {"{\\rtf1\\ansi\\ansicpg99999 \\'e4}", "ä"},
        {"{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset128 MS Mincho;}{\\f1\\fcharset238 "
         "X;}}\\f0\\'93\\'fa\\'96{\\f1\\'b3}}",
         "日�ł"},
        {"{\\rtf1\\ansi\\ansicpg1251{\\fonttbl{\\f0\\fcharset1 X;}{\\f1\\fcharset161 "
         "Y;}}\\f0\\'e6{\\f1\\'e6}\\'e6}",
         "жζж"},
        {"{\\rtf1\\ansi\\deff3{\\fonttbl{\\f3\\fcharset204 X;}}\\'e6}", "ж"},
        {"{\\rtf1\\ansi raw \xe9 and \x93quotes\x94}", "raw é and “quotes”"},
        {"{\\rtf1\\ansi\\ansicpg1252 \\'81}", "\u0081"},
    });
}

TEST(Foreign, UnicodeAndItsFallbacks)
{
    expectTexts({
        {"{\\rtf1 \\u8364?a}", "€a"},
        {"{\\rtf1 \\u8364 ?a}", "€a"},
        {"{\\rtf1\\uc0 \\u8364 a}", "€a"},
        {"{\\rtf1\\uc2 \\u8364\\'80\\'80a{\\uc0\\u8364}b}", "€a€b"},
        {"{\\rtf1\\uc3 \\u8364 EURa}", "€a"},
        {"{\\rtf1\\u8364}b", "€b"},
        {"{\\rtf1 \\u-10179?\\u-8704?}", "😀"},
        {"{\\rtf1 \\u128512?}", "😀"},
        {"{\\rtf1 \\u8220\\ldblquote x}", "“x"},
        {"{\\rtf1 a\\u8226\\par b}", "a•\nb"},
        {"{\\rtf1\\uc2 \\u8364 {a}b}", "€ab"},
        {"{\\rtf1\\uc1 \\u8364\\bin3 abcd}", "€d"},
    });
}

TEST(Foreign, LineEndsAndOddForms)
{
    expectTexts({
        {"{\\rtf1 a\\par b\\par}", "a\nb"},
        {"{\\rtf1 a\\par b\\par\\par}", "a\nb\n"},
        {"{\\rtf1 a\\line b\\tab c}", "a\nb\tc"},
        {"{\\rtf1 a\\\nb\\\r\nc}", "a\nb\nc"},
        {"{\\rtf1 a\r\nb}", "ab"},
        {"{\\rtf1 one\\page two\\sect three}", "one\ntwo\nthree"},
        {"{\\rtf1 \\{a\\}\\\\\\~\\-}", "{a}\\ \u00AD"},
        {"{\\rtf1\\bin4 }}{{text}", "text"},
        {"  \r\n{\\rtf1 blanks first}", "blanks first"},
        {"\xEF\xBB\xBF{\\rtf1 mark first}", "mark first"},
        {"{\\rtf1}", ""},
        {"plain {text} \\b stays", "plain {text} \\b stays"},
        {"two\r\nlines\nand\rmore", "two\nlines\nand\nmore"},
        {"caf\xc3\xa9", "café"},
        {"caf\xe9", "café"},
        {"{\\rt not it}", "{\\rt not it}"},
        {"", ""},
    });
    EXPECT_EQ(utf8(plainTextOf(rtfBytes(u"{\\rtf1\\uc0 é€ \\u8364 日😀}"_s))), "é€ €日😀");
    EXPECT_EQ(utf8(plainTextOf(rtfBytes(u"\uFEFFplain é 日"_s))), "plain é 日");
}

TEST(Foreign, CharacterWords)
{
    QTextDocument document;
    fromRtf("{\\rtf1{\\colortbl;\\red255\\green0\\blue0;}\\ul one\\ulnone {\\i two}{\\strike\\super "
            "three}{\\highlight1 four}"
            "{\\b\\plain five}{\\up6 six}{\\cf9 seven}{\\fs0 eight}{\\caps nine}{\\ulwave ten}}",
            document);
    EXPECT_TRUE(formatAt(document, u"one"_s).fontUnderline());
    EXPECT_FALSE(formatAt(document, u"two"_s).fontUnderline());
    EXPECT_TRUE(formatAt(document, u"two"_s).fontItalic());
    EXPECT_TRUE(formatAt(document, u"three"_s).fontStrikeOut());
    EXPECT_EQ(formatAt(document, u"three"_s).verticalAlignment(), QTextCharFormat::AlignSuperScript);
    EXPECT_EQ(formatAt(document, u"four"_s).background().color(), QColor(255, 0, 0));
    EXPECT_FALSE(formatAt(document, u"five"_s).hasProperty(QTextFormat::FontWeight));
    EXPECT_EQ(formatAt(document, u"five"_s).fontPointSize(), 12) << "what \\plain means in RTF";
    EXPECT_EQ(formatAt(document, u"six"_s).verticalAlignment(), QTextCharFormat::AlignSuperScript);
    EXPECT_EQ(formatAt(document, u"seven"_s).foreground().style(), Qt::NoBrush);
    EXPECT_GT(formatAt(document, u"eight"_s).fontPointSize(), 0);
    EXPECT_EQ(formatAt(document, u"nine"_s).fontCapitalization(), QFont::AllUppercase);
    EXPECT_EQ(formatAt(document, u"ten"_s).underlineStyle(), QTextCharFormat::WaveUnderline);
}

TEST(Foreign, OnceReadItStaysAsItIs)
{
    for (const char *rtf : {kRichField, kWordProcessor}) {
        QTextDocument first, second;
        fromRtf(rtf, first);
        const QByteArray written = toRtf(first);
        fromRtf(written, second);
        expectSame(second, first);
        EXPECT_EQ(toRtf(second).toStdString(), written.toStdString());
    }
}

} // namespace vardelin::test
