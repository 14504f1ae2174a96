#pragma once
// The list of projects. A comma followed by a blank is refused: it tells a client from a project everywhere.

#include "contacts/ListWindow.h"

namespace vardelin {

class frmProject final : public ListWindow
{
    Q_OBJECT
public:
    explicit frmProject(Global &global, QWidget *parent = nullptr);

private:
    bool refuses(const QString &text) override;
};

} // namespace vardelin
