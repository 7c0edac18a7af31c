#include "ReportPainter.h"

#include "PageComposer.h"

#include <QFile>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>

namespace analytics {

void ReportPainter::setUpPage(QPagedPaintDevice& device, const ReportDocument& report)
{
    device.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), report.orientation, QMarginsF(15, 15, 15, 15),
                                     QPageLayout::Millimeter));
}

int ReportPainter::paint(const ReportDocument& report, QPagedPaintDevice& device)
{
    QPainter painter;
    if (!painter.begin(&device))
        return 0;
    const PageComposer composer(report, device);
    const std::vector<PageComposer::Page> pages = composer.paginate();
    const int count = static_cast<int>(pages.size());
    for (int i = 0; i < count; ++i) {
        if (i > 0)
            device.newPage();
        composer.paintPage(painter, pages[static_cast<std::size_t>(i)], i + 1, count);
    }
    painter.end();
    return count;
}

bool ReportPainter::writePdf(const ReportDocument& report, const QString& path)
{
    int pages = 0;
    {
        QPdfWriter writer(path);
        writer.setResolution(600);
        writer.setCreator(QStringLiteral("Velmora"));
        writer.setTitle(report.title);
        setUpPage(writer, report);
        pages = paint(report, writer);
    }
    return pages > 0 && QFile(path).size() > 0;
}

} // namespace analytics
