#pragma once

#include "analytics/ReportDocument.h"

class QWidget;

namespace ui {
class Dialogs;
}

namespace analytics {

// A report in the print preview: page through it, print it, or save it as a
// PDF file ("Сохранить в PDF"). Modal; returns when the preview is closed.
class ReportPreview
{
public:
    static void show(const ReportDocument& report, QWidget* parent, ui::Dialogs& dialogs);
};

} // namespace analytics
