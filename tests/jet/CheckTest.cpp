// Our checker of whole files: silent on sound files, not on files with one fault, and of one mind with the
// independent one.
#include "platform/jet/Check.h"

#include "tests/jet/Judge.h"
#include "tests/jet/Patient.h"

#include <chrono>
#include <random>

namespace vardelin::jet::test {
namespace {

std::string textOf(const CheckReport &report)
{
    std::string text;
    for (const Finding &finding : report.findings)
        text += std::string(nameOf(finding.invariant)) + ": " + jet::textOf(finding) + "\n";
    return text;
}

bool breaks(const CheckReport &report, Invariant invariant)
{
    return std::any_of(report.findings.begin(), report.findings.end(), [invariant](const Finding &finding) {
        return finding.invariant == invariant && finding.severity != Severity::Oddity;
    });
}

CheckReport check(const Bytes &file)
{
    MemoryDisk disk;
    disk.put("file.mdb", file);
    return checkFile("file.mdb", disk);
}

struct Injury
{
    const char *name;
    Invariant breaks;
    void (*hurt)(Patient &);
};

const Injury kInjuries[] = {
    {"pointer of the header", Invariant::Header, [](Patient &p) { p.flip(0, 0x24, 1); }},
    {"used page marked free", Invariant::Ownership,
     [](Patient &p) { p.flipFree(p.firstPage(p.definition.owned)); }},
    {"page lost by its map", Invariant::Ownership,
     [](Patient &p) {
         const PageNo page = p.firstPage(p.notes().owned);
         const RowId map = p.notes().owned;
         const PageNo first = p.get<PageNo>(map.page, p.rowAt(map) + 1);
         p.flip(map.page, p.rowAt(map) + 5 + (page - first) / 8, 1U << ((page - first) % 8));
     }},
    {"map of two owners", Invariant::Maps,
     [](Patient &p) {
         store(&p.at(p.definition.page(), 59), p.get<std::uint32_t>(p.definition.page(), 55));
     }},
    {"map of no kind", Invariant::Maps,
     [](Patient &p) { p.flip(p.definition.owned.page, p.rowAt(p.definition.owned), 7); }},
    {"parent that isn't there", Invariant::Catalog,
     [](Patient &p) {
         p.add<std::int32_t>(14, p.rowAt({14, 4}) + 6, 77);
     }},
    {"column of no type", Invariant::Definitions,
     [](Patient &p) { p.flip(p.definition.page(), 63 + 12 * p.definition.physical.size(), 0x60); }},
    {"columns that overlap", Invariant::Definitions,
     [](Patient &p) {
         const std::size_t columns = 63 + 12 * p.definition.physical.size();
         p.add<std::uint16_t>(p.definition.page(), columns + 3 * 25 + 21, std::uint16_t(-2));
     }},
    {"free space", Invariant::DataPages,
     [](Patient &p) { p.add<std::uint16_t>(p.firstPage(p.definition.owned), 2, 2); }},
    {"owner of a page", Invariant::DataPages,
     [](Patient &p) { p.flip(p.firstPage(p.definition.owned), 4, 1); }},
    {"slot", Invariant::DataPages,
     [](Patient &p) { p.flip(p.firstPage(p.definition.owned), kSlotsAt + 3, 0x0F); }},
    {"forward to nowhere", Invariant::Rows,
     [](Patient &p) {
         const RowId forward = p.rowWith(kForward);
         p.flip(forward.page, p.rowAt(forward), 0x40);
     }},
    {"offsets within a row", Invariant::Rows,
     [](Patient &p) {
         const RowId row = p.rowWith(kLiveRow);
         const Slot slot = DataPage(p.pager(), row.page).slot(row.row);
         p.flip(row.page, slot.end - 1 - 2 - 2, 0xFF);
     }},
    {"a Null that must not be", Invariant::Values,
     [](Patient &p) {
         const RowId row = p.rowWith(kLiveRow);
         p.flip(row.page, DataPage(p.pager(), row.page).slot(row.row).end - 1, 1U << 1);
     }},
    {"length of a long value", Invariant::LongValues,
     [](Patient &p) {
         const RowId row = p.rowWith(kLiveRow);
         const auto field = readField(p.definition, p.definition.columns[2],
                                      DataPage(p.pager(), row.page).row(row.row), {p.pager(), row});
         const auto offset = field.bytes.data() - p.pager().page(row.page);
         p.add<std::uint32_t>(row.page, static_cast<std::size_t>(offset), 2);
     }},
    {"long value page of another", Invariant::LongValues,
     [](Patient &p) {
         const PageNo page = p.firstPage(p.notes().owned);
         p.flip(page, kSlotsAt + 1, 0xC0); // its first piece deleted
     }},
    {"row count", Invariant::Counts,
     [](Patient &p) { p.add<std::uint32_t>(p.definition.page(), kRowCountAt, 1); }},
    {"auto-number", Invariant::Counts,
     [](Patient &p) { p.add<std::int32_t>(p.definition.page(), kAutoNumberAt, -9); }},
    {"free space of an index page", Invariant::Trees,
     [](Patient &p) { p.add<std::uint16_t>(p.index(u"ByName").root, 2, 1); }},
    {"leaf without its neighbour", Invariant::Trees,
     [](Patient &p) { p.flip(p.leafOf(p.index(u"ByName")), 16, 3); }},
    {"order of entries", Invariant::Entries,
     [](Patient &p) { p.flip(p.leafOf(p.index(u"PrimaryKey")), kIndexEntries + 9 + 3, 0xFF); }},
    {"copy in a node", Invariant::Entries,
     [](Patient &p) { p.flip(p.index(u"PrimaryKey").root, kIndexEntries + 1, 0x80); }},
    {"row of an entry", Invariant::Keys,
     [](Patient &p) { p.flip(p.leafOf(p.index(u"PrimaryKey")), kIndexEntries + 8, 0x80); }},
    {"key column of a row", Invariant::Keys,
     [](Patient &p) {
         const RowId row = p.rowWith(kLiveRow);
         p.flip(row.page, p.rowAt(row) + 3, 0x20);
     }},
    {"property blob", Invariant::Properties,
     [](Patient &p) { p.bytes[p.find(u"AllowZeroLength", 6) - 26] ^= std::byte{0xFF}; }},
};

TEST(Check, SaysNothingOfASoundFileAndFindsEachSingleFault)
{
    const CheckReport sound = check(soundFile());
    EXPECT_TRUE(sound.findings.empty()) << textOf(sound);
    EXPECT_EQ(sound.tables, 5u);
    EXPECT_GT(sound.rows, 500u);
    const bool judged = judge::present("each single fault");
    TemporaryFolder folder;
    for (const Injury &injury : kInjuries) {
        SCOPED_TRACE(injury.name);
        Patient patient;
        injury.hurt(patient);
        const CheckReport report = check(patient.bytes);
        EXPECT_FALSE(report.clean());
        EXPECT_TRUE(breaks(report, injury.breaks)) << textOf(report);
        if (judged) {
            writeFile(folder / "hurt.mdb", patient.bytes);
            EXPECT_EQ(judge::check(judge::quoted((folder / "hurt.mdb").string())).status, 1);
        }
    }
}

TEST(Check, SamplesOfOtherProgramsAreSound)
{
    if (!judge::present("checking the samples"))
        return;
    for (const char *name :
         {"adox_jet4.mdb", "compIndexTestV2000.mdb", "indexTestV2000.mdb", "office-small.mdb"}) {
        const CheckReport report = checkFile(judge::kFolder / "samples" / name);
        EXPECT_TRUE(report.clean()) << name << "\n" << textOf(report);
        EXPECT_GT(report.rows, 20u);
    }
    const CheckReport leaked = checkFile(judge::kFolder / "samples" / "testV2003.mdb");
    EXPECT_TRUE(leaked.sound()) << textOf(leaked);
    EXPECT_FALSE(leaked.clean()) << "693 of its pages belong to nothing";
}

// A sample whose relationships are as they should be; then one table loses its definition's page, or its
// rows' keys.
TEST(Check, FindsRelationshipsThatLeadNowhere)
{
    if (!judge::present("relationships of a sample"))
        return;
    const Bytes sound = readFile(judge::kFolder / "samples" / "indexTestV2000.mdb");
    constexpr PageNo kReferring = 24, kReferredTo = 27;  // definition pages
    const auto place = [&](PageNo table, PageNo other) { // where the one names the other
        const std::byte pattern[] = {static_cast<std::byte>(other), {}, {}, {}};
        const auto page = sound.begin() + table * std::ptrdiff_t{kPageSize};
        auto at = std::search(page, page + kPageSize, std::begin(pattern), std::end(pattern));
        while (*(at - 5) == std::byte{0}) // the side, ahead of the index number
            at = std::search(at + 1, page + kPageSize, std::begin(pattern), std::end(pattern));
        return at - sound.begin();
    };
    Bytes elsewhere = sound;
    elsewhere[static_cast<std::size_t>(place(kReferring, kReferredTo))] = std::byte{99};
    EXPECT_TRUE(breaks(check(elsewhere), Invariant::Definitions));
    Bytes unknown = sound;
    unknown[static_cast<std::size_t>(place(kReferredTo, kReferring)) - 5] = std::byte{0};
    EXPECT_TRUE(breaks(check(unknown), Invariant::Definitions));
}

TEST(Check, RefusesWhatIsNoSuchFile)
{
    MemoryDisk disk;
    disk.put("text.mdb", Bytes(8192, std::byte{'x'}));
    EXPECT_EQ(codeOf([&] { checkFile("text.mdb", disk); }), Code::NewerFormat);
    EXPECT_EQ(codeOf([&] { checkFile("nothing.mdb", disk); }), Code::FileNotFound);
    Bytes cut = soundFile();
    cut.resize(cut.size() - 8 * kPageSize);
    EXPECT_FALSE(check(cut).sound()) << "pages are missing at the end";
}

struct Flip
{
    std::size_t offset;
    unsigned bits;
};

std::vector<Flip> flips(std::size_t count)
{
    std::mt19937 random(2003);
    const auto pick = [&](std::size_t below) {
        return std::uniform_int_distribution<std::size_t>(0, below - 1)(random);
    };
    std::vector<Flip> all;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t page = pick(soundFile().size() / kPageSize);
        const std::size_t place = pick(3) == 0 ? pick(40) : pick(kPageSize);
        all.push_back({page * kPageSize + place, static_cast<unsigned>(1 + pick(255))});
    }
    return all;
}

CheckReport checkFlipped(const Flip &flip)
{
    Bytes file = soundFile();
    file[flip.offset] ^= static_cast<std::byte>(flip.bits);
    return check(file);
}

TEST(Check, SurvivesAnyByte)
{
    std::size_t found = 0, refused = 0;
    const auto began = std::chrono::steady_clock::now();
    for (const Flip &flip : flips(800)) {
        try {
            found += checkFlipped(flip).findings.empty() ? 0u : 1u;
        } catch (const Error &) {
            ++refused; // page 0
        }
    }
    const auto seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
    EXPECT_GT(found, 200u);
    EXPECT_LT(seconds, 100) << "a walk went on without end";
}

constexpr const char *kJudgeOfFlips = R"(
import sys
sys.path.insert(0, sys.argv[1] + '/tools')
import jetcheck
weights = jetcheck.Weights(sys.argv[1] + '/jet4-text-weights.tsv')
raw = open(sys.argv[2], 'rb').read()
for line in open(sys.argv[3]):
    offset, bits = map(int, line.split())
    data = bytearray(raw)
    data[offset] ^= bits
    checker = jetcheck.Checker(jetcheck.Jet(bytes(data)), weights, jetcheck.Options())
    checker.run()
    print(len(checker.problems), checker.problems[0] if checker.problems else '')
)";

TEST(Check, FindsWhatTheIndependentCheckerFinds)
{
    if (!judge::present("single flipped bytes"))
        return;
    TemporaryFolder folder;
    writeFile(folder / "sound.mdb", soundFile());
    std::ofstream(folder / "judge.py") << kJudgeOfFlips;
    const std::vector<Flip> all = flips(160);
    {
        std::ofstream out(folder / "flips");
        for (const Flip &flip : all)
            out << flip.offset << " " << flip.bits << "\n";
    }
    const auto verdicts =
        judge::run("python3 " + (folder / "judge.py").string() + " " + judge::kFolder.string() + " " +
                   (folder / "sound.mdb").string() + " " + (folder / "flips").string())
            .lines();
    ASSERT_EQ(verdicts.size(), all.size());
    std::size_t both = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i].offset < kPageSize)
            continue; // page 0 decides whether a file is opened at all
        const bool theirs = verdicts[i][0] != '0';
        const CheckReport report = checkFlipped(all[i]);
        EXPECT_TRUE(!theirs || !report.clean()) << "page " << all[i].offset / kPageSize << " byte "
                                                << all[i].offset % kPageSize << ": " << verdicts[i];
        EXPECT_TRUE(theirs || report.clean())
            << "page " << all[i].offset / kPageSize << " byte " << all[i].offset % kPageSize
            << ": only we find " << textOf(report);
        both += theirs;
    }
    EXPECT_GT(both, 40u);
}

} // namespace
} // namespace vardelin::jet::test
