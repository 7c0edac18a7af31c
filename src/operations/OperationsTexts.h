#pragma once

// The texts of the operations list and its export, defined once.
namespace operations::texts {

inline constexpr char deposit[] = "Поступление";
inline constexpr char withdrawal[] = "Снятие";
inline constexpr char expense[] = "Расход";

inline constexpr char columnDate[] = "Дата";
inline constexpr char columnKind[] = "Вид";
inline constexpr char columnAmount[] = "Сумма";
inline constexpr char columnAccount[] = "Счет";
inline constexpr char columnName[] = "Комментарий";
inline constexpr char columnNote[] = "Примечание";
inline constexpr char columnPurse[] = "Кошелек";
inline constexpr char columnNumber[] = "N операции";

// Why an operation is in the trash, as the file keeps it and the trash shows it.
inline constexpr char reasonDeleted[] = "удалена";
inline constexpr char reasonCorrected[] = "исправлена";
inline constexpr char reasonReplaced[] = "заменена";
inline constexpr char fileReplacedSince[] =
    "Отменить нельзя: файл данных с тех пор заменен (восстановлен из копии или изменен другой программой).";
inline constexpr char nothingToUndo[] = "Отменять нечего: эти операции уже возвращены из корзины.";

} // namespace operations::texts
