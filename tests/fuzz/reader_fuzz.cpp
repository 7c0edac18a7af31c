// libFuzzer target: any input must either decode or raise jet::Error, never
// crash, hang or read outside the buffer, and decoding must not take more
// memory than a small multiple of the input (the runner bounds the time).
// Both the strict reader and the salvaging one the store uses are run.
#include "jet/Error.h"
#include "jet/Reader.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

// Bytes the decoded contents hold: every value, plus the texts and bytes
// they point at.
std::size_t footprint(const jet::Database& db)
{
    std::size_t bytes = 0;
    for (const jet::Table& t : db.tables)
        for (const jet::Row& r : t.rows) {
            bytes += sizeof(jet::Row) + r.size() * sizeof(jet::Value);
            for (const jet::Value& v : r) {
                if (const auto* text = std::get_if<std::u16string>(&v))
                    bytes += 2 * text->size();
                else if (const auto* data = std::get_if<jet::Bytes>(&v))
                    bytes += data->size();
            }
        }
    return bytes;
}

void checkFootprint(const jet::Database& db, std::size_t size)
{
    constexpr std::size_t kMultiple = 64;
    constexpr std::size_t kSlack = 1 << 20;
    if (const std::size_t bytes = footprint(db); bytes > kMultiple * size + kSlack) {
        std::fprintf(stderr, "decoded %zu bytes from a file of %zu\n", bytes, size);
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    try {
        checkFootprint(jet::readDatabase({data, size}, u"varnolit2031"), size);
    } catch (const jet::Error&) {
    }
    try {
        std::optional<jet::Error> damage;
        checkFootprint(jet::salvageDatabase({data, size}, u"varnolit2031", damage), size);
    } catch (const jet::Error&) {
    }
    return 0;
}
