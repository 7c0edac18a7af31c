#pragma once

#include <QString>
#include <QVariant>

namespace store {

// Piece number `index` (from 1) of `text` cut at every occurrence of
// `delimiter`. Only the first character of each occurrence is the cut; the
// rest of the delimiter starts the next piece: textPiece("12 - Еда", " -", 2)
// is "- Еда". An index without a piece gives "", a Null argument (an invalid
// QVariant) gives "". More than 10000 pieces, or an index outside 0..10000,
// throws std::out_of_range; an index that is not a number throws
// std::invalid_argument. An empty delimiter does not cut.
QString textPiece(const QVariant& text, const QVariant& delimiter, const QVariant& index);

} // namespace store
