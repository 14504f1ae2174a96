#include "tests/support/RecordingDisk.h"

#include <algorithm>

namespace vardelin::jet::test {

namespace fs = std::filesystem;

namespace {

using Kind = RecordingDisk::Kind;
using Step = RecordingDisk::Step;
using Loss = RecordingDisk::Loss;

class RecordingFile final : public DiskFile
{
public:
    RecordingFile(RecordingDisk &disk, std::unique_ptr<DiskFile> file)
        : m_disk(disk), m_file(std::move(file)), m_number(m_file->identity().number)
    {}

    std::uint64_t size() override { return m_file->size(); }
    void read(std::uint64_t offset, std::span<std::byte> into) override { m_file->read(offset, into); }
    void write(std::uint64_t offset, std::span<const std::byte> from) override
    {
        m_disk.record({Kind::Write, m_number, offset, Bytes(from.begin(), from.end()), {}, {}});
        m_file->write(offset, from);
    }
    void truncate(std::uint64_t size) override
    {
        m_disk.record({Kind::Truncate, m_number, size, {}, {}, {}});
        m_file->truncate(size);
    }
    void sync() override { m_disk.record({Kind::Sync, m_number, 0, {}, {}, {}}); }
    std::span<const std::byte> map(std::uint64_t) override { return {}; }
    bool tryLock(LockByte byte, LockKind kind) override { return m_file->tryLock(byte, kind); }
    FileIdentity identity() override { return m_file->identity(); }
    std::uint64_t changeStamp() override { return m_file->changeStamp(); }

private:
    RecordingDisk &m_disk;
    std::unique_ptr<DiskFile> m_file;
    std::uint64_t m_number;
};

bool chance(double kept, std::mt19937 &random)
{
    return std::uniform_real_distribution<double>(0, 1)(random) < kept;
}

void applyBytes(Bytes &file, std::uint64_t at, std::span<const std::byte> bytes)
{
    if (at + bytes.size() > file.size())
        file.resize(at + bytes.size());
    std::copy(bytes.begin(), bytes.end(), file.begin() + static_cast<std::ptrdiff_t>(at));
}

void apply(Bytes &file, const Step &step)
{
    if (step.kind == Kind::Truncate)
        file.resize(step.at);
    else
        applyBytes(file, step.at, step.bytes);
}

// Pieces are those of the disk: they lie at multiples of their size.
void applyTorn(Bytes &file, const Step &step, const Loss &loss, std::mt19937 &random)
{
    const std::span<const std::byte> bytes(step.bytes);
    for (std::size_t begin = 0; begin < bytes.size();) {
        const std::size_t end = std::min(bytes.size(), begin + loss.tear - (step.at + begin) % loss.tear);
        if (chance(loss.kept, random))
            applyBytes(file, step.at + begin, bytes.subspan(begin, end - begin));
        begin = end;
    }
}

void applySome(Bytes &file, std::vector<Step> pending, const Loss &loss, std::mt19937 &random)
{
    if (loss.reorder)
        std::shuffle(pending.begin(), pending.end(), random);
    for (const Step &step : pending) {
        if (step.kind == Kind::Write && loss.tear != 0)
            applyTorn(file, step, loss, random);
        else if (chance(loss.kept, random))
            apply(file, step);
    }
}

void applyName(std::map<fs::path, std::uint64_t> &names, const Step &step)
{
    if (step.kind == Kind::Create)
        names[step.path] = step.file;
    else
        names.erase(step.path);
    if (step.kind == Kind::Rename)
        names[step.target] = step.file;
}

} // namespace

RecordingDisk::RecordingDisk(MemoryDisk &base) : m_disk(base)
{
    for (const fs::path &path : base.names()) {
        m_firstNames[path] = numberOf(path);
        m_firstContent[numberOf(path)] = base.content(path);
    }
}

std::unique_ptr<MemoryDisk> RecordingDisk::afterPowerLoss(std::size_t done, const Loss &loss,
                                                          std::mt19937 &random) const
{
    auto names = m_firstNames;
    auto content = m_firstContent;
    std::vector<Step> pendingNames;
    std::map<std::uint64_t, std::vector<Step>> pending;
    for (std::size_t i = 0; i < done; ++i) {
        const Step &step = m_steps[i];
        if (step.kind == Kind::Write || step.kind == Kind::Truncate) {
            pending[step.file].push_back(step);
        } else if (step.kind == Kind::Sync) {
            for (const Step &before : pending[step.file])
                apply(content[step.file], before);
            pending[step.file].clear();
        } else if (step.kind == Kind::SyncFolder) {
            for (const Step &before : pendingNames)
                applyName(names, before);
            pendingNames.clear();
        } else {
            pendingNames.push_back(step);
        }
    }
    for (const auto &[file, steps] : pending)
        applySome(content[file], steps, loss, random);
    for (const Step &step : pendingNames) {
        if (chance(loss.kept, random))
            applyName(names, step);
    }
    auto disk = std::make_unique<MemoryDisk>();
    for (const auto &[path, file] : names)
        disk->put(path, content[file]);
    return disk;
}

std::unique_ptr<DiskFile> RecordingDisk::open(const fs::path &path, Mode mode)
{
    auto file = m_disk.open(path, mode);
    if (mode == Mode::CreateNew)
        record({Kind::Create, numberOf(path), 0, {}, path, {}});
    return std::make_unique<RecordingFile>(*this, std::move(file));
}

void RecordingDisk::remove(const fs::path &path)
{
    record({Kind::Remove, numberOf(path), 0, {}, path, {}});
    m_disk.remove(path);
}

void RecordingDisk::rename(const fs::path &from, const fs::path &to)
{
    record({Kind::Rename, numberOf(from), 0, {}, from, to});
    m_disk.rename(from, to);
}

void RecordingDisk::publish(const fs::path &from, const fs::path &to)
{
    const std::uint64_t file = numberOf(from);
    m_disk.publish(from, to);
    record({Kind::Rename, file, 0, {}, from, to});
}

void RecordingDisk::syncFolderOf(const fs::path &path)
{
    record({Kind::SyncFolder, 0, 0, {}, path, {}});
}

} // namespace vardelin::jet::test
