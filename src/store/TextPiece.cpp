#include "TextPiece.h"

#include <stdexcept>

namespace store {

namespace {

constexpr qsizetype kMaxPiece = 10000;

bool isNullArgument(const QVariant& v)
{
    return !v.isValid() || v.isNull();
}

qsizetype pieceIndex(const QVariant& index)
{
    bool ok = false;
    const qlonglong value = index.toLongLong(&ok);
    if (!ok)
        throw std::invalid_argument("textPiece: the index is not a number");
    if (value < 0 || value > kMaxPiece)
        throw std::out_of_range("textPiece: index outside 0..10000");
    return static_cast<qsizetype>(value);
}

// Replaces the first character of every delimiter occurrence by the marker,
// always taking the first occurrence left in the text. A marker written into
// the text can complete an occurrence that starts up to one delimiter length
// earlier, so the search resumes there. An occurrence that already starts
// with the marker would be found forever; the search moves past it instead.
void markOccurrences(QString& text, const QString& delimiter, QChar marker)
{
    qsizetype floor = 0;
    qsizetype from = 0;
    for (qsizetype at; (at = text.indexOf(delimiter, from)) >= 0;) {
        if (text[at] == marker)
            floor = at + 1;
        text[at] = marker;
        from = qMax(floor, at - delimiter.size() + 1);
    }
}

} // namespace

QString textPiece(const QVariant& text, const QVariant& delimiter, const QVariant& index)
{
    if (isNullArgument(text) || isNullArgument(delimiter) || isNullArgument(index))
        return QString();
    const qsizetype wanted = pieceIndex(index);
    QString marked = text.toString();
    const QString cut = delimiter.toString();
    const QChar marker = cut == QString(QChar(2)) ? QChar(3) : QChar(2);
    if (!cut.isEmpty())
        markOccurrences(marked, cut, marker);

    qsizetype counter = 0;
    QString piece;
    QString result;
    for (const QChar c : marked) {
        if (c != marker) {
            piece += c;
            continue;
        }
        if (++counter > kMaxPiece)
            throw std::out_of_range("textPiece: more than 10000 pieces");
        if (counter == wanted)
            result = piece;
        piece.clear();
    }
    if (counter + 1 > kMaxPiece)
        throw std::out_of_range("textPiece: more than 10000 pieces");
    if (counter + 1 == wanted)
        result = piece;
    return result;
}

} // namespace store
