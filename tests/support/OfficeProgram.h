#pragma once
// A program of test services on a new file of its own, and what a test asks of windows on it.

#include "database/CreateDatabase.h"
#include "tests/support/Fakes.h"
#include "tests/support/PrintQt.h"

#include <QAction>
#include <QTemporaryDir>
#include <QTest>

namespace vardelin::testing_support {

struct OfficeProgram : TestProgram
{
    OfficeProgram()
    {
        services.appPath = folder.path();
        global.DatabaseFileName = folder.filePath(QStringLiteral("office.mdb"));
        CreateDatabase(global);
    }
    void add(const QString &table, const std::vector<std::pair<QString, Value>> &values)
    {
        const auto database = engine.OpenDatabase(global.DatabaseFileName);
        const auto rows = database->OpenRecordset(table);
        rows->AddNew();
        for (const auto &[column, value] : values)
            rows->SetField(column, value);
        rows->Update();
    }
    // A column of all rows as text, in table order.
    QStringList column(const QString &table, const QString &name)
    {
        QStringList texts;
        const auto database = engine.OpenDatabase(global.DatabaseFileName);
        for (const auto rows = database->OpenRecordset(table); !rows->EOF_(); rows->MoveNext())
            texts += joinText(rows->Fields(name));
        return texts;
    }

    QTemporaryDir folder;
};

template <class Control>
Control *control(const QObject *window, const QString &name)
{
    auto *found = window->findChild<Control *>(name);
    EXPECT_TRUE(found) << name.toStdString();
    return found;
}

inline void choose(const QObject *window, const QString &menu)
{
    if (auto *action = control<QAction>(window, menu))
        action->trigger();
}

inline void typeOver(QWidget *field, const QString &text)
{
    field->setFocus();
    QTest::keyClick(field, Qt::Key_Home);
    QTest::keyClick(field, Qt::Key_End, Qt::ShiftModifier);
    QTest::keyClick(field, Qt::Key_Backspace);
    for (const QChar letter : text) // keyClicks() knows ASCII alone
        QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, QString(letter), Qt::NoModifier);
}

} // namespace vardelin::testing_support
