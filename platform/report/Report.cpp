#include "platform/report/Report.h"

#include "platform/base/RunTimeError.h"

#include <algorithm>

namespace vardelin {

DataReport::DataReport(ReportDesign design) : m_design(std::move(design))
{
    setDataSource(nullptr);
}

void DataReport::setDataSource(const ado::Recordset *source)
{
    if (source)
        m_records = std::make_unique<RecordsetRecords>(*source);
    else
        m_records = std::make_unique<ListedRecords>(QStringList(), std::vector<std::vector<Value>>());
}

void DataReport::Refresh() const
{
    const QStringList names = m_records->fieldNames();
    if (names.isEmpty())
        return;
    for (const ReportSection &section : m_design.sections)
        for (const ReportControl &control : section.controls)
            if (!control.DataField.isEmpty() && !names.contains(control.DataField, Qt::CaseInsensitive))
                throw RunTimeError(3265, QStringLiteral("Item not found in this collection."));
}

void DataReport::bindTo(const ado::Recordset &records)
{
    setDataSource(nullptr);
    DataMember.clear();
    setDataSource(&records);
    Refresh();
}

} // namespace vardelin
