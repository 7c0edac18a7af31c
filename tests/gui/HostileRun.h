#pragma once

#include "WindowDriver.h"

#include <QString>

#include <memory>
#include <random>

namespace velmora::test {

// The whole program driven at random with a fixed seed, as a careless user
// would: every text field, editable list and input box of every window gets
// ordinary values or extremes (money at and beyond the Currency range, long
// and odd texts), buttons are pressed in random order, the program is left
// and started again, with a sign-in when a password was set. Each step checks that
// nothing failed inside the program and that the file changed only with a
// confirmation.
class HostileRun
{
public:
    explicit HostileRun(const ProgramFolder& folder) : m_folder(folder), m_random(20260316) {}

    // Starts the program, signing in when it asks; false when it did not come up.
    bool start();
    void step(int number);
    // The stored balance is the bank's operations less the expenses, and the
    // purses, the bank's share and every month's sums lie within the Currency range.
    void checkFile();

private:
    enum class Kind
    {
        Amount,
        Date,
        Year,
        Text,
    };

    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(m_random); }
    bool chance(int percent) { return pick(100) < percent; }
    QString value(Kind kind);
    void set(const Form& form, const char* field, Kind kind);
    void fillList(const Form& form, const char* list, Kind kind);
    void answerBoxes();
    void press(const Form& form, const char* button);

    void act();
    void mainWindowStep();
    void serviceStep();
    void analyticsStep();
    void signIn();
    void afterStep(const QByteArray& before);

    const ProgramFolder& m_folder;
    std::mt19937 m_random;
    std::unique_ptr<WindowDriver> m_h;
    int m_seenBoxes = 0;
    QString m_action;
};

} // namespace velmora::test
