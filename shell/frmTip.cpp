#include "shell/frmTip.h"

#include "platform/base/Twips.h"
#include "platform/system/AppPath.h"
#include "shell/Tips.h"
#include "shell/state/Global.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRandomGenerator>
#include <QScrollArea>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vardelin {

frmTip::frmTip(Global &global, QWidget *parent)
    : QDialog(parent), m_global(global), chkLoadTipsAtStartup(new QCheckBox(u"&Deactivate Tip of the Day"_s)),
      lblTipText(new QLabel)
{
    setObjectName(u"frmTip"_s);
    setWindowTitle(u"Tip of the Day"_s);
    layOut();
    if (const QWidget *main = m_global.frmMain)
        move(main->pos() + QPoint(toPixels(700), toPixels(1500)));
    if (!LoadTips(inFolder(m_global.services.appPath, u"TIPOFDAY.TXT"_s)))
        lblTipText->setText(u"That the TIPOFDAY.TXT file was not found? \n\nCreate a text file named "
                            u"TIPOFDAY.TXT using NotePad with 1 "
                            u"tip per line. Then place it in the same directory as the application. "_s);
}

void frmTip::layOut()
{
    auto *heading = new QLabel(u"Did you know..."_s);
    heading->setObjectName(u"Label1"_s);
    QFont large = heading->font();
    large.setPointSizeF(large.pointSizeF() * 1.4);
    large.setBold(true);
    heading->setFont(large);

    auto *picture = new QLabel;
    picture->setObjectName(u"Picture1"_s);
    picture->setAccessibleName(u"Vardelin"_s);
    picture->setPixmap(QIcon(u":/icons/vardelin.svg"_s).pixmap(48, 48));
    picture->setAlignment(Qt::AlignTop);

    lblTipText->setObjectName(u"lblTipText"_s);
    lblTipText->setWordWrap(true);
    lblTipText->setTextFormat(Qt::PlainText);
    lblTipText->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    lblTipText->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    lblTipText->setMinimumSize(360, 110);

    chkLoadTipsAtStartup->setObjectName(u"chkLoadTipsAtStartup"_s);
    auto *cmdNextTip = new QPushButton(u"&Next Tip"_s);
    cmdNextTip->setObjectName(u"cmdNextTip"_s);
    auto *cmdOK = new QPushButton(u"OK"_s);
    cmdOK->setObjectName(u"cmdOK"_s);
    cmdOK->setDefault(true);

    auto *text = new QVBoxLayout;
    text->addWidget(heading);
    text->addWidget(lblTipText, 1);
    auto *upper = new QHBoxLayout;
    upper->setSpacing(16);
    upper->addWidget(picture);
    upper->addLayout(text, 1);
    auto *lower = new QHBoxLayout;
    lower->addWidget(chkLoadTipsAtStartup, 1);
    lower->addWidget(cmdNextTip);
    lower->addWidget(cmdOK);
    auto *all = new QVBoxLayout(this);
    all->setContentsMargins(16, 16, 16, 12);
    all->setSpacing(12);
    all->addLayout(upper, 1);
    all->addLayout(lower);
    cmdOK->setFocus();

    connect(cmdNextTip, &QPushButton::clicked, this,
            [this] { m_global.services.errors.run([this] { showNextTip(); }); });
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
}

bool frmTip::LoadTips(const QString &path)
{
    const std::optional<QStringList> tips = loadTips(path);
    if (!tips)
        return false;
    m_tips = *tips;
    showNextTip();
    return true;
}

void frmTip::showNextTip()
{
    m_currentTip = nextTip(QRandomGenerator::global()->generateDouble(), static_cast<int>(m_tips.size()));
    DisplayCurrentTip();
}

void frmTip::DisplayCurrentTip()
{
    if (!m_tips.isEmpty())
        lblTipText->setText(m_tips[m_currentTip - 1]);
}

// The name of the key says the opposite of its value: a ticked box stores 1 and stops the tips. Settled.
void frmTip::done(int result)
{
    m_global.services.errors.run([this] {
        m_global.services.settings.SaveSetting(u"Preferences"_s, u"Show Tips at Startup"_s,
                                               chkLoadTipsAtStartup->isChecked() ? u"1"_s : u"0"_s);
    });
    QDialog::done(result);
}

} // namespace vardelin
