// Pictures of the charts window for the documentation, drawn from a sample
// household file with a dozen expense accounts: the window alone, with a
// threshold, with a month without expenses, and in the frame as "Диаграмма"
// in the analytics window opens it.
// Usage: charts_screenshots OUTPUT_FOLDER
#include "ProgramFolder.h"
#include "SampleData.h"
#include "app/Frame.h"
#include "app/MainWindow.h"
#include "charts/ui/ChartsWindow.h"
#include "store/Store.h"
#include "ui/Dialogs.h"

#include "analytics/ui/AnalyticsWindow.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <cstdio>

namespace {

// Boxes are printed, not shown: the pictures are made without a screen.
class PrintedDialogs : public ui::Dialogs
{
public:
    ui::DialogAnswer showMessage(const QString& text, const QString& title, ui::DialogIcon,
                                 ui::DialogButtons) override
    {
        std::printf("box: %s: %s\n", qPrintable(title), qPrintable(text));
        return ui::DialogAnswer::Ok;
    }
    std::optional<QString> askText(const QString&, const QString&, const QString&) override
    {
        return std::nullopt;
    }
};

bool save(QWidget* window, const QDir& output, const char* name)
{
    const QString path = output.filePath(QString::fromLatin1(name));
    const bool saved = window->grab().save(path);
    std::printf("%s %s\n", saved ? "saved" : "FAILED", qPrintable(path));
    return saved;
}

// Аналитика, then "Пересчитать" with "Диаграмма" ticked for October 2026.
bool saveInFrame(const QString& folder, const QDir& output)
{
    PrintedDialogs dialogs;
    app::FrameOptions options;
    options.today = [] { return QDate(2026, 10, 20); };
    options.splashIntervalMs = 10;
    app::Frame frame(folder, dialogs, options);
    frame.show();
    if (!frame.start() || !QTest::qWaitFor([&] { return !frame.splashWindow(); }, 5000))
        return false;
    frame.mainWindow()->findChild<QPushButton*>("B1")->click();
    analytics::AnalyticsWindow* analytics = frame.analyticsWindow();
    analytics->findChild<QCheckBox*>("C1")->setChecked(true);
    analytics->findChild<QPushButton*>("B1")->click();
    QTest::qWait(50);
    return save(&frame, output, "charts-window-in-frame.png");
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: charts_screenshots OUTPUT_FOLDER\n");
        return 2;
    }
    const QDir output(QString::fromLocal8Bit(argv[1]));
    velmora::SampleOptions options;
    options.years = 2;
    options.lastDay = std::chrono::sys_days(std::chrono::year(2026) / 10 / 31);
    velmora::test::ProgramFolder folder;
    folder.write(velmora::makeSampleDatabase(options));

    PrintedDialogs dialogs;
    store::Store store(folder.path());
    charts::ChartsWindow window(store, dialogs, [] { return QDate(2026, 10, 20); });
    window.resize(900, 680);
    window.show();
    window.drawPeriod(QStringLiteral("10 - Октябрь"), QStringLiteral("2026"));
    bool ok = save(&window, output, "charts-window.png");

    window.findChild<QLineEdit*>("T3")->setText(QStringLiteral("10000"));
    window.findChild<QPushButton*>("Command1")->click();
    ok &= save(&window, output, "charts-window-threshold.png");

    window.findChild<QLineEdit*>("T1")->setText(QStringLiteral("11 - Ноябрь"));
    window.findChild<QLineEdit*>("T3")->clear();
    window.findChild<QPushButton*>("Command1")->click();
    ok &= save(&window, output, "charts-window-no-expenses.png");
    ok &= saveInFrame(folder.path(), output);
    return ok ? 0 : 1;
}
