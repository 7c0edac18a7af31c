#pragma once

#include "GuiHarness.h"
#include "store/WideAmount.h"

#include <QString>

#include <map>
#include <memory>
#include <optional>
#include <random>

namespace velmora::test {

// The whole program driven at random with a fixed seed, as a careless user
// would: every text field, editable list and input box of every window gets
// ordinary values or extremes (money at and beyond the Currency range, long
// and odd texts), buttons are pressed in random order, the program is left
// and started again, sign-ins go right and wrong. Each step checks that
// nothing failed inside the program and that the file changed only with a
// confirmation; the run keeps its own account of what the confirmations said.
class HostileRun
{
public:
    explicit HostileRun(const ProgramFolder& folder) : m_folder(folder), m_random(20260316) {}

    // Starts the program, signing in when it asks; false when it did not come up.
    bool start();
    void step(int number);
    // The data file holds what the confirmations said, its money adds up and
    // no figure of the main window lies outside the Currency range.
    void checkFile();

private:
    enum class Kind
    {
        Amount,
        Date,
        Year,
        Text,
    };
    // A purse's money moved by its confirmed operations, and the last expense
    // number before it was made: expenses of an earlier purse that had the
    // same code are not its own.
    struct Purse
    {
        store::WideAmount moved;
        qlonglong billsBefore = 0;
    };
    struct Account
    {
        store::WideAmount bank;
        store::WideAmount expenses;
        std::map<int, Purse> purses;
        QString password;
    };

    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(m_random); }
    bool chance(int percent) { return pick(100) < percent; }
    QString value(Kind kind);
    QWidget* control(QWidget* window, const char* name) { return m_h->control(window, name); }
    void set(QWidget* window, const char* field, Kind kind);
    void fillList(QWidget* window, const char* list, Kind kind);
    void answerBoxes();
    void press(QWidget* window, const char* button);

    void act();
    void mainWindowStep();
    void serviceStep();
    void analyticsStep();
    void chartsStep();
    void signIn();
    void afterStep(const QByteArray& before);
    void note(const QString& text);

    const ProgramFolder& m_folder;
    std::mt19937 m_random;
    std::unique_ptr<GuiHarness> m_h;
    Account m_account;
    Account m_backedUp;
    int m_seenBoxes = 0;
    std::optional<int> m_openPurse;
    // The operation a deletion question named: a bank operation or not, and its amount.
    std::optional<std::pair<bool, store::WideAmount>> m_deleting;
    QString m_action;
};

} // namespace velmora::test
