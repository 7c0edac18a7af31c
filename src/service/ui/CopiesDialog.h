#pragma once

#include "store/Copies.h"

#include <QDialog>

#include <vector>

class QPushButton;
class QTableWidget;

namespace service {

// The automatic copies, newest first: when and why each was made, the money
// in the bank and the number of operations it holds. A damaged copy is shown
// as such and cannot be chosen. Enter restores the chosen copy, Esc closes.
class CopiesDialog : public QDialog
{
    Q_OBJECT

public:
    CopiesDialog(std::vector<store::CopyEntry> copies, QWidget* parent = nullptr);

signals:
    // The chosen copy; the dialog has closed.
    void restoreRequested(const store::CopyEntry& copy);

private:
    void fill();
    const store::CopyEntry* chosen() const;
    void onRestoreClicked();

    std::vector<store::CopyEntry> m_copies;
    QTableWidget* m_list;
    QPushButton* m_restore;
};

} // namespace service
