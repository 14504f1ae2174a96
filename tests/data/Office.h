#pragma once
// A small office on a real file in a folder of its own: logs with an auto-number, clients with a key of two
// names, a list without a key.

#include "platform/data/Adodc.h"
#include "platform/data/Dao.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

void PrintTo(const QString &text, std::ostream *out);

namespace vardelin {

void PrintTo(const Value &value, std::ostream *out);

class Office : public testing::Test
{
protected:
    Office();

    QString pathOf(const QString &name) const { return m_folder.filePath(name); }
    std::unique_ptr<dao::Database> open() { return m_engine.OpenDatabase(path); }
    // Adds a row by the engine's route; values by name.
    void add(const QString &table, const std::vector<std::pair<QString, Value>> &values);
    void addLogs(int first, int last); // clients "Client 1" ..., a duration of that many tenths
    QStringList column(const QString &table,
                       const QString &column); // as text, in table order, read by the engine's route
    // What other programs make of the file: rows as comma-separated text by mdb-export, and the checker's
    // complaints where it is present.
    QStringList exported(const QString &table) const;
    void expectSound() const;

    dao::DBEngine m_engine;
    QTemporaryDir m_folder;
    QString path;
};

extern const char *const kLocale;
dao::TableDef logTable();
void createOffice(const QString &path);

// The number of the RunTimeError that a call throws; 0 where it throws none.
template <class Call>
int errorOf(Call &&call)
{
    try {
        call();
    } catch (const RunTimeError &error) {
        return error.number();
    }
    return 0;
}

template <class Call>
QString wordsOf(Call &&call)
{
    try {
        call();
    } catch (const RunTimeError &error) {
        return error.description();
    }
    return {};
}

} // namespace vardelin
