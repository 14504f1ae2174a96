#pragma once
// The per-user settings: strings under section and key, read with a default, written at once. Sections and
// keys are taken without regard to case.

#include <QHash>
#include <QString>
#include <memory>

namespace vardelin {

class Settings
{
public:
    virtual ~Settings();
    virtual QString GetSetting(const QString &section, const QString &key,
                               const QString &fallback = {}) const = 0;
    // On the disk when it returns, whole or not at all. A store that can't be written throws RunTimeError 75.
    virtual void SaveSetting(const QString &section, const QString &key, const QString &value) = 0;
};

// The program's own store: one file under the user's configuration folder (XDG_CONFIG_HOME), application
// "Vardelin".
std::unique_ptr<Settings> userSettings();
std::unique_ptr<Settings> fileSettings(const QString &path);

// For tests, and for a user without a place to write.
class MemorySettings final : public Settings
{
public:
    QString GetSetting(const QString &section, const QString &key,
                       const QString &fallback = {}) const override;
    void SaveSetting(const QString &section, const QString &key, const QString &value) override;
    QHash<QString, QString> stored; // "section/key", lower case
};

} // namespace vardelin
