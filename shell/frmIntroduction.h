#pragma once
// Greets a user whose file has no clients or no employees.

#include <QDialog>

class QLabel;

namespace vardelin {

struct Global;

// The greeting for what is missing; its parts are set off by line ends.
QString introductionText(bool noClients, bool noEmployees);

class frmIntroduction : public QDialog
{
    Q_OBJECT
public:
    explicit frmIntroduction(Global &global, QWidget *parent = nullptr);

private:
    void mnuAddClient_Click();
    void mnuAddEmployee_Click();
    Global &m_global;
};

} // namespace vardelin
