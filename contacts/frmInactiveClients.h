#pragma once
// Closes cases, and shows the clients whose cases are closed. Two views: two lists, from whose first one a
// client goes to the second; and the fields of one closed case at a time.

#include "contacts/ClientWindow.h"
#include "platform/data/Dao.h"
#include "platform/ui/Controls.h"

namespace vardelin {

class frmInactiveClients final : public ClientWindow
{
    Q_OBJECT
public:
    explicit frmInactiveClients(Global &global, QWidget *parent = nullptr);
    ~frmInactiveClients() override;

private:
    void layOutLists();
    void Form_Load();
    void fillLists();
    void showLists(bool lists);
    void Adodc1_MoveComplete(MoveReason reason) override;
    void List1_Click();
    void refreshPickLists();
    void mnuSave_Click();
    void mnuDeactivateClient_Click();
    void mnuDisplayInactiveClients_Click();

    bool m_loading = true;
    QWidget *m_lists = nullptr;
    QLabel *Label1 = nullptr, *Label2 = nullptr;
    ListBox *List1 = nullptr, *List2 = nullptr;
    std::unique_ptr<dao::Database> m_database; // open from Load to Unload
    std::unique_ptr<dao::Recordset> m_active;
};

} // namespace vardelin
