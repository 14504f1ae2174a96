#include "todo/frmAddToToDo.h"

#include "platform/base/Format.h"
#include "platform/data/Dao.h"
#include "shell/state/Global.h"
#include "todo/ToDoRows.h"
#include "todo/frmToDo.h"

#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

const QString kDate = u"M/d/yyyy"_s;

// The first arrow down selects the first entry, and not the one below it.
class EntryList final : public QListWidget
{
protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() == Qt::Key_Down && selectedItems().isEmpty() && count() > 0)
            setCurrentRow(std::max(0, currentRow()));
        else
            QListWidget::keyPressEvent(event);
    }
};

QVBoxLayout *labelled(const QString &caption, QWidget *field)
{
    auto *label = new QLabel(caption);
    label->setBuddy(field);
    auto *column = new QVBoxLayout;
    column->addWidget(label);
    column->addWidget(field, 1);
    return column;
}

QString selectedText(const QListWidget &list)
{
    const QList<QListWidgetItem *> selected = list.selectedItems();
    return selected.isEmpty() ? QString() : selected.first()->text();
}

} // namespace

frmAddToToDo::frmAddToToDo(Global &global, frmToDo &list)
    : ToDoItemWindow(global, list,
                     {u"frmAddToToDo"_s, u"Add to the To Do list"_s, u"Text1"_s, u"List3"_s, false,
                      QColor(192, 255, 255)}),
      List1(makeList(u"List1"_s)), List2(makeList(u"List2"_s))
{
    auto *lists = new QHBoxLayout;
    lists->setSpacing(12);
    lists->addLayout(labelled(u"Client:"_s, List1));
    lists->addLayout(labelled(u"Project:"_s, List2));
    layOut(lists, {{u"mnuAllowance"_s, u"&Default time allowance"_s, {}, [this] { mnuAllowance_Click(); }}});
    resize(560, 460);
    Form_Load();
    List1->setFocus();
}

QListWidget *frmAddToToDo::makeList(const QString &name)
{
    auto *list = new EntryList;
    list->setObjectName(name);
    return list;
}

void frmAddToToDo::Form_Load()
{
    QString days = m_global.services.settings.GetSetting(u"Preferences"_s, u"Time Allowance"_s);
    if (days.isEmpty())
        days = u"7"_s;
    DTPicker1->setValue(toDate(Value(m_global.services.clock.now().days + toLong(days))));
    const QFont font = formFont(m_global.DefaultFont.name, m_global.DefaultFont.size);
    for (QWidget *field :
         {static_cast<QWidget *>(List1), static_cast<QWidget *>(List2), static_cast<QWidget *>(m_text)})
        field->setFont(font);
    placeBeside();
    const auto database = m_global.services.engine.OpenDatabase(m_global.DatabaseFileName);
    const auto clients = database->OpenRecordset(u"Active Clients"_s);
    for (; !clients->EOF_(); clients->MoveNext())
        List1->addItem(joinText(clients->Fields(u"Client Last Name"_s)) + u", "_s +
                       joinText(clients->Fields(u"Client First Name"_s)));
    const auto projects = database->OpenRecordset(u"Projects"_s);
    for (; !projects->EOF_(); projects->MoveNext())
        List2->addItem(joinText(projects->Fields(u"Projects"_s)));
    loadActivities();
}

// What is typed isn't looked at here, and a Cancel stores the empty text.
void frmAddToToDo::mnuAllowance_Click()
{
    const QString days = m_global.services.dialogs.inputBox(
        u"Type in the number of days you generally want to allow for the deadline date"_s,
        u"Set default time allowance"_s);
    m_global.services.settings.SaveSetting(u"Preferences"_s, u"Time Allowance"_s, days);
}

void frmAddToToDo::mnuDone_Click()
{
    try {
        if (!addItem()) {
            m_global.services.dialogs.msgBox({u"You must select a client or a project.  Try again."_s});
            return;
        }
    } catch (const RunTimeError &) {
        m_global.services.dialogs.msgBox({u"Unable to add To Do item"_s});
    }
    accept();
}

// With both a client and a project selected the table gets the client, and the list shows the project:
// settled.
bool frmAddToToDo::addItem()
{
    const auto database = m_global.services.engine.OpenDatabase(m_global.DatabaseFileName);
    const auto things = database->OpenRecordset(u"Things To Do"_s);
    m_global.CurrentPriority = selectedPriority();
    const QString client = selectedText(*List1), project = selectedText(*List2);
    const ToDoOwner owner = ownerOf(client);
    if (!owner.isClient && project.isEmpty())
        return false;
    const QString today = format(m_global.services.clock.now(), kDate),
                  deadline = format(DTPicker1->Value(), kDate);
    things->AddNew();
    if (owner.isClient) {
        things->SetField(u"TTD Client Last Name"_s, owner.last);
        things->SetField(u"TTD Client First Name"_s, owner.first);
    } else {
        things->SetField(u"TTD Project"_s, project);
    }
    things->SetField(u"TTD Priority"_s, QString::number(m_global.CurrentPriority));
    things->SetField(u"ThingToDo"_s, m_text->text());
    things->SetField(u"Thing To Do Start Date"_s, today);
    things->SetField(u"Thing To Do Deadline"_s, deadline);
    m_list.ListView1().addRow({QString::number(m_global.CurrentPriority),
                               project.trimmed().isEmpty() ? client : project, m_text->text(), today,
                               deadline});
    things->Update();
    return true;
}

} // namespace vardelin
