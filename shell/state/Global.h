#pragma once
// The values that the windows share, one of each for the program. main() makes it first and destroys it last;
// every form and command gets it by reference. Interface thread only. A value that must outlive its command
// says so here.

#include "platform/base/Value.h"
#include "platform/ui/WindowList.h"
#include "shell/state/Openers.h"
#include "shell/state/Services.h"
#include "shell/state/Windows.h"

#include <QPointer>
#include <array>
#include <vector>

namespace vardelin {

// A font as the settings hold it: name, and size as text.
struct FontSetting
{
    QString name;
    QString size;
};

struct Global
{
    explicit Global(Services &outside) : services(outside) {}

    Services &services; // outlives Global
    Openers openers;
    WindowList Forms; // loaded windows in order of loading, frmMain first
    QWidget *frmMain = nullptr;

    // The file that the current operation works on: a window's command copies its Label2 here, the procedure
    // that it calls reads it. It doesn't mean that the file is open. What it holds at the end is the next
    // start's file.
    QString DatabaseFileName;

    // The windows ever made in this run; they only grow. A slot whose window was closed is null and its
    // number isn't used again.
    std::vector<QPointer<EntryWindow>> EntryWindows;
    std::vector<QPointer<DisplayWindow>> DisplayWindows;
    int EntryWindowIndex = 0, DisplayWindowIndex = 0; // highest index in use
    QString CurrentEntryTag = QStringLiteral("1");    // Tag of the last active window of the kind
    QString CurrentDisplayTag = QStringLiteral("1");
    bool EntryWindowActive = false, DisplayWindowActive = false;
    bool SummaryHasFocus = false; // which text field of a Data entry window an activity goes to

    // The pick-list cache: one set for the process, of the file that was last passed to OpenLogDatabase.
    // Index: PickList. Entries 5 to 7 exist and nothing fills them.
    std::array<QStringList, 8> List1;
    QStringList List2; // recent files as they stood at start-up, newest first
    bool NoClients = false, NoEmployees = false;

    // Selection of the last Display window or list window; kept.
    QString CurrentSQL;
    Value RangeStart,
        RangeEnd; // Beginning Time of the first and last record of the Display window that last loaded
    QByteArray FirstRecordBookmark;

    // The file that was picked for compacting, for an export or for an import; the record of the active
    // Display window while a command on files runs; the other file of a transfer, which stays open where the
    // transfer ends for want of clients.
    QString CompactFileName;
    QByteArray SavedBookmark;
    std::unique_ptr<dao::Database> LogDatabase;
    std::unique_ptr<dao::Recordset> TransferRecordset;

    // Search state; kept between searches on purpose, with its apostrophes doubled where a search put it into
    // SQL text. SearchClient and SearchEmployee also carry the "YES" of frmIntroduction.
    QString SearchClient, SearchEmployee, SearchProject, SearchText;
    std::int16_t SearchType = 0, SearchTimeFrame = 0; // index of the button chosen in frmSearch
    QString SQLSelect, SQLFilter;                     // the statement's beginning and its WHERE fragment

    // Holders of a split name, overwritten by whoever splits one.
    QString ClientFirstName, ClientLastName;

    // The letterhead of the last letter; one that is Null leaves it as it was.
    QString LetterheadText;

    // The To Do list: what frmToDo hands to frmEditToDo, the priority chosen last, and the rows, from 1, of
    // the last press and release on the list; 0 before the first.
    QString CurrentThingToDo, CurrentStartDate, CurrentDeadline;
    int CurrentPriority = 0;
    int DragSourceRow = 0, DragTargetRow = 0;

    // Working values of the last save or fee tip.
    QString CurrentRate, CurrentDuration;
    Value CurrentFee;

    Value CaseClosureDate; // of the last deactivation; kept, and taken again where no other day is chosen

    // Margins of printed lists in inches; 0 counts as 1 until a list is printed. What the word splitter still
    // has to split, and the word that it gave last.
    double PrintTopMargin = 0, PrintBottomMargin = 0, PrintLeftMargin = 0, PrintRightMargin = 0;
    QString PrintWordRest, PrintWord;

    // Preferences, read once at start-up; a command that changes one writes variable and store.
    QString ClientCaption, EmployeeCaption, ProjectCaption, SummaryCaption;
    QString DefaultEmployee;
    FontSetting DefaultFont, DefaultDisplayFont, DefaultEntryFont, DefaultToDoFont, DefaultLetterheadFont,
        DefaultReportFont, DefaultVardelinFont, DefaultPrintFont;
};

} // namespace vardelin
