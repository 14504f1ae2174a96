#pragma once
// The list of clients: first and last names of the table Active Clients.

#include "contacts/ListWindow.h"

namespace vardelin {

class frmClient final : public ListWindow
{
    Q_OBJECT
public:
    explicit frmClient(Global &global, QWidget *parent = nullptr);
};

} // namespace vardelin
