#include "todo/frmEditToDo.h"

#include "platform/base/Format.h"
#include "platform/data/Dao.h"
#include "shell/state/Global.h"
#include "todo/ToDoRows.h"
#include "todo/frmToDo.h"

#include <QFormLayout>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr int kLongestText = 100; // characters of the column

}

frmEditToDo::frmEditToDo(Global &global, frmToDo &list)
    : ToDoItemWindow(
          global, list,
          {u"frmEditToDo"_s, u"Edit To Do Item"_s, u"Text2"_s, u"List1"_s, true, QColor(192, 192, 255)}),
      Text1(new QLineEdit)
{
    Text1->setObjectName(u"Text1"_s);
    Text1->setAccessibleName(u"Client or Project"_s);
    Text1->installEventFilter(this);    // Enter is Done here, too
    m_text->setMaxLength(kLongestText); // what the engine refuses isn't caught here
    m_fields->addRow(u"Client or Project:"_s, Text1);
    layOut(nullptr);
    resize(460, 260);
    Form_Load();
    m_text->setFocus();
}

QString frmEditToDo::clientText() const
{
    return m_global.ClientLastName + u", "_s + m_global.ClientFirstName;
}

// The priority stays at the design's 3, whatever the row's is: settled.
void frmEditToDo::Form_Load()
{
    placeBeside();
    const QFont font = formFont(m_global.DefaultFont.name, m_global.DefaultFont.size);
    m_text->setFont(font);
    Text1->setFont(font);
    // An item without a deadline has none as long as nobody chooses one.
    m_dated = !m_global.CurrentDeadline.isEmpty();
    DTPicker1->setValue(m_dated ? toDate(m_global.CurrentDeadline) : m_global.services.clock.now());
    DTPicker1->edited = [this] { m_dated = true; };
    m_owner = m_global.ClientLastName.isEmpty() ? m_global.SearchProject : clientText();
    Text1->setText(m_owner);
    connect(Text1, &QLineEdit::textChanged, this, [this](const QString &text) {
        if (text != m_owner)
            Text1->setText(m_owner);
    });
    m_text->setText(m_global.CurrentThingToDo);
    loadActivities();
}

void frmEditToDo::mnuDone_Click()
{
    m_global.CurrentPriority = selectedPriority();
    const QString priority = QString::number(m_global.CurrentPriority);
    if (Text1->text() != clientText() && Text1->text() != m_global.SearchProject) {
        m_global.services.dialogs.msgBox(
            {u"You cannot edit the name of a client or a project in a To Do list.  You can, "
             u"however, delete the selected To Do item and add a new one."_s});
        return;
    }
    replaceRow(priority);
    QString shown = m_global.ClientLastName.trimmed().isEmpty() ? QString() : clientText();
    if (!m_global.SearchProject.trimmed().isEmpty())
        shown = m_global.SearchProject;
    // The list gets the new deadline, the table had the old one: it reaches the table with the list's Done.
    // Settled.
    m_list.ListView1().addRow({priority, shown, m_text->text(), m_global.CurrentStartDate,
                               m_dated ? format(DTPicker1->Value(), u"M/d/yyyy"_s) : QString()});
    m_global.CurrentThingToDo.clear();
    m_global.SearchProject
        .clear(); // the names of the client stay, for the next row that is a project's: settled
    accept();
}

// As one in a crash. An error keeps what was done until then.
void frmEditToDo::replaceRow(const QString &priority)
{
    const auto database = m_global.services.engine.OpenDatabase(m_global.DatabaseFileName);
    const auto things = database->OpenRecordset(u"Things To Do"_s);
    database->BeginTrans();
    try {
        deleteOldRow(*things, priority);
        m_list.ListView1().removeSelected();
        addRow(*things, priority);
    } catch (const RunTimeError &) {
        database->CommitTrans();
        throw;
    }
    database->CommitTrans();
}

// Looked for by the *new* priority: a row whose priority was changed isn't found and stays until the list's
// Done. Settled.
void frmEditToDo::deleteOldRow(dao::Recordset &things, const QString &priority) const
{
    for (int left = things.RecordCount(); left > 0; --left) {
        const Value first = things.Fields(u"TTD Client First Name"_s),
                    last = things.Fields(u"TTD Client Last Name"_s);
        const Value project = things.Fields(u"TTD Project"_s);
        const bool same = joinText(things.Fields(u"TTD Priority"_s)) == priority &&
                          joinText(things.Fields(u"ThingToDo"_s)) == m_global.CurrentThingToDo;
        const bool client = !first.isNull() && !last.isNull() && joinText(last) == m_global.ClientLastName;
        if (same && (client || (!project.isNull() && joinText(project) == m_global.SearchProject))) {
            things.Delete();
            return;
        }
        things.MoveNext();
    }
}

void frmEditToDo::addRow(dao::Recordset &things, const QString &priority) const
{
    const bool wholeName = !m_global.ClientFirstName.isEmpty() && !m_global.ClientLastName.isEmpty();
    things.AddNew();
    if (!wholeName && !m_global.SearchProject.isEmpty()) {
        things.SetField(u"TTD Project"_s, m_global.SearchProject);
    } else {
        things.SetField(u"TTD Client Last Name"_s, m_global.ClientLastName);
        things.SetField(u"TTD Client First Name"_s, m_global.ClientFirstName);
    }
    const auto date = [](const QString &text) { return text.isEmpty() ? Value(NullValue{}) : Value(text); };
    things.SetField(u"TTD Priority"_s, priority);
    things.SetField(u"ThingToDo"_s, m_text->text());
    things.SetField(u"Thing To Do Start Date"_s, date(m_global.CurrentStartDate));
    things.SetField(u"Thing To Do Deadline"_s, date(m_global.CurrentDeadline));
    things.Update();
}

} // namespace vardelin
