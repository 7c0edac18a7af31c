// Damaged input never crashes or hangs the reader: it decodes or raises a
// jet::Error that says what is wrong.
#include "support/DamagedFile.h"

#include "jet/Error.h"
#include "jet/Reader.h"
#include "jet/Writer.h"
#include "store/Schema.h"

#include <gtest/gtest.h>

#include <random>

using namespace testsupport;

namespace {

// A small file of our own with rows in every Velmora table.
std::vector<std::uint8_t> ownFile()
{
    jet::Database db = store::preparedDatabase(45000.0);
    jet::Table& bank = *db.table(u"Bank");
    for (int i = 1; i <= 300; ++i)
        bank.rows.push_back({std::int32_t{i}, jet::DateTime{45000.0 + i}, jet::Currency{i * 12345},
                             std::u16string(u"Зарплата за месяц ") + char16_t(u'0' + i % 10)});
    bank.lastAutoNumber = 300;
    jet::Table notes;
    notes.name = u"Notes";
    notes.columns = {jet::Column::ofType(u"Text", jet::ColumnType::Memo)};
    notes.rows = {{std::u16string(5000, u'ж')}, {std::u16string(u"short")}};
    db.tables.push_back(notes);
    return jet::encodeDatabase(db);
}

constexpr std::uint32_t kLongNote = 10000; // bytes of the 5000-letter note

} // namespace

// Random changes are the fuzz targets' work; these are refused by name.
TEST(ReaderRobustness, EmptyShortCutAndForeignFilesAreRefusedClearly)
{
    const auto own = ownFile();
    auto garbled = own;
    std::mt19937 random(7);
    for (std::size_t i = 4096; i < garbled.size(); ++i)
        garbled[i] = static_cast<std::uint8_t>(random());
    const struct
    {
        std::vector<std::uint8_t> bytes;
        const char* says;
    } cases[] = {
        {{}, "empty"},
        {{0x00, 0x01, 0x00}, "too short"},
        {std::vector<std::uint8_t>(8192, 'x'), "does not start"},
        {std::vector<std::uint8_t>(own.begin(), own.begin() + 300), "shorter than one page"},
        {std::vector<std::uint8_t>(own.begin(), own.end() - 4096), "the file is cut short"},
        {garbled, "is not a table definition page"},
    };
    for (const auto& c : cases) {
        try {
            jet::readDatabase(c.bytes, store::kFilePassword);
            ADD_FAILURE() << "decoded: " << c.says;
        } catch (const jet::Error& e) {
            EXPECT_EQ(e.code(), jet::ErrorCode::DamagedFile);
            EXPECT_NE(std::string(e.what()).find(c.says), std::string::npos) << e.what();
        }
    }
}

// What the file states is checked against what is found, and a mismatch names
// the table; salvaging keeps every other table and what could be read of this one.
TEST(ReaderRobustness, MismatchesBetweenWhatTheFileStatesAndHoldsAreDamage)
{
    using Patch = void (*)(std::vector<std::uint8_t>&);
    struct Case
    {
        const char* name;
        Patch patch;
        jet::Reason reason;
        const char16_t* table;
    };
    const Case cases[] = {
        {"pages hidden", [](auto& f) { hidePagesOf(f, u"Bank"); }, jet::Reason::RowCount, u"Bank"},
        {"pages of others listed", [](auto& f) { shiftPagesOf(f, u"Bank"); }, jet::Reason::ForeignPage,
         u"Bank"},
        {"chain loops", [](auto& f) { loopLongValue(f, kLongNote); }, jet::Reason::LongValueReused, u"Notes"},
        {"longer than its chain", [](auto& f) { restateLongValue(f, kLongNote, kLongNote + 2); },
         jet::Reason::LongValue, u"Notes"},
        {"shorter than its chain", [](auto& f) { restateLongValue(f, kLongNote, kLongNote - 2); },
         jet::Reason::LongValue, u"Notes"},
        {"longer than the file", [](auto& f) { restateLongValue(f, kLongNote, 0x3FFFFFFF); },
         jet::Reason::LongValue, u"Notes"},
    };
    const auto sound = ownFile();
    const jet::Database expected = jet::readDatabase(sound, store::kFilePassword);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        auto file = sound;
        c.patch(file);
        EXPECT_THROW(jet::readDatabase(file, store::kFilePassword), jet::Error);
        std::optional<jet::Error> damage;
        const jet::Database salvaged = jet::salvageDatabase(file, store::kFilePassword, damage);
        ASSERT_TRUE(damage && damage->reason() == c.reason && damage->table() == c.table);
        ASSERT_EQ(salvaged.tables.size(), expected.tables.size());
        for (std::size_t t = 0; t < expected.tables.size(); ++t)
            EXPECT_EQ(salvaged.tables[t].rows.size(),
                      expected.tables[t].name == c.table ? 0 : expected.tables[t].rows.size());
    }
}
