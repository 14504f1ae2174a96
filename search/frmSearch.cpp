#include "search/frmSearch.h"

#include "platform/base/Twips.h"
#include "platform/ui/MenuTable.h"
#include "platform/ui/SharedKeys.h"
#include "search/Routines.h"
#include "search/SearchSql.h"
#include "shell/state/Global.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenuBar>
#include <QRadioButton>
#include <QScreen>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

frmSearch *loadedSearch(const Global &global)
{
    for (int i = 0; i < global.Forms.Count(); ++i)
        if (auto *form = qobject_cast<frmSearch *>(global.Forms.at(i)))
            return form;
    return nullptr;
}

// The user's own word for a field, where there is one.
QString ownWord(const QString &word, const QString &atFirst, const QString &fixed)
{
    return word.isEmpty() || word == atFirst ? fixed : word;
}

std::int16_t chosen(const std::vector<QRadioButton *> &buttons)
{
    const auto found = std::ranges::find_if(buttons, &QRadioButton::isChecked);
    return static_cast<std::int16_t>(found - buttons.begin());
}

} // namespace

frmSearch::frmSearch(Global &global, QWidget *parent) : QDialog(parent), m_global(global)
{
    setObjectName(u"frmSearch"_s);
    setWindowTitle(u"Search"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    layOut();
    Form_Load();
}

void frmSearch::layOut()
{
    auto *all = new QHBoxLayout(this);
    all->setMenuBar(makeMenu());
    const QString employee = ownWord(m_global.EmployeeCaption, u"Employee (or user)"_s, u"Employee"_s);
    const QString project = ownWord(m_global.ProjectCaption, u"Project"_s, u"Project"_s);
    all->addWidget(makeFrame(
        u"Frame1"_s, u"Type of search:"_s, u"Option1(%1)"_s,
        {u"Current client"_s, u"Another client"_s, u"All active clients"_s, employee, project, u"Log"_s},
        Option1));
    all->addWidget(makeFrame(u"Frame2"_s, u"Time frame for search:"_s, u"Option2(%1)"_s,
                             {u"All"_s, u"Within last month"_s, u"Within last six months"_s,
                              u"Within last year"_s, u"Customized time frame"_s},
                             Option2));
}

void frmSearch::Form_Load()
{
    if (const QWidget *main = m_global.frmMain)
        move(main->pos() + QPoint(toPixels(600), toPixels(600)));
    if (!m_global.SearchClient.isEmpty() || !m_global.SearchProject.isEmpty())
        return;
    Option1[SearchFor::AnotherClient]->setChecked(true);
    if (m_global.DisplayWindowActive)
        withoutCurrentClient();
}

QMenuBar *frmSearch::makeMenu()
{
    m_bar = new QMenuBar;
    m_bar->addActions(makeBar(this,
                              {{u"mnuReturn"_s, u"&Return"_s, {}, [this] { close(); }},
                               {u"mnuContinue"_s, u"&Continue"_s, {}, [this] { mnuContinue_Click(); }},
                               {u"mnuReport"_s, u"&Report"_s, {}, [this] { mnuReport_Click(); }}},
                              m_global.services.errors));
    firstTakesSharedKeys(m_bar);
    mnuReport = findChild<QAction *>(u"mnuReport"_s);
    return m_bar;
}

QWidget *frmSearch::makeFrame(const QString &name, const QString &caption, const QString &buttonName,
                              const QStringList &captions, std::vector<QRadioButton *> &buttons)
{
    auto *frame = new QGroupBox(caption);
    frame->setObjectName(name);
    auto *inside = new QVBoxLayout(frame);
    for (QString each : captions) {
        auto *button = new QRadioButton(each.replace(u'&', u"&&"_s)); // a user's word has no mnemonic
        button->setObjectName(buttonName.arg(buttons.size()));
        // Tab leads to the chosen one, from where the arrows choose.
        button->setFocusPolicy(Qt::ClickFocus);
        connect(button, &QRadioButton::toggled, button,
                [button](bool chosen) { button->setFocusPolicy(chosen ? Qt::StrongFocus : Qt::ClickFocus); });
        inside->addWidget(button);
        buttons.push_back(button);
    }
    inside->addStretch();
    buttons.front()->setChecked(true);
    return frame;
}

void frmSearch::offerReport(const QString &name)
{
    mnuReport->setEnabled(!name.isEmpty());
    if (!name.isEmpty())
        mnuReport->setText(u"   Report all Vardelins for "_s + QString(name).replace(u'&', u"&&"_s));
    // The layout counts the bar's height alone.
    setMinimumWidth(std::min(m_bar->sizeHint().width(), screen()->availableGeometry().width() / 2));
}

void frmSearch::withoutCurrentClient()
{
    Option1[SearchFor::CurrentClient]->setEnabled(false);
}

void frmSearch::readButtons()
{
    m_global.SearchType = chosen(Option1);
    m_global.SearchTimeFrame = chosen(Option2);
}

void frmSearch::mnuContinue_Click()
{
    readButtons();
    SearchRoutine(m_global, m_global.SearchType, m_global.SearchTimeFrame, m_global.DisplayWindowActive);
}

// The buttons count only where no client and no project is at hand.
void frmSearch::mnuReport_Click()
{
    if (!m_global.SearchClient.isEmpty()) {
        ReportRoutine(m_global, SearchFor::CurrentClient, TimeFrame::All);
    } else if (!m_global.SearchProject.isEmpty()) {
        ReportRoutine(m_global, SearchFor::CurrentProject, TimeFrame::All);
    } else {
        readButtons();
        ReportRoutine(m_global, m_global.SearchType, m_global.SearchTimeFrame);
    }
}

void frmSearch::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        m_global.services.errors.run([this] { mnuContinue_Click(); });
    else if (event->key() == Qt::Key_Escape)
        close();
    else
        QDialog::keyPressEvent(event);
}

// The next search makes a window of its own, also while this one waits for its deletion.
void frmSearch::closeEvent(QCloseEvent *event)
{
    m_global.Forms.remove(this);
    QDialog::closeEvent(event);
}

void launchSearch(Global &global, const QString &reportName)
{
    if (global.EntryWindowActive && !reportName.isEmpty()) {
        SearchRoutine(global, SearchFor::EntryFields, TimeFrame::All, false);
        return;
    }
    frmSearch *form = loadedSearch(global);
    if (!form) {
        form = new frmSearch(global, global.frmMain);
        global.Forms.add(form);
    }
    form->offerReport(reportName);
    if (!global.DisplayWindowActive)
        form->withoutCurrentClient();
    form->show();
    form->raise();
    form->activateWindow();
}

void unloadSearch(const Global &global)
{
    if (frmSearch *form = loadedSearch(global))
        form->close();
}

} // namespace vardelin
