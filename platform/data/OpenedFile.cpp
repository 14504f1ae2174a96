#include "platform/data/OpenedFile.h"

#include <QFile>
#include <algorithm>
#include <sys/stat.h>

namespace vardelin::data {

using namespace Qt::StringLiterals;

void fail(int number)
{
    throw RunTimeError(number);
}

namespace {

std::filesystem::path nativePath(const QString &path)
{
    return std::filesystem::path(QFile::encodeName(path).toStdString());
}

} // namespace

OpenedFile::OpenedFile(const QString &path, std::unique_ptr<jet::File> file)
    : m_path(path), m_file(std::move(file))
{
    m_identity = present().value_or(Identity{});
}

OpenedFile::~OpenedFile()
{
    close();
}

std::shared_ptr<OpenedFile> OpenedFile::open(const QString &path, jet::OpenOptions options)
{
    auto file = engineCall([&] { return jet::File::open(nativePath(path), options); });
    return std::shared_ptr<OpenedFile>(new OpenedFile(path, std::move(file)));
}

std::shared_ptr<OpenedFile> OpenedFile::create(const QString &path)
{
    auto file = engineCall([&] {
        if (path.contains(u'*') || path.contains(u'?')) // a pattern, as a cancelled dialog leaves it
            throw jet::Error(jet::Code::PathNotFound, path.toStdString());
        return jet::File::create(nativePath(path));
    });
    return std::shared_ptr<OpenedFile>(new OpenedFile(path, std::move(file)));
}

std::optional<OpenedFile::Identity> OpenedFile::present() const
{
    struct stat info = {};
    if (::stat(QFile::encodeName(m_path).constData(), &info) != 0)
        return std::nullopt;
    return Identity{static_cast<std::uint64_t>(info.st_dev), static_cast<std::uint64_t>(info.st_ino)};
}

jet::File &OpenedFile::file()
{
    if (!m_file)
        fail(Number::ObjectClosed);
    if (m_together == 0 && m_scopes.empty())
        checkPlace();
    return *m_file;
}

void OpenedFile::checkPlace() const
{
    if (present() != m_identity)
        throw RunTimeError(
            Number::FileReplaced,
            u"The file '%1' was removed or replaced while it was open. To continue, close it and open it again."_s
                .arg(m_path));
}

void OpenedFile::close()
{
    while (!m_scopes.empty()) // not committed: undone
        m_scopes.pop_back();
    m_file.reset();
}

void OpenedFile::begin()
{
    engineCall([&] { m_scopes.push_back(std::make_unique<jet::Scope>(file())); });
}

void OpenedFile::commit()
{
    if (m_scopes.empty())
        fail(Number::NoTransaction);
    checkPlace(); // gone from under us: told, and the transaction stays open for a rollback
    const auto scope = std::move(m_scopes.back());
    m_scopes.pop_back();
    engineCall([&] { scope->commit(); });
}

void OpenedFile::rollback()
{
    if (m_scopes.empty())
        fail(Number::NoTransaction);
    m_scopes.pop_back();
}

std::size_t columnOf(const jet::Table &table, const QString &name)
{
    const auto column = table.findColumn(toU16(name));
    if (!column)
        fail(Number::ItemNotFound);
    return *column;
}

namespace {

bool isLong(const jet::Column &column)
{
    return column.type == jet::ColumnType::Memo || column.type == jet::ColumnType::Ole;
}

} // namespace

std::optional<std::size_t> autoNumberColumn(const jet::Table &table)
{
    const auto &columns = table.columns();
    const auto column = std::ranges::find_if(
        columns, [](const jet::Column &c) { return c.autoNumber && c.type == jet::ColumnType::Long; });
    if (column == columns.end())
        return std::nullopt;
    return static_cast<std::size_t>(column - columns.begin());
}

std::int32_t numberOf(const jet::RowView &row, std::size_t numberColumn)
{
    return row.isNull(numberColumn) ? 0 : row.longValue(numberColumn);
}

jet::RowView rowAt(const jet::Table &table, const RowPlace &place, std::optional<std::size_t> numberColumn)
{
    const jet::RowView view = table.row(place.row);
    if (numberColumn && numberOf(view, *numberColumn) != place.number)
        throw jet::Error(jet::Code::RowDeleted);
    return view;
}

void RowImage::read(const jet::File &file, const jet::Table &table, const RowPlace &place,
                    std::optional<std::size_t> numberColumn)
{
    clear();
    const jet::ReadScope scope(file);
    const jet::RowView view = rowAt(table, place, numberColumn);
    const auto &columns = table.columns();
    std::vector<std::optional<jet::Cell>> cells(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (!isLong(columns[i]))
            cells[i] = view.cell(i);
    m_place = place;
    m_numberColumn = numberColumn;
    m_cells = std::move(cells);
}

const jet::Cell &RowImage::cell(const jet::File &file, const jet::Table &table, std::size_t column)
{
    std::optional<jet::Cell> &cell = m_cells.at(column);
    if (!cell) {
        const jet::ReadScope scope(file);
        cell = rowAt(table, m_place, m_numberColumn).cell(column);
    }
    return *cell;
}

void EditBuffer::set(std::size_t column, jet::Cell cell)
{
    const auto known = std::ranges::find(m_changes, column, &jet::ColumnValue::first);
    if (known != m_changes.end())
        known->second = std::move(cell);
    else
        m_changes.emplace_back(column, std::move(cell));
}

const jet::Cell *EditBuffer::find(std::size_t column) const
{
    const auto known = std::ranges::find(m_changes, column, &jet::ColumnValue::first);
    return known == m_changes.end() ? nullptr : &known->second;
}

QByteArray bookmarkOf(jet::RowId row)
{
    QByteArray bookmark("R");
    for (int shift = 0; shift < 32; shift += 8)
        bookmark.append(static_cast<char>(row.page >> shift));
    bookmark.append(static_cast<char>(row.row));
    return bookmark;
}

jet::RowId rowOf(const QByteArray &bookmark)
{
    if (bookmark.size() != 6 || bookmark[0] != 'R')
        fail(Number::NotABookmark);
    jet::RowId row;
    for (int i = 0; i < 4; ++i)
        row.page |= static_cast<jet::PageNo>(static_cast<unsigned char>(bookmark[1 + i])) << (8 * i);
    row.row = static_cast<std::uint8_t>(bookmark[5]);
    return row;
}

} // namespace vardelin::data
