#pragma once

// Every text the program's shell shows: frame, sign-in, splash, help and the
// boxes of the start-up. The window layouts carry their own captions in the
// .ui files.
namespace app::texts {

inline constexpr char wrongPassword[] = "Введен неправильный пароль!";

// The command line; %1 is the version number, an option or an argument.
inline constexpr char version[] = "Velmora %1 — домашняя бухгалтерия";
inline constexpr char usage[] =
    "Использование: velmora [--data-dir ПАПКА]\n"
    "Velmora — домашняя бухгалтерия: банк, кошельки, расходы и статистика.\n"
    "\n"
    "Параметры:\n"
    "  --data-dir ПАПКА  хранить файл данных velmora.mdb, его резервную копию\n"
    "                    и файл блокировки в этой папке\n"
    "  -h, --help        показать эту справку и выйти\n"
    "  -v, --version     показать версию программы и выйти\n"
    "\n"
    "Без --data-dir файл данных лежит рядом с программой, если в её папку можно\n"
    "писать, иначе в папке $XDG_DATA_HOME/velmora (обычно ~/.local/share/velmora).\n";
inline constexpr char badCommandLine[] = "velmora: %1\nСправка: velmora --help";
inline constexpr char unknownOption[] = "неизвестный параметр %1";
inline constexpr char missingValue[] = "после %1 нужно указать папку";
inline constexpr char extraArgument[] = "лишний аргумент %1";

// The first start with the data in the user's own folder.
inline constexpr char dataFileCreatedTitle[] = "Новый файл данных";
inline constexpr char dataFileCreated[] =
    "Создан пустой файл данных:\r\n%1\r\n\r\nВ этой папке хранятся данные, их резервная копия и файл "
    "блокировки.";

inline constexpr char helpFileName[] = "velmora-help.html";
inline constexpr char helpTitle[] = "Справка Velmora";
inline constexpr char helpMissing[] = "Файл справки %1 не найден.";

// An exception that escaped an action; %1 is its cause as the code gave it.
inline constexpr char actionFailed[] = "Действие прервано из-за внутренней ошибки программы:\r\n%1\r\n\r\n"
                                       "Незавершённые изменения не записаны, работу можно продолжить.";
inline constexpr char actionFailedLog[] = "действие прервано из-за внутренней ошибки программы: %1";
inline constexpr char unknownCause[] = "неизвестная ошибка";

} // namespace app::texts
