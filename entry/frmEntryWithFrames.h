#pragma once
// The Data entry window: a form and a soft stopwatch for one piece of work, and the launch pad of the
// program.

#include "entry/LogRecord.h"
#include "platform/ui/MenuTable.h"
#include "shell/state/Openers.h"
#include "shell/state/Windows.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <QToolBar>
#include <optional>
#include <utility>

class QGridLayout;
class QScrollArea;

namespace vardelin {

class DateTimePicker;
class ListBox;
class NotesEdit;
class SortedCombo;
struct FontSetting;
struct Global;

// Made and shown by NewEntryWindow. Making it is its Load: it takes file, lists, captions and fonts from
// `global`, which outlives it, and keeps its own copy of the lists. RunTimeError 13 where the font size in
// the settings is no number.
//
// Four files: this class's construction and manners (frmEntryWithFrames.cpp), its look (frmEntryLayout.cpp),
// the table of its menus (frmEntryMenus.cpp) and what the commands do (frmEntryCommands.cpp).
class frmEntryWithFrames final : public EntryWindow
{
    Q_OBJECT
public:
    explicit frmEntryWithFrames(Global &global, QWidget *parent = nullptr);

    void setFile(const QString &path) override;
    QString file() const override;
    void refill(PickList list, const QStringList &entries) override;
    void insertText(const QString &text) override;
    void focusSummary() override;
    QString client() const override;
    QString whereFragment() const override;
    void setWhereFragment(const QString &whereFragment) override;
    void Form_Activate() override;
    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // A field whose caption is the user's own word.
    struct CaptionField
    {
        QGroupBox *frame;
        QString Global::*shared; // nullptr: the shared text waits for the next start
        QString section, key, prompt;
    };

    // Look
    void makeControls();
    void makeFields();
    void makeToolbars();
    void makeMainToolbar();
    void makeFrames();
    void layOut();
    void arrangeFrames();
    void setTabOrders();
    void nameFields();
    void placeActivities();

    // Load
    void Form_Load();
    void setFonts();
    void fillLists();
    void showRecentFiles();
    void setCaptions();
    void connectHints();
    void connectFields();

    // Manners
    void Timer1_Timer();
    bool RichTextBox1_KeyDown(int key);
    void List1_KeyPress(int key);
    void showActivities();
    void hideActivities();

    // Commands
    std::vector<MenuEntry> menuTable();
    std::vector<MenuEntry> fileMenu();
    std::vector<MenuEntry> editMenu();
    std::vector<MenuEntry> listsMenu();
    std::vector<MenuEntry> clientsMenu();
    std::vector<MenuEntry> windowMenuTable();
    std::vector<MenuEntry> helpMenu();
    std::function<void()> launches(const char16_t *menu, std::function<void()> Openers::*opener);
    void mnuLogcompleted_Click();
    void mnuEnterDisplay_Click();
    void mnuNewEntry_Click();
    void mnuSearch_Click();
    void mnuDisbursements_Click();
    void mnuFileName_Click(int index);
    void turnToFile(const QString &path);
    void mnuSelectAll_Click();
    void chooseFont(FontSetting Global::*font, const QString &word);
    void editCaption(const CaptionField &field);
    void goBackOrForward(bool back);
    void noteAsCaller();
    void openWindow(const QString &menu, const std::function<void()> &opener);
    QAction *menuAction(const QString &name) const;

    LogRecord readFields() const;
    void clearForNextLog();

    Global &m_global;
    QToolBar *Toolbar1, *Toolbar2, *Toolbar3, *Toolbar4, *Toolbar5, *Toolbar6;
    QGroupBox *Frame1, *Frame2, *Frame3, *Frame4, *Frame5, *Frame6, *Frame7, *Frame8;
    SortedCombo *Combo1, *Combo2, *Combo3, *Combo4;
    QLineEdit *Text1;
    NotesEdit *RichTextBox1;
    DateTimePicker *DTPicker1, *DTPicker2;
    ListBox *List1;                     // the Activities pop-up
    QLabel *Label1;                     // status line
    QLabel *Label2, *Label3, *SQLWhere; // hidden; Label2 holds the window's file
    QTimer *Timer1;
    QScrollArea *m_body = nullptr;
    QGridLayout *m_grid = nullptr;
    std::optional<std::pair<bool, bool>> m_paired; // fields and pickers, as they stand
};

} // namespace vardelin
