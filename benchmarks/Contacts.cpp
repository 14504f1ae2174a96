#include "benchmarks/Contacts.h"

#include "benchmarks/Figures.h"
#include "benchmarks/Painting.h"
#include "benchmarks/QuietProgram.h"
#include "contacts/ActiveClientsReport.h"
#include "contacts/frmActiveClients.h"
#include "contacts/frmInactiveClients.h"
#include "platform/report/ReportView.h"
#include "platform/report/ReportWindow.h"
#include "platform/ui/Fonts.h"

#include <QAction>
#include <QApplication>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace vardelin::bench {

namespace {

constexpr int kTimes = 11;

void tell(const char *name, std::vector<double> seconds)
{
    std::printf("%s %.6f\n", name, median(std::move(seconds)));
}

// then: called with the window when it stands there, and timed by itself.
template <class Form>
std::vector<double> openings(Global &global, const std::function<void(Form &)> &then = {})
{
    std::vector<double> times;
    for (int i = 0; i < kTimes; ++i) {
        const std::int64_t start = nanosecondsNow();
        Form form(global);
        form.show();
        waitForPaint(&form);
        times.push_back(secondsSince(start));
        if (then)
            then(form);
    }
    return times;
}

double firstPage(Global &global)
{
    const std::int64_t start = nanosecondsNow();
    ado::Connection connection;
    connection.Open(ado::connectionText(global.DatabaseFileName));
    ado::Recordset records;
    records.Open(activeClientsStatement(), connection);
    DataReport report(dataReport2Design());
    report.bindTo(records);
    ReportWindow window(report, global.services.dialogs, global.services.errors);
    PaintWatch watch({[&](QWidget *painted) {
        return painted == window.findChild<ReportView *>(u"Pages"_s)->viewport();
    }});
    window.show();
    watch.wait();
    return secondsSince(start);
}

} // namespace

int useContacts(int, char **argv)
{
    int count = 1;
    QApplication application(count, argv);
    installFontSubstitutions();
    QuietProgram program(QString::fromLocal8Bit(argv[2]));
    tell("open_contacts", openings<frmActiveClients>(program.global));
    std::vector<double> displays;
    tell("open_inactive", openings<frmInactiveClients>(program.global, [&](frmInactiveClients &form) {
             displays.push_back(secondsOf([&] {
                 form.findChild<QAction *>(u"mnuDisplayInactiveClients"_s)->trigger();
                 waitForPaint(&form);
             }));
         }));
    tell("display_inactive", displays);
    std::vector<double> pages;
    for (int i = 0; i < kTimes; ++i)
        pages.push_back(firstPage(program.global));
    tell("contacts_report_first_page", pages);
    return 0;
}

} // namespace vardelin::bench
