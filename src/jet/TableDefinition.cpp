#include "TableDefinition.h"

#include "ByteOrder.h"
#include "CodePage.h"

#include <algorithm>
#include <unordered_set>

namespace jet {

namespace {

constexpr std::size_t kContinuationHeader = 8;
constexpr std::size_t kMaxColumns = 255;

// The definition as one buffer: the first page whole, then the bytes after
// the header of each continuation page.
std::vector<std::uint8_t> collectDefinition(const PageSource& pages, std::uint32_t first)
{
    std::vector<std::uint8_t> buffer;
    std::unordered_set<std::uint32_t> seen;
    for (std::uint32_t number = first; number != 0;) {
        if (!seen.insert(number).second)
            PageSource::damaged(Reason::Definition,
                                "the definition chain of table page " + std::to_string(first) + " loops");
        const auto page = pages.page(number);
        if (page[0] != 0x02)
            PageSource::damaged(Reason::Definition,
                                "page " + std::to_string(number) + " is not a table definition page");
        const auto body = buffer.empty() ? page : page.subspan(kContinuationHeader);
        buffer.insert(buffer.end(), body.begin(), body.end());
        number = le::u32(&page[4]);
    }
    return buffer;
}

class Cursor
{
public:
    Cursor(const std::vector<std::uint8_t>& buffer, std::size_t at) : m_buffer(buffer), m_at(at) {}
    const std::uint8_t* take(std::size_t n)
    {
        if (m_at + n > m_buffer.size())
            PageSource::damaged(Reason::Definition, "a table definition ends too early");
        const std::uint8_t* p = m_buffer.data() + m_at;
        m_at += n;
        return p;
    }

private:
    const std::vector<std::uint8_t>& m_buffer;
    std::size_t m_at;
};

StoredColumn readDescriptor(const Layout& l, const std::uint8_t* d)
{
    StoredColumn c;
    c.typeCode = d[l.colType];
    c.number = l.wideColNum ? le::u16(d + l.colNum) : d[l.colNum];
    c.varIndex = le::u16(d + l.colVarIndex);
    c.flags = d[l.colFlags];
    c.fixedOffset = le::u16(d + l.colFixedOffset);
    c.column.type = static_cast<ColumnType>(c.typeCode);
    c.column.length = le::u16(d + l.colLength);
    c.column.autoNumber = (c.flags & 0x04) != 0;
    return c;
}

std::u16string readName(Cursor& cursor, const PageSource& pages)
{
    if (pages.layout().unicodeNames) {
        const std::size_t bytes = le::u16(cursor.take(2));
        const std::uint8_t* p = cursor.take(bytes);
        std::u16string name(bytes / 2, u'\0');
        for (std::size_t i = 0; i < name.size(); ++i)
            name[i] = static_cast<char16_t>(le::u16(p + 2 * i));
        return name;
    }
    const std::size_t bytes = *cursor.take(1);
    const auto* p = reinterpret_cast<const char*>(cursor.take(bytes));
    return decodeCodePage(std::string_view(p, bytes), pages.header().codePage);
}

// In col_num order; two columns with one number would share a null-mask bit.
void sortByNumber(std::vector<StoredColumn>& columns)
{
    std::stable_sort(columns.begin(), columns.end(),
                     [](const StoredColumn& a, const StoredColumn& b) { return a.number < b.number; });
    for (std::size_t i = 1; i < columns.size(); ++i)
        if (columns[i].number == columns[i - 1].number)
            PageSource::damaged(Reason::Definition, "two columns of a table definition share number " +
                                                        std::to_string(columns[i].number));
}

} // namespace

TableDefinition readTableDefinition(const PageSource& pages, std::uint32_t page)
{
    const Layout& l = pages.layout();
    const std::vector<std::uint8_t> def = collectDefinition(pages, page);
    if (def.size() < l.tdefFixedEnd)
        PageSource::damaged(Reason::Definition, "a table definition is too short");

    TableDefinition t;
    t.page = page;
    t.rowCount = le::u32(&def[l.tdefRowCount]);
    t.lastAutoNumber = static_cast<std::int32_t>(le::u32(&def[l.tdefAutoNumber]));
    t.maxCols = le::u16(&def[l.tdefMaxCols]);
    t.varColumnCount = le::u16(&def[l.tdefVarCols]);
    const std::size_t columnCount = le::u16(&def[l.tdefColumnCount]);
    const std::size_t realIndexes = le::u32(&def[l.tdefRealIndexCount]);
    t.ownedMap = le::u32(&def[l.tdefOwnedMap]);
    if (realIndexes > 1000)
        PageSource::damaged(Reason::Definition,
                            "a table definition claims " + std::to_string(realIndexes) + " indexes");
    // Jet tables have at most 255 columns; every value of a row costs memory.
    if (columnCount > kMaxColumns)
        PageSource::damaged(Reason::Definition,
                            "a table definition claims " + std::to_string(columnCount) + " columns");

    Cursor cursor(def, l.tdefFixedEnd + realIndexes * l.realIndexEntry);
    t.columns.reserve(columnCount);
    for (std::size_t i = 0; i < columnCount; ++i)
        t.columns.push_back(readDescriptor(l, cursor.take(l.columnDescriptor)));
    for (StoredColumn& c : t.columns)
        c.column.name = readName(cursor, pages);
    sortByNumber(t.columns);
    int fixedOrdinal = 0;
    for (StoredColumn& c : t.columns)
        if (c.fixed())
            c.fixedOrdinal = fixedOrdinal++;
    return t;
}

} // namespace jet
