#pragma once
// The list of activities, which also inserts its selected entries into the text of the calling Data entry
// window.

#include "contacts/ListWindow.h"

namespace vardelin {

// Each entry with a blank behind it, the last one first, and one more blank at the end: "B A  " for A, B.
QString gatheredActivities(const QStringList &selected);

class frmActivity final : public ListWindow
{
    Q_OBJECT
public:
    explicit frmActivity(Global &global, QWidget *parent = nullptr);

private:
    void mnuDone_Click() override;
    void escapeInText() override;
    bool listKeyPressed(int qtKey) override;
    void insertSelected();
    EntryWindow *caller() const;
};

} // namespace vardelin
