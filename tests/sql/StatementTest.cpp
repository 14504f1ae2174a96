// Runs the case files on real files.
#include "platform/base/Dates.h"
#include "platform/sql/Cells.h"
#include "platform/sql/Select.h"
#include "tests/sql/CaseFile.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vardelin::sql {

using namespace Qt::StringLiterals;
using sqltest::Block;

namespace {

class FixedClock final : public Clock
{
public:
    DateSerial now() const override { return serialOf({2026, 10, 16, 21, 54, 33}); }
};

jet::ColumnType typeOf(const QString &word)
{
    static const std::pair<QLatin1StringView, jet::ColumnType> kTypes[] = {
        {"boolean"_L1, jet::ColumnType::Boolean}, {"byte"_L1, jet::ColumnType::Byte},
        {"integer"_L1, jet::ColumnType::Integer}, {"long"_L1, jet::ColumnType::Long},
        {"auto"_L1, jet::ColumnType::Long},       {"currency"_L1, jet::ColumnType::Currency},
        {"single"_L1, jet::ColumnType::Single},   {"double"_L1, jet::ColumnType::Double},
        {"date"_L1, jet::ColumnType::DateTime},   {"text"_L1, jet::ColumnType::Text},
        {"memo"_L1, jet::ColumnType::Memo},
    };
    for (const auto &[name, type] : kTypes) {
        if (name == word)
            return type;
    }
    throw std::runtime_error("no such type: " + word.toStdString());
}

QString unescaped(QString text)
{
    return text.replace("\\r"_L1, "\r"_L1);
}

class CaseRunner
{
public:
    CaseRunner()
        : m_file(jet::File::create(std::filesystem::path(m_folder.filePath(u"cases.mdb"_s).toStdString())))
    {}

    void run(const Block &block)
    {
        SCOPED_TRACE("line " + std::to_string(block.line) + ": " + block.text.toStdString());
        if (block.text.startsWith("table "_L1))
            makeTable(block);
        else if (block.text.startsWith("query "_L1))
            query(block, unescaped(block.text.sliced(6)));
        else
            ADD_FAILURE() << "neither table nor query";
    }

private:
    void makeTable(const Block &block);
    void query(const Block &block, const QString &text);
    void compare(const Block &block, const Select &select);

    QTemporaryDir m_folder;
    FixedClock m_clock;
    std::unique_ptr<jet::File> m_file;
};

void CaseRunner::makeTable(const Block &block)
{
    const qsizetype open = block.text.indexOf(u'(');
    jet::NewTable table;
    table.name = toU16(block.text.sliced(6, open - 6).trimmed());
    for (const QString &part : block.text.sliced(open + 1).chopped(1).split(u',')) {
        QStringList words = part.trimmed().split(u' ');
        const bool key = words.last() == "key"_L1;
        if (key)
            words.removeLast();
        jet::NewColumn column;
        column.autoNumber = words.last() == "auto"_L1;
        column.type = typeOf(words.takeLast());
        column.name = toU16(words.join(u' '));
        column.size = column.type == jet::ColumnType::Text ? 200 : 0;
        column.allowZeroLength = column.compress = true;
        if (key)
            table.indexes.push_back({u"PrimaryKey", {{column.name, false}}, true, true, true, false});
        table.columns.push_back(column);
    }
    jet::Table &made = m_file->createTable(table);
    for (const QString &line : block.lines) {
        const QStringList texts = line.split(" | "_L1);
        ASSERT_EQ(texts.size(), static_cast<qsizetype>(made.columns().size()));
        std::vector<jet::ColumnValue> values;
        for (qsizetype i = 0; i < texts.size(); ++i) {
            const auto column = static_cast<std::size_t>(i);
            const QString text = unescaped(texts[i].trimmed());
            if (text != "Null"_L1)
                values.emplace_back(
                    column, toCell(Value(text == "''"_L1 ? QString(u""_s) : text), made.columns()[column]));
        }
        made.insert(values);
    }
}

QString shown(const Value &value)
{
    if (value.isNull())
        return u"Null"_s;
    const QString text = toText(value).replace(u'\r', "\\r"_L1);
    return text.isEmpty() ? u"''"_s : text;
}

void CaseRunner::compare(const Block &block, const Select &select)
{
    QStringList expected = block.lines;
    if (!expected.isEmpty() && expected.first().startsWith("columns "_L1)) {
        QStringList names;
        for (const ResultColumn &column : select.columns())
            names += column.name;
        EXPECT_EQ(names.join(" | "_L1).toStdString(), expected.takeFirst().sliced(8).toStdString());
    }
    QStringList rows;
    for (const std::vector<Value> &row : select.rows()) {
        QStringList texts;
        for (const Value &value : row)
            texts += shown(value);
        rows += texts.join(" | "_L1);
    }
    EXPECT_EQ(rows.join(u'\n').toStdString(), expected.join(u'\n').toStdString());
}

void CaseRunner::query(const Block &block, const QString &text)
{
    const bool fails = !block.lines.isEmpty() && block.lines.first().startsWith("error "_L1);
    try {
        const Select select(*m_file, text, &m_clock);
        compare(block, select);
        EXPECT_FALSE(fails) << "no error came";
    } catch (const RunTimeError &error) {
        const QString told = u"error "_s + QString::number(error.number()) + u' ' + error.description();
        if (!fails)
            ADD_FAILURE() << qPrintable(told);
        else // the number may be left out
            EXPECT_TRUE(told.contains(block.lines.first().sliced(6))) << qPrintable(told);
    }
}

class StatementTest : public testing::TestWithParam<std::string>
{
};

} // namespace

TEST_P(StatementTest, GivesTheRows)
{
    CaseRunner runner;
    for (const Block &block : sqltest::readCases(QStringLiteral(SQL_CASES "/") +
                                                 QString::fromStdString(GetParam()) + u".sqltest"_s))
        runner.run(block);
}

std::vector<std::string> caseNames()
{
    std::vector<std::string> names;
    for (const QString &name : sqltest::caseFiles())
        names.push_back(name.toStdString());
    return names;
}

INSTANTIATE_TEST_SUITE_P(Cases, StatementTest, testing::ValuesIn(caseNames()),
                         [](const auto &file) { return file.param; });

} // namespace vardelin::sql
