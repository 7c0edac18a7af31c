#pragma once

#include "analytics/DetailTable.h"
#include "analytics/Period.h"
#include "analytics/Recalculation.h"
#include "analytics/ReportDocument.h"
#include "ui/Clock.h"

#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

namespace Ui {
class AnalyticsWindow;
}
namespace store {
class Store;
}
namespace ui {
class Dialogs;
class TextColumns;
} // namespace ui

namespace analytics {

class DetailTableModel;
class YearTableModel;

// Form3 "Velmora (аналитика)": a year's expenses by account and month, the
// income and expenses of the chosen month and year, the month's detail list
// and the two monthly reports. It only reads the data file.
class AnalyticsWindow : public QWidget
{
    Q_OBJECT

public:
    // Shows a report; by default in the print preview, from which it can be
    // printed or saved as PDF.
    using ReportViewer = std::function<void(const ReportDocument&)>;

    AnalyticsWindow(store::Store& store, ui::Dialogs& dialogs, ui::Clock today, QWidget* parent = nullptr);
    ~AnalyticsWindow() override;

    // The load step: fills the month, year and account lists, then rebuilds
    // everything for today's month and year.
    void load();
    // Rebuilds the yearly table, the month totals and the detail list for the
    // chosen month and year. False when the detail list was not rebuilt (no
    // account chosen for expenses, or the data file could not be read).
    bool recalculate();
    // The month and year the lists hold, today's where a list is empty.
    Period chosenPeriod() const;
    // Puts the catalogue's `entries` into the account list: the chosen
    // account stays chosen while it exists. Nothing is recalculated.
    void showAccounts(const QStringList& entries);

    // "Диаграмма" can be ticked only while there is a charts window to hand
    // the month and year to.
    void setChartsAvailable(bool available);
    void setReportViewer(ReportViewer viewer);

    QSize sizeHint() const override;

signals:
    // After "Пересчитать" with "Диаграмма" ticked: the month's list entry
    // ("3 - Март"; empty when the data file has no name for that month, and the
    // charts then keep their month) and the year.
    void chartsRequested(const QString& monthEntry, const QString& year);

private:
    void onRecalculateClicked();
    void onIncomeReportClicked();
    void onExpenseReportClicked();
    void switchReportButtons();
    void fillLists();
    std::optional<DetailRequest> detailRequest() const;
    void showDetails(DetailTable details);
    void sizeYearColumns();
    void sizeDetailColumns();
    int widestAmount() const;
    int widestPurse() const;
    void showReport();

    std::unique_ptr<Ui::AnalyticsWindow> m_ui;
    store::Store& m_store;
    ui::Dialogs& m_dialogs;
    ui::Clock m_today;
    YearTableModel* m_yearModel;
    DetailTableModel* m_detailModel;
    ui::TextColumns* m_yearTexts = nullptr;
    ui::TextColumns* m_detailTexts = nullptr;
    ReportViewer m_viewer;
};

} // namespace analytics
