// libFuzzer target: any input must either decode or raise jet::Error, never
// crash, hang or read outside the buffer.
#include "jet/Error.h"
#include "jet/Reader.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    try {
        const jet::Database db = jet::readDatabase({data, size}, u"varnolit2031");
        std::size_t cells = 0;
        for (const jet::Table& t : db.tables)
            for (const jet::Row& r : t.rows)
                cells += r.size();
        (void)cells;
    } catch (const jet::Error&) {
    }
    return 0;
}
