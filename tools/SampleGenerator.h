#pragma once

#include "SampleData.h"
#include "SampleRandom.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace velmora::sample {

// Builds a household's history month by month, keeping the money consistent:
// every deposit and withdrawal moves the bank part, every expense is paid from
// a purse that was filled from the bank beforehand.
class SampleGenerator
{
public:
    explicit SampleGenerator(const SampleOptions& options);

    SampleHistory run();

private:
    enum class Kind
    {
        Deposit,
        Expense,
        Withdrawal,
    };
    // One operation of a month before it is booked; the order of kinds within
    // a day is the order in which they are booked.
    struct Operation
    {
        unsigned day = 1;
        Kind kind = Kind::Expense;
        std::int64_t units = 0;
        std::int32_t account = 0;
        std::int32_t purse = 0;
        std::u16string name;
        std::u16string note;
    };

    void fillCatalogues();
    void generateMonth(std::chrono::year_month month, unsigned lastDay, bool first);
    Operation makeExpense(unsigned lastDay);
    void addBankOperations(std::vector<Operation>& operations, std::chrono::year_month month,
                           unsigned lastDay, bool first);
    void book(const Operation& operation, std::chrono::sys_days day);
    void bookExpense(Operation operation, std::chrono::sys_days day);
    void planPurseReserves(const std::vector<Operation>& expenses);
    void fillPurse(std::size_t purse, std::int64_t needed, std::chrono::sys_days day);
    void emptyFullPurses(std::chrono::sys_days day);
    void finish();

    SampleOptions m_options;
    SampleRandom m_random;
    SampleHistory m_history;
    std::vector<std::int64_t> m_purseUnits; // by purse index; the code is index + 1
    std::vector<int> m_purseWeights;
    std::vector<std::int64_t> m_purseReserves; // what a purse is topped up to this month
    std::int64_t m_bankUnits = 0;              // whole money minus the purses
    std::int32_t m_bankNumber = 0;
    std::int32_t m_billsNumber = 0;
};

} // namespace velmora::sample
