#include "todo/frmToDo.h"

#include "platform/base/Twips.h"
#include "platform/ui/MenuTable.h"
#include "shell/state/FormPosition.h"
#include "shell/state/Global.h"
#include "todo/PrintToDo.h"
#include "todo/frmAddToToDo.h"
#include "todo/frmEditToDo.h"

#include <QEvent>
#include <QMenuBar>
#include <QScrollBar>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr QSize kSmallest(300, 200); // pixels

// Load and Resize have different margins on purpose; the first Resize comes right behind Load and sets the
// lasting widths. Twips.
constexpr int kLoadMargin = 500; // of the list in the window
constexpr int kLoadAllowance = 170;
constexpr int kResizeAllowance = 25;

} // namespace

frmToDo::frmToDo(Global &global, QWidget *parent)
    : QDialog(parent), m_global(global), m_list(new ToDoView), m_bar(new QToolBar)
{
    setObjectName(u"frmToDo"_s);
    setWindowTitle(u"To Do List"_s);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setMinimumSize(kSmallest);
    layOut();
    m_list->pressed = [this](int row) {
        if (row > 0)
            m_global.DragSourceRow = row;
    };
    m_list->released = [this](int row) { exchangeFromMouse(row); };
    m_list->deleteKey = [this] { mnuDeleteItem_Click(); };
    m_list->closeKey = [this] { reject(); }; // Enter too: nothing is written
    m_list->moveKey = [this](int step) {
        const int row = m_list->selectedRow();
        if (row + step < 1 || row + step > m_list->topLevelItemCount())
            return;
        m_list->exchange(row, row + step);
        m_list->setCurrentItem(m_list->topLevelItem(row + step - 1));
    };
    Form_Load();
}

frmToDo::~frmToDo()
{
    SaveFormPosition(*this, u"frmToDo"_s, m_global.services.settings);
}

void frmToDo::layOut()
{
    makeToolBar();
    auto *all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(0);
    all->setMenuBar(makeMenus());
    all->addWidget(m_bar);
    all->addWidget(m_list, 1);
    tabToButtonsLast(this);
    m_list->setFocus();
    m_list->verticalScrollBar()->installEventFilter(this);
}

QMenuBar *frmToDo::makeMenus()
{
    const auto call = [this](void (frmToDo::*handler)()) { return [this, handler] { (this->*handler)(); }; };
    auto *bar = new QMenuBar;
    bar->addActions(
        makeBar(this,
                {{u"mnuReturn"_s, u"&Return"_s, {}, [this] { reject(); }},
                 {u"mnuFonts"_s,
                  u"&Fonts"_s,
                  {},
                  {},
                  {{u"mnuProgramFont"_s, u"&Program Font"_s, {}, call(&frmToDo::mnuProgramFont_Click)},
                   {u"mnuPrintFont"_s, u"P&rint Font"_s, {}, call(&frmToDo::mnuPrintFont_Click)}}},
                 {u"mnuAddItem"_s, u"&Add item"_s, {}, call(&frmToDo::mnuAddItem_Click)},
                 {u"mnuDeleteItem"_s, u"&Delete selected item"_s, {}, call(&frmToDo::mnuDeleteItem_Click)},
                 {u"mnuEditItem"_s, u"&Edit selected item"_s, {}, call(&frmToDo::mnuEditItem_Click)},
                 {u"mnuPrint"_s, u"&Print"_s, {}, call(&frmToDo::mnuPrint_Click)},
                 {u"mnuDone"_s, u"D&one"_s, {}, call(&frmToDo::mnuDone_Click)}},
                m_global.services.errors));
    return bar;
}

void frmToDo::makeToolBar()
{
    m_bar->setObjectName(u"Toolbar1"_s);
    m_bar->setAccessibleName(u"To Do"_s);
    ErrorFrame &errors = m_global.services.errors;
    addButton(m_bar, u"Return"_s, u"Return"_s, errors, [this] { reject(); });
    addButton(m_bar, u"Font"_s, u"To Do Font"_s, errors, [this] { mnuProgramFont_Click(); });
    addButton(m_bar, u"Print Font"_s, u"To Do Print Font"_s, errors, [this] { mnuPrintFont_Click(); });
    addButton(m_bar, u"Add"_s, u"Add a To Do item"_s, errors, [this] { mnuAddItem_Click(); });
    addButton(m_bar, u"Delete"_s, u"Delete a To Do item"_s, errors, [this] { mnuDeleteItem_Click(); });
    addButton(m_bar, u"Edit"_s, u"Edit a To Do item"_s, errors, [this] { mnuEditItem_Click(); });
    addButton(m_bar, u"Print"_s, u"Print the To Do list"_s, errors, [this] { mnuPrint_Click(); });
}

void frmToDo::tellLoadError(const RunTimeError &error)
{
    m_global.services.dialogs.msgBox({u"Error in the To Do module: "_s + error.description()});
}

// A step that fails costs a message, and the next one goes on.
void frmToDo::Form_Load()
{
    const auto step = [this](auto &&statement) {
        try {
            statement();
        } catch (const RunTimeError &error) {
            tellLoadError(error);
        }
    };
    step([&] { LoadFormPosition(*this, u"frmToDo"_s, m_global.services.settings); });
    const FontSetting &font = m_global.DefaultToDoFont;
    m_list->setFont(QFont(font.name));
    step([&] { m_list->setFont(formFont(font.name, QString::number(toLong(font.size)))); });
    setWidths(toTwips(width()) - kLoadMargin, kLoadAllowance);
    std::vector<ToDoRow> rows;
    step([&] { loadRows(rows); });
    m_list->setRows(rows);
}

// A row that can't be read costs a message and isn't shown.
void frmToDo::loadRows(std::vector<ToDoRow> &rows)
{
    const auto database = m_global.services.engine.OpenDatabase(m_global.DatabaseFileName);
    const auto things = database->OpenRecordset(u"Things To Do"_s);
    for (; !things->EOF_(); things->MoveNext()) {
        try {
            rows.push_back(toDoRow(*things));
        } catch (const RunTimeError &error) {
            tellLoadError(error);
        }
    }
}

void frmToDo::setWidths(int listWidth, int allowance)
{
    const std::array<int, kToDoColumns> widths = toDoColumnWidths(listWidth, allowance);
    for (std::size_t i = 0; i < widths.size(); ++i)
        m_list->setColumnWidth(static_cast<int>(i), widths[i] / kTwipsPerPixel);
}

void frmToDo::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    layout()->activate();
    fitColumns();
}

bool frmToDo::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show || event->type() == QEvent::Hide)
        fitColumns();
    return QDialog::eventFilter(watched, event);
}

// The list reaches to the window's edge. The bar for scrolling stands in the list itself.
void frmToDo::fitColumns()
{
    const QScrollBar *bar = m_list->verticalScrollBar();
    setWidths(toTwips(m_list->width() - (bar->isVisible() ? bar->width() : 0)), kResizeAllowance);
}

// A press or release on no row leaves the stored one, and the exchange takes place with that.
void frmToDo::exchangeFromMouse(int row)
{
    if (row > 0)
        m_global.DragTargetRow = row;
    m_list->exchange(m_global.DragSourceRow, m_global.DragTargetRow);
}

void frmToDo::mnuAddItem_Click()
{
    frmAddToToDo(m_global, *this).exec();
}

void frmToDo::mnuDeleteItem_Click()
{
    if (m_list->topLevelItemCount() > 0)
        m_list->removeSelected();
}

void frmToDo::mnuEditItem_Click()
{
    const int row = m_list->selectedRow();
    if (row == 0)
        return;
    try {
        const ToDoRow cells = m_list->rows()[static_cast<std::size_t>(row - 1)];
        const ToDoOwner owner = ownerOf(cells[1]);
        // A project's row leaves the client of the row before in place, and frmEditToDo takes it for the
        // owner: settled.
        if (owner.isClient) {
            m_global.ClientLastName = owner.last;
            m_global.ClientFirstName = owner.first;
        } else {
            m_global.SearchProject = owner.project;
        }
        m_global.CurrentThingToDo = cells[2];
        m_global.CurrentStartDate = cells[3];
        m_global.CurrentDeadline = cells[4];
        frmEditToDo(m_global, *this).exec();
    } catch (const RunTimeError &error) {
        m_global.services.dialogs.msgBox({u"Error in Edit To Do routine: "_s + error.description()});
    }
}

bool frmToDo::chooseFont(FontSetting &font, const QString &nameSection, const QString &sizeSection,
                         const QString &keyStart)
{
    CommonDialog CommonDialog1{.DialogTitle = u"Select program font"_s,
                               .FontName = font.name,
                               .FontSize = font.size,
                               .CancelError = true};
    try {
        m_global.services.dialogs.showFont(CommonDialog1);
    } catch (const RunTimeError &error) {
        if (error.number() == RunTime::CommonDialogCancel)
            return false;
        throw;
    }
    font = {CommonDialog1.FontName, CommonDialog1.FontSize};
    m_global.services.settings.SaveSetting(nameSection, keyStart + u" Name"_s, font.name);
    m_global.services.settings.SaveSetting(sizeSection, keyStart + u" Size"_s, font.size);
    return true;
}

void frmToDo::mnuProgramFont_Click()
{
    FontSetting &font = m_global.DefaultToDoFont;
    if (chooseFont(font, u"defaultToDoFontName"_s, u"defaultToDoFontSize"_s, u"Default To Do Font"_s))
        m_list->setFont(formFont(font.name, font.size));
}

void frmToDo::mnuPrintFont_Click()
{
    chooseFont(m_global.DefaultPrintFont, u"DefaultPrintFontName"_s, u"DefaultPrintFontSize"_s,
               u"Default Print Font"_s);
}

// Without a message, whatever the printer does.
void frmToDo::mnuPrint_Click()
{
    if (!resumeNext([this] { printToDo(m_global, m_list->rows()); }))
        m_global.services.printer.KillDoc();
}

// In one scope of the file's journal, so that a crash restores the list that was. An error keeps what was
// done until then.
void frmToDo::mnuDone_Click()
{
    m_failed.reset();
    try {
        auto database = m_global.services.engine.OpenDatabase(m_global.DatabaseFileName);
        const auto things = database->OpenRecordset(u"Things To Do"_s);
        const auto clients = database->OpenRecordset(u"Active Clients"_s);
        database->BeginTrans();
        try {
            replaceToDo(*things, *clients, m_list->rows(), m_scratch);
        } catch (const RunTimeError &) {
            database->CommitTrans();
            m_failed = std::move(database);
            throw;
        }
        database->CommitTrans();
    } catch (const RunTimeError &error) {
        m_global.services.dialogs.msgBox(
            {u"There was an error in returning from the To Do List: "_s + error.description()});
        return;
    }
    m_scratch.clear();
    accept();
}

} // namespace vardelin
