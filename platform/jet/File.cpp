#include "platform/jet/FileParts.h"
#include "platform/jet/Header.h"
#include "platform/jet/TableCreation.h"

namespace vardelin::jet {

File::File(std::unique_ptr<FileParts> parts) : m_parts(std::move(parts)) {}

File::~File() = default;

std::unique_ptr<File> File::open(const std::filesystem::path &path, OpenOptions options, Disk &disk)
{
    const auto access = options.readOnly ? Pager::Access::Read : Pager::Access::ReadWrite;
    const auto sharing = options.exclusive ? Pager::Sharing::Exclusive : Pager::Sharing::Shared;
    auto parts = std::make_unique<FileParts>(Pager::open(disk, path, access, sharing));
    {
        const ReadSection reading(parts->pager());
        checkHeader(parts->pager());
    }
    return std::unique_ptr<File>(new File(std::move(parts)));
}

std::unique_ptr<File> File::create(const std::filesystem::path &path, Disk &disk)
{
    auto parts = std::make_unique<FileParts>(Pager::open(disk, path, Pager::Access::Create));
    Writing writing(*parts);
    createBareFile(*parts);
    writing.commit();
    return std::unique_ptr<File>(new File(std::move(parts)));
}

const std::filesystem::path &File::path() const
{
    return m_parts->pager().path();
}

std::vector<std::u16string> File::tableNames() const
{
    const Reading reading(*m_parts);
    std::vector<std::u16string> names;
    for (const CatalogEntry &entry : m_parts->catalog().tables()) {
        if (!entry.system)
            names.push_back(entry.name);
    }
    return names;
}

bool File::hasTable(std::u16string_view name) const
{
    const Reading reading(*m_parts);
    return m_parts->catalog().find(name) != nullptr;
}

Table &File::table(std::u16string_view name)
{
    const Reading reading(*m_parts);
    const CatalogEntry *entry = m_parts->catalog().find(name);
    if (!entry)
        throw Error(Code::TableNotFound, toUtf8(name));
    return m_parts->userTable(*entry);
}

Table &File::createTable(const NewTable &table)
{
    Writing writing(*m_parts);
    jet::createTable(*m_parts, table);
    Table &made = File::table(table.name); // behind the commit nothing may fail any more
    writing.commit();
    return made;
}

// ---- Scopes

ReadScope::ReadScope(const File &file) : m_parts(*file.m_parts)
{
    m_parts.pager().beginRead();
    try {
        m_parts.enter();
    } catch (...) {
        m_parts.pager().endRead();
        throw;
    }
}

ReadScope::~ReadScope()
{
    m_parts.pager().endRead();
}

Scope::Scope(File &file) : m_parts(*file.m_parts)
{
    m_parts.pager().beginWrite();
    try {
        m_parts.enter();
    } catch (...) {
        m_parts.pager().rollback();
        throw;
    }
    m_parts.touch();
}

Scope::~Scope()
{
    if (!m_open)
        return;
    m_parts.pager().rollback();
    m_parts.forget();
}

void Scope::commit()
{
    m_open = false;
    m_parts.touch();
    m_parts.pager().commit();
    m_parts.committed();
}

} // namespace vardelin::jet
