#include "shell/frmSplash.h"

#include "shell/Animation.h"

#include <QEvent>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {
constexpr int kPicture = 160; // pixels
constexpr int kTick = 130;    // milliseconds
constexpr int kLongest = 300; // milliseconds
} // namespace

frmSplash::frmSplash(QWidget *parent) : QWidget(parent, Qt::Dialog), Image1(new QLabel)
{
    setObjectName(u"frmSplash"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QString(36, u' ') + u"Vardelin, Version 1.050825"_s);
    Image1->setObjectName(u"Image1"_s);
    Image1->setAlignment(Qt::AlignCenter);
    Image1->setPixmap(animationFrame(m_frame, kPicture, devicePixelRatioF()));
    auto *all = new QVBoxLayout(this);
    all->setContentsMargins(180, 24, 180, 24);
    all->addWidget(Image1);
    adjustSize();
    move(parent->mapToGlobal(parent->rect().center()) - rect().center());
    Timer1.setObjectName(u"Timer1"_s);
    connect(&Timer1, &QTimer::timeout, this, &frmSplash::Timer1_Timer);
    Timer1.start(kTick);
    // The tip and the introduction, being modal, keep it from being activated: it is a flash all the same.
    QTimer::singleShot(kLongest, this, &QWidget::close);
}

void frmSplash::Timer1_Timer()
{
    m_frame = nextFrame(m_frame);
    Image1->setPixmap(animationFrame(m_frame, kPicture, devicePixelRatioF()));
}

void frmSplash::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
}

} // namespace vardelin
