#pragma once

#include "operations/Journal.h"

#include <QDialog>

class QComboBox;
class QLineEdit;

namespace operations {

// The fields of one operation to correct: date, amount and comment; for an
// expense also the account, the note and the purse. It only collects what is
// typed; the operations window checks it and makes the correction.
class CorrectionDialog : public QDialog
{
    Q_OBJECT

public:
    CorrectionDialog(const Operation& operation, const Journal& journal, QWidget* parent = nullptr);

    QString dateText() const;
    QString amountText() const;
    // The operation as corrected, with the date and amount read from their fields.
    Operation corrected(QDate date, store::Amount amount) const;

private:
    QComboBox* catalogueList(const char* name, const QHash<std::int32_t, QString>& names,
                             std::int32_t current);

    Operation m_operation;
    QLineEdit* m_date;
    QLineEdit* m_amount;
    QLineEdit* m_name;
    QLineEdit* m_note = nullptr;
    QComboBox* m_account = nullptr;
    QComboBox* m_purse = nullptr;
};

} // namespace operations
