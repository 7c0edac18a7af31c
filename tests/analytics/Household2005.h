#pragma once

#include "LedgerFile.h"

namespace velmora::test {

// Gives the last expense row its name and note.
inline void nameLastBill(DataBuilder& data, const QString& name, const QString& note = {})
{
    jet::Row& row = data.database().table(u"Bills")->rows.back();
    row[4] = name.toStdU16String();
    row[5] = note.toStdU16String();
}

// A household's year 2005, with the awkward cases the analytics must get
// right: account code 0 and codes above 1000, a label longer than 20
// characters, an account with expenses in March and May only, a March with
// more withdrawn than deposited, an expense paid from a purse that has since
// been deleted, an expense on a code missing from the catalogue, a bank row
// without a date, rows of 2004 that must stay out, and in April one day's
// operations with texts longer than the lists show.
inline DataBuilder household2005()
{
    DataBuilder data;
    data.account(0, "Разное").account(3, "Питание").account(7, "Одежда").account(9, "Транспорт");
    data.account(10, "Коммунальные платежи и связь").account(1500, "Подарки");
    data.purse(1, "Основной", "100").purse(2, "Отпуск", "0");
    data.bill(QDate(2005, 1, 1), 0, "10").bill(QDate(2005, 3, 10), 3, "120,5");
    nameLastBill(data, "Продукты", "рынок");
    data.bill(QDate(2005, 3, 12), 3, "40", 5);
    nameLastBill(data, "Из удалённого кошелька");
    data.bill(QDate(2005, 3, 2), 9, "5,25", 2);
    nameLastBill(data, "Метро");
    data.bill(QDate(2005, 3, 1), 42, "999")
        .bill(QDate(2005, 5, 20), 3, "79,5")
        .bill(QDate(2005, 5, 25), 3, "100");
    data.bill(QDate(2005, 11, 15), 1500, "250");
    nameLastBill(data, "Книга", "на день рождения");
    data.billAt(QDateTime(QDate(2005, 12, 31), QTime(23, 0)), 10, "1000").bill(QDate(2004, 3, 10), 3, "777");
    data.bank(QDate(2005, 3, 1), "5000", "Зарплата").bank(QDate(2005, 3, 15), "-6000,5", "Снятие на ремонт");
    data.bank(QDate(2005, 11, 5), "300", "Проценты")
        .bank(QDate(2004, 12, 31), "10000", "Премия")
        .undatedBank("1");
    data.bank(QDate(2005, 4, 7), "0", QString(255, u'й')).bank(QDate(2005, 4, 7), "0", "второй");
    data.bill(QDate(2005, 4, 7), 42, "0");
    nameLastBill(data, QString(255, u'й'), QString(150, u'ц'));
    return data;
}

} // namespace velmora::test
