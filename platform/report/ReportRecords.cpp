#include "platform/report/ReportRecords.h"

#include "platform/base/RunTimeError.h"

namespace vardelin {

namespace {

constexpr int kRecordDeleted = 3167;
constexpr int kItemNotFound = 3265;

} // namespace

ReportRecords::~ReportRecords() = default;

int RecordsetRecords::count() const
{
    return m_records.RecordCount();
}

QStringList RecordsetRecords::fieldNames() const
{
    return m_records.FieldNames();
}

std::optional<std::vector<Value>> RecordsetRecords::values(int record, const QStringList &columns) const
{
    try {
        return m_records.ValuesAt(record + 1, columns);
    } catch (const RunTimeError &error) {
        if (error.number() != kRecordDeleted)
            throw;
        return std::nullopt;
    }
}

ListedRecords::ListedRecords(QStringList names, std::vector<std::vector<Value>> rows)
    : m_names(std::move(names)), m_rows(std::move(rows))
{}

std::optional<std::vector<Value>> ListedRecords::values(int record, const QStringList &columns) const
{
    std::vector<Value> values;
    for (const QString &column : columns) {
        qsizetype at = 0;
        while (at < m_names.size() && m_names[at].compare(column, Qt::CaseInsensitive) != 0)
            ++at;
        if (at == m_names.size())
            throw RunTimeError(kItemNotFound, QStringLiteral("Item not found in this collection."));
        values.push_back(m_rows[static_cast<std::size_t>(record)][static_cast<std::size_t>(at)]);
    }
    return values;
}

} // namespace vardelin
