#pragma once

// Every text the store shows to the user. %1 is the data file's path, %2 the
// cause in words.
namespace store::texts {

inline constexpr char fileMissing[] = "Файл данных %1 не найден.";
inline constexpr char fileUnreadable[] = "Не удалось прочитать файл данных %1: %2.";
inline constexpr char fileDamaged[] = "Файл данных %1 повреждён: %2.";
inline constexpr char wrongPassword[] = "Файл данных %1 защищён другим паролем.";
inline constexpr char fileLocked[] = "Файл данных %1 занят другой программой.";
inline constexpr char cannotWrite[] = "Не удалось записать файл данных %1: %2. Изменения не сохранены.";
inline constexpr char changedOnDisk[] =
    "Файл данных %1 изменён другой программой. Изменения не сохранены, данные прочитаны заново.";

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

} // namespace store::texts
