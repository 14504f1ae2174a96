#include "platform/jet/FileParts.h"

#include "platform/jet/Properties.h"

namespace vardelin::jet {

FileParts::FileParts(std::unique_ptr<Pager> pager)
    : m_pager(std::move(pager)), m_allocation(*m_pager), m_catalog(*this)
{}

FileParts::~FileParts() = default;

void FileParts::enter()
{
    if (m_version == m_pager->version())
        return;
    forget();
    m_version = m_pager->version();
}

void FileParts::forget()
{
    m_catalog.forget();
    ++m_generation;
    ++m_changes;
}

Table &FileParts::baseTable(PageNo page, std::u16string_view name)
{
    std::unique_ptr<Table> &table = m_tables[page];
    if (!table) {
        auto definition =
            std::make_unique<TableDefinition>(parseDefinition(*m_pager, readDefinition(*m_pager, page)));
        definition->name = name;
        table.reset(new Table(*this, std::move(definition)));
    }
    return *table;
}

Table &FileParts::userTable(const CatalogEntry &entry)
{
    std::unique_ptr<Table> &table = m_tables[entry.page];
    if (!table) {
        auto definition = std::make_unique<TableDefinition>(
            parseDefinition(*m_pager, readDefinition(*m_pager, entry.page)));
        definition->name = entry.name;
        definition->catalogRow = entry.row;
        if (entry.page > kRelationshipsPage)
            readProperties(*definition);
        table.reset(new Table(*this, std::move(definition)));
    }
    table->current();
    return *table;
}

void FileParts::readProperties(TableDefinition &definition)
{
    Table &objects = m_catalog.objects();
    const Cell blob = objects.row(definition.catalogRow).cell(Catalog::columnsOf(objects).lvProp);
    if (const Bytes *bytes = std::get_if<Bytes>(&blob)) {
        definition.properties = *bytes;
        applyProperties(*bytes, {*m_pager, definition.catalogRow.page}, definition.columns);
    }
}

void FileParts::refresh(TableDefinition &definition)
{
    TableDefinition fresh;
    const PageNo page = definition.page();
    const bool base = page <= kRelationshipsPage;
    const CatalogEntry *entry = base ? nullptr : m_catalog.find(page);
    if (!base && !entry)
        throw Error(Code::TableNotFound, toUtf8(definition.name));
    DefinitionBytes source = readDefinition(*m_pager, page);
    fresh = parseDefinition(*m_pager, std::move(source));
    fresh.name = base ? definition.name : entry->name;
    if (!base) {
        fresh.catalogRow = entry->row;
        readProperties(fresh);
    }
    // Those who hold a reference to the columns keep it as long as nothing has changed.
    const bool same = fresh.fixedContent == definition.fixedContent &&
                      fresh.properties == definition.properties && fresh.pages == definition.pages &&
                      fresh.name == definition.name;
    definition.catalogRow = fresh.catalogRow;
    if (!same)
        definition = std::move(fresh);
}

} // namespace vardelin::jet
