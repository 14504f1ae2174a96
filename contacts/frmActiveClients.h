#pragma once
// The contact database: the row of one active client at a time on five tabs, with the report on all of them.

#include "contacts/ClientWindow.h"

#include <QLineEdit>

namespace vardelin {

class frmActiveClients final : public ClientWindow
{
    Q_OBJECT
public:
    explicit frmActiveClients(Global &global, QWidget *parent = nullptr);

private:
    void Form_Load();
    void Adodc1_MoveComplete(MoveReason reason) override;
    void TabStrip1_Click(int index) override;
    void mnuSave_Click();
    void mnuReport_Click();
    void resizeEvent(QResizeEvent *event) override;

    QLineEdit *Text2_7; // the retainer date once more, out of sight
};

} // namespace vardelin
