#include "entry/frmEntryWithFrames.h"

#include "platform/ui/Controls.h"
#include "platform/ui/NotesEdit.h"
#include "shell/state/EditCommands.h"
#include "shell/state/Global.h"

#include <QKeyEvent>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr int kTickMilliseconds = 30000;
constexpr int kShownRecentFiles = 5;

} // namespace

frmEntryWithFrames::frmEntryWithFrames(Global &global, QWidget *parent)
    : EntryWindow(parent), m_global(global)
{
    setObjectName(u"frmEntryWithFrames"_s);
    makeControls();
    m_barActions = makeBar(this, menuTable(), m_global.services.errors);
    m_windowMenu = findChild<QMenu *>(u"mnuWindow"_s);
    Timer1 = new QTimer(this);
    Timer1->setObjectName(u"Timer1"_s);
    Timer1->setTimerType(Qt::PreciseTimer); // a coarse one may be 1.5 s late
    connectHints();
    connectFields();
    giveClipboardKeysToMenu(this);
    Form_Load();
}

void frmEntryWithFrames::Form_Load()
{
    DTPicker1->setValue(m_global.services.clock.now());
    DTPicker2->setValue(m_global.services.clock.now());
    Label2->setText(m_global.DatabaseFileName);
    Label1->setText(Label2->text());
    setFonts();
    fillLists();
    showRecentFiles();
    setCaptions();
    Combo2->setText(m_global.DefaultEmployee);
    Combo1->setText({});
    m_global.EntryWindowActive = true;
    m_global.DisplayWindowActive = false;
    Timer1->start(kTickMilliseconds);
}

void frmEntryWithFrames::setFonts()
{
    const QFont font = formFont(m_global.DefaultEntryFont.name, m_global.DefaultEntryFont.size);
    for (QWidget *control :
         std::initializer_list<QWidget *>{Text1, Combo1, Combo2, Combo3, Combo4, List1, RichTextBox1})
        control->setFont(font);
}

void frmEntryWithFrames::fillLists()
{
    for (const PickList list :
         {PickList::Clients, PickList::Employees, PickList::Projects, PickList::Rates, PickList::Activities})
        refill(list, m_global.List1[static_cast<std::size_t>(list)]);
}

void frmEntryWithFrames::showRecentFiles()
{
    for (int i = 0; i < kShownRecentFiles; ++i)
        menuAction(u"mnuFileName(%1)"_s.arg(i))->setVisible(false);
    menuAction(u"mnuSeparator"_s)->setVisible(!m_global.List2.isEmpty());
    menuAction(u"mnuSeparator"_s)->setEnabled(!m_global.List2.isEmpty());
    for (int i = 0; i < kShownRecentFiles && !m_global.List2.value(i).isEmpty(); ++i) {
        QAction *mnuFileName = menuAction(u"mnuFileName(%1)"_s.arg(i));
        mnuFileName->setText(QString(m_global.List2[i]).replace(u'&', u"&&"_s));
        mnuFileName->setData(m_global.List2[i]);
        mnuFileName->setVisible(true);
        mnuFileName->setEnabled(true);
    }
}

void frmEntryWithFrames::setCaptions()
{
    Frame1->setTitle(m_global.ClientCaption);
    Frame2->setTitle(m_global.EmployeeCaption);
    Frame3->setTitle(m_global.ProjectCaption);
    Frame5->setTitle(m_global.SummaryCaption);
    nameFields();
    menuAction(u"mnuInactiveClients"_s)->setText(u"Inactive "_s + m_global.ClientCaption + u's');
    menuAction(u"mnuCClient"_s)->setText(u"Add a "_s + m_global.ClientCaption);
    menuAction(u"mnuEmployees"_s)->setText(m_global.EmployeeCaption + u's');
    menuAction(u"mnuProject"_s)->setText(m_global.ProjectCaption + u's');
}

void frmEntryWithFrames::connectHints()
{
    const auto hint = [this](QWidget *over, std::function<QString()> text) {
        onMouseOver(over, [this, text = std::move(text)] { Label1->setText(text()); });
    };
    const auto fixed = [](const QString &text) { return [text] { return text; }; };
    const auto listHint = [this](const QString &key, QString Global::*caption) {
        return [this, key, caption] {
            return u"  Use ["_s + key + u"] to change your list for "_s + m_global.*caption + u"  "_s;
        };
    };
    hint(Frame1, listHint(u"F2"_s, &Global::ClientCaption));
    hint(Frame2, listHint(u"F4"_s, &Global::EmployeeCaption));
    hint(Frame3, listHint(u"F5"_s, &Global::ProjectCaption));
    hint(Frame4, fixed(u"  Use [F6] to change your list for hourly rates  "_s));
    hint(Frame5, fixed(u"  Use [F3] and [F9] to access your Activities list  "_s));
    hint(Frame6, fixed(u"  Use [F7] to access your To Do list  "_s));
    hint(Frame7, fixed(u"  You can edit your Beginning Time here  "_s));
    hint(Frame8, fixed(u"  You can edit your Ending Time here  "_s));
    hint(Toolbar2, [this] {
        return u"Maintain "_s + m_global.ClientCaption +
               u" list, Contact Database or reset this field's caption"_s;
    });
    hint(Toolbar3, [this] {
        return u"Maintain "_s + m_global.EmployeeCaption + u" list, or reset this field's caption"_s;
    });
    hint(Toolbar4, [this] {
        return u"Maintain "_s + m_global.ProjectCaption + u" list, or reset this field's caption"_s;
    });
    hint(Toolbar5, fixed(u"Reset this field's caption"_s));
    hint(Toolbar6, fixed(u"Maintain the Rates list"_s));
    hint(Label1, [this] { return Label2->text(); });
    hint(Toolbar1, [this] { return Label2->text(); });
}

void frmEntryWithFrames::connectFields()
{
    connect(Timer1, &QTimer::timeout, this,
            [this] { m_global.services.errors.run([this] { Timer1_Timer(); }); });
    // An edited ending time stands as long as the focus stays, and until the tick after it.
    DTPicker2->edited = [this] { Timer1->stop(); };
    DTPicker2->lostFocus = [this] {
        if (!Timer1->isActive())
            Timer1->start(kTickMilliseconds);
    };
    RichTextBox1->keyPressed = [this](int key) { return RichTextBox1_KeyDown(key); };
    RichTextBox1->gotFocus = [this] { m_global.SummaryHasFocus = false; };
    List1->keyPressed = [this](int key) { List1_KeyPress(key); };
    Text1->installEventFilter(this);
}

void frmEntryWithFrames::setFile(const QString &path)
{
    const bool showsPath = Label1->text() == Label2->text();
    Label2->setText(path);
    if (showsPath)
        Label1->setText(path);
}

QString frmEntryWithFrames::file() const
{
    return Label2->text();
}

void frmEntryWithFrames::refill(PickList list, const QStringList &entries)
{
    switch (list) {
    case PickList::Clients:
        return Combo1->setEntries(entries);
    case PickList::Employees:
        return Combo2->setEntries(entries);
    case PickList::Projects:
        return Combo3->setEntries(entries);
    case PickList::Rates:
        return Combo4->setEntries(entries);
    case PickList::Activities:
        return List1->setEntries(entries);
    }
}

void frmEntryWithFrames::insertText(const QString &text)
{
    setSelText(m_global.SummaryHasFocus ? static_cast<QWidget *>(Text1) : RichTextBox1, text);
}

void frmEntryWithFrames::focusSummary()
{
    Text1->setFocus();
}

QString frmEntryWithFrames::client() const
{
    return Combo1->Text();
}

QString frmEntryWithFrames::whereFragment() const
{
    return SQLWhere->toolTip();
}

void frmEntryWithFrames::setWhereFragment(const QString &whereFragment)
{
    SQLWhere->setToolTip(whereFragment);
}

void frmEntryWithFrames::Form_Activate()
{
    m_global.DisplayWindowActive = false;
    m_global.EntryWindowActive = true;
    m_global.CurrentEntryTag = Tag;
}

void frmEntryWithFrames::Timer1_Timer()
{
    DTPicker2->setValue(m_global.services.clock.now());
}

bool frmEntryWithFrames::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == Text1 && event->type() == QEvent::FocusIn)
        m_global.SummaryHasFocus = true;
    if (watched == Text1 && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent *>(event)->key() == Qt::Key_F9) {
        showActivities();
        return true;
    }
    return EntryWindow::eventFilter(watched, event);
}

bool frmEntryWithFrames::RichTextBox1_KeyDown(int key)
{
    if (key == Qt::Key_F9)
        showActivities();
    if (key == Qt::Key_F8) {
        const QString summary = passToSummary(Text1->text(), RichTextBox1->SelText());
        Text1->selectAll(); // not setText(), which would forget what can be undone
        Text1->insert(summary);
    }
    return key == Qt::Key_F9 || key == Qt::Key_F8;
}

void frmEntryWithFrames::showActivities()
{
    placeActivities();
    List1->show();
    List1->raise();
    List1->setFocus(Qt::PopupFocusReason); // for any other reason a line edit drops its selection
}

void frmEntryWithFrames::hideActivities()
{
    List1->hide();
    if (m_global.SummaryHasFocus)
        Text1->setFocus();
    else
        RichTextBox1->setFocus();
}

void frmEntryWithFrames::List1_KeyPress(int key)
{
    QStringList selected;
    for (const int row : List1->selectedRows())
        selected += List1->item(row)->text();
    const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (enter && !selected.isEmpty()) // nothing chosen takes nothing away
        insertText(activitiesText(selected));
    if (enter || key == Qt::Key_Escape)
        hideActivities();
}

} // namespace vardelin
