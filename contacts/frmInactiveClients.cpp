#include "contacts/frmInactiveClients.h"

#include "contacts/Deactivation.h"
#include "contacts/frmDatePicker.h"
#include "platform/base/Twips.h"
#include "platform/ui/DatePicker.h"
#include "shell/state/Global.h"

#include <QGridLayout>
#include <QScrollArea>
#include <QVBoxLayout>
#include <cmath>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

std::vector<FieldDesign> fieldDesigns()
{
    using enum FieldDesign::Kind;
    const QString phone = u"(###) ###-####"_s, date = u"M/d/yyyy"_s;
    const auto field = [](int row, int frame, const char16_t *caption, const char16_t *name,
                          const char16_t *column, FieldDesign::Kind kind = Line, const QString &format = {}) {
        return FieldDesign{1,
                           row,
                           u"Frame1(%1)"_s.arg(frame),
                           QString::fromUtf16(caption),
                           QString::fromUtf16(name),
                           u"Inactive Client "_s + QString::fromUtf16(column),
                           kind,
                           format};
    };
    return {field(0, 0, u"First Address Line", u"Text1(0)", u"First Address"),
            field(1, 1, u"Second Address Line", u"Text1(1)", u"Second Address"),
            field(2, 2, u"Third Address Line", u"Text1(2)", u"Third Address"),
            field(3, 3, u"City/Town", u"Text1(3)", u"City"),
            field(3, 4, u"State", u"Text1(4)", u"State"),
            field(3, 5, u"Zip Code", u"MaskEdBox1", u"Zip Code", Mask, u"#####-####"_s),
            field(4, 6, u"Home Telephone", u"MaskEdBox2(0)", u"Home Telephone", Mask, phone),
            field(4, 7, u"Work Telephone", u"MaskEdBox2(1)", u"Work Telephone", Mask, phone),
            field(4, 8, u"Email Address", u"Text1(5)", u"Email Address"),
            field(5, 9, u"Type of Claim/Notes", u"Text1(6)", u"Claim Type"),
            field(5, 11, u"Referrer", u"Text1(8)", u"Referrer"),
            field(6, 12, u"Retainer Date", u"DTPicker1", u"Retainer Date", Date, date),
            field(6, 13, u"Case Closure Date", u"DTPicker2", u"Case Closed Date", Date, date),
            field(7, 10, u"Retainer Terms", u"Text1(7)", u"Retainer Terms", Memo)};
}

} // namespace

frmInactiveClients::frmInactiveClients(Global &global, QWidget *parent)
    : ClientWindow(global, u"frmInactiveClients"_s, u"Inactive Clients"_s, parent)
{
    layOut(
        {.tabs = {QString()},
         .fields = fieldDesigns(),
         .navigator = u"Inactive Client Data Navigator"_s,
         .select = u"SELECT * FROM [Inactive Clients] ORDER BY [Inactive Client Last Name], "
                   u"[Inactive Client First Name]"_s,
         .lastName = u"Inactive Client Last Name"_s,
         .firstName = u"Inactive Client First Name"_s,
         .menu = {
             {u"mnuReturn"_s, u"&Return"_s, {}, [this] { close(); }},
             {u"mnuSave"_s, u"&Save"_s, {}, [this] { mnuSave_Click(); }},
             {u"mnuDeactivateClient"_s, u"&Deactivate Client"_s, {}, [this] { mnuDeactivateClient_Click(); }},
             {u"mnuDisplayInactiveClients"_s, u"&Display Inactive Clients"_s, {}, [this] {
                  mnuDisplayInactiveClients_Click();
              }}}});
    layOutLists();
    Adodc1.onError = [this](const RunTimeError &error) {
        m_global.services.dialogs.msgBox({u"Error in data control module."_s + error.description()});
    };
    Form_Load();
}

frmInactiveClients::~frmInactiveClients() = default;

void frmInactiveClients::layOutLists()
{
    const auto list = [](const QString &name, const QString &caption) {
        auto *box = new ListBox;
        box->setObjectName(name);
        box->setAccessibleName(caption);
        box->setSelectionMode(QAbstractItemView::SingleSelection);
        return box;
    };
    const auto label = [](const QString &name, const QString &caption, QWidget *of) {
        auto *text = new QLabel(caption);
        text->setObjectName(name);
        text->setBuddy(of);
        return text;
    };
    List1 = list(u"List1"_s, u"Active Clients"_s);
    List1->setToolTip(u"Click on an active client to send it to the inactive client list"_s);
    List2 = list(u"List2"_s, u"Inactive Clients"_s);
    Label1 = label(u"Label1"_s, u"Active Clients"_s, List1);
    Label2 = label(u"Label2"_s, u"Inactive Clients"_s, List2);
    m_lists = new QWidget;
    auto *grid = new QGridLayout(m_lists);
    grid->addWidget(Label1, 0, 0);
    grid->addWidget(Label2, 0, 1);
    grid->addWidget(List1, 1, 0);
    grid->addWidget(List2, 1, 1);
    m_all->insertWidget(0, m_lists, 1);
    // An arrow key only chooses: it must not ask about each client that it passes.
    connect(List1, &QListWidget::itemClicked, this,
            [this] { m_global.services.errors.run([this] { List1_Click(); }); });
    List1->keyPressed = [this](int key) {
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space)
            m_global.services.errors.run([this] { List1_Click(); });
    };
}

void frmInactiveClients::Form_Load()
{
    const DateSerial today{std::floor(m_global.services.clock.now().days)};
    for (const QString &picker : {u"DTPicker1"_s, u"DTPicker2"_s})
        m_pane->date(picker)->setValue(today);
    QString client = m_global.ClientCaption; // the user's own word: no letter of it is an Alt key
    command(u"mnuDisplayInactiveClients"_s)
        ->setText(u"Display inactive "_s + client.replace(u'&', u"&&"_s) + u's');
    const QString kept = m_global.CurrentSQL;
    m_database = m_global.services.engine.OpenDatabase(m_global.DatabaseFileName);
    m_active = m_database->OpenRecordset(u"Active Clients"_s);
    openRecords();
    fillLists();
    m_global.CurrentSQL = kept;
    mnuDeactivateClient_Click();
    command(u"mnuSave"_s)->setEnabled(true);
    m_loading = false;
}

// Record sets of their own leave the window's where they stand, and thousands of rows are read at once.
void frmInactiveClients::fillLists()
{
    ado::Connection &connection = Adodc1.ActiveConnection();
    const ado::ReadTogether together(connection);
    const auto namesIn = [&](const QString &table, const QString &columns) {
        QStringList entries;
        ado::Recordset rows;
        rows.Open(table, connection);
        for (; !rows.EOF_(); rows.MoveNext())
            entries += joinName(joinText(rows.Fields(columns + u"Last Name"_s)),
                                joinText(rows.Fields(columns + u"First Name"_s)));
        return entries;
    };
    List1->setEntries(namesIn(u"[Active Clients]"_s, u"Client "_s));
    List2->setEntries(namesIn(u"[Inactive Clients]"_s, u"Inactive Client "_s));
}

void frmInactiveClients::showLists(bool lists)
{
    m_lists->setVisible(lists);
    m_body->setVisible(!lists);
    m_pane->showTab(lists ? 0 : 1);
    setScrollVisible(!lists);
}

// Every move updates tab and scroll bar, whatever its reason.
void frmInactiveClients::Adodc1_MoveComplete(MoveReason)
{
    if (!m_loading)
        showMove();
}

void frmInactiveClients::List1_Click()
{
    const QListWidgetItem *item = List1->currentItem();
    if (!item)
        return;
    m_global.SearchClient = item->text();
    const SplitName name = splitName(m_global.SearchClient).value_or(SplitName());
    m_global.ClientLastName = name.last;
    m_global.ClientFirstName = name.first;
    if (m_global.services.dialogs.msgBox({.prompt = u"Are you sure you want to move "_s + name.first + u' ' +
                                                    name.last + u" to the list of Inactive Clients?"_s,
                                          .title = u"Deactivating client"_s,
                                          .buttons = Buttons::YesNo}) != Answer::Yes)
        return;
    // Left with Return, the client goes all the same, with the day that was chosen before, or none: settled.
    frmDatePicker(m_global, this).exec();
    List2->addEntry(m_global.SearchClient);
    List1->removeRows({List1->row(item)});
    refreshPickLists();
    deactivate(*m_database, *m_active, name, m_global.CaseClosureDate);
}

// Only the calling window's list; other Data entry windows keep the old name.
void frmInactiveClients::refreshPickLists()
{
    const QStringList entries = List1->entries();
    const auto index = static_cast<std::size_t>(m_global.CurrentEntryTag.toInt() - 1);
    if (index < m_global.EntryWindows.size() && m_global.EntryWindows[index])
        m_global.EntryWindows[index]->refill(PickList::Clients, entries);
    m_global.List1[static_cast<std::size_t>(PickList::Clients)] = entries;
}

void frmInactiveClients::mnuSave_Click()
{
    Dialogs &dialogs = m_global.services.dialogs;
    if (Adodc1.Recordset().RecordCount() == 0) {
        dialogs.msgBox({noRecords()});
        return;
    }
    if (!moveAwayAndBack())
        return; // told by the data control; what was typed stands
    if (dialogs.msgBox({.prompt = u"Database updated. Continue with Inactive "_s + m_global.ClientCaption +
                                  u"s window?"_s,
                        .buttons = Buttons::YesNo}) == Answer::No) {
        command(u"mnuSave"_s)->setEnabled(false);
        mnuDeactivateClient_Click();
    }
}

void frmInactiveClients::mnuDeactivateClient_Click()
{
    showLists(true);
    command(u"mnuDeactivateClient"_s)->setEnabled(false);
    command(u"mnuSave"_s)->setEnabled(false);
    command(u"mnuDisplayInactiveClients"_s)->setEnabled(true);
    List1->setFocus();
}

void frmInactiveClients::mnuDisplayInactiveClients_Click()
{
    command(u"mnuDeactivateClient"_s)->setEnabled(true);
    command(u"mnuSave"_s)->setEnabled(true);
    command(u"mnuDisplayInactiveClients"_s)->setEnabled(false);
    showLists(false);
    refresh();
    if (Adodc1.isOpen() && !Adodc1.Recordset().EOF_()) {
        Adodc1.MoveLast();
    } else {
        command(u"mnuDeactivateClient"_s)->setEnabled(false);
        command(u"mnuDisplayInactiveClients"_s)->setEnabled(false);
        command(u"mnuSave"_s)->setEnabled(false);
    }
    focusFirst(u"Text1(0)"_s);
}

} // namespace vardelin
