#pragma once

#include <span>

namespace velmora::sample {

// Something a household buys, with its usual price range in roubles and how
// often it is bought relative to the other items of its account.
struct ExpenseItem
{
    const char16_t* name;
    int minRoubles;
    int maxRoubles;
    int weight;
};

struct ExpenseAccount
{
    const char16_t* name;
    int weight; // how often the account is charged, relative to the others
    std::span<const ExpenseItem> items;
};

struct PurseKind
{
    const char16_t* name;
    const char16_t* note;
    int weight; // share of the expenses paid from it
};

std::span<const ExpenseAccount> expenseAccounts();
std::span<const PurseKind> purseKinds();
// Notes written on some expenses; most have none.
std::span<const char16_t* const> expenseNotes();
// Comments of bank deposits other than salaries, and of withdrawals.
std::span<const char16_t* const> extraIncomeComments();
std::span<const char16_t* const> withdrawalComments();
// Month names as they follow "за" in a salary comment: "Зарплата за март".
const char16_t* monthForComment(unsigned month);

} // namespace velmora::sample
