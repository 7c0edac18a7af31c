// Writes the two monthly reports of a sample household, and a long expense
// report, as PDF files into the folder given, for docs/ and for looking at.
#include "Household2005.h"
#include "ProgramFolder.h"

#include "analytics/Recalculation.h"
#include "analytics/ReportDocument.h"
#include "analytics/ReportPainter.h"

#include <QDir>
#include <QGuiApplication>

#include <cstdio>

using namespace velmora::test;

namespace {

bool write(const analytics::ReportDocument& report, const QString& path)
{
    const bool written = analytics::ReportPainter::writePdf(report, path);
    std::printf("%s %s\n", written ? "wrote" : "could not write", qPrintable(path));
    return written;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const QDir out(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QDir::currentPath());
    ProgramFolder folder;
    folder.write(household2005().database());
    store::Store store(folder.path());
    const QDate today(2026, 3, 15);
    const auto march = analytics::Period::choose(QStringLiteral("3"), QStringLiteral("2005"), today);
    const auto november = analytics::Period::choose(QStringLiteral("11"), QStringLiteral("2005"), today);
    const QString gifts = QStringLiteral("1500 - Подарки");
    const auto income = analytics::Recalculation::read(store, march, analytics::DetailRequest{});
    const auto expenses = analytics::Recalculation::read(
        store, november, analytics::DetailRequest{analytics::DetailKind::Expenses, gifts});
    if (!income || !expenses)
        return 1;
    bool ok = write(analytics::ReportDocument::of(*income->details, march, {}), out.filePath("income.pdf"));
    ok = write(analytics::ReportDocument::of(*expenses->details, november, gifts),
               out.filePath("expenses.pdf")) &&
         ok;
    ok = write(analytics::ReportDocument::of(longExpenseList(150), march, QStringLiteral("3 - Питание")),
               out.filePath("long-expenses.pdf")) &&
         ok;
    return ok ? 0 : 1;
}
