#include "ChartsWindow.h"

#include "ChartDrawing.h"
#include "ChartsTexts.h"
#include "charts/ExpenseCharts.h"
#include "ui/Dialogs.h"
#include "ui/EnterKeys.h"
#include "ui_ChartsWindow.h"

#include <QCloseEvent>
#include <QMdiSubWindow>

namespace charts {

ChartsWindow::ChartsWindow(store::Store& store, ui::Dialogs& dialogs, ui::Clock today, QWidget* parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::ChartsWindow>()), m_store(store), m_dialogs(dialogs),
      m_today(std::move(today))
{
    m_ui->setupUi(this);
    m_ui->Label4->hide();
    m_ui->Label3->hide();
    connect(m_ui->Command1, &QPushButton::clicked, this, &ChartsWindow::draw);
    connect(m_ui->B1, &QPushButton::clicked, this, &ChartsWindow::closeWindow);
    // The period's two fields and the threshold all end in a redrawing.
    auto* enter = new ui::EnterKeys(this);
    enter->addFrame({m_ui->T1, m_ui->T2}, m_ui->Command1);
    enter->addFrame({m_ui->T3}, m_ui->Command1);
}

ChartsWindow::~ChartsWindow() = default;

void ChartsWindow::drawPeriod(const QString& monthText, const QString& yearText)
{
    setPeriod(monthText, yearText);
    draw();
}

void ChartsWindow::setPeriod(const QString& monthText, const QString& yearText)
{
    if (!monthText.isEmpty())
        m_ui->T1->setText(monthText);
    m_ui->T2->setText(yearText);
}

void ChartsWindow::draw()
{
    const analytics::Period period = analytics::Period::choose(m_ui->T1->text(), m_ui->T2->text(), m_today());
    const Threshold threshold = Threshold::fromField(m_ui->T3->text());
    // A threshold that is no number is reported and then ignored.
    if (threshold.wasRejected())
        m_dialogs.error(QString::fromUtf8(texts::mustBeNumber));
    const auto charts = ExpenseCharts::read(m_store, period, threshold);
    if (!charts)
        return;
    ChartDrawing::draw(m_ui->MSChart1, m_ui->Label4, charts->month);
    ChartDrawing::draw(m_ui->MSChart2, m_ui->Label3, charts->year);
}

void ChartsWindow::closeWindow()
{
    // Inside the frame the window closes with the sub-window that holds it.
    if (auto* holder = qobject_cast<QMdiSubWindow*>(parentWidget()))
        holder->close();
    else
        close();
}

void ChartsWindow::closeEvent(QCloseEvent* event)
{
    emit closed();
    event->accept();
}

} // namespace charts
