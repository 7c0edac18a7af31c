#include "Household2005.h"

namespace velmora::test {

void nameLastBill(DataBuilder& data, const QString& name, const QString& note)
{
    jet::Row& row = data.database().table(u"Bills")->rows.back();
    row[4] = name.toStdU16String();
    row[5] = note.toStdU16String();
}

DataBuilder household2005()
{
    DataBuilder data;
    data.account(0, "Разное")
        .account(3, "Питание")
        .account(7, "Одежда")
        .account(9, "Транспорт")
        .account(10, "Коммунальные платежи и связь")
        .account(1500, "Подарки")
        .purse(1, "Основной", "100")
        .purse(2, "Отпуск", "0");
    data.bill(QDate(2005, 1, 1), 0, "10");
    data.bill(QDate(2005, 3, 10), 3, "120,5");
    nameLastBill(data, "Продукты", "рынок");
    data.bill(QDate(2005, 3, 12), 3, "40", 5);
    nameLastBill(data, "Из удалённого кошелька");
    data.bill(QDate(2005, 3, 2), 9, "5,25", 2);
    nameLastBill(data, "Метро");
    data.bill(QDate(2005, 3, 1), 42, "999");
    data.bill(QDate(2005, 5, 20), 3, "79,5");
    data.bill(QDate(2005, 5, 25), 3, "100");
    data.bill(QDate(2005, 11, 15), 1500, "250");
    nameLastBill(data, "Книга", "на день рождения");
    data.billAt(QDateTime(QDate(2005, 12, 31), QTime(23, 0)), 10, "1000");
    data.bill(QDate(2004, 3, 10), 3, "777");
    data.bank(QDate(2005, 3, 1), "5000", "Зарплата")
        .bank(QDate(2005, 3, 15), "-6000,5", "Снятие на ремонт")
        .bank(QDate(2005, 11, 5), "300", "Проценты")
        .bank(QDate(2004, 12, 31), "10000", "Премия")
        .undatedBank("1");
    return data;
}

} // namespace velmora::test
