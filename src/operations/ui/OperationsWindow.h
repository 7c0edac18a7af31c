#pragma once

#include "analytics/ReportDocument.h"
#include "operations/Selection.h"
#include "store/Outcome.h"

#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QPushButton;
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
class TrashDialog;

// "Операции": every bank operation and expense in one list, newest first,
// narrowed by date, kind, account, purse, amount and text as the fields are
// changed, with the count and sum of what is shown; the list can be sorted by
// any column, saved as CSV and printed. Deleted and corrected operations go
// to the trash, from where they can be put back; "Отменить" (Ctrl+Z) undoes
// the deletions and corrections made in the window, the last first. The frame has it read the data file again
// each time it becomes the active window, so changes made elsewhere are shown.
class OperationsWindow : public QWidget
{
    Q_OBJECT

public:
    // Asks where to save the export; an empty path when the user cancelled.
    using SavePathQuestion = std::function<QString(const QString& suggested)>;
    // Lets the user edit the correction's fields; false when cancelled.
    using CorrectionEditor = std::function<bool(CorrectionDialog& dialog)>;
    // Shows the trash until the user closes it.
    using TrashViewer = std::function<void(TrashDialog& dialog)>;
    // Shows a report in the print preview.
    using ReportViewer = std::function<void(const analytics::ReportDocument& report)>;

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
    void setTrashViewer(TrashViewer viewer) { m_viewTrash = std::move(viewer); }
    void setReportViewer(ReportViewer viewer) { m_viewReport = std::move(viewer); }

    // Saves the rows shown as CSV, asking where.
    void exportCsv();
    // Deletes the chosen rows after one confirmation.
    void deleteChosen();
    // Corrects the current row through the correction dialog, asked again
    // after a wrong or refused field until it is done or cancelled.
    void correctCurrent();
    // Undoes the last deletion or correction made here that is not undone yet.
    void undoLast();
    void showTrash();
    // The rows shown, in the print preview.
    void printList();
    // Which operations the fields let through, as the printed list says it.
    QString filterDescription() const;

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
    // Shows the outcome of a deletion, correction or return and reads the
    // list again; `action` is what the undo takes back.
    void changed(const store::Outcome& outcome, std::optional<std::int32_t> action = std::nullopt);

    store::Store& m_store;
    ui::Dialogs& m_dialogs;
    OperationTableModel* m_model;
    SavePathQuestion m_askSavePath;
    CorrectionEditor m_editCorrection;
    TrashViewer m_viewTrash;
    ReportViewer m_viewReport;
    struct Undoable
    {
        std::int32_t action = 0;   // in the trash
        std::uint64_t reading = 0; // the store's readings() when it was done
    };
    std::vector<Undoable> m_undo; // the last at the back
    QPushButton* m_undoButton = nullptr;
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
