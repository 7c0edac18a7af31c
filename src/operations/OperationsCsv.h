#pragma once

#include <QByteArray>

namespace operations {

class OperationTableModel;

// The list as it is shown (its rows, order and texts, with a header row) as
// a CSV file that Russian spreadsheet programs open directly: UTF-8 with a
// byte order mark, ";" between fields, decimal commas, dates dd.mm.yyyy,
// CRLF line ends. A field holding ";", a quote or a line break is quoted.
QByteArray operationsCsv(const OperationTableModel& model);

} // namespace operations
