#include "ReportPreview.h"

#include "analytics/AnalyticsTexts.h"
#include "analytics/ReportPainter.h"
#include "ui/Dialogs.h"
#include "ui/ScreenFit.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QToolBar>

namespace analytics {

namespace {

void addSaveAction(QPrintPreviewDialog& preview, const ReportDocument& report, ui::Dialogs& dialogs)
{
    auto* toolBar = preview.findChild<QToolBar*>();
    if (!toolBar)
        return;
    toolBar->addSeparator();
    QAction* save = toolBar->addAction(QString::fromUtf8(texts::savePdf));
    QObject::connect(save, &QAction::triggered, &preview, [&preview, &report, &dialogs] {
        const QString suggested = QDir::home().filePath(report.title + QStringLiteral(".pdf"));
        const QString path = QFileDialog::getSaveFileName(&preview, QString::fromUtf8(texts::savePdfTitle),
                                                          suggested, QString::fromUtf8(texts::pdfFiles));
        if (!path.isEmpty() && !ReportPainter::writePdf(report, path))
            dialogs.error(QString::fromUtf8(texts::savePdfFailed).arg(QDir::toNativeSeparators(path)));
    });
}

} // namespace

void ReportPreview::show(const ReportDocument& report, QWidget* parent, ui::Dialogs& dialogs)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(report.title);
    ReportPainter::setUpPage(printer, report);
    QPrintPreviewDialog preview(&printer, parent);
    preview.setWindowTitle(report.caption);
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested,
                     [&report](QPrinter* device) { ReportPainter::paint(report, *device); });
    addSaveAction(preview, report, dialogs);
    preview.resize(ui::fittedToScreen(&preview, {900, 700}));
    preview.exec();
}

} // namespace analytics
