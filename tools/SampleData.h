#pragma once

#include "jet/Database.h"

#include <chrono>
#include <cstdint>
#include <vector>

namespace velmora {

std::chrono::sys_days today();

// What a sample household history looks like. The same options give the same
// data, byte for byte.
struct SampleOptions
{
    int years = 3;
    // Bank and expense rows together in every month of the history.
    int opsPerMonth = 60;
    std::uint64_t seed = 1;
    // The history covers whole calendar months and ends on this day.
    std::chrono::sys_days lastDay = today();
};

// Money moved between the bank and a purse: positive into the purse, negative
// back to the bank. The data file keeps no row of these, only the purse's amount.
struct PurseTransfer
{
    std::chrono::sys_days day;
    std::int32_t purse = 0;
    std::int64_t units = 0; // Currency units, 1/10000 rouble
};

struct SampleHistory
{
    jet::Database database;
    std::vector<PurseTransfer> transfers;
};

// A household's bookkeeping: purses, expense accounts, salaries and other bank
// operations, everyday expenses paid from the purses. The stored balance is
// deposits − withdrawals − expenses; each purse holds what was put in minus what
// was taken out minus what was paid from it; neither the bank part nor a purse
// ever goes below zero at the end of a day.
SampleHistory makeSampleHistory(const SampleOptions& options);
jet::Database makeSampleDatabase(const SampleOptions& options);

} // namespace velmora
