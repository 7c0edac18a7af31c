#pragma once

#include "store/StoreTexts.h"

// Texts the service operations give the window to show: why an operation was
// refused, why a backup was not written or not put back. Lines inside one box
// are separated by "\r\n".
namespace service::texts {

// %1 is the number of expenses booked on the account.
inline constexpr char accountInUse[] =
    "Счет используется в расходах (%1). Перенесите их на другой счет и повторите удаление.";
// A number typed or chosen that is no operation of its table.
inline constexpr char selectOperation[] = "Необходимо выбрать номер операции для удаления!";

// %1 is a file's path, %2 the cause in words.
inline constexpr char backupNotWritten[] =
    "Не удалось сохранить резервную копию %1: %2. Прежняя копия не изменена.";
inline constexpr char backupMissing[] = "Резервная копия %1 не найдена. База данных не изменена.";
inline constexpr char backupDamaged[] = "Резервная копия %1 повреждена: %2. База данных не изменена.";

// Causes of a refused data file or backup, put in place of %2.
inline constexpr const char* causeEmptyFile = store::texts::causeEmptyFile;
using store::texts::causeOtherPassword;

// A restore of a backup whose money figures would not fit.
using store::texts::amountOutOfRange;

} // namespace service::texts
