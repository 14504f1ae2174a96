#pragma once
// The windows on clients on a real file: rows for it, and what is clicked and read in them.

#include "contacts/frmActiveClients.h"
#include "contacts/frmInactiveClients.h"
#include "platform/report/Report.h"
#include "tests/contacts/ListWindows.h"
#include "tests/support/NpmReader.h"

#include <QTimer>

namespace vardelin::testing_support {

using Row = std::vector<std::pair<QString, Value>>;

struct ClientWindowsTest : ListWindowsTest
{
    ClientWindowsTest()
    {
        global.openers.showReport = [this](DataReport &report) { printed = textOf(report); };
    }
    void addClient(const QString &last, const QString &first, Row more = {})
    {
        Row row{{QStringLiteral("Client First Name"), first}, {QStringLiteral("Client Last Name"), last}};
        for (auto &[column, value] : more)
            row.emplace_back(QStringLiteral("Active Client ") + column, value);
        add(QStringLiteral("Active Clients"), row);
    }
    void addThree()
    {
        addClient(QStringLiteral("Roe"), QStringLiteral("Jane"));
        addClient(QStringLiteral("Young"), QStringLiteral("Al"),
                  {{QStringLiteral("Work Telephone"), QStringLiteral("(517) 555-0001")}});
        addClient(QStringLiteral("Ash"), QStringLiteral("Bo"),
                  {{QStringLiteral("Work Telephone"), QStringLiteral("5175550002")}});
    }
    static QString shown(const QDialog *form, const QString &name)
    {
        return control<QLineEdit>(form, name)->text();
    }
    static QString tab(const QDialog *form)
    {
        return control<TabStrip>(form, QStringLiteral("TabStrip1"))->tabCaption(1);
    }
    static void navigate(const QDialog *form, const QString &button)
    {
        auto *navigator = control<RecordNavigator>(form, QStringLiteral("Adodc1"));
        QTest::mouseClick(control<QToolButton>(navigator, button), Qt::LeftButton);
    }
    // What the day picker of a deactivation is answered, when it comes up.
    void answerDay(const QString &menu)
    {
        QTimer::singleShot(0, qApp, [=] {
            auto *form = QApplication::activeModalWidget();
            ASSERT_TRUE(form && form->objectName() == QStringLiteral("frmDatePicker"));
            EXPECT_EQ(form->windowTitle(), QStringLiteral("Pick a date for case closure"));
            choose(form, menu);
        });
    }
    void clickOn(const QDialog *form, const QString &entry)
    {
        const auto found = list(form)->findItems(entry, Qt::MatchExactly);
        ASSERT_FALSE(found.isEmpty());
        QTest::mouseClick(list(form)->viewport(), Qt::LeftButton, {},
                          list(form)->visualItemRect(found.front()).center());
    }
    void expectQuestion(const QString &name, Answer answer)
    {
        dialogs.expect({.prompt = QStringLiteral("Are you sure you want to move ") + name +
                                  QStringLiteral(" to the list of Inactive Clients?"),
                        .title = QStringLiteral("Deactivating client"),
                        .buttons = Buttons::YesNo},
                       answer);
    }
    const QString updated = QStringLiteral("Database updated. Continue with Active Clients window?");
    const QString nothing =
        QStringLiteral("No records have been entered.  Use the Entry form to enter data.");
    QString printed;
};

} // namespace vardelin::testing_support
