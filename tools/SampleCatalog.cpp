#include "SampleCatalog.h"

namespace velmora::sample {

namespace {

constexpr ExpenseItem kFood[] = {
    {u"Хлеб", 35, 75, 30},
    {u"Молоко", 70, 120, 25},
    {u"Сыр", 300, 900, 8},
    {u"Мясо", 450, 1400, 8},
    {u"Овощи", 150, 600, 15},
    {u"Фрукты", 150, 700, 12},
    {u"Крупы", 60, 220, 6},
    {u"Яйца", 90, 160, 10},
    {u"Продукты на неделю", 2500, 7000, 6},
    {u"Кофе \"Арабика\"", 300, 900, 3},
};
constexpr ExpenseItem kTransport[] = {
    {u"Проездной", 2000, 3200, 2}, {u"Такси", 250, 1200, 4},   {u"Бензин", 1500, 3800, 5},
    {u"Метро", 50, 65, 8},         {u"Парковка", 100, 400, 2},
};
constexpr ExpenseItem kUtilities[] = {
    {u"Электричество", 800, 2600, 1}, {u"Вода", 600, 1600, 1},        {u"Газ", 300, 900, 1},
    {u"Квартплата", 4000, 7500, 1},   {u"Вывоз мусора", 150, 400, 1},
};
constexpr ExpenseItem kPhone[] = {
    {u"Интернет", 500, 900, 1}, {u"Мобильная связь", 300, 800, 2}, {u"Телевидение", 200, 450, 1}};
constexpr ExpenseItem kClothes[] = {
    {u"Куртка", 4000, 15000, 1}, {u"Обувь", 2500, 9000, 2},      {u"Футболка", 500, 1800, 3},
    {u"Джинсы", 2000, 5500, 2},  {u"Носки, 5 пар", 300, 700, 3},
};
constexpr ExpenseItem kHealth[] = {
    {u"Лекарства", 200, 2500, 5}, {u"Приём врача", 1500, 3500, 2}, {u"Стоматолог", 3000, 15000, 1},
    {u"Витамины", 400, 1200, 2},  {u"Анализы", 800, 3000, 1},
};
constexpr ExpenseItem kHome[] = {
    {u"Бытовая химия", 300, 1500, 5},     {u"Посуда", 400, 3000, 1},
    {u"Лампочки", 150, 600, 2},           {u"Ремонт крана", 1000, 4000, 1},
    {u"Постельное бельё", 1500, 5000, 1},
};
constexpr ExpenseItem kChildren[] = {
    {u"Школьные принадлежности", 300, 3000, 3},
    {u"Игрушки", 500, 4000, 2},
    {u"Кружок рисования", 2000, 4500, 2},
    {u"Детская одежда", 1000, 5000, 2},
};
constexpr ExpenseItem kLeisure[] = {
    {u"Кино", 400, 1500, 4},
    {u"Театр", 1500, 6000, 1},
    {u"Книги", 400, 1500, 3},
    {u"Абонемент в бассейн", 2500, 5000, 1},
    {u"Поездка на выходные", 5000, 20000, 1},
};
constexpr ExpenseItem kCafe[] = {
    {u"Обед", 300, 800, 6},
    {u"Кофе с собой", 150, 350, 8},
    {u"Ужин в ресторане", 2500, 8000, 1},
    {u"Пицца", 600, 1500, 2},
};
constexpr ExpenseItem kGifts[] = {
    {u"Цветы", 800, 3500, 3}, {u"Подарок на день рождения", 1500, 8000, 2}, {u"Открытка", 100, 300, 2}};
constexpr ExpenseItem kStudy[] = {
    {u"Учебники", 800, 3000, 2}, {u"Курсы английского", 4000, 12000, 1}, {u"Канцтовары", 100, 600, 3}};

constexpr ExpenseAccount kAccounts[] = {
    {u"Питание", 40, kFood},
    {u"Транспорт", 12, kTransport},
    {u"Коммунальные платежи", 5, kUtilities},
    {u"Связь и интернет", 3, kPhone},
    {u"Одежда и обувь", 4, kClothes},
    {u"Здоровье", 4, kHealth},
    {u"Дом и хозяйство", 6, kHome},
    {u"Дети", 5, kChildren},
    {u"Отдых и развлечения", 4, kLeisure},
    {u"Кафе и рестораны", 8, kCafe},
    {u"Подарки", 2, kGifts},
    {u"Образование", 2, kStudy},
};

constexpr PurseKind kPurses[] = {
    {u"Наличные", u"Повседневные расходы", 5},     {u"Кошелек Ивана", u"Обеды и транспорт", 3},
    {u"Кошелек Марии", u"Продукты, дом, дети", 4}, {u"Банковская карта", u"Крупные покупки и платежи", 3},
    {u"Копилка", u"Отпуск и подарки", 1},
};

constexpr const char16_t* kNotes[] = {
    u"по акции",           u"со скидкой", u"на неделю",
    u"для дачи",           u"в подарок",  u"рынок, 2 кг",
    u"магазин \"У дома\"", u"срочно",     u"вернуть чек, если не подойдёт",
};

constexpr const char16_t* kExtraIncome[] = {u"Премия", u"Проценты по вкладу", u"Возврат долга",
                                            u"Продажа вещей", u"Подработка"};
constexpr const char16_t* kWithdrawals[] = {u"Оплата кредита", u"Перевод родителям", u"Перевод на вклад",
                                            u"Страховка", u"Налог на имущество"};

constexpr const char16_t* kMonths[] = {u"январь", u"февраль", u"март",     u"апрель",  u"май",    u"июнь",
                                       u"июль",   u"август",  u"сентябрь", u"октябрь", u"ноябрь", u"декабрь"};

} // namespace

std::span<const ExpenseAccount> expenseAccounts()
{
    return kAccounts;
}
std::span<const PurseKind> purseKinds()
{
    return kPurses;
}
std::span<const char16_t* const> expenseNotes()
{
    return kNotes;
}
std::span<const char16_t* const> extraIncomeComments()
{
    return kExtraIncome;
}
std::span<const char16_t* const> withdrawalComments()
{
    return kWithdrawals;
}
const char16_t* monthForComment(unsigned month)
{
    return kMonths[(month - 1) % 12];
}

} // namespace velmora::sample
