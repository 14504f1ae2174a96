// jet_seeds FOLDER: small files to begin with, one for each thing that the engine stores in a way of its own.

#include "platform/jet/Jet.h"

#include <filesystem>
#include <iostream>
#include <span>

namespace vardelin::jet {
namespace {

const NewColumn kId{u"Id", ColumnType::Long, 0, true};
const NewIndex kPrimary{u"PrimaryKey", {{u"Id", false}}, true};

NewColumn column(const char16_t *name, ColumnType type)
{
    return {name, type, type == ColumnType::Text ? std::uint16_t{100} : std::uint16_t{0}, false, false,
            true, true};
}

void fill(File &file, const NewTable &plan, int rows, const std::vector<std::size_t> &lengths)
{
    Table &table = file.createTable(plan);
    Scope scope(file);
    std::vector<RowId> ids;
    for (int i = 0; i < rows; ++i) {
        std::vector<ColumnValue> values;
        for (std::size_t c = 1; c < plan.columns.size(); ++c) {
            const std::size_t length = lengths[static_cast<std::size_t>(i) % lengths.size()];
            if (plan.columns[c].type == ColumnType::Text)
                values.emplace_back(c, std::u16string(u"Name ") + std::u16string(length % 90, u'n'));
            else if (plan.columns[c].type == ColumnType::Memo)
                values.emplace_back(c, std::u16string(length, i % 2 == 0 ? u'm' : u'\u0436'));
            else if (plan.columns[c].type == ColumnType::Currency)
                values.emplace_back(c, Currency{i * 2500});
        }
        ids.push_back(table.insert(values));
    }
    for (std::size_t i = 0; i + 2 < ids.size(); i += 5) { // moved and deleted rows
        const ColumnValue longer{1, std::u16string(95, u'z')};
        table.update(ids[i], {&longer, 1});
        table.erase(ids[i + 2]);
    }
    scope.commit();
}

void writeSeeds(const std::filesystem::path &folder)
{
    using enum ColumnType;
    File::create(folder / "bare.mdb");
    const auto notes = File::create(folder / "notes.mdb");
    fill(*notes, {u"Notes", {kId, column(u"Name", Text), column(u"Note", Memo)}, {kPrimary}}, 20,
         {3, 20, 60, 900, 2500, 9000});
    const auto indexes = File::create(folder / "indexes.mdb");
    fill(*indexes,
         {u"Clients",
          {kId, column(u"Name", Text), column(u"Fee", ColumnType::Currency)},
          {kPrimary, {u"ByName", {{u"Name", true}, {u"Id", false}}}, {u"ByFee", {{u"Fee", false}}}}},
         120, {5, 80, 33});
    const auto types = File::create(folder / "types.mdb");
    fill(*types,
         {u"Types",
          {kId, column(u"A", Text), column(u"B", Boolean), column(u"C", Byte), column(u"D", Integer),
           column(u"E", Single), column(u"F", Double), column(u"G", ColumnType::DateTime),
           column(u"H", Binary), column(u"I", Ole), column(u"J", ColumnType::Guid),
           column(u"K", ColumnType::Decimal)},
          {}},
         6, {10});
}

} // namespace
} // namespace vardelin::jet

int main(int argc, char **argv)
{
    const std::span arguments(argv, static_cast<std::size_t>(argc));
    if (arguments.size() != 2) {
        std::cerr << "usage: jet_seeds FOLDER\n";
        return 2;
    }
    std::filesystem::create_directories(arguments[1]);
    vardelin::jet::writeSeeds(arguments[1]);
    return 0;
}
