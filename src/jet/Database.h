#pragma once

#include "Table.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace jet {

enum class Version
{
    Jet3,
    Jet4,
};

// Everything of a data file the program keeps: its user tables and rows, the
// database password and the creation date that masks it. Indexes,
// relationships and saved queries are not kept.
struct Database
{
    Version version = Version::Jet4;
    std::u16string password;
    double creationDate = 0; // Jet date of page 0; masks the stored password
    std::uint16_t codePage = 1252;
    std::vector<Table> tables;

    Table* table(std::u16string_view name);
    const Table* table(std::u16string_view name) const;
};

} // namespace jet
