#pragma once
// Where a report takes its records from.

#include "platform/data/Ado.h"

#include <optional>

namespace vardelin {

class ReportRecords
{
public:
    virtual ~ReportRecords();
    virtual int count() const = 0;
    virtual QStringList fieldNames() const = 0;
    // The values of some columns of a record, from 0; nullopt for a record that has gone. A name that is no
    // column: 3265.
    virtual std::optional<std::vector<Value>> values(int record, const QStringList &columns) const = 0;
};

// All records of a record set, in its order, read where they stand: neither the set's position nor an edit
// that it holds is touched. The set must outlive this.
class RecordsetRecords final : public ReportRecords
{
public:
    explicit RecordsetRecords(const ado::Recordset &records) : m_records(records) {}
    int count() const override;
    QStringList fieldNames() const override;
    std::optional<std::vector<Value>> values(int record, const QStringList &columns) const override;

private:
    const ado::Recordset &m_records;
};

// Records in memory: for tests and for a report that is bound to nothing.
class ListedRecords final : public ReportRecords
{
public:
    ListedRecords(QStringList names, std::vector<std::vector<Value>> rows);
    int count() const override { return static_cast<int>(m_rows.size()); }
    QStringList fieldNames() const override { return m_names; }
    std::optional<std::vector<Value>> values(int record, const QStringList &columns) const override;

private:
    QStringList m_names;
    std::vector<std::vector<Value>> m_rows;
};

} // namespace vardelin
