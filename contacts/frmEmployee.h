#pragma once
// The list of employees, with the choice of the default one.

#include "contacts/ListWindow.h"

namespace vardelin {

class frmEmployee final : public ListWindow
{
    Q_OBJECT
public:
    explicit frmEmployee(Global &global, QWidget *parent = nullptr);

private:
    void mnuDefaultEmployee_Click();
};

} // namespace vardelin
