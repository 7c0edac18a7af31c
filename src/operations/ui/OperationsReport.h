#pragma once

#include "analytics/ReportDocument.h"

namespace operations {

class OperationTableModel;

// The most rows the list prints: more would make thousands of pages.
inline constexpr std::size_t kMostPrintedRows = 10000;

// The list as shown, for the report preview: its rows in the list's order,
// `filterLine` saying which operations they are, and their count and sum.
analytics::ReportDocument operationsReport(const OperationTableModel& model, const QString& filterLine);

} // namespace operations
