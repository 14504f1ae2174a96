// Makes the help book's pictures from the program's own windows on a small made-up office:
//   QT_QPA_PLATFORM=offscreen build/release/bin/help-pictures resources/help/pictures
// Run it again when a window has changed its face.

#include "database/LogDatabase.h"
#include "platform/ui/Fonts.h"
#include "platform/ui/Icons.h"
#include "shell/Wiring.h"
#include "shell/frmMain.h"
#include "shell/state/Windows.h"
#include "tests/support/OfficeProgram.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTextEdit>
#include <QTimer>
#include <cstdio>

using namespace Qt::StringLiterals;
using namespace vardelin;
using namespace vardelin::testing_support;

namespace {

constexpr int kWait = 10000; // milliseconds

class Pictures
{
public:
    explicit Pictures(const QString &folder) : m_folder(QDir(folder).absolutePath())
    {
        QDir::setCurrent(m_office.folder.path()); // so that the windows show a short name
        m_office.global.DatabaseFileName = u"Office.mdb"_s;
        CreateDatabase(m_office.global);
        wire(m_office.global, m_main);
        addRows();
    }

    int take()
    {
        OpenLogDatabase(m_office.global);
        m_main.resize(1180, 720);
        m_main.show();
        takeChildren();
        takeForms();
        return m_missing;
    }

private:
    void addRows();
    void takeChildren(); // the windows inside the main window
    void takeForms();
    void save(QWidget *widget, const QString &name)
    {
        settle();
        if (!widget || !widget->grab().save(m_folder + u'/' + name + u".png"_s)) {
            std::fprintf(stderr, "no picture of %s\n", qPrintable(name));
            ++m_missing;
        }
    }
    // Opens a window, modal or not, takes its picture and closes it.
    void takeWindow(const std::function<void()> &open, const QString &form, const QString &name, QSize size,
                    const std::function<void(QWidget *)> &prepare = {});
    static void answer(QWidget &asking);
    static void settle() { QTest::qWait(150); }
    static QWidget *visibleWindow(const QString &name)
    {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (widget->objectName() == name && widget->isVisible())
                return widget;
        }
        return nullptr;
    }

    QString m_folder;
    OfficeProgram m_office;
    frmMain m_main{m_office.global};
    int m_missing = 0;
};

void Pictures::addRows()
{
    const struct
    {
        QString last, first;
    } clients[] = {{u"Hollister"_s, u"Margaret"_s}, {u"Abernathy"_s, u"Peter"_s},
                   {u"Castellano"_s, u"Ruth"_s},    {u"Dunmore"_s, u"Samuel"_s},
                   {u"Farrow"_s, u"Edith"_s},       {u"Jelinek"_s, u"Tomas"_s}};
    for (const auto &client : clients) {
        m_office.add(u"Active Clients"_s, {{u"Client Last Name"_s, client.last},
                                           {u"Client First Name"_s, client.first},
                                           {u"Active Client First Address"_s, u"14 Linden Row"_s},
                                           {u"Active Client City"_s, u"Fairhaven"_s},
                                           {u"Active Client State"_s, u"NY"_s},
                                           {u"Active Client Zip Code"_s, u"104511234"_s},
                                           {u"Active Client Home Telephone"_s, u"2125550143"_s},
                                           {u"Active Client Claim Type"_s, u"Lease of a shop"_s},
                                           {u"Active Client Re Line"_s, u"Lease, 14 Linden Row"_s}});
    }
    const struct
    {
        QString client, summary, notes;
        double begin, hours;
    } logs[] = {
        {u"Abernathy, Peter"_s, u"Reviewed the landlord's answer"_s,
         u"Read the answer of 9 October and marked three points for the reply."_s, 46308.4, 1.2},
        {u"Hollister, Margaret"_s, u"Telephone conference with client"_s,
         u"Mrs Hollister will send the lease of 2019 and the two letters of her landlord. She would rather settle than go to court, if the deposit is paid back whole."_s,
         46309.4, 0.4},
        {u"Hollister, Margaret"_s, u"Letter to opposing counsel"_s,
         u"Offer of settlement: deposit and half of the moving costs. Answer asked for within ten days."_s,
         46310.6, 0.8},
    };
    for (const auto &log : logs) {
        const double end = log.begin + log.hours / 24;
        m_office.add(u"Vardelins"_s, {{u"Client"_s, log.client},
                                      {u"Employee"_s, u"Weaver, Anna"_s},
                                      {u"Project"_s, u"Lease, 14 Linden Row"_s},
                                      {u"Rate"_s, u"175"_s},
                                      {u"Log Summary"_s, log.summary},
                                      {u"Vardelin"_s, log.notes},
                                      {u"Beginning Time"_s, DateSerial{log.begin}},
                                      {u"Ending Time"_s, DateSerial{end}},
                                      {u"Duration"_s, QString::number(log.hours)},
                                      {u"Fee"_s, QString::number(log.hours * 175)}});
    }
    for (const QString &last : {u"Weaver"_s, u"Okafor"_s})
        m_office.add(u"Employees"_s,
                     {{u"Employee Last Name"_s, last}, {u"Employee First Name"_s, u"Anna"_s}});
    m_office.add(u"Disbursements"_s, {{u"Disbursement Client Last Name"_s, u"Hollister"_s},
                                      {u"Disbursement Client First Name"_s, u"Margaret"_s},
                                      {u"Disbursement Payee"_s, u"County Clerk"_s},
                                      {u"Disbursement Description"_s, u"Filing fee"_s},
                                      {u"Disbursement Amount"_s, u"210"_s},
                                      {u"Disbursement Date"_s, DateSerial{46310}}});
    m_office.add(u"Invoices"_s,
                 {{u"Invoice Header"_s,
                   u"Weaver & Okafor\r\nAttorneys at Law\r\n2 Court Square, Fairhaven, NY 10451"_s}});
    const struct
    {
        QString priority, last, first, what;
    } items[] = {{u"1"_s, u"Hollister"_s, u"Margaret"_s, u"Answer to the landlord's counsel"_s},
                 {u"3"_s, u"Abernathy"_s, u"Peter"_s, u"Read the answer of 9 October"_s},
                 {u"4"_s, u"Jelinek"_s, u"Tomas"_s, u"Send the fee agreement"_s}};
    for (const auto &item : items)
        m_office.add(u"Things To Do"_s, {{u"TTD Priority"_s, item.priority},
                                         {u"TTD Client Last Name"_s, item.last},
                                         {u"TTD Client First Name"_s, item.first},
                                         {u"ThingToDo"_s, item.what},
                                         {u"Thing To Do Start Date"_s, DateSerial{46309}},
                                         {u"Thing To Do Deadline"_s, DateSerial{46316}}});
    m_office.add(u"Projects"_s, {{u"Projects"_s, u"Lease, 14 Linden Row"_s}});
}

void Pictures::takeChildren()
{
    Openers &openers = m_office.global.openers;
    auto *display = static_cast<QWidget *>(openers.NewDisplayWindow());
    auto *entry = static_cast<QWidget *>(openers.NewEntryWindow());
    control<QComboBox>(entry, u"Combo1"_s)->setCurrentText(u"Hollister, Margaret"_s);
    control<QComboBox>(entry, u"Combo2"_s)->setCurrentText(u"Weaver, Anna"_s);
    control<QComboBox>(entry, u"Combo3"_s)->setCurrentText(u"Lease, 14 Linden Row"_s);
    control<QComboBox>(entry, u"Combo4"_s)->setCurrentText(u"175"_s);
    control<QLineEdit>(entry, u"Text1"_s)->setText(u"Telephone conference with opposing counsel"_s);
    control<QTextEdit>(entry, u"RichTextBox1"_s)
        ->setPlainText(u"He takes the offer to his client today and will call back on Thursday."_s);
    for (const auto &[window, name] : {std::pair(entry, u"entry"_s), std::pair(display, u"display"_s)}) {
        QWidget *frame = window->parentWidget();
        frame->setGeometry(0, 0, 760, 620);
        save(frame, name);
    }
    openers.TileVertically();
    save(&m_main, u"main"_s);
}

void Pictures::takeForms()
{
    Openers &openers = m_office.global.openers;
    takeWindow(openers.frmIntroduction, u"frmIntroduction"_s, u"introduction"_s, {});
    takeWindow(openers.frmClient, u"frmClient"_s, u"list"_s, {520, 420});
    takeWindow(openers.frmLetterhead, u"frmLetterhead"_s, u"letterhead"_s, {560, 300});
    takeWindow(openers.frmToDo, u"frmToDo"_s, u"todo"_s, {820, 360});
    takeWindow(openers.frmPaymentsDisbursements, u"frmPaymentsDisbursements"_s, u"ledger"_s, {760, 480});
    takeWindow(openers.frmActiveClients, u"frmActiveClients"_s, u"clients"_s, {820, 560});
    takeWindow(openers.frmInactiveClients, u"frmInactiveClients"_s, u"inactive"_s, {760, 460});
    QWidget *display = m_office.global.DisplayWindows.front();
    takeWindow([&] { choose(display, u"mnuSearch"_s); }, u"frmSearch"_s, u"search"_s, {});
    takeWindow([&] { choose(display, u"mnuReport"_s); }, u"DataReport1"_s, u"report"_s, {820, 620});
    takeWindow(openers.mnuCreateInvoice, u"DataReport3"_s, u"invoice"_s, {820, 680});
}

// What a command asks ahead of the window that is wanted.
void Pictures::answer(QWidget &asking)
{
    if (asking.objectName() == u"frmSearchList"_s) {
        auto *list = asking.findChild<QListWidget *>();
        const auto found = list->findItems(u"Hollister, Margaret"_s, Qt::MatchExactly);
        if (!found.isEmpty())
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                              list->visualItemRect(found.first()).center());
    } else if (asking.objectName() == u"frmSearchDatePicker"_s) {
        choose(&asking, u"mnuContinue"_s);
    }
}

void Pictures::takeWindow(const std::function<void()> &open, const QString &form, const QString &name,
                          QSize size, const std::function<void(QWidget *)> &prepare)
{
    bool done = false;
    QTimer watch;
    QElapsedTimer since;
    since.start();
    QObject::connect(&watch, &QTimer::timeout, [&] {
        QWidget *window = visibleWindow(form);
        if (QWidget *asking = QApplication::activeModalWidget(); !window && asking)
            answer(*asking);
        if (!window && since.elapsed() < kWait)
            return;
        watch.stop();
        if (window && size.isValid())
            window->resize(size);
        if (window && prepare)
            prepare(window);
        save(window, name);
        if (window)
            window->close();
        done = true;
    });
    watch.start(50);
    open();
    if (!QTest::qWaitFor([&] { return done; }, kWait))
        watch.stop();
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fputs("usage: help-pictures FOLDER\n", stderr);
        return 2;
    }
    QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication::setStyle(u"fusion"_s);
    QApplication application(argc, argv);
    installFontSubstitutions();
    QApplication::setWindowIcon(programIcon());
    return Pictures(QString::fromLocal8Bit(argv[1])).take() ? 1 : 0;
}
