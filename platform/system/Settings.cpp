#include "platform/system/Settings.h"

#include "platform/base/RunTimeError.h"

#include <QSettings>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

// The store takes / and \ in names for group separators; so that any text can be a name, they are written as
// a percent sign and their code.
QString escaped(QString name)
{
    return name.replace(u'%', "%25"_L1).replace(u'/', "%2F"_L1).replace(u'\\', "%5C"_L1);
}

QString storeKey(const QString &section, const QString &key)
{
    return escaped(section) + u'/' + escaped(key);
}

QString foldedKey(const QString &section, const QString &key)
{
    return storeKey(section, key).toCaseFolded();
}

// Someone who edits the file by hand may leave out the quotes round a text with commas; the store then reads
// a list.
QString textOf(const QVariant &value)
{
    return value.metaType() == QMetaType::fromType<QStringList>() ? value.toStringList().join(", "_L1)
                                                                  : value.toString();
}

// The names are kept as they were first spelt, and found in whatever case they are asked for.
class FileSettings final : public Settings
{
public:
    explicit FileSettings(const QString &path) : m_path(path) {}

    QString GetSetting(const QString &section, const QString &key, const QString &fallback) const override
    {
        const QSettings store(m_path, QSettings::IniFormat);
        const QStringList names = spellings(store, section, key);
        return names.isEmpty() ? fallback : textOf(store.value(names.first()));
    }

    void SaveSetting(const QString &section, const QString &key, const QString &value) override
    {
        QSettings store(m_path, QSettings::IniFormat);
        const QStringList names = spellings(store, section, key);
        const QString name = names.value(0, storeKey(section, key));
        const QVariant before = store.value(name);
        for (const QString &other : names.mid(1))
            store.remove(other);
        store.setValue(name, value);
        store.sync(); // a new file beside the old one, flushed, then renamed over it
        if (store.status() != QSettings::AccessError)
            return;
        // Else the refused value would be written with the next one that gets through.
        before.isValid() ? store.setValue(name, before) : store.remove(name);
        throw RunTimeError(RunTime::PathFileAccess);
    }

private:
    static QStringList spellings(const QSettings &store, const QString &section, const QString &key)
    {
        const QString wanted = foldedKey(section, key);
        QStringList found;
        for (const QString &name : store.allKeys()) {
            if (name.toCaseFolded() == wanted)
                found += name;
        }
        return found;
    }

    QString m_path;
};

} // namespace

Settings::~Settings() = default;

std::unique_ptr<Settings> userSettings()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return fileSettings(folder + "/Vardelin/Vardelin.ini"_L1);
}

std::unique_ptr<Settings> fileSettings(const QString &path)
{
    return std::make_unique<FileSettings>(path);
}

QString MemorySettings::GetSetting(const QString &section, const QString &key, const QString &fallback) const
{
    return stored.value(foldedKey(section, key), fallback);
}

void MemorySettings::SaveSetting(const QString &section, const QString &key, const QString &value)
{
    stored[foldedKey(section, key)] = value;
}

} // namespace vardelin
