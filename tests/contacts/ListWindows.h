#pragma once
// The windows that keep the pick lists, on a real file, with a Data entry window that only notes down what is
// done to it.

#include "contacts/frmActivity.h"
#include "contacts/frmClient.h"
#include "contacts/frmEmployee.h"
#include "contacts/frmProject.h"
#include "contacts/frmRate.h"
#include "tests/support/Judges.h"
#include "tests/support/OfficeProgram.h"

#include <QGroupBox>

namespace vardelin::testing_support {

class CallingWindow final : public EntryWindow
{
public:
    void setFile(const QString &) override {}
    QString file() const override { return {}; }
    void refill(PickList list, const QStringList &entries) override { refilled.emplace_back(list, entries); }
    void insertText(const QString &text) override { inserted += text; }
    void focusSummary() override { ++focused; }
    QString client() const override { return {}; }
    QString whereFragment() const override { return {}; }
    void setWhereFragment(const QString &) override {}
    void Form_Activate() override {}

    std::vector<std::pair<PickList, QStringList>> refilled;
    QStringList inserted;
    int focused = 0;
};

struct ListWindowsTest : testing::Test, OfficeProgram
{
    ~ListWindowsTest() override { expectSound(global.DatabaseFileName, VARDELIN_ROOT); }

    template <class Form>
    std::unique_ptr<QDialog> make()
    {
        auto form = std::make_unique<Form>(global);
        form->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(form.get()));
        return form;
    }
    // The window that commands of the lists come from, as number 1.
    CallingWindow &call()
    {
        global.EntryWindows = {&caller};
        global.CurrentEntryTag = QStringLiteral("1");
        global.EntryWindowActive = true;
        return caller;
    }
    static QLineEdit *text(const QDialog *form, int number)
    {
        return control<QLineEdit>(form, QStringLiteral("Text%1").arg(number));
    }
    static ListBox *list(const QDialog *form) { return control<ListBox>(form, QStringLiteral("List1")); }
    static void select(const QDialog *form, const QStringList &entries)
    {
        list(form)->clearSelection();
        for (int row = 0; row < list(form)->count(); ++row) {
            if (entries.contains(list(form)->item(row)->text())) {
                list(form)->setCurrentRow(row, QItemSelectionModel::Select);
            }
        }
    }

    CallingWindow caller;
};

} // namespace vardelin::testing_support
