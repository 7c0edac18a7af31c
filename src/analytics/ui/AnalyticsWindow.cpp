#include "AnalyticsWindow.h"

#include "ReportPreview.h"
#include "analytics/AnalyticsTexts.h"
#include "analytics/ChoiceLists.h"
#include "analytics/DetailTableModel.h"
#include "analytics/YearTableModel.h"
#include "ui/CatalogueList.h"
#include "ui/CloseWindow.h"
#include "ui/Dialogs.h"
#include "ui/EnterKeys.h"
#include "ui/FittedFigures.h"
#include "ui/TextColumns.h"
#include "ui_AnalyticsWindow.h"

#include <QHeaderView>

namespace analytics {

namespace {

// Widths the detail list gives its long columns, in twips as the window's
// design keeps them (15 twips to a pixel).
constexpr int kCommentTwips = 3500;
constexpr int kPurseTwips = 1500;
constexpr int kNoteTwips = 3500;
constexpr int kNumberTwips = 1200;
constexpr int kLabelTwips = 2000;
constexpr int kTwipsPerPixel = 15;
constexpr int kCommentColumn = 2;
constexpr int kPurseColumn = 3;
constexpr int kNoteColumn = 5;
constexpr int kWidestPursePixels = 200;

void setUpGrid(QTableView* grid, QAbstractItemModel* model)
{
    grid->setModel(model);
    grid->verticalHeader()->hide();
    grid->verticalHeader()->setDefaultSectionSize(grid->fontMetrics().height() + 6);
    grid->horizontalHeader()->setHighlightSections(false);
    grid->horizontalHeader()->setStretchLastSection(false);
}

} // namespace

AnalyticsWindow::AnalyticsWindow(store::Store& store, ui::Dialogs& dialogs, ui::Clock today, QWidget* parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::AnalyticsWindow>()), m_store(store), m_dialogs(dialogs),
      m_today(std::move(today)), m_yearModel(new YearTableModel(this)),
      m_detailModel(new DetailTableModel(this))
{
    m_ui->setupUi(this);
    auto* figures = new ui::FittedFigures(this);
    for (QLineEdit* field : {m_ui->T3, m_ui->T4, m_ui->T5, m_ui->T6})
        figures->add(field);
    setUpGrid(m_ui->DataGrid1, m_yearModel);
    setUpGrid(m_ui->DataGrid2, m_detailModel);
    m_yearTexts = new ui::TextColumns(m_ui->DataGrid1);
    m_detailTexts = new ui::TextColumns(m_ui->DataGrid2);
    m_viewer = [this](const ReportDocument& report) { ReportPreview::show(report, this, m_dialogs); };
    connect(m_ui->B1, &QPushButton::clicked, this, &AnalyticsWindow::onRecalculateClicked);
    connect(m_ui->B2, &QPushButton::clicked, this, &AnalyticsWindow::onIncomeReportClicked);
    connect(m_ui->B3, &QPushButton::clicked, this, &AnalyticsWindow::onExpenseReportClicked);
    connect(m_ui->B4, &QPushButton::clicked, this, [this] { ui::closeWindow(this); });
    connect(m_ui->O1, &QRadioButton::toggled, this, &AnalyticsWindow::switchReportButtons);
    // Month, year and account all end in "Пересчитать".
    auto* enter = new ui::EnterKeys(this);
    enter->addFrame({m_ui->Combo1, m_ui->Combo2}, m_ui->B1);
    enter->addFrame({m_ui->R2}, m_ui->B1);
    switchReportButtons();
}

AnalyticsWindow::~AnalyticsWindow() = default;

void AnalyticsWindow::load()
{
    fillLists();
    recalculate();
    m_ui->Combo1->setFocus();
}

void AnalyticsWindow::fillLists()
{
    const auto lists = ChoiceLists::read(m_store);
    for (QComboBox* list : {m_ui->R2, m_ui->Combo1, m_ui->Combo2})
        list->clear();
    if (lists) {
        m_ui->R2->addItems(lists->accounts);
        m_ui->Combo1->addItems(lists->months);
        m_ui->Combo2->addItems(lists->years);
    }
    // Empty lists stand for today's month and year.
    for (QComboBox* list : {m_ui->R2, m_ui->Combo1, m_ui->Combo2})
        list->setCurrentIndex(-1);
}

void AnalyticsWindow::showAccounts(const QStringList& entries)
{
    ui::CatalogueList::refill(m_ui->R2, entries);
}

Period AnalyticsWindow::chosenPeriod() const
{
    return Period::choose(m_ui->Combo1->currentText(), m_ui->Combo2->currentText(), m_today());
}

std::optional<DetailRequest> AnalyticsWindow::detailRequest() const
{
    if (m_ui->O1->isChecked())
        return DetailRequest{DetailKind::Income, {}};
    if (m_ui->R2->currentText().isEmpty())
        return std::nullopt;
    return DetailRequest{DetailKind::Expenses, m_ui->R2->currentText()};
}

bool AnalyticsWindow::recalculate()
{
    const std::optional<DetailRequest> request = detailRequest();
    auto result = Recalculation::read(m_store, chosenPeriod(), request);
    if (!result)
        return false;
    m_yearModel->setTable(std::move(result->yearTable));
    sizeYearColumns();
    m_ui->T3->setText(result->totals.monthIncome.toDisplayString());
    m_ui->T4->setText(result->totals.yearIncome.toDisplayString());
    m_ui->T5->setText(result->totals.monthExpenses.toDisplayString());
    m_ui->T6->setText(result->totals.yearExpenses.toDisplayString());
    if (!result->details) {
        // The detail list keeps what it showed.
        m_dialogs.error(QString::fromUtf8(texts::chooseAccount));
        return false;
    }
    showDetails(std::move(*result->details));
    return true;
}

void AnalyticsWindow::showDetails(DetailTable details)
{
    m_ui->DataGrid2Caption->setText(details.caption());
    m_detailModel->setTable(std::move(details));
    sizeDetailColumns();
    if (m_detailModel->rowCount() > 0)
        m_ui->DataGrid2->setCurrentIndex(m_detailModel->index(0, 0));
}

void AnalyticsWindow::sizeYearColumns()
{
    QTableView* grid = m_ui->DataGrid1;
    grid->resizeColumnsToContents();
    const int padding = 2 * grid->fontMetrics().horizontalAdvance(QLatin1Char('M'));
    const int least = grid->fontMetrics().horizontalAdvance(QStringLiteral("00000,00")) + padding;
    for (int column = 0; column < m_yearModel->columnCount(); ++column) {
        const bool label =
            column == YearTableModel::kAccountColumn || column == YearTableModel::kAccountAgainColumn;
        const int width = label ? kLabelTwips / kTwipsPerPixel : least;
        grid->setColumnWidth(column, std::max(grid->columnWidth(column) + padding / 2, width));
    }
    m_yearTexts->keep({YearTableModel::kAccountColumn});
}

void AnalyticsWindow::sizeDetailColumns()
{
    QTableView* grid = m_ui->DataGrid2;
    const QFontMetrics metrics = grid->fontMetrics();
    const int padding = 2 * metrics.horizontalAdvance(QLatin1Char('M'));
    grid->setColumnWidth(0, metrics.horizontalAdvance(QStringLiteral("00.00.0000")) + padding);
    grid->setColumnWidth(1, widestAmount() + padding);
    const bool income = m_detailModel->table().kind == DetailKind::Income;
    const std::vector<int> twips = income ? std::vector{kCommentTwips, kNumberTwips}
                                          : std::vector{kCommentTwips, kPurseTwips, kNumberTwips, kNoteTwips};
    for (std::size_t i = 0; i < twips.size(); ++i)
        grid->setColumnWidth(static_cast<int>(i) + 2, twips[i] / kTwipsPerPixel);
    if (!income)
        grid->setColumnWidth(kPurseColumn, std::min(widestPurse() + padding, kWidestPursePixels));
    // Comments and notes take what the window has to spare.
    m_detailTexts->keep(income ? std::vector{kCommentColumn} : std::vector{kCommentColumn, kNoteColumn});
}

// Amounts keep room for a six-figure sum, and widen for any larger one.
int AnalyticsWindow::widestAmount() const
{
    const QFontMetrics metrics = m_ui->DataGrid2->fontMetrics();
    int widest = metrics.horizontalAdvance(QStringLiteral("-000000,00"));
    for (const DetailRow& row : m_detailModel->table().rows)
        if (row.amount)
            widest = std::max(widest, metrics.horizontalAdvance(row.amount->toDisplayString()));
    return widest;
}

// Purse names are short as a rule; their column widens to show them whole.
int AnalyticsWindow::widestPurse() const
{
    const QFontMetrics metrics = m_ui->DataGrid2->fontMetrics();
    int widest = kPurseTwips / kTwipsPerPixel;
    for (const DetailRow& row : m_detailModel->table().rows)
        widest = std::max(widest, metrics.horizontalAdvance(row.purse));
    return widest;
}

void AnalyticsWindow::onRecalculateClicked()
{
    recalculate();
    if (!m_ui->C1->isEnabled() || !m_ui->C1->isChecked())
        return;
    const Period period = chosenPeriod();
    emit chartsRequested(monthEntry(m_store, period).value_or(QString()), period.yearText());
}

void AnalyticsWindow::onIncomeReportClicked()
{
    if (recalculate())
        showReport();
}

void AnalyticsWindow::onExpenseReportClicked()
{
    if (m_ui->R2->currentText().isEmpty()) {
        m_dialogs.error(QString::fromUtf8(texts::chooseAccount));
        return;
    }
    if (recalculate())
        showReport();
}

void AnalyticsWindow::showReport()
{
    m_viewer(ReportDocument::of(m_detailModel->table(), chosenPeriod(), m_ui->R2->currentText()));
}

void AnalyticsWindow::switchReportButtons()
{
    m_ui->B2->setEnabled(m_ui->O1->isChecked());
    m_ui->B3->setEnabled(m_ui->O2->isChecked());
}

void AnalyticsWindow::setChartsAvailable(bool available)
{
    m_ui->C1->setEnabled(available);
}

void AnalyticsWindow::setReportViewer(ReportViewer viewer)
{
    m_viewer = std::move(viewer);
}

QSize AnalyticsWindow::sizeHint() const
{
    // Fits the frame beside the main window's position; the grids scroll.
    return minimumSizeHint().expandedTo(QSize(860, 640));
}

} // namespace analytics
