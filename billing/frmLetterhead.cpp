#include "billing/frmLetterhead.h"

#include "platform/base/Twips.h"
#include "platform/rich/Rtf.h"
#include "platform/ui/Controls.h"
#include "platform/ui/MenuTable.h"
#include "platform/ui/WordWrap.h"
#include "shell/state/Global.h"

#include <QKeyEvent>
#include <QMenuBar>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr int kMargin = 200; // twips
const auto kColumn = u"Invoice Header"_s;

} // namespace

frmLetterhead::frmLetterhead(Global &global, QWidget *parent) : QDialog(parent), m_global(global)
{
    setObjectName(u"frmLetterhead"_s);
    setWindowTitle(u"Create a letterhead for your invoices"_s);
    layOut();
    Form_Load();
}

frmLetterhead::~frmLetterhead() = default;

void frmLetterhead::layOut()
{
    Text1 = new QPlainTextEdit;
    Text1->setObjectName(u"Text1"_s);
    Text1->setToolTip(u"Use this area to create your letterhead for your invoices"_s);
    Text1->setAccessibleName(u"Letterhead"_s);
    Text1->setTabChangesFocus(true);

    auto *bar = new QMenuBar;
    bar->addActions(makeBar(this,
                            {{u"mnuReturn"_s, u"&Return"_s, {}, [this] { reject(); }},
                             {u"mnuFont"_s, u"&Font"_s, {}, [this] { mnuFont_Click(); }},
                             {u"mnuHelp"_s, u"&Help"_s},
                             {u"mnuDone"_s, u"&Done"_s, {}, [this] { mnuDone_Click(); }}},
                            m_global.services.errors));
    auto *all = new QVBoxLayout(this);
    all->setMenuBar(bar);
    const int margin = toPixels(kMargin);
    all->setContentsMargins(margin, margin, margin, margin);
    all->addWidget(Text1);
}

void frmLetterhead::Form_Load()
{
    if (const QWidget *main = m_global.frmMain)
        setGeometry(main->geometry());
    m_database = m_global.services.engine.OpenDatabase(m_global.DatabaseFileName);
    m_rows = m_database->OpenRecordset(u"Invoices"_s);
    setFont();
    if (!m_rows->BOF())
        m_stored = toText(m_rows->Fields(kColumn));
    showPlainText(*Text1, m_stored);
    m_shown = wordsOf(*Text1->document());
}

void frmLetterhead::setFont()
{
    const FontSetting &font = m_global.DefaultLetterheadFont;
    Text1->setFont(formFont(font.name, font.size));
}

// An emptied box is a letterhead, too: an empty one.
void frmLetterhead::mnuDone_Click()
{
    if (m_rows->BOF() && m_rows->EOF_())
        m_rows->AddNew();
    else
        m_rows->Edit();
    const QString words = wordsOf(*Text1->document());
    m_rows->SetField(kColumn, words == m_shown ? m_stored : words);
    m_rows->Update();
    accept();
}

// Whatever fails passes for a Cancel.
void frmLetterhead::mnuFont_Click()
{
    FontSetting &font = m_global.DefaultLetterheadFont;
    CommonDialog CommonDialog1;
    CommonDialog1.CancelError = true;
    CommonDialog1.FontName = font.name;
    CommonDialog1.FontSize = font.size;
    const bool done = resumeNext([&] {
        m_global.services.dialogs.showFont(CommonDialog1);
        font = {CommonDialog1.FontName, CommonDialog1.FontSize};
        Settings &settings = m_global.services.settings;
        settings.SaveSetting(u"DefaultLetterheadFontName"_s, u"Default Letterhead Font Name"_s, font.name);
        settings.SaveSetting(u"DefaultLetterheadFontSize"_s, u"Default Letterhead Font Size"_s, font.size);
        setFont();
    });
    if (!done)
        m_global.services.dialogs.msgBox({u"Cancel selected by user"_s});
}

// Esc must not end the window, as it ends a dialog: what was typed would be gone.
void frmLetterhead::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Escape)
        QDialog::keyPressEvent(event);
}

} // namespace vardelin
