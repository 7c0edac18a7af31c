#include "jet/Unicode.h"
#include "store/Store.h"
#include "store/Transaction.h"
#include "support/ProgramFolder.h"
#include "support/RecordingSink.h"
#include "support/StoreCalls.h"

#include <gtest/gtest.h>

#include "support/ChildProcess.h"
#include "support/DyingFileOps.h"

#include "store/AtomicFile.h"

#include <csignal>
#include <random>
#include <utility>

using namespace store;
using velmora::test::ChildProcess;
using velmora::test::DyingFileOps;
using velmora::test::ProgramFolder;

namespace {

// Moves the data file from state n to n + 1 in every transaction until
// killed: the balance becomes n + 1, a Bank row numbered n + 1 is added and
// rows older than the last three are deleted. Reports each save; from the
// second save on, dies at system call `killAt` when it is not 0.
void commitForever(const QString& dir, ChildProcess& parent, int killAt)
{
    DyingFileOps ops(0);
    Store store(dir, nullptr, [&](const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
        writeFileAtomically(path, bytes, ops);
    });
    for (bool first = true;; first = false) {
        if (!first && killAt)
            ops = DyingFileOps(std::exchange(killAt, 0));
        Transaction tx(store);
        const std::int64_t next = tx.lookupAmount("Tech", "F2", "F0 = 'OSTATOK'").units() + 1;
        tx.execute("UPDATE Tech SET F2 = ? WHERE F0 = 'OSTATOK'", {Amount::fromUnits(next)});
        tx.execute("INSERT INTO Bank (F1, F2, F3) VALUES (?, ?, ?)",
                   {QDate(2026, 1, 1), Amount::fromUnits(next), QStringLiteral("операция %1").arg(next)});
        tx.execute("DELETE FROM Bank WHERE F0 <= ?", {qlonglong{next - 3}});
        if (!tx.commit())
            ::_exit(3);
        parent.report();
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

// Even trials kill the child after a random number of reported saves,
// wherever it then is; odd ones have it die at each system call of its second
// save in turn, mid-write included. The file is always a whole state, and
// never older than the last reported save.
TEST(CrashSafety, AProcessKilledAtAnyMomentLeavesTheOldOrTheNewFile)
{
    const ProgramFolder folder;
    folder.writePrepared();
    std::mt19937 random(20260314);
    std::int64_t last = 0;
    for (int trial = 0; trial < 60; ++trial) {
        const int killAt = trial % 2 ? 1 + (trial / 2) % 16 : 0;
        ChildProcess child([&](ChildProcess& parent) { commitForever(folder.path(), parent, killAt); });
        const int wanted = killAt ? 1 : 1 + static_cast<int>(random() % 3);
        int reported = 0;
        while (reported < wanted && child.awaitReport())
            ++reported;
        ASSERT_EQ(reported, wanted) << "trial " << trial;
        ASSERT_EQ(killAt ? child.finish() : child.kill(), 128 + SIGKILL) << "trial " << trial;

        std::string problem;
        const std::int64_t n = stateOf(folder.readDataFile(), problem);
        ASSERT_GE(n, last + wanted) << "trial " << trial << ": " << problem;
        last = n;
    }
}
