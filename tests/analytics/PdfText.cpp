#include "PdfText.h"

#include <QProcess>
#include <QRegularExpression>

#include <stdexcept>

namespace velmora::test {

namespace {

QString run(const QStringList& arguments)
{
    QProcess process;
    process.start(QStringLiteral("pdftotext"), arguments);
    if (!process.waitForFinished(30000) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        throw std::runtime_error("pdftotext failed: " + process.readAllStandardError().toStdString());
    return QString::fromUtf8(process.readAllStandardOutput());
}

double attribute(const QString& element, const QString& name)
{
    const QRegularExpression pattern(name + QStringLiteral("=\"([0-9.]+)\""));
    return pattern.match(element).captured(1).toDouble();
}

} // namespace

QStringList pdfPageTexts(const QString& pdfPath)
{
    QStringList pages = run({QStringLiteral("-raw"), QStringLiteral("-enc"), QStringLiteral("UTF-8"), pdfPath,
                             QStringLiteral("-")})
                            .split(QLatin1Char('\f'));
    if (!pages.isEmpty() && pages.last().trimmed().isEmpty())
        pages.removeLast();
    return pages;
}

std::vector<PdfPage> pdfWords(const QString& pdfPath)
{
    const QString html = run({QStringLiteral("-bbox"), QStringLiteral("-enc"), QStringLiteral("UTF-8"),
                              pdfPath, QStringLiteral("-")});
    static const QRegularExpression element(QStringLiteral("<(page|word)([^>]*)>([^<]*)"));
    std::vector<PdfPage> pages;
    for (const QRegularExpressionMatch& m : element.globalMatch(html)) {
        const QString attributes = m.captured(2);
        if (m.captured(1) == QLatin1String("page")) {
            pages.push_back({QSizeF(attribute(attributes, "width"), attribute(attributes, "height")), {}});
            continue;
        }
        if (pages.empty())
            throw std::runtime_error("a word outside any page");
        const QPointF topLeft(attribute(attributes, "xMin"), attribute(attributes, "yMin"));
        const QPointF bottomRight(attribute(attributes, "xMax"), attribute(attributes, "yMax"));
        pages.back().words.push_back({m.captured(3), QRectF(topLeft, bottomRight)});
    }
    return pages;
}

QString withoutSpaces(const QString& text)
{
    QString result;
    for (const QChar ch : text)
        if (!ch.isSpace())
            result.append(ch);
    return result;
}

} // namespace velmora::test
