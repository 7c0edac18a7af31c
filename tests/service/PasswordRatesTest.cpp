#include "LedgerFile.h"
#include "service/Clearing.h"
#include "service/CurrencyRates.h"
#include "service/Password.h"

#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace velmora::test;

TEST(Password, SetReplacesTheRowAndRemoveLeavesNone)
{
    LedgerFile d;
    service::Password password(d.store());
    EXPECT_EQ(password.current(), QString());
    for (const QString& typed :
         {QString("Ключ-7"), QString("Ключ-7"), QString("па'роль \"1\""), QString(255, u'п')}) {
        ASSERT_TRUE(password.set(typed));
        EXPECT_EQ(password.current(), typed);
        EXPECT_EQ(d.rows("Tech").filter(QRegularExpression("^PW\\|")).size(), 1) << "one password row";
    }
    ASSERT_TRUE(password.remove());
    EXPECT_EQ(password.current(), QString());
    EXPECT_TRUE(d.rows("Tech").filter(QRegularExpression("^PW\\|")).isEmpty());
    // Too long for the column: the old row is not lost on the way.
    ASSERT_TRUE(password.set("старый"));
    EXPECT_EQ(said(password.set(QString(256, u'п'))), "Пароль не может быть длиннее 255 символов!");
    EXPECT_EQ(password.current(), QString("старый"));
}

TEST(CurrencyRates, KeptToTheCentHalfUp)
{
    struct Case
    {
        const char* typed;
        const char* stored;
    };
    LedgerFile d;
    service::CurrencyRates rates(d.store());
    for (const Case& c : {Case{"28,4567", "28.46"}, Case{"28.455", "28.46"}, Case{"28,454", "28.45"},
                          Case{"-0,005", "0"}, Case{"-1,555", "-1.55"}, Case{"100", "100"}}) {
        const auto typed = store::Amount::parse(QString::fromUtf8(c.typed));
        ASSERT_TRUE(typed) << c.typed;
        ASSERT_TRUE(rates.write(*typed, store::Amount::parse(u"91,5").value()));
        const auto read = rates.read();
        ASSERT_TRUE(read && read->usd && read->eur);
        EXPECT_EQ(read->usd->toPlainString().toStdString(), c.stored) << c.typed;
        EXPECT_EQ(read->eur->toPlainString(), "91.5");
    }
}

TEST(CurrencyRates, AMissingRowStaysMissing)
{
    DataBuilder data;
    std::erase_if(data.database().table(u"Cur")->rows,
                  [](const jet::Row& row) { return row[0] == jet::Value(std::int32_t{3}); });
    LedgerFile d(data);
    service::CurrencyRates rates(d.store());
    ASSERT_TRUE(rates.write(store::Amount::parse(u"30").value(), store::Amount::parse(u"40").value()));
    const auto read = rates.read();
    ASSERT_TRUE(read);
    EXPECT_EQ(read->usd, store::Amount::parse(u"30"));
    EXPECT_FALSE(read->eur.has_value());
    EXPECT_EQ(d.rows("Cur"), QStringList({"2|300000"}));
}

TEST(Clearing, EmptiesOperationsAndCataloguesButKeepsPasswordRatesMonthsAndBackup)
{
    DataBuilder data;
    data.password("секрет").balance("5000").account(1, "Питание").purse(1, "Наличные", "100");
    data.bank(QDate(2026, 3, 1), "5000").bill(QDate(2026, 3, 2), 1, "10");
    data.database().table(u"Cur")->rows[0][1] = jet::Currency{284600};
    for (jet::Row& row : data.database().table(u"Tech")->rows)
        if (row[0] == jet::Value(std::u16string(u"BACKUP")))
            row[3] = jet::DateTime{46000};
    LedgerFile d(data);
    d.folder().write(data.database());
    QFile::copy(d.folder().dataFilePath(), d.backupPath());
    const QByteArray backup = contents(d.backupPath());
    const QStringList months = d.rows("Mon");
    const QStringList currencies = d.rows("Cur");

    ASSERT_TRUE(service::Clearing(d.store()).clearAll());
    for (const char* table : {"Bills", "Bills_Dict", "Bank", "Purse", "Purse_Dict"})
        EXPECT_TRUE(d.rows(table).isEmpty()) << table;
    EXPECT_EQ(d.rows("Tech"), QStringList({"OSTATOK||0|", "BACKUP|||", "PW|секрет||"}));
    EXPECT_EQ(d.rows("Mon"), months);
    EXPECT_EQ(d.rows("Cur"), currencies);
    EXPECT_EQ(contents(d.backupPath()), backup);
    EXPECT_FALSE(backup.isEmpty());
}
