#pragma once

// Texts that several windows show, defined once. The subsystems' own texts
// headers name them next to their other texts.
namespace store::texts {

inline constexpr char productName[] = "Velmora";
inline constexpr char errorTitle[] = "Ошибка";
inline constexpr char mustBeNumber[] = "Необходимо вводить число!";
inline constexpr char mustBeValidDate[] = "Необходимо задать правильную дату операции!";
inline constexpr char changesSaved[] = "Изменеия успешно внесены";
// An operation whose result would not fit the data file's money columns, or
// would put a figure of the main window out of their range.
inline constexpr char amountOutOfRange[] =
    "Сумма слишком велика: остаток вышел бы за допустимые пределы. Операция не выполнена.";

} // namespace store::texts
