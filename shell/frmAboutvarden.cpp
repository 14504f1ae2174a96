#include "shell/frmAboutvarden.h"

#include "shell/Animation.h"

#include <QFrame>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr int kPicture = 96; // pixels
constexpr int kTick = 130;   // milliseconds

QLabel *line(const QString &name, const QString &text)
{
    auto *label = new QLabel(text);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

} // namespace

frmAboutvarden::frmAboutvarden(QWidget *parent) : QDialog(parent), Image1(new QLabel)
{
    setObjectName(u"frmAboutvarden"_s);
    setWindowTitle(u"     About Vardelin, Version 1.050825"_s);
    layOut();
    Image1->setPixmap(animationFrame(m_frame, kPicture, devicePixelRatioF()));
    Timer1.setObjectName(u"Timer1"_s);
    connect(&Timer1, &QTimer::timeout, this, &frmAboutvarden::Timer1_Timer);
    Timer1.start(kTick);
}

void frmAboutvarden::layOut()
{
    Image1->setObjectName(u"Image1"_s);
    Image1->setAccessibleName(u"Vardelin"_s);
    Image1->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
    QLabel *name = line(u"Label1"_s, u"Vardelin"_s);
    QFont large = name->font();
    large.setPointSizeF(large.pointSizeF() * 1.7);
    large.setBold(true);
    name->setFont(large);
    auto *Line1 = new QFrame;
    Line1->setObjectName(u"Line1"_s);
    Line1->setFrameShape(QFrame::HLine);
    Line1->setFrameShadow(QFrame::Sunken);

    auto *text = new QVBoxLayout;
    text->addWidget(name);
    text->addWidget(line(u"lblVersion"_s, u"Version 1.050825"_s));
    text->addWidget(Line1);
    text->addWidget(
        line(u"Label2"_s,
             u"Timed logs of work, clients and cases, billing and a To Do list for a small law office."_s));
    text->addWidget(line(u"Label3"_s,
                         u"All records of an office are kept in one file, which other programs can read."_s));
    text->addSpacing(8);
    text->addWidget(line(u"lblMaker1"_s, u"Made by the Vardelin developers."_s));
    text->addWidget(line(u"lblMaker2"_s, u"Built with Qt, on Debian."_s));
    text->addStretch(1);

    auto *Frame1 = new QGroupBox;
    Frame1->setObjectName(u"Frame1"_s);
    auto *inside = new QHBoxLayout(Frame1);
    inside->setContentsMargins(16, 16, 16, 16);
    inside->setSpacing(20);
    inside->addWidget(Image1);
    inside->addLayout(text, 1);
    auto *cmdOK = new QPushButton(u"OK"_s);
    cmdOK->setObjectName(u"cmdOK"_s);
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    auto *all = new QVBoxLayout(this);
    all->addWidget(Frame1, 1);
    all->addWidget(cmdOK, 0, Qt::AlignRight);
    setMinimumWidth(460);
}

void frmAboutvarden::Timer1_Timer()
{
    m_frame = nextFrame(m_frame);
    Image1->setPixmap(animationFrame(m_frame, kPicture, devicePixelRatioF()));
}

} // namespace vardelin
