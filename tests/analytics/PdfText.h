#pragma once

#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QStringList>

#include <vector>

namespace velmora::test {

// What poppler's pdftotext reads from a PDF file: the text of every page in
// drawing order, and every word with its box, in points.
struct PdfWord
{
    QString text;
    QRectF box;
};

struct PdfPage
{
    QSizeF size;
    std::vector<PdfWord> words;
};

// One text per page; throws std::runtime_error when pdftotext fails.
QStringList pdfPageTexts(const QString& pdfPath);
std::vector<PdfPage> pdfWords(const QString& pdfPath);

// The text with every kind of white space removed, for finding texts that
// the report wrapped onto several lines.
QString withoutSpaces(const QString& text);

} // namespace velmora::test
