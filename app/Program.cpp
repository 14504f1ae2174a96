#include "app/Program.h"

#include "platform/system/AppPath.h"
#include "platform/ui/AltKeys.h"
#include "platform/ui/Fonts.h"
#include "platform/ui/Icons.h"
#include "platform/ui/Look.h"
#include "shell/Wiring.h"

using namespace Qt::StringLiterals;

namespace vardelin {

Application::Application(int &argc, char **argv) : QApplication(argc, argv)
{
    setApplicationName(u"Vardelin"_s);
    setApplicationDisplayName(QString()); // captions stay as they are given
    setDesktopFileName(u"vardelin"_s);
    setLook();
    setWindowIcon(programIcon());
    installFontSubstitutions();
    keepAltKeysFromText(*this);
}

bool Application::notify(QObject *receiver, QEvent *event)
{
    bool handled = false;
    if (errors)
        errors->run([&] { handled = QApplication::notify(receiver, event); });
    else
        handled = QApplication::notify(receiver, event);
    return handled;
}

Program::Program(Application &application)
    : m_application(application),
      m_errors(m_dialogs, [this] { endProgram(); }), m_services{m_dialogs, m_clock,   *m_settings, m_engine,
                                                                m_errors,  m_printer, appPath()},
      m_global(m_services), m_main(std::make_unique<frmMain>(m_global))
{
    wire(m_global, *m_main);
    m_application.errors = &m_errors;
}

Program::~Program()
{
    m_application.errors = nullptr;
}

void Program::startLater()
{
    QMetaObject::invokeMethod(
        m_main.get(), [this] { m_main->Load(); }, Qt::QueuedConnection);
}

void Program::endProgram()
{
    if (m_main)
        m_main->ExitProgram();
    QCoreApplication::exit(1);
}

} // namespace vardelin
