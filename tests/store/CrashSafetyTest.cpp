#include "StoreFolder.h"
#include "jet/Unicode.h"
#include "store/Store.h"
#include "store/Transaction.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <random>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace store;
using store::test::StoreFolder;

namespace {

// Moves the data file from state n to n + 1 in every transaction until killed:
// the balance becomes n + 1, a Bank row numbered n + 1 is added and rows older
// than the last three are deleted. Writes a byte to `committed` after the
// first commit.
[[noreturn]] void commitForever(const QString& dir, int committed)
{
    Store store(dir);
    for (bool first = true;; first = false) {
        Transaction tx(store);
        const std::int64_t next = tx.lookupAmount("Tech", "F2", "F0 = 'OSTATOK'").units() + 1;
        tx.execute("UPDATE Tech SET F2 = ? WHERE F0 = 'OSTATOK'", {Amount::fromUnits(next)});
        tx.execute("INSERT INTO Bank (F1, F2, F3) VALUES (?, ?, ?)",
                   {QDate(2026, 1, 1), Amount::fromUnits(next), QStringLiteral("операция %1").arg(next)});
        tx.execute("DELETE FROM Bank WHERE F0 <= ?", {qlonglong{next - 3}});
        if (!tx.commit())
            ::_exit(3);
        if (first && ::write(committed, "c", 1) != 1)
            ::_exit(4);
    }
}

// The n of a file in state n; -1 with `problem` set for any other contents.
std::int64_t stateOf(const jet::Database& db, std::string& problem)
{
    const jet::Table& tech = *db.table(u"Tech");
    const jet::Table& bank = *db.table(u"Bank");
    const std::int64_t n = std::get<jet::Currency>(tech.rows.at(0).at(2)).units;
    const std::int64_t first = std::max<std::int64_t>(1, n - 2);
    const std::size_t expectedRows = n == 0 ? 0 : static_cast<std::size_t>(n - first + 1);
    if (bank.rows.size() != expectedRows || bank.lastAutoNumber != n) {
        problem = "balance " + std::to_string(n) + " with " + std::to_string(bank.rows.size()) + " Bank rows";
        return -1;
    }
    for (std::size_t i = 0; i < bank.rows.size(); ++i) {
        const std::int64_t k = first + static_cast<std::int64_t>(i);
        const jet::Row& row = bank.rows[i];
        if (row[0] != jet::Value(static_cast<std::int32_t>(k)) || row[2] != jet::Value(jet::Currency{k}) ||
            row[3] != jet::Value(jet::fromUtf8("операция " + std::to_string(k)))) {
            problem = "Bank row " + std::to_string(i) + " in state " + std::to_string(n);
            return -1;
        }
    }
    return n;
}

} // namespace

TEST(CrashSafety, AProcessKilledAtAnyMomentLeavesTheOldOrTheNewFile)
{
    const StoreFolder folder;
    folder.writePreparedFile();
    std::mt19937 random(20260314);
    std::uniform_int_distribution<int> delayMicroseconds(0, 12000);
    std::int64_t last = 0;
    int killedMidSave = 0;
    for (int trial = 0; trial < 200; ++trial) {
        int committed[2];
        ASSERT_EQ(::pipe(committed), 0);
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0)
            commitForever(folder.dir(), committed[1]);
        // Each kill lands after at least one save, however busy the machine.
        ::close(committed[1]);
        char byte = 0;
        const bool saved = ::read(committed[0], &byte, 1) == 1;
        ::close(committed[0]);
        std::this_thread::sleep_for(std::chrono::microseconds(delayMicroseconds(random)));
        ::kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(saved && WIFSIGNALED(status)) << "the child stopped by itself, status " << status;
        killedMidSave += folder.strayFiles().empty() ? 0 : 1;

        std::string problem;
        const std::int64_t n = stateOf(folder.readDataFile(), problem);
        ASSERT_GT(n, last) << "trial " << trial << ": " << problem;
        last = n;
    }
    RecordProperty("saves", static_cast<int>(last));
    RecordProperty("killedMidSave", killedMidSave);
}
