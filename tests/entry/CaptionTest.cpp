// The user's own words for the fields: who changes at once, who later.
#include "tests/entry/EntryWindows.h"

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

struct CaptionTest : testing_support::EntryWindowsTest
{
    void rename(const QWidget *window, int toolbar, const QString &possible, const QString &typed)
    {
        dialogs.expectInput(u"Type in the caption that you want for this field.   Possible options are "_s +
                                possible,
                            u"Enter new caption for this field"_s, typed);
        window->findChild<QAction *>(u"Toolbar%1.Small Caps"_s.arg(toolbar))->trigger();
    }
    static QString frame(const QWidget *window, int number)
    {
        return window->findChild<QGroupBox *>(u"Frame%1"_s.arg(number))->title();
    }
    static QString menu(const QWidget *window, const char16_t *name)
    {
        return control<QAction>(window, name)->text();
    }

    const QString client =
        u"Client, Customer, Patient, Contractor, or any other desciption of the person or entity on behalf of whom you are performing this activity"_s;
    const QString employee =
        u"Co-worker, Employee, Sales Agent, User or any other desciption of the person who is performing this activity"_s;
    const QString project =
        u"Project, Type of Activity or any other desciption of the activity that is being performed"_s;
    const QString summaryWord =
        u"Summary, Invoice Summary Line, Brief Description or any other phrase that indicates this is a brief description of the item described in the Vardelin notes field"_s;
};

} // namespace

TEST_F(CaptionTest, FlowOnExactlyAsFarAsTold)
{
    const QWidget *other = parent.open();
    const QWidget *window = parent.open();
    EXPECT_EQ(menu(window, u"mnuCClient"), u"Add a Client"_s);
    EXPECT_EQ(menu(window, u"mnuEmployees"), u"Employee (or user)s"_s);
    rename(window, 2, client, u"Patient"_s);
    rename(window, 3, employee, u"Nurse"_s);
    rename(window, 4, project, u"Ward"_s);
    rename(window, 5, summaryWord, u"In short"_s);

    EXPECT_EQ(frame(window, 1) + frame(window, 2) + frame(window, 3) + frame(window, 5),
              u"PatientNurseWardIn short"_s);
    EXPECT_EQ(combo(window, 1)->lineEdit()->accessibleName(), u"Patient"_s);
    EXPECT_EQ(frame(other, 1), u"Client"_s);
    EXPECT_EQ(menu(window, u"mnuCClient"), u"Add a Client"_s) << "menus stay as Load built them";
    EXPECT_EQ(global.SummaryCaption, u"Invoice summary line"_s) << "until the next start";
    EXPECT_EQ(settings.GetSetting(u"Frame1Caption"_s, u"Default Frame1 Caption"_s), u"Patient"_s);
    EXPECT_EQ(settings.GetSetting(u"Frame2Caption"_s, u"Default Frame2 Caption"_s), u"Nurse"_s);
    EXPECT_EQ(settings.GetSetting(u"Frame3Caption"_s, u"Default Frame3 Caption"_s), u"Ward"_s);
    EXPECT_EQ(settings.GetSetting(u"Frame5Caption"_s, u"Default Frame5 Caption"_s), u"In short"_s);

    const QWidget *later = parent.open();
    EXPECT_EQ(frame(later, 1) + frame(later, 2) + frame(later, 3), u"PatientNurseWard"_s);
    EXPECT_EQ(frame(later, 5), u"Invoice summary line"_s);
    EXPECT_EQ(menu(later, u"mnuCClient"), u"Add a Patient"_s);
    EXPECT_EQ(menu(later, u"mnuInactiveClients"), u"Inactive Patients"_s);
    EXPECT_EQ(menu(later, u"mnuEmployees"), u"Nurses"_s);
    EXPECT_EQ(menu(later, u"mnuProject"), u"Wards"_s);
}

TEST_F(CaptionTest, CancelBlanksAndAStoreThatFailsIsIgnored)
{
    const QWidget *window = parent.open();
    rename(window, 2, client, {});
    EXPECT_EQ(frame(window, 1), QString());
    EXPECT_EQ(settings.GetSetting(u"Frame1Caption"_s, u"Default Frame1 Caption"_s, u"not stored"_s),
              QString());
    EXPECT_EQ(combo(window, 1)->lineEdit()->accessibleName(), u"Client"_s)
        << "a screen reader still says what it is";
    const QWidget *later = parent.open();
    EXPECT_EQ(menu(later, u"mnuCClient"), u"Add a "_s);
    EXPECT_EQ(menu(later, u"mnuInactiveClients"), u"Inactive s"_s);
}

} // namespace vardelin
