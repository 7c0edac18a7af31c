// velmora-screenshots: the pictures of docs/ drawn from a sample household
// file, on the offscreen platform: the main window (as it opens, with a purse
// open, after an expense), the service window, the analytics window with the
// first page of each report, and the charts window; with --scale, the frame
// on a 1366×768 screen at that scaling.
// Usage: velmora-screenshots [--scale PERCENT] OUTPUT_FOLDER
#include "PrintedDialogs.h"
#include "SampleData.h"
#include "analytics/ReportPainter.h"
#include "analytics/ui/AnalyticsWindow.h"
#include "app/Frame.h"
#include "app/MainWindow.h"
#include "charts/ui/ChartsWindow.h"
#include "jet/Writer.h"
#include "operations/Deletion.h"
#include "operations/OperationTableModel.h"
#include "operations/ui/CorrectionDialog.h"
#include "operations/ui/OperationsWindow.h"
#include "operations/ui/TrashDialog.h"
#include "service/ui/CopiesDialog.h"
#include "service/ui/ServiceWindow.h"
#include "store/Schema.h"
#include "store/Store.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QLineEdit>
#include <QMdiArea>
#include <QProcess>
#include <QScrollBar>
#include <QTemporaryDir>

#include <cstdio>

using velmora::screenshots::PrintedDialogs;

namespace {

const QDate kToday(2026, 10, 20);

bool save(QWidget* widget, const QDir& output, const QString& name)
{
    QApplication::processEvents();
    const QString path = output.filePath(name);
    const bool saved = widget && widget->grab().save(path);
    std::printf("%s %s\n", saved ? "saved" : "FAILED", qPrintable(path));
    return saved;
}

bool save(QWidget* widget, const QDir& output, const char* name)
{
    return save(widget, output, QString::fromLatin1(name));
}

void click(QWidget* window, const char* button)
{
    window->findChild<QAbstractButton*>(QString::fromUtf8(button))->click();
}

void choose(QWidget* window, const char* list, int index)
{
    window->findChild<QComboBox*>(list)->setCurrentIndex(index);
}

void type(QWidget* window, const char* field, const char* text)
{
    window->findChild<QLineEdit*>(field)->setText(QString::fromUtf8(text));
}

// Three years of a household up to the end of October 2026, as velmora.mdb in `folder`.
bool writeSampleFile(const QString& folder)
{
    velmora::SampleOptions options;
    options.years = 3;
    options.lastDay = std::chrono::sys_days(std::chrono::year(2026) / 10 / 31);
    const std::vector<std::uint8_t> bytes = jet::encodeDatabase(velmora::makeSampleDatabase(options));
    QFile file(QDir(folder).filePath(store::kDataFileName));
    return file.open(QIODevice::WriteOnly) && file.write(reinterpret_cast<const char*>(bytes.data()),
                                                         qint64(bytes.size())) == qint64(bytes.size());
}

// The first page of a report as a picture, through poppler's pdftoppm.
bool savePage(const analytics::ReportDocument& report, const QDir& output, const char* name)
{
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("report.pdf"));
    QString base = output.filePath(QString::fromLatin1(name));
    base.chop(4);
    const bool saved = analytics::ReportPainter::writePdf(report, pdf) &&
                       QProcess::execute(QStringLiteral("pdftoppm"), {"-png", "-r", "70", "-f", "1", "-l",
                                                                      "1", "-singlefile", pdf, base}) == 0;
    std::printf("%s %s\n", saved ? "saved" : "FAILED", name);
    return saved;
}

bool mainWindowPictures(app::Frame& frame, const QDir& output)
{
    QWidget* main = frame.mainWindow();
    bool ok = save(&frame, output, "main-window.png");
    choose(main, "Combo1", 0);
    click(main, "VC1");
    ok = save(&frame, output, "main-window-purse-open.png") && ok;
    choose(main, "R2", 0);
    type(main, "R1", "350,5");
    type(main, "R3", "Хлеб и молоко");
    click(main, "B3");
    return save(&frame, output, "main-window-after-expense.png") && ok;
}

bool serviceWindowPictures(app::Frame& frame, const QDir& output)
{
    frame.showServiceWindow();
    QWidget* window = frame.serviceWindow();
    click(window, "С12");
    click(window, "Check1");
    for (const char* list : {"Combo1", "Combo2", "Combo1B"})
        choose(window, list, 0);
    bool ok = save(window->parentWidget(), output, "service-window.png");
    ok = save(&frame, output, "service-window-in-frame.png") && ok;
    click(window, "CopiesButton");
    auto* copies = window->findChild<service::CopiesDialog*>();
    ok = copies && save(copies, output, "copies-dialog-opened.png") && ok;
    if (copies) {
        // Then with every copy read on the dialog's worker thread.
        QEventLoop judging;
        QObject::connect(copies, &service::CopiesDialog::allCopiesJudged, &judging, &QEventLoop::quit);
        if (!copies->allJudged())
            judging.exec();
        ok = save(copies, output, "copies-dialog.png") && ok;
        copies->close();
    }
    window->parentWidget()->close();
    return ok;
}

bool operationsWindowPictures(app::Frame& frame, const QDir& output)
{
    frame.showOperationsWindow();
    QWidget* window = frame.operationsWindow();
    bool ok = save(window->parentWidget(), output, "operations-window.png");
    type(window, "SearchText", "хлеб");
    ok = save(window->parentWidget(), output, "operations-window-search.png") && ok;
    const operations::OperationTableModel& list = frame.operationsWindow()->model();
    operations::CorrectionDialog correction(list.operation(0), list.journal(), window);
    correction.show();
    ok = save(&correction, output, "operations-correction.png") && ok;
    correction.close();
    type(window, "SearchText", "");
    // Two deleted operations in the trash.
    operations::deleteOperations(frame.store(), {list.operation(1), list.operation(2)});
    auto* operationsWindow = frame.operationsWindow();
    operationsWindow->reload();
    operationsWindow->setTrashViewer([&ok, &output](operations::TrashDialog& trash) {
        trash.show();
        ok = save(&trash, output, "operations-trash.png") && ok;
    });
    click(window, "TrashButton");
    operationsWindow->setReportViewer([&ok, &output](const analytics::ReportDocument& report) {
        ok = savePage(report, output, "operations-report.png") && ok;
    });
    choose(window, "KindList", 3);
    click(window, "PrintButton");
    window->parentWidget()->close();
    return ok;
}

bool analyticsWindowPictures(app::Frame& frame, const QDir& output)
{
    frame.showAnalyticsWindow();
    analytics::AnalyticsWindow* window = frame.analyticsWindow();
    bool ok = save(&frame, output, "analytics-window.png");
    QList<analytics::ReportDocument> reports;
    window->setReportViewer([&reports](const analytics::ReportDocument& report) { reports.append(report); });
    click(window, "B2");
    click(window, "O2");
    choose(window, "R2", 0);
    click(window, "B3");
    ok = save(window, output, "analytics-window-expenses.png") && ok;
    ok = reports.size() == 2 && savePage(reports[0], output, "analytics-report-income.png") && ok;
    ok = reports.size() == 2 && savePage(reports[1], output, "analytics-report-expenses.png") && ok;
    click(window, "O1");
    window->findChild<QCheckBox*>("C1")->setChecked(true);
    click(window, "B1");
    return save(&frame, output, "charts-window-in-frame.png") && ok;
}

// The charts window alone: October, with a threshold, and a month without expenses.
bool chartsWindowPictures(const QString& folder, const QDir& output)
{
    PrintedDialogs dialogs;
    store::Store store(folder);
    charts::ChartsWindow window(store, dialogs, [] { return kToday; });
    window.resize(900, 680);
    window.show();
    window.drawPeriod(QStringLiteral("10 - Октябрь"), QStringLiteral("2026"));
    bool ok = save(&window, output, "charts-window.png");
    type(&window, "T3", "10000");
    click(&window, "Command1");
    ok = save(&window, output, "charts-window-threshold.png") && ok;
    type(&window, "T1", "11 - Ноябрь");
    type(&window, "T3", "");
    click(&window, "Command1");
    return save(&window, output, "charts-window-no-expenses.png") && ok;
}

// Starts the frame with the main window and waits for the splash to go.
bool start(app::Frame& frame)
{
    frame.show();
    if (!frame.start() || !frame.mainWindow())
        return false;
    QElapsedTimer waited;
    waited.start();
    while (frame.splashWindow() && waited.elapsed() < 5000)
        QApplication::processEvents(QEventLoop::AllEvents, 50);
    return true;
}

app::FrameOptions pictureOptions()
{
    app::FrameOptions options;
    options.today = [] { return kToday; };
    options.splashIntervalMs = 1;
    return options;
}

// The frame with the main window, once the splash has gone.
bool framePictures(const QString& folder, const QDir& output)
{
    PrintedDialogs dialogs;
    app::Frame frame(folder, dialogs, pictureOptions());
    frame.resize(1000, 760);
    if (!start(frame))
        return false;
    bool ok = mainWindowPictures(frame, output);
    ok = serviceWindowPictures(frame, output) && ok;
    ok = operationsWindowPictures(frame, output) && ok;
    return analyticsWindowPictures(frame, output) && ok;
}

// The only screen: 1366×768 at `percent` scaling. Set before the application starts.
bool useSmallScreen(int percent, const QTemporaryDir& folder)
{
    QFile config(folder.filePath(QStringLiteral("screen.json")));
    const QByteArray screen =
        R"({"screens": [{"name": "small", "x": 0, "y": 0, "width": 1366, "height": 768, "dpr": 1}]})";
    if (!config.open(QIODevice::WriteOnly) || config.write(screen) != screen.size())
        return false;
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(config.fileName()));
    qputenv("QT_SCALE_FACTOR", QByteArray::number(percent / 100.0));
    return true;
}

// The frame as it opens on the small screen, and the analytics window
// maximised in it, scrolled to its bottom-right corner.
bool scaledPictures(const QString& folder, const QDir& output, int percent)
{
    PrintedDialogs dialogs;
    app::Frame frame(folder, dialogs, pictureOptions());
    if (!start(frame))
        return false;
    const QString name = QStringLiteral("screen-%1").arg(percent);
    bool ok = save(&frame, output, name + QStringLiteral(".png"));
    frame.showAnalyticsWindow();
    frame.analyticsWindow()->parentWidget()->showMaximized();
    QApplication::processEvents();
    for (QScrollBar* bar : {frame.mdiArea()->horizontalScrollBar(), frame.mdiArea()->verticalScrollBar()})
        bar->setValue(bar->maximum());
    return save(&frame, output, name + QStringLiteral("-analytics.png")) && ok;
}

} // namespace

int main(int argc, char* argv[])
{
    const QStringList arguments = [&] {
        QStringList list;
        for (int i = 1; i < argc; ++i)
            list.append(QString::fromLocal8Bit(argv[i]));
        return list;
    }();
    const bool scaled = arguments.size() == 3 && arguments[0] == QStringLiteral("--scale");
    const int percent = scaled ? arguments[1].toInt() : 100;
    if ((!scaled && arguments.size() != 1) || percent < 100 || percent > 300) {
        std::fprintf(stderr, "usage: velmora-screenshots [--scale PERCENT] OUTPUT_FOLDER\n");
        return 2;
    }
    QTemporaryDir folder;
    if (!folder.isValid() || (scaled && !useSmallScreen(percent, folder)))
        return 1;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const QDir output(arguments.last());
    if (!writeSampleFile(folder.path()))
        return 1;
    if (scaled)
        return scaledPictures(folder.path(), output, percent) ? 0 : 1;
    bool ok = framePictures(folder.path(), output);
    ok = chartsWindowPictures(folder.path(), output) && ok;
    return ok ? 0 : 1;
}
