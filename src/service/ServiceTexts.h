#pragma once

#include "store/CommonTexts.h"
#include "store/StoreTexts.h"

// Every text of the service window and its operations. Lines inside one box
// are separated by "\r\n".
namespace service::texts {

inline constexpr char windowTitle[] = "Velmora (сервис)";

// Expense accounts.
inline constexpr char selectAccountToEdit[] = "Необходимо выбрать счет для редакции";
inline constexpr char accountNameRequired[] = "Необходимо задать наименование счета например - Питание";
using store::texts::changesSaved;
inline constexpr char selectAccountToDelete[] = "Необходимо выбрать счет для удаления";
inline constexpr char accountDeleted[] = "Счет успешно удален";
// %1 is the number of expenses booked on the account.
inline constexpr char accountInUse[] =
    "Счет используется в расходах (%1). Перенесите их на другой счет и повторите удаление.";
inline constexpr char newAccountPrompt[] = "Введите имя нового счета";
inline constexpr char newAccountTitle[] = "Добавление счета";
inline constexpr char accountAdded[] = "Счет успешно добавлен";
inline constexpr char accountNameTooLong[] = "Наименование счета не может быть длиннее 255 символов!";

// Password.
inline constexpr char passwordPrompt[] = "Введите новый пароль (если пусто, то вход без пароля)";
inline constexpr char passwordTitle[] = "Изменение пароля";
inline constexpr char passwordSet[] = "Новый пароль задан!";
inline constexpr char removePasswordQuestion[] = "Хотите удалить пароль?";
inline constexpr char passwordRemoved[] = "Пароль снят!";
inline constexpr char passwordTooLong[] = "Пароль не может быть длиннее 255 символов!";

// Currency rates.
using store::texts::mustBeNumber;
inline constexpr char ratesUpdated[] = "Курсы валют обновлены";

// Backup, restore and clearing. %1 is a file's path, %2 the cause in words.
inline constexpr char backupQuestion[] =
    "Сейчас будет выполнено спасение!\r\nВНИМАНИЕ!!! Предыдущее спасение будет перезаписано! ";
inline constexpr char backupDone[] =
    "База данных Velmora спасена!!!\r\nРезервная копия базы данных расположена в\r\n";
inline constexpr char backupNotWritten[] =
    "Не удалось сохранить резервную копию %1: %2. Прежняя копия не изменена.";
inline constexpr char restoreQuestion[] =
    "Вы действительно хотите восстановить базу данных?\r\nВНИМАНИЕ! Все "
    "введенные данные с момента последнего спасения будут утеряны!";
inline constexpr char restoreDone[] = "База данных Velmora восстановлена на дату - ";
inline constexpr char restoreSignInAgain[] =
    "\r\n\r\nДля корректной работы необходимо повторно войти в Velmora!";
inline constexpr char backupMissing[] = "Резервная копия %1 не найдена. База данных не изменена.";
inline constexpr char backupDamaged[] = "Резервная копия %1 повреждена: %2. База данных не изменена.";
inline constexpr char clearQuestion[] =
    "Вы действительно хотите ОЧИСТИТЬ базу данных?\r\nВНИМАНИЕ! Все введенные данные будут УДАЛЕНЫ!";
inline constexpr char cleared[] = "База данных очищена";

// Causes of a refused data file or backup, put in place of %2.
inline constexpr const char* causeEmptyFile = store::texts::causeEmptyFile;
using store::texts::causeOtherPassword;

// Deleting operations, and restoring a backup, whose money figures must fit.
using store::texts::amountOutOfRange;
inline constexpr const char* invalidOperationDate = store::texts::mustBeValidDate;
inline constexpr char selectOperation[] = "Необходимо выбрать номер операции для удаления!";
inline constexpr char confirmBankDeletion[] = "Вы действительно хотите удалить операцию по Банку?";
inline constexpr char confirmBillDeletion[] = "Вы действительно хотите удалить операцию по Счету?";
inline constexpr char operationLine[] = "ОПЕРАЦИЯ N ";
inline constexpr char amountLine[] = ", НА СУММУ: ";
inline constexpr char nameLine[] = "НАИМЕНОВАНИЕ: ";
inline constexpr char operationDeleted[] = "Операция N %1 удалена!";

// Moving expenses between accounts.
inline constexpr char selectAccountsToMove[] = "Необходимо выбрать счета для переноса расходов!";
inline constexpr char confirmMove[] = "Подтвердите перенос расходов";
inline constexpr char moveFrom[] = "со счета: ";
inline constexpr char moveTo[] = " на счет: ";
inline constexpr char moveDone[] = "Перенос расходов выполнен!";

} // namespace service::texts
