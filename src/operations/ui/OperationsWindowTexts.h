#pragma once

#include <QString>

namespace operations {

// A text of the window as Qt takes it.
inline QString tr8(const char* text)
{
    return QString::fromUtf8(text);
}

} // namespace operations

// The operations window's own texts, defined once.
namespace operations::texts {

inline constexpr char windowTitle[] = "Операции";
inline constexpr char from[] = "С";
inline constexpr char to[] = "по";
inline constexpr char kind[] = "Вид";
inline constexpr char account[] = "Счет";
inline constexpr char purse[] = "Кошелек";
inline constexpr char amountFrom[] = "Сумма от";
inline constexpr char amountTo[] = "до";
inline constexpr char search[] = "Найти";
inline constexpr char searchHint[] = "наименование, комментарий, примечание";
inline constexpr char anyValue[] = "все";
inline constexpr char noDate[] = "любая";
inline constexpr char badAmount[] = "Сумма указана неверно: она не учитывается.";
// Count and sum of the rows shown.
inline constexpr char summary[] = "Операций: %1    Сумма: %2";
inline constexpr char exportCsv[] = "Экспорт в CSV…";
inline constexpr char close[] = "Закрыть";
inline constexpr char deleteChosen[] = "Удалить";
inline constexpr char correctChosen[] = "Исправить…";
inline constexpr char correctionTitle[] = "Исправление операции N %1";
inline constexpr char correctionDate[] = "Дата";
inline constexpr char correctionAmount[] = "Сумма";
inline constexpr char correctionBankAmountHint[] = "со знаком минус, если деньги сняты";
inline constexpr char correctionComment[] = "Комментарий";
inline constexpr char correctionName[] = "Наименование";
inline constexpr char correctionNote[] = "Примечание";
inline constexpr char correctionDo[] = "Исправить";
inline constexpr char correctionCancel[] = "Отмена";
// How many operations are chosen and the sum of their changes of money.
inline constexpr char deleteQuestion[] =
    "Удалить выбранные операции (%1) на сумму %2?\r\nДеньги в банке и в кошельках изменятся так, как будто "
    "этих операций не было. Копия файла до удаления сохраняется.";
inline constexpr char exportTitle[] = "Сохранить список операций";
inline constexpr char exportFilter[] = "Файлы CSV (*.csv)";
inline constexpr char exportFileName[] = "операции.csv";
inline constexpr char exportDone[] = "Список сохранен в файл %1.";
inline constexpr char exportFailed[] = "Не удалось сохранить файл %1: %2";

inline constexpr char undo[] = "Отменить";
inline constexpr char openTrash[] = "Корзина…";
inline constexpr char print[] = "Печать…";
inline constexpr char trashTitle[] = "Корзина";
inline constexpr char trashPutAt[] = "Удалена";
inline constexpr char trashReason[] = "Причина";
inline constexpr char trashPutBack[] = "Восстановить";
// How many entries the trash holds and for how many days it keeps them.
inline constexpr char trashSummary[] = "Операций в корзине: %1. Они хранятся %2 дней.";
inline constexpr char reportTitle[] = "Список операций";
inline constexpr char reportAll[] = "Все операции";
inline constexpr char tooManyToPrint[] =
    "Операций слишком много для печати (%1). Сузьте отбор: можно напечатать не больше %2.";

} // namespace operations::texts
