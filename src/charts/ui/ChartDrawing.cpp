#include "ChartDrawing.h"

#include "ChartsTexts.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QCursor>
#include <QGraphicsLayout>
#include <QLabel>
#include <QLegend>
#include <QLegendMarker>
#include <QLocale>
#include <QToolTip>
#include <QValueAxis>

#include <algorithm>
#include <array>
#include <iterator>

namespace charts {

namespace {

// Colours that stay apart from one another on a light background and for the
// commoner kinds of colour blindness, in the order accounts take them.
constexpr std::array<QRgb, 16> kPalette = {
    0x2f6fb0, 0xe07b24, 0x3a9a4a, 0xc8373c, 0x7d5bb5, 0x8c5a44, 0xd868a9, 0x6b6b6b,
    0xa8a025, 0x1fa3b3, 0x9ec4e8, 0xf2b36b, 0x8fd18a, 0xf08c8e, 0xc2aee0, 0x3d3d8f,
};

// Up to this many bars their labels lie level; more bars get upright labels.
constexpr std::size_t kUprightLabelsUpTo = 6;

double roubles(store::WideAmount amount)
{
    return amount.toRoubles();
}

QString tooltipOf(const ChartBar& bar)
{
    const char* format = bar.excluded ? texts::excludedBarTooltip : texts::barTooltip;
    return QString::fromUtf8(format).arg(bar.name, bar.sum.toBalanceString());
}

QBarSet* barSetOf(const ChartBar& bar, QChartView* view)
{
    auto* set = new QBarSet(bar.name);
    set->append(roubles(bar.value()));
    set->setColor(ChartDrawing::colour(bar.colourSlot));
    set->setBorderColor(ChartDrawing::colour(bar.colourSlot).darker(130));
    set->setLabelColor(QColor(0x20, 0x20, 0x20));
    const QString tooltip = tooltipOf(bar);
    QObject::connect(set, &QBarSet::hovered, view, [view, tooltip](bool entered, int) {
        if (entered)
            QToolTip::showText(QCursor::pos(), tooltip, view);
        else
            QToolTip::hideText();
    });
    return set;
}

// The money axis starts at zero (or below, for negative sums) and ends at a
// round figure above the largest bar, with room for the value labels.
QValueAxis* valueAxisFor(const ChartData& data)
{
    double lowest = 0;
    double highest = 0;
    for (const ChartBar& bar : data.bars) {
        lowest = std::min(lowest, roubles(bar.value()));
        highest = std::max(highest, roubles(bar.value()));
    }
    // Only zero bars (everything left out): a scale of round hundreds.
    if (highest <= lowest)
        highest = lowest + 1000;
    // Upright labels above the bars need about a third of the plot's height.
    const double headroom = data.bars.size() > kUprightLabelsUpTo ? 0.35 : 0.1;
    auto* axis = new QValueAxis;
    axis->setRange(lowest, highest + (highest - lowest) * headroom);
    axis->applyNiceNumbers();
    axis->setLabelFormat(QString::fromUtf8(texts::valueAxisFormat));
    axis->setTitleText(QString::fromUtf8(texts::valueAxisTitle));
    axis->setMinorTickCount(1);
    return axis;
}

QBarSeries* seriesOf(const ChartData& data, QChartView* view)
{
    auto* series = new QBarSeries;
    for (const ChartBar& bar : data.bars)
        series->append(barSetOf(bar, view));
    series->setBarWidth(0.92);
    series->setLabelsVisible(true);
    series->setLabelsPosition(QAbstractBarSeries::LabelsOutsideEnd);
    series->setLabelsFormat(QStringLiteral("@value"));
    series->setLabelsPrecision(15);
    // Many narrow bars: level labels would run into each other.
    if (data.bars.size() > kUprightLabelsUpTo)
        series->setLabelsAngle(-90);
    return series;
}

QChart* chartOf(const ChartData& data, QChartView* view)
{
    auto* chart = new QChart;
    chart->setAnimationOptions(QChart::NoAnimation);
    chart->setLocale(QLocale(QLocale::Russian, QLocale::Russia));
    chart->setLocalizeNumbers(true);
    chart->setBackgroundRoundness(0);
    chart->setMargins(QMargins(2, 2, 2, 2));
    chart->layout()->setContentsMargins(0, 0, 0, 0);
    QBarSeries* series = seriesOf(data, view);
    chart->addSeries(series);

    auto* periods = new QBarCategoryAxis;
    periods->append(data.category);
    chart->addAxis(periods, Qt::AlignBottom);
    series->attachAxis(periods);
    QValueAxis* money = valueAxisFor(data);
    chart->addAxis(money, Qt::AlignLeft);
    series->attachAxis(money);

    // An account left out keeps its name in the legend, in grey.
    const QList<QLegendMarker*> markers = chart->legend()->markers(series);
    for (std::size_t i = 0; i < data.bars.size() && i < static_cast<std::size_t>(markers.size()); ++i)
        if (data.bars[i].excluded)
            markers[static_cast<qsizetype>(i)]->setLabelBrush(QColor(0x90, 0x90, 0x90));

    // Beside the plot, never over it; names cut short show whole as tooltips.
    chart->legend()->setAlignment(Qt::AlignRight);
    chart->legend()->setShowToolTips(true);
    QFont legendFont = chart->legend()->font();
    legendFont.setPointSizeF(legendFont.pointSizeF() * 0.9);
    chart->legend()->setFont(legendFont);
    return chart;
}

} // namespace

void ChartDrawing::draw(QChartView* view, QLabel* noExpenses, const ChartData& data)
{
    view->setVisible(data.hasExpenses());
    noExpenses->setVisible(!data.hasExpenses());
    if (!data.hasExpenses())
        return;
    QChart* previous = view->chart();
    view->setChart(chartOf(data, view));
    delete previous;
}

QColor ChartDrawing::colour(int slot)
{
    if (slot >= 0 && slot < static_cast<int>(std::size(kPalette)))
        return QColor(kPalette[static_cast<std::size_t>(slot)]);
    // The golden angle keeps each further hue far from the ones just before it.
    const int hue = (std::max(slot, 0) * 137 + 20) % 360;
    return QColor::fromHsv(hue, 150 + (slot % 3) * 35, 200 - (slot % 2) * 40);
}

} // namespace charts
