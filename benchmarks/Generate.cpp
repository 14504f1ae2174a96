#include "benchmarks/Generate.h"

#include "benchmarks/QuietProgram.h"
#include "database/CreateDatabase.h"
#include "platform/jet/Jet.h"

#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace vardelin::bench {

namespace {

constexpr int kRowsInScope = 100'000; // so that the pages of a scope stay well within memory
constexpr double kFirstDay = 42'000;  // 27 December 2014

constexpr std::array kLastNames{u"Hollister", u"Abernathy", u"Brandt",  u"Castellano", u"Dunmore",
                                u"Eastwick",  u"Farrow",    u"Gunther", u"Ibarra",     u"Jelinek"};
constexpr std::array kFirstNames{u"Margaret", u"Peter", u"Ruth", u"Samuel"};
constexpr std::array kEmployees{u"Weaver, Anna", u"Okafor, Daniel", u"Lindqvist, Eva"};
constexpr std::array kWords{
    u"the",      u"of",        u"and",       u"to",         u"client",     u"counsel",   u"letter",
    u"file",     u"regarding", u"motion",    u"reviewed",   u"drafted",    u"hearing",   u"with",
    u"for",      u"on",        u"discovery", u"responses",  u"settlement", u"offer",     u"telephone",
    u"call",     u"from",      u"opposing",  u"deposition", u"witness",    u"statement", u"insurance",
    u"carrier",  u"medical",   u"records",   u"court",      u"clerk",      u"order",     u"brief",
    u"research", u"case",      u"law",       u"damages",    u"contract",   u"lease",     u"title",
    u"estate",   u"will",      u"trust",     u"deed",       u"filing",     u"deadline",  u"conference",
    u"in",       u"office",    u"about",     u"strategy",   u"exhibits",   u"agreement", u"a"};

// Numbers that look random and are the same everywhere, which the library's distributions aren't.
class Numbers
{
public:
    std::uint64_t next()
    {
        std::uint64_t z = m_state += 0x9e3779b97f4a7c15u;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
        return z ^ (z >> 31);
    }
    std::size_t below(std::size_t bound) { return static_cast<std::size_t>(next() % bound); }
    bool oneIn(std::size_t count) { return below(count) == 0; }
    double fraction() { return static_cast<double>(next() >> 11) * 0x1p-53; }
    template <class List>
    std::u16string pick(const List &list)
    {
        return list[below(std::size(list))];
    }

private:
    std::uint64_t m_state = 20'021'016;
};

std::size_t notesLength(Numbers &numbers)
{
    if (numbers.oneIn(50))
        return std::min<std::size_t>(20'000, static_cast<std::size_t>(1500 / (1 - numbers.fraction())));
    return 200 + static_cast<std::size_t>(1300 * std::pow(numbers.fraction(), 2));
}

std::u16string notes(Numbers &numbers)
{
    const std::size_t length = notesLength(numbers);
    std::u16string text;
    if (numbers.oneIn(1000))
        text += std::u16string(kRareWord) + u' ';
    if (numbers.oneIn(5))
        text += std::u16string(kCommonWord) + u' ';
    while (text.size() < length) {
        text += numbers.pick(kWords);
        text += numbers.oneIn(60) ? u".\r\n" : numbers.oneIn(12) ? u". " : u" ";
    }
    text.resize(length - 1);
    return text + u'.';
}

std::u16string richNotes(const std::u16string &text)
{
    std::u16string rtf = u"{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0 Liberation Sans;}}\r\n"
                         u"\\pard\\f0\\fs24 ";
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == u'\r' && i + 1 < text.size()) {
            rtf += u"\\par\r\n";
            ++i;
        } else {
            rtf += text[i];
        }
    }
    return rtf + u"\\par\r\n}\r\n";
}

// Rows given by names of columns.
class Writer
{
public:
    explicit Writer(jet::Table &table) : m_table(table) {}
    Writer &set(std::u16string_view column, jet::Cell cell)
    {
        m_values.emplace_back(m_table.findColumn(column).value(), std::move(cell));
        return *this;
    }
    void insert()
    {
        m_table.insert(m_values);
        m_values.clear();
    }

private:
    jet::Table &m_table;
    std::vector<jet::ColumnValue> m_values;
};

void addLists(jet::File &file)
{
    Writer clients(file.table(u"Active Clients"));
    for (const char16_t *last : kLastNames) {
        for (const char16_t *first : kFirstNames)
            clients.set(u"Client Last Name", last).set(u"Client First Name", first).insert();
    }
    Writer employees(file.table(u"Employees"));
    for (const std::u16string employee : kEmployees) {
        const std::size_t comma = employee.find(u", ");
        employees.set(u"Employee Last Name", employee.substr(0, comma))
            .set(u"Employee First Name", employee.substr(comma + 2))
            .insert();
    }
}

void addLog(Writer &logs, int number, Numbers &numbers)
{
    const std::u16string text = notes(numbers);
    const auto tenths = static_cast<int>(1 + numbers.below(40));
    const auto rate = static_cast<int>(50 + 25 * numbers.below(14));
    const double late = numbers.oneIn(20) ? 3 * numbers.fraction() : 0;
    const double begin = kFirstDay + number / 24.0 - late;
    const std::u16string rateText = QString::number(rate).toStdU16String();
    logs.set(u"Client", numbers.pick(kLastNames) + u", " + numbers.pick(kFirstNames))
        .set(u"Project", std::u16string(numbers.oneIn(10) ? u"REVIEW CASES" : u""))
        .set(u"Employee", numbers.pick(kEmployees))
        .set(u"Rate", rateText)
        .set(u"Vardelin", text)
        .set(u"VardeGraphic", richNotes(text))
        .set(u"Log Summary", text.substr(0, 20 + numbers.below(81)))
        .set(u"Beginning Time", jet::DateTime{begin})
        .set(u"Ending Time", jet::DateTime{begin + tenths / 240.0})
        .set(u"Duration", static_cast<float>(tenths) / 10.0f)
        .set(u"Fee", jet::Currency{std::int64_t{rate} * tenths * 1000})
        .insert();
}

void addLogs(jet::File &file, int count)
{
    Numbers numbers;
    Writer logs(file.table(u"Vardelins"));
    for (int number = 0; number < count;) {
        jet::Scope scope(file);
        for (int end = std::min(count, number + kRowsInScope); number < end; ++number)
            addLog(logs, number, numbers);
        scope.commit();
    }
}

std::u16string lines(Numbers &numbers, std::size_t most)
{
    std::u16string text;
    for (std::size_t left = 1 + numbers.below(most); left > 0; --left) {
        for (std::size_t words = 4 + numbers.below(8); words > 0; --words)
            text += numbers.pick(kWords) + u' ';
        text.back() = u'.';
        if (left > 1)
            text += u"\r\n";
    }
    return text;
}

std::u16string telephone(Numbers &numbers)
{
    return QString::number(2'000'000'000 + numbers.below(1'000'000'000)).toStdU16String();
}

// kind: u"Active" or u"Inactive", of the columns that both tables have. No two clients have one name.
Writer &setClient(Writer &row, const std::u16string &kind, int number, Numbers &numbers)
{
    const std::u16string client = kind + u" Client ";
    const std::u16string ofName = kind == u"Active" ? u"Client " : client;
    return row.set(ofName + u"Last Name", numbers.pick(kLastNames) + QString::number(number).toStdU16String())
        .set(ofName + u"First Name", numbers.pick(kFirstNames))
        .set(client + u"First Address", u"14 " + numbers.pick(kLastNames) + u" Road")
        .set(client + u"City", std::u16string(u"Fairhaven"))
        .set(client + u"State", std::u16string(u"NY"))
        .set(client + u"Zip Code", std::u16string(u"10451"))
        .set(client + u"Home Telephone", telephone(numbers))
        .set(client + u"Work Telephone", telephone(numbers))
        .set(client + u"Claim Type", lines(numbers, 1))
        .set(client + u"Retainer Date", jet::DateTime{kFirstDay + static_cast<double>(numbers.below(4000))})
        .set(client + u"Retainer Terms", lines(numbers, 3))
        .set(client + u"Referrer", numbers.pick(kFirstNames));
}

void addClients(jet::File &file, int active, int inactive)
{
    Numbers numbers;
    const jet::DateTime closed{kFirstDay + 4000};
    Writer open(file.table(u"Active Clients")), done(file.table(u"Inactive Clients"));
    jet::Scope scope(file);
    for (int i = 0; i < active; ++i)
        setClient(open, u"Active", i, numbers)
            .set(u"Active Client Defendant", numbers.pick(kLastNames) + u" & Sons")
            .set(u"Active Client Opposing Attorney", std::u16string(kEmployees[1]))
            .set(u"Active Client OPA Telephone", telephone(numbers))
            .set(u"Active Client History", lines(numbers, 12))
            .set(u"Active Client Things To Do", lines(numbers, 6))
            .insert();
    for (int i = 0; i < inactive; ++i)
        setClient(done, u"Inactive", i, numbers).set(u"Inactive Client Case Closed Date", closed).insert();
    scope.commit();
}

void createEmpty(const QString &path)
{
    QuietProgram program(path);
    Global &global = program.global;
    CreateDatabase(global);
}

} // namespace

void generate(const QString &path, int logs)
{
    createEmpty(path);
    const auto file = jet::File::open(path.toStdU16String());
    {
        jet::Scope scope(*file);
        addLists(*file);
        scope.commit();
    }
    addLogs(*file, logs);
}

void generateClients(const QString &path, int active, int inactive)
{
    createEmpty(path);
    addClients(*jet::File::open(path.toStdU16String()), active, inactive);
}

} // namespace vardelin::bench
