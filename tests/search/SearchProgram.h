#pragma once
// The whole program on a file of five logs, with the means to search in it.

#include "display/frmDisplay.h"
#include "platform/report/Report.h"
#include "search/Routines.h"
#include "search/frmSearch.h"
#include "tests/shell/Running.h"
#include "tests/support/Judges.h"

#include <QLabel>
#include <QListWidget>
#include <QRadioButton>

namespace vardelin::testing_support {

struct SearchProgram : testing::Test
{
    // Days before now, client, employee, project, notes, hours. O'Neil's first log is just older than a
    // month.
    struct Log
    {
        double daysAgo;
        const char16_t *client, *employee, *project, *notes;
        float hours;
    };
    static constexpr Log kLogs[] = {
        {400, u"Archer, Ann", u"Baxter, Bo", u"", u"An old lease", 1.5f},
        {200, u"", u"Baxter, Bo", u"R&D", u"The ESTOPPEL memo", 0.5f},
        {100, u"Archer, Ann", u"Cole, Cy", u"R&D", u"Lease and 50% rule", 2.0f},
        {31.00002, u"O'Neil, Pat", u"Cole, Cy", u"", u"Call about estoppel", 1000.f},
        {1, u"O'Neil, Pat", u"Baxter, Bo", u"", u"Letter", 0.2f},
    };

    SearchProgram()
    {
        office.settings.SaveSetting(QStringLiteral("Preferences"), QStringLiteral("Show Tips at Startup"),
                                    QStringLiteral("1"));
        global.DatabaseFileName = folder.filePath(QStringLiteral("office.mdb"));
        CreateDatabase(global);
        addLogs();
        global.List1[0] =
            QStringList{QStringLiteral("O'Neil, Pat"), QString(), QStringLiteral("Archer, Ann")};
        global.List1[1] = QStringList{QStringLiteral("Baxter, Bo"), QStringLiteral("Cole, Cy")};
        global.List1[2] = QStringList{QStringLiteral("R&D")};
        global.openers.showReport = [this](DataReport &report) {
            reported = textOf(report);
            reportedLogs = report.records().count();
        };
        office.main.resize(1000, 700);
        office.main.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&office.main));
    }
    ~SearchProgram() override
    {
        global.openers.ExitProgram();
        expectSound(folder.filePath(QStringLiteral("office.mdb")), VARDELIN_ROOT);
    }

    void addLogs()
    {
        const auto database = office.engine.OpenDatabase(global.DatabaseFileName);
        const auto rows = database->OpenRecordset(QStringLiteral("Vardelins"));
        for (const Log &log : kLogs) {
            const auto set = [&](const char *column, const char16_t *value) {
                if (const QString text = QString::fromUtf16(value); !text.isEmpty())
                    rows->SetField(QString::fromLatin1(column), text);
            };
            rows->AddNew();
            set("Client", log.client);
            set("Employee", log.employee);
            set("Project", log.project);
            set("Vardelin", log.notes);
            const DateSerial begin{office.clock.moment.days - log.daysAgo};
            rows->SetField(QStringLiteral("Beginning Time"), begin);
            rows->SetField(QStringLiteral("Duration"), log.hours);
            rows->Update();
        }
    }

    DisplayWindow *newest() const { return global.DisplayWindows.back(); }
    static QString statement(const QWidget *window)
    {
        return control<QLabel>(window, QStringLiteral("SQLWhere"))->text();
    }
    static QString fragment(const QWidget *window)
    {
        return control<QLabel>(window, QStringLiteral("SQLWhere"))->toolTip();
    }
    static QString field(const QWidget *window, int number)
    {
        return control<QLineEdit>(window, QStringLiteral("Text%1").arg(number))->text();
    }
    frmSearch *search() const
    {
        for (int i = 0; i < global.Forms.Count(); ++i)
            if (auto *form = qobject_cast<frmSearch *>(global.Forms.at(i)); form && form->isVisible())
                return form;
        return nullptr;
    }
    static QRadioButton *option(const QWidget *form, int group, int index)
    {
        return control<QRadioButton>(form, QStringLiteral("Option%1(%2)").arg(group).arg(index));
    }
    // Through the window's own command, with the buttons set.
    void searchFrom(const QWidget *window, int type, int frame)
    {
        choose(window, QStringLiteral("mnuSearch"));
        ASSERT_TRUE(search());
        option(search(), 1, type)->click();
        option(search(), 2, frame)->click();
        choose(search(), QStringLiteral("mnuContinue"));
        EXPECT_EQ(search() == nullptr, office.ended == 0) << "a search closes its window";
    }
    // The next modal list: picks an entry, or is left by Esc.
    void expectPick(const QString &caption, const QString &entry)
    {
        script.expect(QStringLiteral("frmSearchList"), [=](QWidget *form) {
            EXPECT_EQ(form->windowTitle(), caption);
            auto *list = control<QListWidget>(form, QStringLiteral("List1"));
            const auto found = list->findItems(entry, Qt::MatchExactly);
            if (found.isEmpty()) {
                EXPECT_EQ(entry, QString());
                QTest::keyClick(list, Qt::Key_Escape);
                return;
            }
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                              list->visualItemRect(found.first()).center());
        });
    }
    void expectText(const QString &typed)
    {
        office.dialogs.expectInput(QStringLiteral("Enter the text being sought in your Vardelins"),
                                   QStringLiteral("Search for Vardelin text"), typed);
    }

    QTemporaryDir folder;
    Running office{folder.path()};
    Global &global = office.global;
    ModalScript script;
    QString reported;
    int reportedLogs = -1;
};

} // namespace vardelin::testing_support
