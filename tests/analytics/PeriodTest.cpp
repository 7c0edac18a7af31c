#include "analytics/Period.h"

#include <gtest/gtest.h>

using analytics::Period;

namespace {

// The dates from "2005-03" up to "2005-03~"; an empty prefix for none at all.
QVariantList datesBeginningWith(const char* prefix)
{
    const QString text = QString::fromUtf8(prefix);
    return text.isEmpty() ? QVariantList{"~", "~"} : QVariantList{text, text + "~"};
}

} // namespace

TEST(Period, ListTextsOrTodayAndWhatTheyMatch)
{
    const QDate today(2026, 3, 15);
    struct Case
    {
        const char* month;
        const char* year;
        const char* label;
        const char* monthPrefix; // empty: the period matches no operation
        const char* yearPrefix;
    };
    for (const Case& c : {
             Case{"", "", "03.2026", "2026-03", "2026"},
             Case{"3 - Март", "2005", "03.2005", "2005-03", "2005"},
             Case{"11 - Ноябрь", "2005", "11.2005", "2005-11", "2005"},
             Case{"3", "2005", "03.2005", "2005-03", "2005"},
             Case{"4 - - - - - -", "2005", "04.2005", "2005-04", "2005"},
             // Nothing before " -": today's month.
             Case{" - Март", "2005", "03.2005", "2005-03", "2005"},
             Case{"12-Декабрь", "999", "12-Декабрь.999", "", "0999"},
             // Typed by hand: no month, no year; shown as typed, matching nothing.
             Case{"13", "2005", "13.2005", "", "2005"},
             Case{"0", "2005", "00.2005", "", "2005"},
             Case{"март", "2005", "март.2005", "", "2005"},
             Case{"3", "20x5", "03.20x5", "", ""},
             Case{"3", "-2005", "03.-2005", "", ""},
             Case{"3", "99", "03.99", "", ""},
             Case{"3", "10000", "03.10000", "", ""},
         }) {
        const Period p = Period::choose(QString::fromUtf8(c.month), QString::fromUtf8(c.year), today);
        EXPECT_EQ(p.label(), QString::fromUtf8(c.label)) << c.month << " / " << c.year;
        EXPECT_EQ(p.monthRange(), datesBeginningWith(c.monthPrefix)) << c.month << " / " << c.year;
        EXPECT_EQ(p.yearRange(), datesBeginningWith(c.yearPrefix)) << c.month << " / " << c.year;
    }
}
