#pragma once

#include "jet/Database.h"

#include <string>
#include <vector>

namespace store {

// The eight tables of a Velmora data file and their fixed rows.
inline constexpr char16_t kFilePassword[] = u"varnolit2031";
inline constexpr char kDataFileName[] = "velmora.mdb";
inline constexpr char kBackupFileName[] = "velmora_backup.mdb";
// The folder of the automatic copies, beside the data file.
inline constexpr char kCopiesFolderName[] = "velmora_backups";

// Table definitions without rows, in the order they are written to the file.
std::vector<jet::Table> schemaTables();

// The trash of deleted and corrected operations, kept for a while so that
// they can be put back. A data file gets it only when the first row is put
// in; until then the file keeps the eight tables it had.
inline constexpr char16_t kTrashTable[] = u"Trash";
// The tables a data file gets only with their first row, without rows.
std::vector<jet::Table> tablesMadeOnFirstUse();

// The prepared empty data file: the tables, Tech rows OSTATOK (0) and BACKUP
// (no date), Cur rows 2 and 3 (rate 0) and Mon rows 1-12 with the Russian
// month names. `creationDate` is a Jet date.
jet::Database preparedDatabase(double creationDate);

// `db` with every table of the schema that it lacks, or holds with other
// columns, put in as an empty table: what a damaged file can still show.
jet::Database withSchemaTables(jet::Database db);

// Empty string when `db` has every table of the schema with its columns, in
// any order and each of a kind accepted for what it holds (ColumnKinds.h);
// otherwise a description of the first mismatch.
std::string schemaMismatch(const jet::Database& db);

// Indexes the in-memory image of a data file gets: the sums of a month or a
// year read just the operations of that period, by date, with their amounts;
// an operation is found by its number without reading the others.
std::vector<std::string> imageIndexes();

} // namespace store
