#include "platform/jet/FileParts.h"

#include "platform/jet/Header.h"
#include "platform/jet/Properties.h"

namespace vardelin::jet {

FileParts::FileParts(std::unique_ptr<Pager> pager)
    : m_pager(std::move(pager)), m_allocation(*m_pager), m_catalog(*this)
{}

FileParts::~FileParts() = default;

void FileParts::enter()
{
    if (!m_replaced && m_version == m_pager->version())
        return;
    forget();
    m_version = m_pager->version();
    m_replaced = m_replaced || !isSameDatabase();
    if (m_replaced)
        throw Error(Code::WriteError, {}, "another database stands in the place of this one");
}

// Nobody else can have written since enter(), for the section held the lock.
void FileParts::committed()
{
    m_version = m_origin ? m_pager->version() : 0; // a file just made is looked at once more
    touch();
}

std::optional<FileParts::Origin> FileParts::origin()
{
    if (m_pager->pageCount() <= kRelationshipsPage)
        return std::nullopt;
    try {
        const std::byte *header = m_pager->page(0);
        return Origin{Bytes(header, header + kHeaderEnd), m_catalog.created()};
    } catch (const Error &error) {
        if (error.code() != Code::Damaged)
            throw;
        return std::nullopt; // whoever reads from it will hear of it
    }
}

bool FileParts::isSameDatabase()
{
    std::optional<Origin> now = origin();
    if (m_origin && now)
        return *m_origin == *now;
    if (!m_origin)
        m_origin = std::move(now);
    return true;
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
    if (table && table->name() != entry.name)
        m_gone.push_back(std::move(table));
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

const TableDefinition *FileParts::definitionOf(PageNo page)
{
    const CatalogEntry *entry = m_catalog.find(page);
    return entry ? &userTable(*entry).current() : nullptr;
}

Bytes FileParts::propertiesAt(RowId catalogRow)
{
    Table &objects = m_catalog.objects();
    Cell blob = objects.row(catalogRow).cell(Catalog::columnsOf(objects).lvProp);
    Bytes *bytes = std::get_if<Bytes>(&blob);
    return bytes ? std::move(*bytes) : Bytes();
}

void FileParts::readProperties(TableDefinition &definition)
{
    definition.properties = propertiesAt(definition.catalogRow);
    if (!definition.properties.empty())
        applyProperties(definition.properties, {*m_pager, definition.catalogRow.page}, definition.columns);
}

// Whether the file says the same of the table as it did when the definition was parsed.
bool FileParts::isCurrent(const TableDefinition &definition, const DefinitionBytes &source)
{
    if (source.pages != definition.pages)
        return false;
    Bytes fixed = source.bytes;
    blankCounts(fixed);
    if (!sameBytes(fixed, definition.fixedContent))
        return false;
    const bool base = definition.page() <= kRelationshipsPage;
    return base || sameBytes(propertiesAt(definition.catalogRow), definition.properties);
}

void FileParts::refresh(TableDefinition &definition)
{
    const PageNo page = definition.page();
    const bool base = page <= kRelationshipsPage;
    const CatalogEntry *entry = base ? nullptr : m_catalog.find(page);
    if (!base && (!entry || entry->name != definition.name))
        throw Error(Code::TableNotFound, toUtf8(definition.name));
    if (entry)
        definition.catalogRow = entry->row;
    DefinitionBytes source = readDefinition(*m_pager, page);
    // Those who hold a reference to the columns keep it as long as nothing has changed.
    if (isCurrent(definition, source))
        return;
    TableDefinition fresh = parseDefinition(*m_pager, std::move(source));
    fresh.name = definition.name;
    fresh.catalogRow = definition.catalogRow;
    if (!base)
        readProperties(fresh);
    definition = std::move(fresh);
}

} // namespace vardelin::jet
