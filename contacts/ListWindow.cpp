#include "contacts/ListWindow.h"

#include "contacts/PrintTextArray.h"
#include "platform/ui/SharedKeys.h"
#include "shell/state/Global.h"
#include "shell/state/Trim.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenuBar>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vardelin {

ListWindow::ListWindow(Global &global, const ListWindowDesign &design, QWidget *parent)
    : QDialog(parent), m_global(global), m_design(design)
{
    setObjectName(design.name);
    setWindowTitle(design.caption);
}

ListWindow::~ListWindow() = default;

void ListWindow::Form_Load(const std::vector<MenuEntry> &more)
{
    layOut(makeMenu(more));
    if (const QWidget *main = m_global.frmMain)
        setGeometry(main->geometry());
    m_database = m_global.services.engine.OpenDatabase(m_global.DatabaseFileName);
    m_rows = m_database->OpenRecordset(m_design.table);
    fillList();
}

void ListWindow::fillList()
{
    QStringList entries;
    if (rows().RecordCount() > 0)
        for (rows().MoveFirst(); !rows().EOF_(); rows().MoveNext())
            entries += entryOf(nameOf(rows()));
    List1->setEntries(entries);
}

SplitName ListWindow::nameOf(const dao::Recordset &row) const
{
    return {joinText(row.Fields(m_design.lastColumn)),
            m_design.twoNames() ? joinText(row.Fields(m_design.firstColumn)) : QString()};
}

QString ListWindow::entryOf(const SplitName &name) const
{
    return m_design.twoNames() ? joinName(name.last, name.first) : name.last;
}

// What an entry says of its row. A last name with a comma and blank of its own splits wrongly: settled.
SplitName ListWindow::splitEntry(const QString &entry) const
{
    return m_design.twoNames() ? splitName(entry).value_or(SplitName()) : SplitName{entry, QString()};
}

// Only a load that failed quietly leaves a window without its table.
dao::Recordset &ListWindow::rows()
{
    if (!m_rows)
        throw RunTimeError(RunTime::ObjectNotSet);
    return *m_rows;
}

QMenuBar *ListWindow::makeMenu(const std::vector<MenuEntry> &more)
{
    std::vector<MenuEntry> entries{
        {u"mnuReturn"_s, m_design.returnCaption, {}, [this] { mnuReturn_Click(); }},
        {u"mnuAdd"_s, u"&Add"_s, {}, [this] { mnuAdd_Click(); }},
        {u"mnuDelete"_s, m_design.deleteCaption, {}, [this] { mnuDelete_Click(); }}};
    entries.insert(entries.end(), more.begin(), more.end());
    if (!m_design.printCaption.isEmpty())
        entries.push_back({u"mnuPrintList"_s, m_design.printCaption, {}, [this] { mnuPrintList_Click(); }});
    entries.push_back({u"mnuDone"_s, u"&Done"_s, {}, [this] { mnuDone_Click(); }});
    auto *bar = new QMenuBar;
    bar->addActions(makeBar(this, entries, m_global.services.errors));
    stepThroughSharedKeys(bar);
    return bar;
}

QGroupBox *ListWindow::frame(const QString &name, const QString &caption, QWidget *field)
{
    auto *box = new QGroupBox(QString(caption).replace(u'&', u"&&"_s)); // the user's own word, no mnemonic
    box->setObjectName(name);
    auto *inside = new QVBoxLayout(box);
    inside->setContentsMargins(8, 6, 8, 8);
    inside->addWidget(field);
    return box;
}

void ListWindow::layOut(QMenuBar *bar)
{
    const auto makeText = [this](const QString &name, std::size_t index) {
        auto *text = new QLineEdit;
        text->setObjectName(name);
        text->setToolTip(m_design.textTips[index]);
        text->setAccessibleName(m_design.frameCaptions[index]);
        return text;
    };
    List1 = new ListBox;
    List1->setObjectName(u"List1"_s);
    List1->setToolTip(m_design.listTip);
    List1->setAccessibleName(m_design.listCaption.isEmpty() ? m_design.table : m_design.listCaption);
    List1->setSelectionMode(QAbstractItemView::ExtendedSelection);
    Text1 = makeText(u"Text1"_s, 0);
    auto *upper = new QHBoxLayout;
    upper->addWidget(frame(u"Frame1"_s, m_design.frameCaptions[0], Text1));
    if (m_design.twoNames()) {
        Text2 = makeText(u"Text2"_s, 1);
        upper->addWidget(frame(u"Frame2"_s, m_design.frameCaptions[1], Text2));
    }
    auto *all = new QVBoxLayout(this);
    all->setMenuBar(bar);
    all->setContentsMargins(12, 8, 12, 12);
    all->setSpacing(8);
    all->addLayout(upper);
    all->addWidget(frame(m_design.twoNames() ? u"Frame3"_s : u"Frame2"_s, m_design.listCaption, List1), 1);
    lastText()->installEventFilter(this);
    List1->installEventFilter(this);
    Text1->setFocus();
}

// Enter adds and Esc ends, in the last text field only.
bool ListWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    bool handled = false;
    m_global.services.errors.run([&] {
        if (watched == List1) {
            handled = listKeyPressed(key);
        } else if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            mnuAdd_Click();
            handled = true;
        } else if (key == Qt::Key_Escape) {
            escapeInText();
            handled = true;
        }
    });
    return handled;
}

bool ListWindow::listKeyPressed(int qtKey)
{
    // The first arrow key selects the entry that the list stands on; a list of one entry has no other.
    const bool arrow = qtKey == Qt::Key_Down || qtKey == Qt::Key_Up;
    if (arrow && List1->count() > 0 && List1->selectedRows().isEmpty()) {
        List1->setCurrentRow(std::max(List1->currentRow(), 0), QItemSelectionModel::ClearAndSelect);
        return true;
    }
    if (qtKey != Qt::Key_Delete || !m_design.deleteKey)
        return false;
    mnuDelete_Click();
    return true;
}

// Enter and Esc elsewhere must not end the window, as they end a dialog: Esc would pass for Return.
void ListWindow::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_Escape)
        QDialog::keyPressEvent(event);
}

void ListWindow::escapeInText()
{
    mnuDone_Click();
}

void ListWindow::mnuAdd_Click()
{
    if (m_design.twoNames())
        addName();
    else
        addSingle();
}

void ListWindow::addName()
{
    if (Trim(Text1->text()).isEmpty() || Trim(Text2->text()).isEmpty()) {
        Text1->clear();
        Text2->clear();
        m_global.services.dialogs.msgBox({m_design.emptyMessage});
        Text1->setFocus();
        return;
    }
    rows().AddNew();
    rows().SetField(m_design.firstColumn, Trim(Text1->text()));
    rows().SetField(m_design.lastColumn, Trim(Text2->text()));
    // The table gets the trimmed names, the list the text as it stands: settled.
    List1->addEntry(joinName(Text2->text(), Text1->text()));
    rows().Update();
    Text1->clear();
    Text2->clear();
    Text1->setFocus();
}

void ListWindow::addSingle()
{
    const QString text = Trim(Text1->text());
    if (text.isEmpty()) {
        m_global.services.dialogs.msgBox({m_design.emptyMessage});
        Text1->setFocus();
        return;
    }
    if (refuses(Text1->text())) {
        Text1->setFocus();
        return;
    }
    rows().AddNew();
    rows().SetField(m_design.lastColumn, text);
    List1->addEntry(text);
    rows().Update();
    Text1->clear();
    Text1->setFocus();
}

bool ListWindow::refuses(const QString &)
{
    return false;
}

// One walk through the table for all that are selected: for each selected entry the first row that equals it
// goes, so of two equal rows one stays. An entry without its row just leaves the list.
void ListWindow::mnuDelete_Click()
{
    const QList<int> selected = List1->selectedRows();
    if (selected.isEmpty())
        return;
    QHash<std::pair<QString, QString>, int> doomed;
    for (const int row : selected) {
        const SplitName name = splitEntry(List1->item(row)->text());
        ++doomed[{name.last, name.first}];
        if (m_design.twoNames()) {
            m_global.ClientLastName = name.last;
            m_global.ClientFirstName = name.first;
        }
    }
    deleteRows(std::move(doomed));
    List1->removeRows(selected);
}

void ListWindow::deleteRows(QHash<std::pair<QString, QString>, int> doomed)
{
    if (rows().RecordCount() == 0)
        return;
    m_database->BeginTrans();
    try {
        for (rows().MoveFirst(); !rows().EOF_(); rows().MoveNext()) {
            const SplitName name = nameOf(rows());
            const auto wanted = doomed.find({name.last, name.first});
            if (wanted == doomed.end() || wanted.value() == 0)
                continue;
            --wanted.value();
            rows().Delete();
        }
    } catch (const RunTimeError &) {
        m_database->CommitTrans(); // what was deleted ahead of the failure stays deleted
        throw;
    }
    m_database->CommitTrans();
}

void ListWindow::mnuPrintList_Click()
{
    QString text;
    if (!m_design.printTitle.isEmpty())
        text = m_design.printTitle + u"\r\n\r\n"_s;
    for (const QString &entry : List1->entries())
        text += entry + u"\r\n"_s;
    const FontSetting &font = m_global.DefaultPrintFont;
    PrintTextArray(m_global, {{.Text = text, .FontName = font.name, .FontSize = font.size}});
}

void ListWindow::mnuDone_Click()
{
    const QStringList entries = List1->entries();
    m_global.List1[static_cast<std::size_t>(m_design.list)] = entries;
    if (m_global.EntryWindowActive) {
        const int index = m_global.CurrentEntryTag.toInt() - 1;
        EntryWindow *window = m_global.EntryWindows.at(static_cast<std::size_t>(index));
        if (!window)
            window = m_global.openers.makeEntryWindow(index);
        window->refill(m_design.list, entries);
    }
    accept();
}

void ListWindow::mnuReturn_Click()
{
    reject();
}

} // namespace vardelin
