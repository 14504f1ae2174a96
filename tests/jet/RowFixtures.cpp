#include "tests/jet/RowFixtures.h"

#include <charconv>
#include <chrono>
#include <cmath>

namespace vardelin::jet::test {

namespace {

NewTable listOf(const std::u16string &name, std::uint16_t size)
{
    return {name, {textColumn(name, size)}, {}};
}

std::string hexOf(const std::byte *bytes, std::size_t count, bool upper)
{
    const char *digits = upper ? "0123456789ABCDEF" : "0123456789abcdef";
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += digits[std::to_integer<unsigned>(bytes[i]) >> 4];
        text += digits[std::to_integer<unsigned>(bytes[i]) & 15];
    }
    return text;
}

bool needsEscapes(std::u16string_view text)
{
    return std::any_of(text.begin(), text.end(),
                       [](char16_t c) { return c == 0x7F || c == 0x85 || c == 0x2028 || c == 0x2029; });
}

std::string escape(char16_t c)
{
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "\\u%04x", static_cast<unsigned>(c));
    return buffer;
}

std::string jsonText(std::u16string_view text, bool ascii)
{
    std::string out = "\"";
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        static constexpr std::u16string_view special = u"\"\\\n\r\t\b\f";
        if (const auto at = special.find(c); at != special.npos)
            (out += '\\') += "\"\\nrtbf"[at];
        else if (c < 0x20 || (ascii && c > 0x7E))
            out += escape(c);
        else
            out += toUtf8(text.substr(i, c >= 0xD800 && c < 0xDC00 ? 2 : 1)), i += c >= 0xD800 && c < 0xDC00;
    }
    return out + "\"";
}

std::string fixedText(std::string digits, bool negative, std::size_t decimals)
{
    while (digits.size() <= decimals)
        digits.insert(0, "0");
    if (decimals > 0)
        digits.insert(digits.size() - decimals, ".");
    return "\"" + std::string(negative ? "-" : "") + digits + "\"";
}

std::string jsonOf(Currency value)
{
    const bool negative = value.tenThousandths < 0;
    const auto magnitude = negative ? 0 - static_cast<std::uint64_t>(value.tenThousandths)
                                    : static_cast<std::uint64_t>(value.tenThousandths);
    return fixedText(std::to_string(magnitude), negative, 4);
}

std::string jsonOf(const Decimal &value)
{
    auto parts = value.magnitude;
    std::string digits;
    while (std::any_of(parts.begin(), parts.end(), [](std::uint32_t part) { return part != 0; })) {
        std::uint64_t rest = 0;
        for (std::uint32_t &part : parts) {
            rest = rest << 32 | part;
            part = static_cast<std::uint32_t>(rest / 10);
            rest %= 10;
        }
        digits.insert(digits.begin(), static_cast<char>('0' + rest));
    }
    return fixedText(digits.empty() ? "0" : digits, value.negative && !digits.empty(), value.scale);
}

template <class Number>
std::string jsonNumber(Number value)
{
    char buffer[400];
    const double size = std::abs(static_cast<double>(value));
    const bool plain = size == 0 || (size >= 1e-4 && size < 1e16);
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value,
                                   plain ? std::chars_format::fixed : std::chars_format::scientific);
    std::string text(buffer, end.ptr);
    return plain && text.find('.') == text.npos ? text + ".0" : text;
}

std::string jsonOf(DateTime value)
{
    const double day = std::trunc(value.days);
    const auto milliseconds =
        static_cast<std::int64_t>(std::nearbyint(std::abs(value.days - day) * 86400000));
    const std::chrono::sys_days base = std::chrono::year{1899} / 12 / 30;
    const auto moment =
        base + std::chrono::days(static_cast<int>(day)) + std::chrono::milliseconds(milliseconds);
    const auto date = std::chrono::floor<std::chrono::days>(moment);
    const std::chrono::year_month_day ymd(date);
    const std::chrono::hh_mm_ss time(moment - date);
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "\"%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(ymd.year()),
                  static_cast<unsigned>(ymd.month()), static_cast<unsigned>(ymd.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    std::string text = buffer;
    if (time.subseconds().count() != 0) {
        std::snprintf(buffer, sizeof buffer, ".%03d", static_cast<int>(time.subseconds().count()));
        text += buffer;
    }
    return text + "\"";
}

std::string jsonOf(const Guid &value)
{
    const auto part = [&](std::initializer_list<std::size_t> places) {
        std::string text;
        for (const std::size_t place : places)
            text += hexOf(&value.bytes[place], 1, true);
        return text;
    };
    return "\"{" + part({3, 2, 1, 0}) + "-" + part({5, 4}) + "-" + part({7, 6}) + "-" + part({8, 9}) + "-" +
           part({10, 11, 12, 13, 14, 15}) + "}\"";
}

struct JsonCell
{
    bool ascii;
    std::string operator()(std::monostate) const { return "null"; }
    std::string operator()(bool value) const { return value ? "true" : "false"; }
    std::string operator()(const std::u16string &value) const { return jsonText(value, ascii); }
    std::string operator()(const Bytes &value) const
    {
        return "{\"hex\": \"" + hexOf(value.data(), value.size(), false) + "\"}";
    }
    std::string operator()(float value) const { return jsonNumber(value); }
    std::string operator()(double value) const { return jsonNumber(value); }
    template <class T>
    std::string operator()(const T &value) const
    {
        if constexpr (std::is_integral_v<T>)
            return std::to_string(value);
        else
            return jsonOf(value);
    }
};

} // namespace

std::string jsonOf(const Table &table, const RowView &row)
{
    std::vector<Cell> cells;
    bool ascii = false;
    for (std::size_t i = 0; i < table.columns().size(); ++i) {
        cells.push_back(row.cell(i));
        ascii |= needsEscapes(table.columns()[i].name);
        if (const auto *text = std::get_if<std::u16string>(&cells.back()))
            ascii |= needsEscapes(*text);
    }
    std::string line = "{";
    for (std::size_t i = 0; i < cells.size(); ++i) {
        line += (i == 0 ? "" : ", ") + jsonText(table.columns()[i].name, ascii) + ": " +
                std::visit(JsonCell{ascii}, cells[i]);
    }
    return line + "}";
}

void expectSameValues(File &file)
{
    const auto names = file.tableNames();
    std::vector<std::vector<std::string>> questions;
    for (const std::u16string &name : names)
        questions.push_back({"--dump", file.path().string(), toUtf8(name)});
    const auto answers = judge::checkAll(questions);
    for (std::size_t i = 0; i < names.size(); ++i) {
        const Table &table = file.table(names[i]);
        EXPECT_EQ(answers[i].status, 0) << toUtf8(names[i]);
        const auto lines = answers[i].lines();
        std::size_t at = 0;
        for (Cursor row = table.scan(); !row.atEnd(); row.next(), ++at) {
            ASSERT_LT(at, lines.size()) << toUtf8(names[i]);
            ASSERT_EQ(jsonOf(table, row.view()), lines[at]) << toUtf8(names[i]) << " row " << at;
        }
        EXPECT_EQ(at, lines.size()) << toUtf8(names[i]);
    }
}

std::vector<NewTable> officeTables()
{
    const auto memo = [](const char16_t *name) { return plainColumn(name, ColumnType::Memo); };
    const auto date = [](const char16_t *name) { return plainColumn(name, ColumnType::DateTime); };
    NewTable logs{u"Vardelins",
                  {autoNumberColumn(u"Indexing Field"), textColumn(u"Client", 200),
                   textColumn(u"Project", 100), textColumn(u"Employee", 200), textColumn(u"Rate", 10),
                   memo(u"Vardelin"), memo(u"VardeGraphic"), textColumn(u"Log Summary", 100),
                   date(u"Beginning Time"), date(u"Ending Time"),
                   plainColumn(u"Duration", ColumnType::Single), plainColumn(u"Fee", ColumnType::Currency)},
                  {{u"PrimaryKey", {{u"Indexing Field", false}}, true}}};
    NewTable clients{u"Active Clients",
                     {},
                     {{u"PrimaryKey", {{u"Client Last Name", false}, {u"Client First Name", false}}, true}}};
    clients.columns = {textColumn(u"Client First Name", 100), textColumn(u"Client Last Name", 100)};
    const std::pair<const char16_t *, std::uint16_t> client[] = {
        {u"First Address", 100}, {u"Second Address", 100},
        {u"Third Address", 100}, {u"City", 100},
        {u"State", 50},          {u"Zip Code", 10},
        {u"Home Telephone", 30}, {u"Work Telephone", 30},
        {u"Cell Telephone", 30}, {u"Alternative Telephone", 30},
        {u"Email Address", 100}, {u"Notes", 0},
        {u"Retainer Date", 1},   {u"Retainer Terms", 0},
        {u"Referrer", 200},      {u"Claim Type", 200},
        {u"Forum", 100},         {u"Claim Number", 50},
        {u"Defendant", 200},     {u"Opposing Attorney", 200},
        {u"OPA Telephone", 30},  {u"History", 0},
        {u"Things To Do", 0},    {u"Re Line", 0},
        {u"Greeting", 0},        {u"Closing", 0}};
    for (const auto &[name, size] : client) {
        const std::u16string full = std::u16string(u"Active Client ") + name;
        clients.columns.push_back(size > 1    ? textColumn(full, size)
                                  : size == 1 ? plainColumn(full, ColumnType::DateTime)
                                              : plainColumn(full, ColumnType::Memo));
    }
    NewTable inactive{u"Inactive Clients", {}, {}};
    for (const char16_t *name :
         {u"First Name", u"Last Name", u"First Address", u"Second Address", u"Third Address", u"City",
          u"State", u"Zip Code", u"Home Telephone", u"Work Telephone", u"Email Address"})
        inactive.columns.push_back(textColumn(std::u16string(u"Inactive Client ") + name, 100));
    inactive.columns.push_back(date(u"Inactive Client Retainer Date"));
    inactive.columns.push_back(memo(u"Inactive Client Retainer Terms"));
    inactive.columns.push_back(textColumn(u"Inactive Client Referrer", 200));
    inactive.columns.push_back(textColumn(u"Inactive Client Claim Type", 200));
    inactive.columns.push_back(date(u"Inactive Client Case Closed Date"));
    return {
        logs,
        clients,
        inactive,
        {u"Employees", {textColumn(u"Employee First Name", 100), textColumn(u"Employee Last Name", 100)}, {}},
        listOf(u"Activities", 100),
        listOf(u"Projects", 100),
        listOf(u"Rates", 10),
        {u"Things To Do",
         {textColumn(u"ThingToDo", 100), textColumn(u"TTD Client First Name", 100),
          textColumn(u"TTD Client Last Name", 100), textColumn(u"TTD Project", 100),
          textColumn(u"TTD Priority", 100), date(u"Thing To Do Start Date"), date(u"Thing To Do Deadline")},
         {}},
        {u"Disbursements",
         {memo(u"Disbursement Description"), textColumn(u"Disbursement Client First Name", 100),
          textColumn(u"Disbursement Client Last Name", 100), date(u"Disbursement Date"),
          plainColumn(u"Disbursement Amount", ColumnType::Currency), textColumn(u"Disbursement Payee", 100)},
         {}},
        {u"Payments",
         {textColumn(u"Payment Description", 12), textColumn(u"Payment Client First Name", 100),
          textColumn(u"Payment Client Last Name", 100), date(u"Payment Date"),
          plainColumn(u"Payment Amount", ColumnType::Currency)},
         {}},
        {u"Invoices", {memo(u"Letterhead")}, {}}};
}

} // namespace vardelin::jet::test
