#include "OperationsCsv.h"

#include "OperationTableModel.h"

namespace operations {

namespace {

void appendField(QByteArray& csv, const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    if (!utf8.contains(';') && !utf8.contains('"') && !utf8.contains('\n') && !utf8.contains('\r')) {
        csv += utf8;
        return;
    }
    csv += '"';
    csv += QByteArray(utf8).replace("\"", "\"\"");
    csv += '"';
}

} // namespace

QByteArray operationsCsv(const OperationTableModel& model)
{
    QByteArray csv("\xEF\xBB\xBF");
    const int columns = model.columnCount();
    for (int column = 0; column < columns; ++column) {
        if (column > 0)
            csv += ';';
        appendField(csv, model.headerData(column, Qt::Horizontal).toString());
    }
    csv += "\r\n";
    for (int row = 0; row < model.rowCount(); ++row) {
        for (int column = 0; column < columns; ++column) {
            if (column > 0)
                csv += ';';
            appendField(csv, model.text(row, column));
        }
        csv += "\r\n";
    }
    return csv;
}

} // namespace operations
