#pragma once

#include "store/Copies.h"

#include <QDialog>

#include <atomic>
#include <memory>
#include <vector>

class QPushButton;
class QTableWidget;

namespace ui {
class TextColumns;
}

namespace service {

// The automatic copies, newest first: when and why each was made, the money
// in the bank and the number of operations it holds. A damaged copy is shown
// as such and cannot be chosen. Enter restores the chosen copy, Esc closes.
// It opens at once: copies not judged before are read one by one on a worker
// thread (a large file takes half a second each) and filled in as they are
// judged; until then they cannot be chosen.
class CopiesDialog : public QDialog
{
    Q_OBJECT

public:
    CopiesDialog(std::vector<store::CopyEntry> copies, QWidget* parent = nullptr);
    ~CopiesDialog() override;

    // Whether every copy listed has been read and judged (or could not be read).
    bool allJudged() const;

signals:
    // The chosen copy; the dialog has closed.
    void restoreRequested(const store::CopyEntry& copy);
    // The last copy not judged before has been judged.
    void allCopiesJudged();

private:
    void fill();
    void fillRow(int row);
    void judgeInBackground();
    void showJudged(std::size_t row, const store::CopyEntry& copy);
    const store::CopyEntry* chosen() const;
    void onRestoreClicked();

    std::vector<store::CopyEntry> m_copies;
    QTableWidget* m_list;
    QPushButton* m_restore;
    ui::TextColumns* m_textColumns = nullptr;
    std::size_t m_waiting = 0; // copies given to the worker and not back yet
    // Tells the worker that nobody waits for the copies it has not read yet.
    std::shared_ptr<std::atomic<bool>> m_closed = std::make_shared<std::atomic<bool>>(false);
};

} // namespace service
