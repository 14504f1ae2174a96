#pragma once
// The letterhead of invoices and statements: plain text of any length, kept in the first row of the table
// Invoices. A file without that row has no letterhead.

#include "platform/data/Dao.h"

#include <QDialog>
#include <QPlainTextEdit>

namespace vardelin {

struct Global;

class frmLetterhead final : public QDialog
{
    Q_OBJECT
public:
    explicit frmLetterhead(Global &global, QWidget *parent = nullptr);
    ~frmLetterhead() override;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void layOut();
    void Form_Load();
    void mnuDone_Click();
    void mnuFont_Click();
    void setFont();

    Global &m_global;
    QPlainTextEdit *Text1 = nullptr;
    QString m_stored, m_shown; // as it lies in the file, which nothing typed leaves so; and as it came up
    std::unique_ptr<dao::Database> m_database; // open from Load to Unload
    std::unique_ptr<dao::Recordset> m_rows;
};

} // namespace vardelin
