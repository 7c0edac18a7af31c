#include "store/TextPiece.h"
#include "store/CatalogueEntry.h"

#include <gtest/gtest.h>

#include <stdexcept>

using store::textPiece;

namespace {

const QString kMarker(QChar(2));
const QString kOtherMarker(QChar(3));

} // namespace

TEST(TextPiece, CutsAtTheFirstCharacterOfEachDelimiter)
{
    struct Case
    {
        QString text;
        QString delimiter;
        int index;
        QString expected;
    };
    const Case cases[] = {
        {QStringLiteral("12 - Еда"), QStringLiteral(" -"), 1, QStringLiteral("12")},
        {QStringLiteral("12 - Еда"), QStringLiteral(" -"), 2, QStringLiteral("- Еда")}, // the dash stays
        {QStringLiteral("12 - Еда"), QStringLiteral(" -"), 3, QString()},
        {QStringLiteral("12 - Еда"), QStringLiteral(" -"), 0, QString()}, // piece 0 is never filled
        {QString(), QStringLiteral(" -"), 1, QString()},
        {QStringLiteral(" -5"), QStringLiteral(" -"), 1, QString()},
        {QStringLiteral(" -5"), QStringLiteral(" -"), 2, QStringLiteral("-5")},
        {QStringLiteral("a,b,,c"), QStringLiteral(","), 3, QString()},
        {QStringLiteral("a,b,,c"), QStringLiteral(","), 4, QStringLiteral("c")},
        {QStringLiteral("a,b,,c,"), QStringLiteral(","), 5, QString()},
        {QStringLiteral("abc"), QString(), 1, QStringLiteral("abc")}, // an empty delimiter does not cut
        // Occurrences overlap: after "aa" at 0 is cut, "aa" at 1 is found too.
        {QStringLiteral("aaa"), QStringLiteral("aa"), 2, QString()},
        {QStringLiteral("aaa"), QStringLiteral("aa"), 3, QStringLiteral("a")},
        // A marker written into the text completes an occurrence that starts before it.
        {QStringLiteral("aa") + kMarker, QStringLiteral("a") + kMarker, 1, QString()},
        {QStringLiteral("aa") + kMarker, QStringLiteral("a") + kMarker, 4, QString()},
        // With the marker itself as delimiter the cut is made with character 3,
        // and a character 3 already in the text cuts as well.
        {QStringLiteral("x") + kMarker + QStringLiteral("y"), kMarker, 2, QStringLiteral("y")},
        {QStringLiteral("x") + kOtherMarker + QStringLiteral("y") + kMarker + QStringLiteral("z"), kMarker, 2,
         QStringLiteral("y")},
        // A marker character in the text is a cut of its own.
        {QStringLiteral("a") + kMarker + QStringLiteral("b"), QStringLiteral(","), 2, QStringLiteral("b")},
        // A delimiter beginning with the marker must not hang.
        {QStringLiteral("x") + kMarker + kMarker + QStringLiteral("y"), kMarker + kMarker, 3,
         QStringLiteral("y")},
    };
    for (const Case& c : cases)
        EXPECT_EQ(textPiece(c.text, c.delimiter, c.index), c.expected)
            << c.text.toStdString() << " / " << c.delimiter.toStdString() << " / " << c.index;
}

TEST(TextPiece, NullArgumentsGiveEmptyText)
{
    EXPECT_EQ(textPiece(QVariant(), QStringLiteral(","), 1), QString());
    EXPECT_EQ(textPiece(QStringLiteral("a,b"), QVariant(), 1), QString());
    EXPECT_EQ(textPiece(QStringLiteral("a,b"), QStringLiteral(","), QVariant()), QString());
    EXPECT_EQ(textPiece(QStringLiteral("a,b"), QStringLiteral(","), QStringLiteral("2")),
              QStringLiteral("b"));
}

TEST(TextPiece, LimitsOfThePieceTable)
{
    const QString tenThousandPieces(9999, QLatin1Char(','));
    EXPECT_EQ(textPiece(tenThousandPieces + QStringLiteral("end"), QStringLiteral(","), 10000),
              QStringLiteral("end"));
    EXPECT_THROW(textPiece(tenThousandPieces + QStringLiteral(","), QStringLiteral(","), 1),
                 std::out_of_range);
    EXPECT_THROW(textPiece(QStringLiteral("a"), QStringLiteral(","), 10001), std::out_of_range);
    EXPECT_THROW(textPiece(QStringLiteral("a"), QStringLiteral(","), -1), std::out_of_range);
    EXPECT_THROW(textPiece(QStringLiteral("a"), QStringLiteral(","), QStringLiteral("x")),
                 std::invalid_argument);
}

TEST(CatalogueEntry, CodeOfAnEntryChosenTypedOrPasted)
{
    const QString pairs = QStringLiteral(" -").repeated(12000);
    struct Case
    {
        QString entry;
        std::optional<int> code;
    };
    for (const Case& c :
         {Case{"3 - Питание", 3}, Case{"12 - Еда - дома", 12}, Case{"7", 7}, Case{" 7 ", 7},
          Case{"-3 - Долги", -3}, Case{"+4 - Связь", 4}, Case{"2147483647 - x", 2147483647},
          Case{"", std::nullopt}, Case{"Питание", std::nullopt}, Case{"3x - Еда", std::nullopt},
          Case{"2147483648 - Много", std::nullopt}, Case{"１２３ - Еда", std::nullopt},
          Case{"1e3 - Еда", std::nullopt}, Case{"3-Еда", std::nullopt}, Case{pairs, std::nullopt},
          Case{"5" + pairs, 5}, Case{QString(10000, u'9'), std::nullopt}})
        EXPECT_EQ(store::CatalogueEntry::codeOf(c.entry), c.code) << c.entry.left(40).toStdString();
    for (const int code : {1, -7, 2147483647, -2147483647 - 1}) {
        const QString entry = store::CatalogueEntry::format(code, QStringLiteral("Еда - дома"));
        EXPECT_EQ(store::CatalogueEntry::codeOf(entry), code) << entry.toStdString();
    }
    EXPECT_EQ(store::CatalogueEntry::format(3, QVariant()), QStringLiteral("3 - "));
}
