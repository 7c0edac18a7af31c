#pragma once

#include "store/StoreTexts.h"

// Every text of the analytics window and its two reports, used by the code
// and by the tests.
namespace analytics::texts {

inline constexpr char windowTitle[] = "Velmora (аналитика)";

// The yearly account table.
inline constexpr char accountColumn[] = "Счет";
inline constexpr char accountAgainColumn[] = "Счета";
inline constexpr char totalColumn[] = "ИТОГО";
inline constexpr char totalsRow[] = " -- ИТОГО -- ";
inline constexpr const auto& monthColumns = store::texts::monthNames;

// The detail table.
inline constexpr char dateColumn[] = "Дата";
inline constexpr char amountColumn[] = "Сумма";
inline constexpr const char* commentColumn = store::texts::bankComment;
inline constexpr char purseColumn[] = "Кошелек";
inline constexpr char numberColumn[] = "N_операции";
inline constexpr char noteColumn[] = "Примечание";
inline constexpr char incomeCaption[] = "Приход";
inline constexpr char expenseCaption[] = "Расход";
// The purse of an expense paid from a purse deleted since.
inline constexpr char deletedPurse[] = "(кошелек удален)";

// A year chosen from bank operations that have no date.
inline constexpr char undatedYear[] = "2005";

inline constexpr char chooseAccount[] = "Необходимо выбрать счет!";

// The reports.
using store::texts::productName;
inline constexpr char incomeReportCaption[] = "Статистика поступлений за месяц";
inline constexpr char expenseReportCaption[] = "Статистика расходов за месяц";
inline constexpr char incomeReportTitle[] = "Статистика поступлений за %1";
inline constexpr char expenseReportTitle[] = "Статистика расходов за %1";
inline constexpr char reportAccount[] = "Счет: %1";
inline constexpr char reportNumberColumn[] = "N опер.";
inline constexpr char reportTotal[] = "Итого:";
inline constexpr char reportCount[] = "Операций: %1";
inline constexpr char reportPage[] = "Страница %1 из %2";

// Saving a report from its preview.
inline constexpr char savePdf[] = "Сохранить в PDF";
inline constexpr char savePdfTitle[] = "Сохранить отчет в PDF";
inline constexpr char pdfFiles[] = "Файлы PDF (*.pdf)";
inline constexpr char savePdfFailed[] = "Не удалось сохранить отчет в файл %1.";

} // namespace analytics::texts
