// Pictures of the analytics window on a sample household file, and the first
// page of each report, for docs/.
// Usage: analytics_screenshots OUTPUT_FOLDER
#include "GuiHarness.h"
#include "SampleData.h"
#include "app/MainWindow.h"

#include "analytics/ReportPainter.h"
#include "analytics/ui/AnalyticsWindow.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QProcess>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

using namespace velmora::test;

namespace {

bool saved(bool ok, const QString& path)
{
    std::printf("%s %s\n", ok ? "saved" : "FAILED", qPrintable(path));
    return ok;
}

bool save(QWidget* widget, const QString& path)
{
    return saved(widget && widget->grab().save(path), path);
}

// The first page of a report as a picture, through poppler's pdftoppm.
bool savePage(const analytics::ReportDocument& report, const QString& path)
{
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("report.pdf"));
    if (!analytics::ReportPainter::writePdf(report, pdf))
        return saved(false, path);
    QString base = path;
    base.chop(4);
    const int code = QProcess::execute(QStringLiteral("pdftoppm"),
                                       {QStringLiteral("-png"), QStringLiteral("-r"), QStringLiteral("70"),
                                        QStringLiteral("-f"), QStringLiteral("1"), QStringLiteral("-l"),
                                        QStringLiteral("1"), QStringLiteral("-singlefile"), pdf, base});
    return saved(code == 0, path);
}

void choose(QWidget* window, const char* list, int index)
{
    window->findChild<QComboBox*>(list)->setCurrentIndex(index);
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: analytics_screenshots OUTPUT_FOLDER\n");
        return 2;
    }
    const QDir output(QString::fromLocal8Bit(argv[1]));
    velmora::SampleOptions sample;
    sample.years = 3;
    sample.opsPerMonth = 60;
    sample.lastDay = std::chrono::sys_days{std::chrono::year{2026} / 3 / 31};
    ProgramFolder folder;
    folder.write(velmora::makeSampleDatabase(sample));
    GuiHarness h(folder, QDate(2026, 3, 15));
    if (!h.start() || !QTest::qWaitFor([&] { return !h.frame().splashWindow(); }, 5000))
        return 1;
    h.click(h.frame().mainWindow(), "B1");
    analytics::AnalyticsWindow* window = h.frame().analyticsWindow();
    if (!window)
        return 1;
    bool ok = save(&h.frame(), output.filePath("analytics-window.png"));
    QList<analytics::ReportDocument> reports;
    window->setReportViewer([&reports](const analytics::ReportDocument& report) { reports.append(report); });
    choose(window, "Combo1", 10);
    choose(window, "Combo2", 1);
    h.click(window, "B2");
    h.click(window, "O2");
    choose(window, "R2", 0);
    h.click(window, "B3");
    ok = save(window, output.filePath("analytics-window-expenses.png")) && ok;
    if (reports.size() != 2)
        return 1;
    ok = savePage(reports[0], output.filePath("analytics-report-income.png")) && ok;
    ok = savePage(reports[1], output.filePath("analytics-report-expenses.png")) && ok;
    return ok ? 0 : 1;
}
