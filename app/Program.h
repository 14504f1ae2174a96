#pragma once
// The program put together: what main() runs, and what the benchmarks time.

#include "platform/print/PrintDevice.h"
#include "platform/ui/ErrorFrame.h"
#include "shell/frmMain.h"
#include "shell/state/Global.h"

#include <QApplication>
#include <memory>

namespace vardelin {

// The last net under every handler: no exception leaves an event.
class Application final : public QApplication
{
public:
    Application(int &argc, char **argv); // with the program's name and look
    ErrorFrame *errors = nullptr;        // none: exceptions pass

    bool notify(QObject *receiver, QEvent *event) override;
};

// The real services, the shared values and the parent window, wired to each other. Settings, folder and file
// are the user's.
class Program
{
public:
    explicit Program(Application &application); // outlives the program
    ~Program();
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    void startLater(); // frmMain::Load(), when the event loop turns
    Global &global() { return m_global; }
    frmMain &mainWindow() { return *m_main; }

private:
    void endProgram();

    Application &m_application;
    QtDialogs m_dialogs;
    SystemClock m_clock;
    std::unique_ptr<Settings> m_settings = userSettings();
    dao::DBEngine m_engine;
    ErrorFrame m_errors;
    std::unique_ptr<PrintDevice> m_printDevice = desktopPrintDevice();
    Printer m_printer{*m_printDevice};
    Services m_services;
    Global m_global;
    std::unique_ptr<frmMain> m_main;
};

} // namespace vardelin
