#pragma once

// Every text the store shows to the user. %1 is the data file's path, %2 the
// cause in words.
namespace store::texts {

// The program's name: window titles and printed reports carry it.
inline constexpr char productName[] = "Velmora";

// The months as the prepared data file names them, January first.
inline constexpr const char* monthNames[12] = {"Январь",   "Февраль", "Март",   "Апрель",
                                               "Май",      "Июнь",    "Июль",   "Август",
                                               "Сентябрь", "Октябрь", "Ноябрь", "Декабрь"};

// An operation whose result would not fit the data file's money columns, or
// would put a figure of the main window out of their range.
inline constexpr char amountOutOfRange[] =
    "Сумма слишком велика: остаток вышел бы за допустимые пределы. Операция не выполнена.";

// A text longer than its column holds; nothing is written. %1 is what the
// text is, %2 the column's size.
inline constexpr char textTooLong[] = "%1 не может быть длиннее %2 символов!";
// What the texts that operations write are, put in place of %1.
inline constexpr char bankComment[] = "Комментарий";
inline constexpr char expenseName[] = "Наименование расхода";
inline constexpr char expenseNote[] = "Примечание расхода";
inline constexpr char accountName[] = "Наименование счета";
inline constexpr char purseName[] = "Имя кошелька";
inline constexpr char purseNote[] = "Примечание кошелька";
inline constexpr char password[] = "Пароль";
inline constexpr char anyText[] = "Текст";

inline constexpr char fileMissing[] = "Файл данных %1 не найден.";
inline constexpr char fileUnreadable[] = "Не удалось прочитать файл данных %1: %2.";
inline constexpr char fileDamaged[] =
    "Файл данных %1 повреждён: %2. Изменения невозможны; восстановите резервную копию.";
inline constexpr char fileReadOnly[] = "Файл данных %1 защищён от записи. Изменения не сохранены.";
inline constexpr char wrongPassword[] = "Файл данных %1 защищён другим паролем.";
inline constexpr char fileLocked[] = "Файл данных %1 занят другой программой.";
inline constexpr char cannotWrite[] = "Не удалось записать файл данных %1: %2. Изменения не сохранены.";
inline constexpr char changedOnDisk[] =
    "Файл данных %1 изменён другой программой. Изменения не сохранены, данные прочитаны заново.";

// An automatic copy that could not be written: %1 is the copy's path, %2 the
// cause. Asked as a question: the action goes on only if the user agrees.
inline constexpr char copyNotWritten[] = "Не удалось сохранить копию %1: %2. Продолжить без копии?";
// Why a copy was made, as its file name says it: a blank is written "-".
inline constexpr char copyDayStart[] = "начало дня";
inline constexpr char copyClearing[] = "перед очисткой";
inline constexpr char copyRestore[] = "перед восстановлением";
inline constexpr char copyOperationDeletion[] = "перед удалением операции";
inline constexpr char copyExpenseMove[] = "перед переносом расходов";
inline constexpr char copyPurseDeletion[] = "перед удалением кошелька";
inline constexpr char copyAccountDeletion[] = "перед удалением счета";
inline constexpr char copyCorrection[] = "перед исправлением операции";
inline constexpr char copyTrashReturn[] = "перед возвратом из корзины";
// The first start in a folder without a data file: %1 is the folder or the
// file, %2 the cause.
inline constexpr char folderUncreatable[] = "Не удалось создать папку данных %1: %2.";
inline constexpr char fileUncreatable[] = "Не удалось создать файл данных %1: %2.";

// %1 is the lock file's path here.
inline constexpr char lockUnusable[] = "Не удалось открыть файл блокировки %1: %2.";

// Why a transaction was rolled back when the code that changed rows left it
// without committing (an exception, an early return). Not shown as a box.
inline constexpr char changesAbandoned[] = "Изменения не сохранены: операция прервана.";

// The box of one failed statement: number, carriage return, description.
inline constexpr char engineError[] = "Error number: %1\r%2";

// Causes put in place of %2.
inline constexpr char causeNoSpace[] = "на диске недостаточно места";
inline constexpr char causeQuota[] = "превышена квота диска";
inline constexpr char causeNoAccess[] = "нет доступа";
inline constexpr char causeReadOnly[] = "диск доступен только для чтения";
inline constexpr char causeIo[] = "ошибка ввода-вывода";
inline constexpr char causeTooLong[] = "значение не помещается в столбец";
inline constexpr char causeVerifyFailed[] = "записанные данные не совпали с исходными";
inline constexpr char causeNotDataFile[] = "это не файл базы данных";
inline constexpr char causeOtherPassword[] = "файл защищён другим паролем";
inline constexpr char causeNotFound[] = "файл или папка не найдены";
inline constexpr char causeIsFolder[] = "это папка";
inline constexpr char causeNotFolder[] = "часть пути не является папкой";
inline constexpr char causeLinkLoop[] = "символические ссылки зациклены";
inline constexpr char causeNameTooLong[] = "слишком длинное имя файла";
inline constexpr char causeTooManyFiles[] = "открыто слишком много файлов";
inline constexpr char causeNoMemory[] = "недостаточно памяти";
inline constexpr char causeBusy[] = "файл занят системой";
inline constexpr char causeSystem[] = "системная ошибка %1";
inline constexpr char causeUnexpected[] = "непредвиденная ошибка программы";
inline constexpr char causeNotRegular[] = "это не обычный файл (папка, устройство или канал)";
inline constexpr char causeTooLarge[] = "файл больше 2 ГБ, такого файла данных не бывает";
inline constexpr char causeValueNotAccepted[] = "в файле есть значение, которое программа не может принять";
inline constexpr char causeFileFull[] = "данные не помещаются в файл размером 2 ГБ";
// Where a value that does not fit lies: appended to causeTooLong.
inline constexpr char whereTable[] = "таблица %1";
inline constexpr char whereColumn[] = "столбец %1";
inline constexpr char whereRow[] = "строка %1";

// What the reader found damaged; %1 is the table, %2 and %3 numbers.
inline constexpr char causeEmptyFile[] = "файл пуст";
inline constexpr char causeFileCutShort[] = "файл обрезан";
inline constexpr char causeDefinition[] = "повреждено описание таблицы %1";
inline constexpr char causeUsageMap[] = "повреждён список страниц таблицы %1";
inline constexpr char causeForeignPage[] = "в список страниц таблицы %1 попала чужая страница %2";
inline constexpr char causePage[] = "в таблице %1 повреждена страница данных";
inline constexpr char causeRow[] = "в таблице %1 повреждена строка";
inline constexpr char causeRowCount[] = "в таблице %1 найдено %2 строк из %3";
inline constexpr char causeLongValue[] = "в таблице %1 длина длинного значения не совпадает с его данными";
inline constexpr char causeLongValueReused[] =
    "в таблице %1 длинное значение зациклено или ссылается на чужие данные";
inline constexpr char causeDuplicateTable[] = "таблица %1 описана в файле дважды";
inline constexpr char causeUnreadable[] = "файл не удалось разобрать";

// How a file's tables differ from the data file's; %1 is a table, %2 a column.
inline constexpr char schemaNoTable[] = "нет таблицы %1";
// %3 is what the column holds (meaning*), %4 its kind in the file, %5 the
// kinds accepted for it (kind* joined by kindsOr).
inline constexpr char schemaNoColumn[] = "в таблице %1 нет столбца %2, где хранится %3";
inline constexpr char schemaWrongKind[] = "в столбце %2 таблицы %1 хранится %3, а он вида «%4»; ожидается %5";
inline constexpr char meaningAmount[] = "сумма";
inline constexpr char meaningWholeNumber[] = "целое число";
inline constexpr char meaningDate[] = "дата";
inline constexpr char meaningText[] = "текст";
inline constexpr char kindsOr[] = " или ";
// Kinds of column as the refusal names them; %1 is a text column's size.
inline constexpr char kindBoolean[] = "логический";
inline constexpr char kindByte[] = "целое (байт)";
inline constexpr char kindInteger[] = "целое (2 байта)";
inline constexpr char kindLong[] = "длинное целое";
inline constexpr char kindCurrency[] = "денежный";
inline constexpr char kindSingle[] = "число с плавающей точкой (4 байта)";
inline constexpr char kindDouble[] = "число с плавающей точкой (8 байт)";
inline constexpr char kindDateTime[] = "дата/время";
inline constexpr char kindBinary[] = "двоичный";
inline constexpr char kindText[] = "текстовый (%1 знаков)";
inline constexpr char kindDateText[] = "текстовый не короче %1 знаков";
inline constexpr char kindOle[] = "объект OLE";
inline constexpr char kindMemo[] = "MEMO";
inline constexpr char kindGuid[] = "код репликации";
inline constexpr char kindDecimal[] = "десятичный";
inline constexpr char kindTextAny[] = "текстовый";

// The names of the checks on the store's columns, which an engine error on a
// value the data file cannot hold carries; %1 is the column's size.
inline constexpr char checkNotDate[] = "не дата";
inline constexpr char checkTextTooLong[] = "текст длиннее %1 знаков";
inline constexpr char checkWrongLength[] = "не той длины";
inline constexpr char checkNumberOutOfRange[] = "число вне допустимого диапазона";

} // namespace store::texts
