#pragma once

#include "ReportDocument.h"

#include <QString>

class QPagedPaintDevice;

namespace analytics {

// Lays a report out on pages and paints it: on every page the product name,
// the title with the period, the account (expense report), the column
// headers and the page number ("Страница 2 из 3"); the lines of operations,
// long texts wrapped inside their column so nothing runs off the page; the
// total after the last line. Works on any paged device: a printer, the print
// preview, a PDF file.
class ReportPainter
{
public:
    // A4 in the report's orientation with 15 mm margins.
    static void setUpPage(QPagedPaintDevice& device, const ReportDocument& report);
    // The number of pages painted; 0 when the device could not be painted on.
    static int paint(const ReportDocument& report, QPagedPaintDevice& device);
    // setUpPage() and paint() on a PDF file; false when it could not be written.
    static bool writePdf(const ReportDocument& report, const QString& path);
};

} // namespace analytics
