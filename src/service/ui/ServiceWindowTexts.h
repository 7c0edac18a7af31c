#pragma once

#include "service/ServiceTexts.h"
#include "ui/UiTexts.h"

// Every text of the service window, besides those its operations give it.
// Lines inside one box are separated by "\r\n".
namespace service::texts {

inline constexpr char windowTitle[] = "Velmora (сервис)";

// Expense accounts.
inline constexpr char selectAccountToEdit[] = "Необходимо выбрать счет для редакции";
inline constexpr char accountNameRequired[] = "Необходимо задать наименование счета например - Питание";
using ui::texts::changesSaved;
inline constexpr char selectAccountToDelete[] = "Необходимо выбрать счет для удаления";
inline constexpr char accountDeleted[] = "Счет успешно удален";
inline constexpr char newAccountPrompt[] = "Введите имя нового счета";
inline constexpr char newAccountTitle[] = "Добавление счета";
inline constexpr char accountAdded[] = "Счет успешно добавлен";

// Password.
inline constexpr char passwordPrompt[] = "Введите новый пароль (если пусто, то вход без пароля)";
inline constexpr char passwordTitle[] = "Изменение пароля";
inline constexpr char passwordSet[] = "Новый пароль задан!";
inline constexpr char removePasswordQuestion[] = "Хотите удалить пароль?";
inline constexpr char passwordRemoved[] = "Пароль снят!";

// Currency rates.
using ui::texts::mustBeNumber;
inline constexpr char ratesUpdated[] = "Курсы валют обновлены";

// Backup, restore and clearing.
inline constexpr char backupQuestion[] =
    "Сейчас будет выполнено спасение!\r\nВНИМАНИЕ!!! Предыдущее спасение будет перезаписано! ";
inline constexpr char backupDone[] =
    "База данных Velmora спасена!!!\r\nРезервная копия базы данных расположена в\r\n";
inline constexpr char restoreQuestion[] =
    "Вы действительно хотите восстановить базу данных?\r\nВНИМАНИЕ! Все "
    "введенные данные с момента последнего спасения будут утеряны!";
inline constexpr char restoreDone[] = "База данных Velmora восстановлена на дату - ";
inline constexpr char restoreSignInAgain[] =
    "\r\n\r\nДля корректной работы необходимо повторно войти в Velmora!";
inline constexpr char clearQuestion[] =
    "Вы действительно хотите ОЧИСТИТЬ базу данных?\r\nВНИМАНИЕ! Все введенные данные будут УДАЛЕНЫ!";
inline constexpr char cleared[] = "База данных очищена";

// Deleting operations.
inline constexpr const char* invalidOperationDate = ui::texts::mustBeValidDate;
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

// The automatic copies: their window, its columns and buttons, and the
// question before a chosen copy is put back (%1 is when it was made).
inline constexpr char copiesTitle[] = "Копии базы данных";
inline constexpr char copiesMade[] = "Дата и время";
inline constexpr char copiesWhy[] = "Причина";
inline constexpr char copiesBank[] = "В банке";
inline constexpr char copiesOperations[] = "Операций";
inline constexpr char copyDamaged[] = "копия повреждена: %1";
inline constexpr char copyBeingChecked[] = "проверяется…";
inline constexpr char restoreChosenCopy[] = "Восстановить выбранную";
inline constexpr char closeCopies[] = "Закрыть";
inline constexpr char restoreCopyQuestion[] =
    "Вы действительно хотите восстановить базу данных из копии от %1?\r\nВНИМАНИЕ! Все данные, "
    "введенные после этой копии, будут утеряны! Текущая база перед этим будет сохранена в копию.";

} // namespace service::texts
