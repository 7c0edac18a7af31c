#pragma once

#include "operations/Journal.h"
#include "operations/Trash.h"

#include <QDialog>

class QLabel;
class QTableWidget;

namespace store {
class Store;
}
namespace ui {
class Dialogs;
}

namespace operations {

// "Корзина": the operations deleted or corrected in the last days, newest
// first, with when and why they went; "Восстановить" puts the chosen ones
// back. Reads the trash when opened and after each return.
class TrashDialog : public QDialog
{
    Q_OBJECT

public:
    // `names` names the accounts and purses of the entries.
    TrashDialog(store::Store& store, ui::Dialogs& dialogs, const Journal& names, QWidget* parent = nullptr);

    void refill();
    // Puts the chosen entries back.
    void putBackChosen();
    const std::vector<TrashEntry>& entries() const { return m_entries; }

signals:
    // Operations came back: the list and the balances are out of date.
    void returned();

private:
    store::Store& m_store;
    ui::Dialogs& m_dialogs;
    const Journal& m_names;
    std::vector<TrashEntry> m_entries;
    QTableWidget* m_list;
    QLabel* m_summary;
};

} // namespace operations
