#pragma once

#include "operations/Selection.h"

#include <QWidget>

#include <functional>

class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QTableView;

namespace store {
class Store;
}
namespace ui {
class Dialogs;
}

namespace operations {

class CorrectionDialog;
class OperationTableModel;

// "Операции": every bank operation and expense in one list, newest first,
// narrowed by date, kind, account, purse, amount and text as the fields are
// changed, with the count and sum of what is shown; the list can be sorted by
// any column and saved as CSV. The frame has it read the data file again each
// time it becomes the active window, so changes made elsewhere are shown.
class OperationsWindow : public QWidget
{
    Q_OBJECT

public:
    // Asks where to save the export; an empty path when the user cancelled.
    using SavePathQuestion = std::function<QString(const QString& suggested)>;
    // Lets the user edit the correction's fields; false when cancelled.
    using CorrectionEditor = std::function<bool(CorrectionDialog& dialog)>;

    OperationsWindow(store::Store& store, ui::Dialogs& dialogs, QWidget* parent = nullptr);
    ~OperationsWindow() override;

    // Reads every operation and the catalogues anew when the data file may
    // have changed since the last reading; the fields stay.
    void reload();
    // What the fields ask for; a bound that cannot be read is left out.
    Filter filter() const;
    const OperationTableModel& model() const { return *m_model; }
    void setSavePathQuestion(SavePathQuestion question) { m_askSavePath = std::move(question); }
    void setCorrectionEditor(CorrectionEditor editor) { m_editCorrection = std::move(editor); }

    // Saves the rows shown as CSV, asking where.
    void exportCsv();
    // Deletes the chosen rows after one confirmation.
    void deleteChosen();
    // Corrects the current row through the correction dialog, asked again
    // after a wrong or refused field until it is done or cancelled.
    void correctCurrent();

    QSize sizeHint() const override;

signals:
    // Operations were deleted or corrected: the balances shown elsewhere are out of date.
    void moneyChanged();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildFields();
    void applyFilter();
    void showSummary();
    void fillCatalogue(QComboBox* list, const QHash<std::int32_t, QString>& names);

    store::Store& m_store;
    ui::Dialogs& m_dialogs;
    OperationTableModel* m_model;
    SavePathQuestion m_askSavePath;
    CorrectionEditor m_editCorrection;
    QDateEdit* m_from = nullptr;
    QDateEdit* m_to = nullptr;
    QComboBox* m_kind = nullptr;
    QComboBox* m_account = nullptr;
    QComboBox* m_purse = nullptr;
    QLineEdit* m_smallest = nullptr;
    QLineEdit* m_largest = nullptr;
    QLineEdit* m_text = nullptr;
    QTableView* m_list = nullptr;
    QLabel* m_summary = nullptr;
    bool m_read = false; // the list holds what was read at its journal's generation
};

} // namespace operations
