#pragma once

#include "ui/Clock.h"

#include <QWidget>

#include <memory>

namespace Ui {
class ChartsWindow;
}
namespace store {
class Store;
}
namespace ui {
class Dialogs;
}

namespace charts {

// Form4 "Velmora (диаграммы)": expenses by account for a month and for its
// year, as two bar charts. It only reads the data file. It draws when it is
// shown for a period and on "Исключить"; typing in the fields redraws nothing.
class ChartsWindow : public QWidget
{
    Q_OBJECT

public:
    ChartsWindow(store::Store& store, ui::Dialogs& dialogs, ui::Clock today, QWidget* parent = nullptr);
    ~ChartsWindow() override;

    // The first display: puts the month entry ("3 - Март" or "3") and the
    // year into the fields, then draws, so the charts show that period at once.
    void drawPeriod(const QString& monthText, const QString& yearText);
    // A later hand-over: the fields take the period, the charts keep what
    // they show until the next "Исключить". An empty month entry (no month of
    // that number in the data file) leaves the month field as it is.
    void setPeriod(const QString& monthText, const QString& yearText);

    // Room for the twelve or so accounts of a household beside each chart.
    QSize sizeHint() const override { return {870, 676}; }

public slots:
    // Draws both charts from the fields; "Исключить" and the first display.
    void draw();

signals:
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void closeWindow();

    std::unique_ptr<Ui::ChartsWindow> m_ui;
    store::Store& m_store;
    ui::Dialogs& m_dialogs;
    ui::Clock m_today;
};

} // namespace charts
