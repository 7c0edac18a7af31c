// Damaged input never crashes or hangs the reader: it decodes or raises a
// jet::Error that says what is wrong.
#include "support/Fixtures.h"

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
    return jet::encodeDatabase(db);
}

// Returns the error text, or "" when the input decoded.
std::string outcome(std::span<const std::uint8_t> bytes)
{
    try {
        jet::readDatabase(bytes, store::kFilePassword);
        return {};
    } catch (const jet::Error& e) {
        EXPECT_GT(std::string(e.what()).size(), 10u);
        return e.what();
    }
}

std::vector<std::vector<std::uint8_t>> seedFiles()
{
    std::vector<std::vector<std::uint8_t>> files{ownFile()};
    if (!fixturesDir().empty())
        for (const char* name : {"nwind-jet3.mdb", "db-enc-jet4.mdb", "testUnicodeCompV2003.mdb"})
            files.push_back(readBytes(fixturesDir() / name));
    return files;
}

} // namespace

TEST(ReaderRobustness, EmptyShortAndForeignFilesAreRefusedClearly)
{
    const auto own = ownFile();
    const struct
    {
        std::vector<std::uint8_t> bytes;
        const char* says;
    } cases[] = {
        {{}, "empty"},
        {{0x00, 0x01, 0x00}, "too short"},
        {std::vector<std::uint8_t>(8192, 'x'), "does not start"},
        {std::vector<std::uint8_t>(own.begin(), own.begin() + 300), "shorter than one page"},
    };
    for (const auto& c : cases) {
        try {
            jet::readDatabase(c.bytes, u"");
            ADD_FAILURE() << "decoded: " << c.says;
        } catch (const jet::Error& e) {
            EXPECT_EQ(e.code(), jet::ErrorCode::DamagedFile);
            EXPECT_NE(std::string(e.what()).find(c.says), std::string::npos) << e.what();
        }
    }
}

TEST(ReaderRobustness, TruncatedFilesFailOrDecodeButNeverCrash)
{
    for (const auto& file : seedFiles()) {
        for (std::size_t cut = 0; cut < file.size(); cut += 997)
            outcome(std::span(file).first(cut));
    }
    // A file cut after the catalog cannot hold its rows.
    const auto own = ownFile();
    EXPECT_NE(outcome(std::span(own).first(own.size() - 4096)), "");
}

TEST(ReaderRobustness, FlippedBitsAndRandomBytesNeverCrash)
{
    std::mt19937 random(20261122);
    for (auto file : seedFiles()) {
        const auto original = file;
        for (int trial = 0; trial < 400; ++trial) {
            file = original;
            for (int flips = 1 + trial % 8; flips > 0; --flips) {
                const std::size_t at = random() % file.size();
                file[at] ^= static_cast<std::uint8_t>(1u << (random() % 8));
            }
            outcome(file);
        }
    }
    std::vector<std::uint8_t> noise(64 * 1024);
    for (int trial = 0; trial < 50; ++trial) {
        for (auto& b : noise)
            b = static_cast<std::uint8_t>(random());
        EXPECT_NE(outcome(noise), "");
    }
}

TEST(ReaderRobustness, ValidHeaderWithGarbagePagesIsRefused)
{
    auto file = ownFile();
    std::mt19937 random(7);
    for (std::size_t i = 4096; i < file.size(); ++i)
        file[i] = static_cast<std::uint8_t>(random());
    EXPECT_NE(outcome(file), "");
}
