#pragma once

#include "DataBuilder.h"

namespace velmora::test {

// A household's year 2005, with the awkward cases the analytics must get
// right: account code 0 and codes above 1000, a label longer than 20
// characters, an account with expenses in March and May only, a March with
// more withdrawn than deposited, an expense paid from a purse that has since
// been deleted, an expense on a code missing from the catalogue, a bank row
// without a date, and rows of 2004 that must stay out.
DataBuilder household2005();

// Gives the last expense row its name and note.
void nameLastBill(DataBuilder& data, const QString& name, const QString& note = {});

} // namespace velmora::test
