// What the commands of the Data entry window do.
#include "database/LogDatabase.h"
#include "entry/SaveLog.h"
#include "entry/frmEntryWithFrames.h"
#include "platform/ui/BusyPointer.h"
#include "platform/ui/Controls.h"
#include "platform/ui/NotesEdit.h"
#include "shell/state/Global.h"
#include "shell/state/WindowCycle.h"

using namespace Qt::StringLiterals;

namespace vardelin {

void frmEntryWithFrames::mnuLogcompleted_Click()
{
    const LogRecord log = readFields();
    if (!hasClientOrProject(log)) {
        m_global.services.dialogs.msgBox({u"You did not enter a client or a project."_s});
        Combo1->setFocus();
        return;
    }
    try {
        saveLog(m_global, log);
    } catch (const RunTimeError &error) {
        m_global.services.errors.report(error); // the file is as it was, and so is what was typed
        return;
    }
    clearForNextLog();
}

LogRecord frmEntryWithFrames::readFields() const
{
    return {
        .client = Combo1->Text(),
        .employee = Combo2->Text(),
        .project = Combo3->Text(),
        .rate = Combo4->Text(),
        .summary = Text1->text(),
        .notes = RichTextBox1->Text(),
        .notesRtf = RichTextBox1->TextRTF(),
        .begin = DTPicker1->Value(),
        .end = DTPicker2->Value(),
    };
}

void frmEntryWithFrames::clearForNextLog()
{
    Label1->setText(u"Vardelin saved"_s);
    Combo1->setText({});
    Combo2->setText(m_global.DefaultEmployee);
    Combo3->setText({});
    Combo4->setText({});
    RichTextBox1->setTextRTF({});
    Text1->clear();
    DTPicker1->setValue(m_global.services.clock.now());
    DTPicker2->setValue(m_global.services.clock.now());
}

void frmEntryWithFrames::mnuEnterDisplay_Click()
{
    const BusyPointer busy;
    if (DisplayWindow *window = m_global.openers.NewDisplayWindow())
        window->SetFocus();
}

void frmEntryWithFrames::mnuNewEntry_Click()
{
    m_global.EntryWindowActive = true;
    m_global.CurrentEntryTag = Tag;
    m_global.DatabaseFileName = Label2->text();
    m_global.openers.NewEntryWindow();
}

// Turns the program to a recent file. Where it can't be opened, the program stays with the file and the lists
// that it had.
void frmEntryWithFrames::turnToFile(const QString &path)
{
    const QString file = m_global.DatabaseFileName;
    const auto lists = m_global.List1;
    m_global.DatabaseFileName = path;
    try {
        const BusyPointer busy;
        OpenLogDatabase(m_global);
    } catch (const RunTimeError &) {
        m_global.DatabaseFileName = file;
        m_global.List1 = lists;
        throw;
    }
}

// One new window of each kind on a recent file.
void frmEntryWithFrames::mnuFileName_Click(int index)
{
    try {
        turnToFile(menuAction(u"mnuFileName(%1)"_s.arg(index))->data().toString());
    } catch (const RunTimeError &error) {
        m_global.services.errors.report(error); // a file that went bad doesn't take what was typed with it
        return;
    }
    const BusyPointer busy;
    m_global.openers.NewDisplayWindow();
    m_global.openers.NewEntryWindow();
    const auto slot = [](const QString &tag) { return static_cast<std::size_t>(tag.toInt() - 1); };
    if (DisplayWindow *window = m_global.DisplayWindows.at(slot(m_global.CurrentDisplayTag)))
        window->setFile(m_global.DatabaseFileName);
    if (EntryWindow *window = m_global.EntryWindows.at(slot(m_global.CurrentEntryTag)))
        window->setFile(m_global.DatabaseFileName);
}

void frmEntryWithFrames::mnuSelectAll_Click()
{
    RichTextBox1->selectAll();
}

// The pattern of every command that opens a window: the window that opens finds its way back, and the program
// turns to this window's file.
void frmEntryWithFrames::noteAsCaller()
{
    m_global.EntryWindowActive = true;
    m_global.DisplayWindowActive = false;
    m_global.CurrentEntryTag = Tag;
    m_global.DatabaseFileName = Label2->text();
}

void frmEntryWithFrames::openWindow(const QString &menu, const std::function<void()> &opener)
{
    m_global.openers.open(opener, menuAction(menu)->text());
}

std::function<void()> frmEntryWithFrames::launches(const char16_t *menu,
                                                   std::function<void()> Openers::*opener)
{
    return [this, name = QString::fromUtf16(menu), opener] {
        noteAsCaller();
        openWindow(name, m_global.openers.*opener);
    };
}

void frmEntryWithFrames::mnuDisbursements_Click()
{
    m_global.SearchClient = Combo1->Text();
    noteAsCaller();
    openWindow(u"mnuDisbursements"_s, m_global.openers.frmPaymentsDisbursements);
}

void frmEntryWithFrames::mnuSearch_Click()
{
    m_global.SearchClient.clear();
    m_global.SearchProject.clear();
    noteAsCaller();
    if (!Combo1->Text().isEmpty())
        m_global.SearchClient = Combo1->Text();
    if (!Combo3->Text().isEmpty())
        m_global.SearchProject = Combo3->Text();
    const QString reportName =
        m_global.SearchClient.isEmpty() ? m_global.SearchProject : m_global.SearchClient;
    m_global.openers.frmSearch(reportName);
}

void frmEntryWithFrames::chooseFont(FontSetting Global::*font, const QString &word)
{
    FontSetting &setting = m_global.*font;
    CommonDialog CommonDialog1;
    CommonDialog1.CancelError = true;
    CommonDialog1.FontName = setting.name;
    CommonDialog1.FontSize = setting.size;
    try {
        m_global.services.dialogs.showFont(CommonDialog1);
        setting = {CommonDialog1.FontName, CommonDialog1.FontSize};
        Settings &settings = m_global.services.settings;
        settings.SaveSetting(u"Default%1FontName"_s.arg(word), u"Default %1 Font Name"_s.arg(word),
                             setting.name);
        settings.SaveSetting(u"Default%1FontSize"_s.arg(word), u"Default %1 Font Size"_s.arg(word),
                             setting.size);
    } catch (const RunTimeError &error) {
        if (error.number() != RunTime::CommonDialogCancel)
            m_global.services.errors.report(error);
    }
}

// Errors are ignored throughout. Cancel gives the empty text, which becomes the caption like any other.
void frmEntryWithFrames::editCaption(const CaptionField &field)
{
    QString caption;
    resumeNext([&] {
        caption = m_global.services.dialogs.inputBox(field.prompt, u"Enter new caption for this field"_s);
    });
    field.frame->setTitle(caption);
    nameFields();
    if (field.shared)
        m_global.*field.shared = caption;
    resumeNext([&] { m_global.services.settings.SaveSetting(field.section, field.key, caption); });
}

void frmEntryWithFrames::goBackOrForward(bool back)
{
    resumeNext([&] {
        if (!(back ? goBack(m_global, *this, CycleKind::Entry) : goForward(m_global, *this)))
            Label1->setText(Label2->text());
    });
}

} // namespace vardelin
