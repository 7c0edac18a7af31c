// Pictures of the service window for the documentation: the window alone and
// in the frame above the main window, on a data file of a few made-up
// accounts and operations, with a day's operations listed.
// Usage: service_screenshots OUTPUT_FOLDER
#include "DataBuilder.h"
#include "ProgramFolder.h"
#include "ScriptedDialogs.h"
#include "app/Frame.h"
#include "service/ui/ServiceWindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QLocale>
#include <QMdiSubWindow>
#include <QTest>

#include <cstdio>

namespace {

bool save(QWidget* widget, const QString& path)
{
    const bool saved = widget && widget->grab().save(path);
    std::printf("%s %s\n", saved ? "saved" : "FAILED", qPrintable(path));
    return saved;
}

velmora::test::DataBuilder sampleData()
{
    velmora::test::DataBuilder data;
    data.balance("48250,5").account(1, "Питание").account(2, "Транспорт").account(3, "Связь");
    data.purse(1, "Наличные", "3200").purse(2, "Карта", "1250,75");
    const QDate day(2026, 3, 14);
    data.bank(day, "52000", "Зарплата").bank(day, "-1500", "Снятие");
    data.bill(day, 1, "845,3").bill(day, 2, "120", 2).bill(day.addDays(-1), 3, "450");
    data.database().table(u"Cur")->rows[0][1] = jet::Currency{924500};
    data.database().table(u"Cur")->rows[1][1] = jet::Currency{1001200};
    return data;
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
    if (argc != 2) {
        std::fprintf(stderr, "usage: service_screenshots OUTPUT_FOLDER\n");
        return 2;
    }
    const QDir output(QString::fromLocal8Bit(argv[1]));
    velmora::test::ProgramFolder folder;
    folder.write(sampleData().database());
    velmora::test::ScriptedDialogs dialogs;
    app::FrameOptions options;
    options.today = [] { return QDate(2026, 3, 14); };
    options.splashIntervalMs = 1;
    app::Frame frame(folder.path(), dialogs, options);
    frame.resize(1000, 760);
    frame.show();
    if (!frame.start() || !QTest::qWaitFor([&] { return !frame.splashWindow(); }, 5000))
        return 1;
    frame.showServiceWindow();
    service::ServiceWindow* window = frame.serviceWindow();
    if (!window)
        return 1;
    window->findChild<QAbstractButton*>(QString::fromUtf8("С12"))->click();
    window->findChild<QAbstractButton*>("Check1")->click();
    for (const char* list : {"Combo1", "Combo2", "Combo1B"})
        window->findChild<QComboBox*>(list)->setCurrentIndex(0);
    QTest::qWait(50);
    bool ok = save(window->parentWidget(), output.filePath("service-window.png"));
    ok &= save(&frame, output.filePath("service-window-in-frame.png"));
    return ok ? 0 : 1;
}
