// Bringing what can be read of a damaged file to a new one, and the command around it.
#include "platform/jet/Salvage.h"

#include "platform/jet/Check.h"
#include "platform/jet/Compact.h"
#include "tests/jet/Judge.h"
#include "tests/jet/Patient.h"

#include <map>

namespace vardelin::jet::test {
namespace {

using Rows = std::vector<std::vector<Cell>>;

Rows rowsOf(const Table &table)
{
    Rows rows;
    for (Cursor at = table.scan(); !at.atEnd(); at.next()) {
        rows.emplace_back();
        for (std::size_t i = 0; i < table.columns().size(); ++i)
            rows.back().push_back(at.view().cell(i));
    }
    return rows;
}

// Rows of the sound file by their auto-number.
const std::map<std::int32_t, std::vector<Cell>> &soundRows()
{
    static const auto rows = [] {
        MemoryDisk disk;
        disk.put("sound.mdb", soundFile());
        std::map<std::int32_t, std::vector<Cell>> byNumber;
        for (auto &row : rowsOf(File::open("sound.mdb", {}, disk)->table(u"Notes")))
            byNumber.emplace(std::get<std::int32_t>(row[0]), row);
        return byNumber;
    }();
    return rows;
}

struct Salvaged
{
    SalvagedTable table;
    Rows rows;
    Rows aside;
};

// The new file is sound whatever the old one was.
Salvaged salvage(const Bytes &file, std::u16string_view name = u"Notes")
{
    MemoryDisk disk;
    disk.put("old.mdb", file);
    Salvaged result;
    for (const SalvagedTable &table : salvageFile("old.mdb", "new.mdb", disk)) {
        if (table.name == name)
            result.table = table;
    }
    EXPECT_TRUE(checkFile("new.mdb", disk).findings.empty());
    const auto opened = File::open("new.mdb", {}, disk);
    result.rows = rowsOf(opened->table(name));
    if (opened->hasTable(std::u16string(name) + u" (set aside)"))
        result.aside = rowsOf(opened->table(std::u16string(name) + u" (set aside)"));
    EXPECT_EQ(result.rows.size() + result.aside.size(), result.table.rows);
    EXPECT_EQ(disk.content("old.mdb"), file) << "the damaged file stays as it is";
    return result;
}

std::size_t rowsThatAreAsTheyWere(const Rows &rows)
{
    std::size_t same = 0;
    for (const auto &row : rows) {
        const auto was = soundRows().find(std::get<std::int32_t>(row[0]));
        same += was != soundRows().end() && was->second == row ? 1u : 0u;
    }
    return same;
}

TEST(Salvage, NothingOfASoundFileIsLost)
{
    const Salvaged all = salvage(soundFile());
    EXPECT_EQ(all.table.rows, soundRows().size());
    EXPECT_EQ(rowsThatAreAsTheyWere(all.rows), soundRows().size());
    EXPECT_EQ(all.table.lostRows + all.table.lostValues + all.table.setAside, 0u);
}

TEST(Salvage, DamageAroundTheRowsLosesNone)
{
    const struct
    {
        const char *name;
        void (*hurt)(Patient &);
    } kCases[] = {
        {"indexes",
         [](Patient &p) { p.at(p.index(u"PrimaryKey").root) = p.at(p.index(u"ByName").root) = {}; }},
        {"map of the rows' pages",
         [](Patient &p) { p.flip(p.definition.owned.page, p.rowAt(p.definition.owned), 7); }},
        {"row count and auto-number",
         [](Patient &p) { p.add<std::uint64_t>(p.definition.page(), kRowCountAt, 0x500000005); }},
        {"a forward",
         [](Patient &p) { p.flip(p.rowWith(kForward).page, p.rowAt(p.rowWith(kForward)), 0x40); }},
        {"free page map",
         [](Patient &p) {
             p.flip(1, p.rowAt({1, 0}), 9);
         }},
    };
    for (const auto &damage : kCases) {
        SCOPED_TRACE(damage.name);
        Patient patient;
        damage.hurt(patient);
        EXPECT_EQ(rowsThatAreAsTheyWere(salvage(patient.bytes).rows), soundRows().size());
    }
}

TEST(Salvage, TheCatalogIsntNeeded)
{
    Patient patient;
    patient.flip(14, 0);
    const std::u16string name = u"Table of page " + toUtf16(std::to_string(patient.definition.page()));
    EXPECT_EQ(rowsThatAreAsTheyWere(salvage(patient.bytes, name).rows), soundRows().size());
}

TEST(Salvage, WhatIsLostIsCounted)
{
    Patient page;
    const PageNo lost = page.firstPage(page.definition.owned);
    const std::size_t onPage = DataPage(page.pager(), lost).slots();
    page.flip(lost, 12); // the number of its rows
    const Salvaged others = salvage(page.bytes);
    EXPECT_GE(others.table.rows + onPage, soundRows().size());
    EXPECT_GT(others.table.rows, soundRows().size() / 2);
    EXPECT_EQ(rowsThatAreAsTheyWere(others.rows), others.rows.size());

    Patient text;
    text.flip(text.firstPage(text.notes().owned), 0); // a page of long texts
    const Salvaged without = salvage(text.bytes);
    EXPECT_EQ(without.table.rows, soundRows().size());
    EXPECT_GT(without.table.lostValues, 0u);
    EXPECT_EQ(rowsThatAreAsTheyWere(without.rows),
              soundRows().size() - without.table.lostValues - without.table.cutValues);
}

// Calls visit(header) for the notes of the rows that lie where they were added; the header can be changed in
// the bytes of the file.
template <class Visit>
void eachNote(Patient &patient, Visit visit)
{
    const UsageMap owned(patient.pager(), patient.definition.owned);
    for (PageNo number = owned.next(0); number != kNoPage; number = owned.next(number + 1)) {
        const DataPage page(patient.pager(), number);
        for (std::size_t i = 0; i < page.slots(); ++i) {
            const RowPlace place{patient.pager(), {number, static_cast<std::uint8_t>(i)}};
            if (page.slot(i).flags != kLiveRow)
                continue;
            const StoredField note =
                readField(patient.definition, patient.definition.columns[2], page.row(i), place);
            if (note.present)
                visit(note.bytes, &patient.at(number) + (note.bytes.data() - patient.pager().page(number)),
                      place);
        }
    }
}

std::vector<RowId> piecesOfALongNote(Patient &patient)
{
    std::vector<RowId> pieces;
    eachNote(patient, [&](std::span<const std::byte> note, std::byte *, RowPlace place) {
        if (isChained(note))
            pieces = longValuePieces(patient.pager(), note, place);
    });
    return pieces;
}

TEST(Salvage, ValuesThatShareTheirPiecesDontSwellTheCopy)
{
    Patient patient;
    std::span<const std::byte> chained;
    eachNote(patient, [&](std::span<const std::byte> note, std::byte *, RowPlace) {
        chained = isChained(note) ? note : chained;
    });
    std::size_t sharing = 0;
    eachNote(patient, [&](std::span<const std::byte> note, std::byte *inFile, RowPlace) {
        if (isInline(note))
            return;
        std::copy(chained.begin(), chained.end(), inFile);
        ++sharing;
    });
    ASSERT_GT(sharing * 18000, 2 * patient.bytes.size());
    const Salvaged all = salvage(patient.bytes);
    EXPECT_EQ(all.table.rows, soundRows().size());
    EXPECT_GT(all.table.lostValues, 10u);
    MemoryDisk disk;
    disk.put("old.mdb", patient.bytes);
    EXPECT_EQ(codeOf([&] { compactFile("old.mdb", "new.mdb", disk); }), Code::Damaged);
}

TEST(Salvage, TheStartOfABrokenTextIsKept)
{
    Patient patient;
    const std::vector<RowId> pieces = piecesOfALongNote(patient);
    ASSERT_GE(pieces.size(), 3u);
    patient.flip(pieces[1].page, 0);
    const Salvaged all = salvage(patient.bytes);
    EXPECT_EQ(all.table.rows, soundRows().size());
    EXPECT_GE(all.table.cutValues, 1u);
    for (const auto &row : all.rows) {
        const auto *was = std::get_if<std::u16string>(&soundRows().at(std::get<std::int32_t>(row[0]))[2]);
        const auto *text = std::get_if<std::u16string>(&row[2]);
        ASSERT_TRUE(!text || (was && was->starts_with(*text)));
        EXPECT_TRUE(!text || text->size() == was->size() || text->size() >= 2000);
    }
}

TEST(Salvage, RowsThatTheirTableRefusesAreSetAside)
{
    Patient patient;
    const RowId row = patient.rowWith(kLiveRow);
    const auto number = patient.get<std::int32_t>(row.page, patient.rowAt(row) + 2);
    patient.add<std::int32_t>(row.page, patient.rowAt(row) + 2, 1); // the key of a row that is there
    ASSERT_TRUE(soundRows().contains(number + 1));
    const Salvaged all = salvage(patient.bytes);
    EXPECT_EQ(all.table.setAside, 1u);
    ASSERT_EQ(all.aside.size(), 1u);
    EXPECT_EQ(all.rows.size(), soundRows().size() - 1);
}

TEST(CheckCommand, SaysAndSalvages)
{
    const auto command = [](const std::string &arguments) {
        return judge::run(judge::quoted(VARDELIN_CHECK) + " " + arguments + " 2>&1");
    };
    TemporaryFolder folder;
    const std::string sound = judge::quoted((folder / "sound.mdb").string()),
                      hurt = judge::quoted((folder / "hurt.mdb").string());
    const std::string fresh = judge::quoted((folder / "new.mdb").string());
    writeFile(folder / "sound.mdb", soundFile());
    Patient patient;
    patient.add<std::uint32_t>(patient.definition.page(), kRowCountAt, 1);
    writeFile(folder / "hurt.mdb", patient.bytes);

    const auto good = command(sound);
    EXPECT_EQ(good.status, 0) << good.text;
    EXPECT_NE(good.text.find("sound.mdb is sound: "), std::string::npos) << good.text;
    const auto bad = command(hurt);
    EXPECT_EQ(bad.status, 1) << bad.text;
    EXPECT_NE(bad.text.find("Notes: the definition says"), std::string::npos) << bad.text;
    EXPECT_EQ(command(judge::quoted((folder / "nothing.mdb").string())).status, 2);
    EXPECT_EQ(command("").status, 2);
    EXPECT_EQ(command("--salvage " + fresh + " " + hurt).status, 0);
    EXPECT_EQ(command(fresh).status, 0);
    EXPECT_EQ(command("--salvage " + fresh + " " + hurt).status, 2) << "what is there isn't overwritten";
    EXPECT_EQ(readFile(folder / "hurt.mdb"), patient.bytes);
}

} // namespace
} // namespace vardelin::jet::test
