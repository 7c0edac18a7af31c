#include "LedgerFile.h"

#include "ledger/Balances.h"
#include "ledger/PurseCatalogue.h"
#include "ledger/PurseOperations.h"
#include "store/StoreTexts.h"

#include <gtest/gtest.h>

using namespace velmora::test;
using ledger::PurseDirection;
using store::texts::amountOutOfRange;

namespace {

store::Amount typed(const char* text)
{
    return *store::Amount::parse(QString::fromUtf8(text));
}

} // namespace

TEST(PurseOperations, OnlyThePurseRowChanges)
{
    struct Case
    {
        const char* what;
        bool withRow;
        const char* start;
        const char* amount;
        PurseDirection direction;
        const char* purse;
        const char* bank; // "В банке" plus the rouble of purse 1; the stored balance is 1000
    };
    const Case cases[] = {
        {"put in", true, "100", "50,5", PurseDirection::PutIn, "150.5", "849.5"},
        {"below zero", true, "10", "30", PurseDirection::TakeOut, "-20", "1020"},
        {"without a row", false, "", "7", PurseDirection::PutIn, "7", "993"},
        {"take out, half a kopeck", true, "0", "12,345", PurseDirection::TakeOut, "-12.34", "1012.34"},
        {"a fraction of a kopeck stays", true, "10,0049", "1", PurseDirection::PutIn, "11.0049", "988.9951"},
        {"negative put-in", true, "5", "-5", PurseDirection::PutIn, "0", "1000"},
    };
    for (const Case& c : cases) {
        DataBuilder data;
        data.balance("1000").purse(1, "Наличные", "1").bank(QDate(2026, 1, 1), "1000");
        if (c.withRow)
            data.purse(4, "Карта", c.start);
        else
            data.purseWithoutMoney(4, "Карта");
        LedgerFile file(data);
        EXPECT_EQ(said(ledger::PurseOperations(file.store()).move(4, typed(c.amount), c.direction)), "done")
            << c.what;
        EXPECT_EQ(file.purse(4), c.purse) << c.what;
        EXPECT_EQ(file.count("Purse"), 2) << c.what;
        EXPECT_EQ(file.purse(1), "1") << c.what;
        EXPECT_EQ(file.balance(), "1000") << c.what;
        EXPECT_EQ(file.count("Bank"), 1) << c.what;
        EXPECT_EQ(file.count("Bills"), 0) << c.what;
        const auto balances = ledger::Balances::read(file.store());
        ASSERT_TRUE(balances.has_value());
        EXPECT_EQ((balances->bankAmount + store::Amount::fromUnits(10'000)).toPlainString().toStdString(),
                  c.bank)
            << c.what;
    }
}

TEST(PurseOperations, TheConfirmationComesBeforeTheFileIsWritten)
{
    DataBuilder data;
    data.purse(2, "Наличные", "100");
    LedgerFile file(data);
    const QByteArray before = file.folder().bytes();
    int confirmations = 0;
    const auto confirm = [&] {
        ++confirmations;
        EXPECT_EQ(file.folder().bytes(), before);
    };
    ledger::PurseOperations purses(file.store());
    EXPECT_EQ(said(purses.move(2, typed("1"), PurseDirection::PutIn, confirm)), "done");
    EXPECT_EQ(confirmations, 1);
    EXPECT_EQ(file.purse(2), "101");

    // Beyond the range nothing is confirmed and nothing written.
    const QByteArray after = file.folder().bytes();
    EXPECT_EQ(said(purses.move(2, typed("-922337203685477"), PurseDirection::TakeOut, confirm)),
              amountOutOfRange);
    EXPECT_EQ(said(purses.move(2, typed("922337203685477"), PurseDirection::PutIn, confirm)),
              amountOutOfRange);
    EXPECT_EQ(confirmations, 1);
    EXPECT_EQ(file.folder().bytes(), after);
    EXPECT_TRUE(file.sink.messages.isEmpty());
}

// A file made elsewhere whose bank figure already lies outside the range:
// an operation may bring it closer, not take it further out.
TEST(PurseOperations, AFigureOutsideTheRangeMayOnlyComeCloser)
{
    DataBuilder data;
    data.balance("0").purse(1, "Наличные", "922337203685477").purse(2, "Карта", "922337203685477");
    LedgerFile file(data);
    ledger::PurseOperations purses(file.store());
    const QByteArray before = file.folder().bytes();
    EXPECT_EQ(said(purses.move(2, typed("0,01"), PurseDirection::PutIn)), amountOutOfRange);
    EXPECT_EQ(file.folder().bytes(), before);
    EXPECT_EQ(said(purses.move(2, typed("0,01"), PurseDirection::TakeOut)), "done");
    EXPECT_EQ(file.purse(2), "922337203685476.99");
    EXPECT_EQ(said(ledger::PurseCatalogue(file.store()).remove(1)), "done");
    EXPECT_TRUE(file.sink.messages.isEmpty());
}
