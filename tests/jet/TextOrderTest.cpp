#include "platform/jet/TextOrder.h"

#include "tests/jet/Judge.h"

#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <unistd.h>

namespace vardelin::jet {
namespace {

using judge::hex;

int sign(int value)
{
    return (value > 0) - (value < 0);
}

int compareKeys(std::u16string_view left, std::u16string_view right)
{
    return sign(textKey(left, left.size()).compare(textKey(right, right.size())));
}

// Texts that share beginnings and characters, so that many of them are alike in all but a detail.
class TextMaker
{
public:
    std::u16string make(std::size_t longest)
    {
        static constexpr std::u16string_view kAlphabets[] = {
            u"abAB ",        u"aäAÄ-' ",
            u"coöp-'.,1 ",   u"a\u0301\u0308e\u0327 ",
            u"かがカガｶゝa", u"ß\u01C4\uFB03жЖ漢\xD83D\xDE00z"};
        const std::u16string_view alphabet = kAlphabets[pick(std::size(kAlphabets))];
        std::u16string text;
        for (std::size_t left = pick(longest + 1); left > 0; --left)
            text += pick(40) == 0 ? static_cast<char16_t>(pick(0x10000)) : alphabet[pick(alphabet.size())];
        return text;
    }
    std::size_t pick(std::size_t below)
    {
        return std::uniform_int_distribution<std::size_t>(0, below - 1)(m_random);
    }

private:
    std::mt19937 m_random{20041};
};

// U+0001 to U+00FF as one text.
constexpr std::string_view kAllLatin =
    "0803080408050806080707090a0c0e10121416182c1a1c1e36383a3c3e404244464820222e303224264a4c4d4f5153555759"
    "5b5c5e6062646668696b6d6f717375767827292a2b022b032b074a4c4d4f51535557595b5c5e6062646668696b6d6f717375"
    "76782b092b0b2b0d2b0f08022b1034a634a734a834a92b1134aa2b1234ab4a330534ac34ad2b1334ae33043a3c2b1434af34"
    "b034b12b153864330737123716371a2b164a4a4a4a4a4a4a514d51515151595959594f6264646464643309646f6f6f6f766d"
    "576b6b4a4a4a4a4a4a4a514d51515151595959594f626464646464330a646f6f6f6f766d5776010202020202020202020202"
    "0202020202020202020202020202020202020202020202020202020202020202020202020202020202020202020202020202"
    "0202020202020202020202020202020202020202020202020202020202020202020202020202020202020202020202030202"
    "0202020202020202020202020302020202020f0e1219131a021c0f0e12130f0e121368190f0e12191302210f0e12130e0202"
    "0f0e1219131a021c0f0e12130f0e121368190f0e12191302210f0e12130e0213010101800706038007060480070605800706"
    "068007060780070608800706098007060a801b060b801b060c801b060d801b060e801b060f801b0610801b0611801b061280"
    "1b0613801b0614801b0615801b0616801b0617801b0618801b0619801b061a801b061b801b061c80370680804b0682818f06"
    "1d818f061e818f061f818f0620818f0621818f0622818f0623818f0624818f0625818f0626818f0627818f0628818f062981"
    "8f062a818f062b818f062c818f062d818f062e818f062f818f0630818f0631818f0632818f0633818f0634818f0635818f06"
    "36818f0637818f0638818f0639818f063a818f063b818f063c818f063d81c3068300";

TEST(TextOrder, KeysOfTextsThatTheOriginalEngineStored)
{
    const std::pair<std::u16string_view, std::string_view> kCases[] = {
        {u"", "0100"},
        {u"ab", "4a4c0100"},
        {u"AB", "4a4c0100"},
        {u"ab  ", "4a4c0100"},
        {u"a b", "4a074c0100"},
        {u"Rates", "694a6d516b0100"},
        {u"café", "4d4a5351010202020e00"},
        {u"Müller", "606f5e5e516901021300"},
        {u"O'Brien", "644c6959516201010101800b068000"},
        {u"Smith-Jones", "6b60596d575b6462516b01010101801b068200"},
        {u"Databases", "4f4a6d4a4c4a6b516b0100"},
        {u"Relationships", "69515e4a6d5964626b5759666b0100"},
    };
    for (const auto &[text, key] : kCases)
        EXPECT_EQ(hex(textKey(text)), key);

    std::u16string all;
    for (char16_t unit = 1; unit < 256; ++unit)
        all += unit;
    EXPECT_EQ(hex(textKey(all)), kAllLatin);
}

TEST(TextOrder, OnlySoManyUnitsCount)
{
    const std::u16string start(254, u'x');
    EXPECT_EQ(textKey(start + u"ab"), textKey(start + u"ac"));
    EXPECT_NE(textKey(start + u"a"), textKey(start + u"b"));
    EXPECT_EQ(textKey(start + u" b"), textKey(start))
        << "what is cut off doesn't keep a blank from being the last";
    EXPECT_LT(compareText(start + u"ab", start + u"ac"), 0) << "comparison looks at whole texts";
}

TEST(TextOrder, ComparesAsPeopleSort)
{
    const std::u16string_view kRising[] = {u"",       u"1",      u"10",     u"2",       u"coop", u"co-op",
                                           u"Cooper", u"coöper", u"OBrien", u"O'Brien", u"Zoe",  u"zoë"};
    for (std::size_t i = 0; i < std::size(kRising); ++i)
        for (std::size_t k = 0; k < std::size(kRising); ++k)
            EXPECT_EQ(sign(compareText(kRising[i], kRising[k])),
                      sign(static_cast<int>(i) - static_cast<int>(k)))
                << i << " " << k;
    EXPECT_EQ(compareText(u"smith ", u"SMITH"), 0);
    EXPECT_EQ(compareText(u"É", u"é"), 0);
}

TEST(TextOrder, ComparingAgreesWithTheKeys)
{
    TextMaker maker;
    int equal = 0, unlike = 0;
    for (int i = 0; i < 60000; ++i) {
        const std::u16string left = maker.make(6);
        std::u16string right = maker.make(6);
        if (maker.pick(3) == 0) { // the same but for one unit
            right = left;
            if (!right.empty())
                right[maker.pick(right.size())] =
                    static_cast<char16_t>(maker.pick(2) ? u'-' : maker.pick(0x180));
        }
        const int byKeys = compareKeys(left, right);
        ASSERT_EQ(sign(compareText(left, right)), byKeys) << hex(textKey(left)) << " " << hex(textKey(right));
        ASSERT_EQ(sign(compareText(right, left)), -byKeys);
        (byKeys == 0 && left != right ? equal : unlike)++;
    }
    EXPECT_GT(equal, 200) << "the texts don't exercise equal weights";
    EXPECT_GT(unlike, 1000);
}

constexpr const char *kJudgeOfKeys = R"(
import sys
sys.path.insert(0, sys.argv[1] + '/tools')
import jetcheck
weights = jetcheck.Weights(sys.argv[1] + '/jet4-text-weights.tsv')
for line in open(sys.argv[2]):
    raw = bytes.fromhex(line)
    print(weights.key([raw[i] << 8 | raw[i + 1] for i in range(0, len(raw), 2)]).hex())
)";

TEST(TextOrder, EveryUnitAndManyTextsHaveTheKeysOfTheJudge)
{
    if (!judge::present("the key of every UTF-16 unit"))
        return;
    std::vector<std::u16string> texts;
    for (std::uint32_t unit = 0; unit < 0x10000; ++unit)
        texts.push_back({u'x', static_cast<char16_t>(unit), u'é'});
    TextMaker maker;
    for (int i = 0; i < 5000; ++i)
        texts.push_back(maker.make(300));

    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("text-order-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "judge.py") << kJudgeOfKeys;
    {
        std::ofstream out(folder / "texts");
        for (const std::u16string &text : texts) {
            for (const char16_t unit : text)
                out << hex(std::string{static_cast<char>(unit >> 8), static_cast<char>(unit & 0xFF)});
            out << '\n';
        }
    }
    const auto said = judge::run("python3 " + (folder / "judge.py").string() + " " + judge::kFolder.string() +
                                 " " + (folder / "texts").string());
    std::filesystem::remove_all(folder);
    const std::vector<std::string> keys = said.lines();
    ASSERT_EQ(keys.size(), texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i)
        ASSERT_EQ(hex(textKey(texts[i])), keys[i]) << "text " << i;
}

} // namespace
} // namespace vardelin::jet
