#pragma once

#include "ui/UiTexts.h"

// Every text the main window shows for its money operations: messages, input
// boxes and the titles that are not the shared "Ошибка" and "Информация".
// Texts are kept exactly as the program has always shown them, misspellings
// included.
namespace app::texts {

// Validation
using ui::texts::mustBeNumber;
using ui::texts::mustBeValidDate;
inline constexpr char openPurseFirst[] = "Необходимо вызвать Кошелек на редакцию!";
inline constexpr char expenseFieldsMissing[] =
    "Необходимо указать номер счета, сумму расхода и выбрать кошелек!";
inline constexpr char choosePurseToEdit[] = "Необходимо выбрать кошелек для редакции";
inline constexpr char purseCodeNeeded[] = "Необходимо задать код кошелька, например - 2";
inline constexpr char choosePurseToDelete[] = "Необходимо выбрать кошелек для удаления";

// Bank: "Сумма в размере " + amount as typed + " добавлена" / " снята". The
// confirmation carries the title of the error boxes.
inline constexpr const char* bankDoneTitle = ui::texts::errorTitle;
inline constexpr const char* commentTitle = store::texts::bankComment;
inline constexpr char commentPrompt[] = "Введите комментарий для суммы ";
inline constexpr char amountPrefix[] = "Сумма в размере ";
inline constexpr char depositedSuffix[] = " добавлена";
inline constexpr char withdrawnSuffix[] = " снята";

// Purse operations: amountPrefix + amount as typed + one of these.
inline constexpr char putInPurseSuffix[] = " добавлена в кошелек";
inline constexpr char takenFromPurseSuffix[] = " снята с кошелька";

// Expense: "Расход на сумму - " + amount + CR LF + "За - " + name + CR LF + "Успешно добавлен!".
inline constexpr char expenseAmountLine[] = "Расход на сумму - ";
inline constexpr char expenseNameLine[] = "За - ";
inline constexpr char expenseDoneLine[] = "Успешно добавлен!";
inline constexpr char lineBreak[] = "\r\n";

// Purse catalogue
using ui::texts::changesSaved;
inline constexpr char deletePurseTitle[] = "ВНИМАНИЕ!!! УДАЛЕНИЕ!!!";
inline constexpr char confirmPurseDeletion[] = "Подтвердите удаление кошелька!";
inline constexpr char purseDeleted[] = "Кошелек успешно удален";
inline constexpr char newPurseTitle[] = "Добавление кошелька";
inline constexpr char newPursePrompt[] = "Введите имя нового кошелька";
inline constexpr char purseAdded[] = "Кошелек успешно добавлен";

} // namespace app::texts
