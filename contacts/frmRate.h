#pragma once
// The list of hourly rates. A rate is free text.

#include "contacts/ListWindow.h"

namespace vardelin {

class frmRate final : public ListWindow
{
    Q_OBJECT
public:
    explicit frmRate(Global &global, QWidget *parent = nullptr);
};

} // namespace vardelin
