#include "PageComposer.h"

#include "AnalyticsTexts.h"

#include <QPaintDevice>
#include <QPainter>
#include <QTextLayout>

namespace analytics {

namespace {

const QColor kRule(90, 90, 90);
const QColor kHeaderFill(225, 230, 228);
const QColor kStripeFill(244, 246, 245);

QFont reportFont(qreal points, bool bold = false)
{
    QFont font;
    font.setFamilies(
        {QStringLiteral("Arial"), QStringLiteral("Liberation Sans"), QStringLiteral("DejaVu Sans")});
    font.setStyleHint(QFont::SansSerif);
    font.setPointSizeF(points);
    font.setBold(bold);
    return font;
}

} // namespace

PageComposer::PageComposer(const ReportDocument& report, QPaintDevice& device)
    : m_report(report), m_device(device), m_small(reportFont(7.5)), m_title(reportFont(14, true)),
      m_heading(reportFont(10.5)), m_body(reportFont(9)), m_bold(reportFont(9, true)),
      m_width(device.width()), m_height(device.height())
{
    int weights = 0;
    for (const ReportColumn& column : m_report.columns)
        weights += column.weight;
    qreal x = 0;
    for (const ReportColumn& column : m_report.columns) {
        const qreal width = m_width * column.weight / std::max(weights, 1);
        m_columnX.push_back(x);
        m_columnWidth.push_back(width);
        x += width;
    }
    m_headingHeight = heading(nullptr);
    m_columnsHeight = row(nullptr, headers(), m_bold, 0);
    m_footerHeight = mm(3) + text(nullptr, QStringLiteral("1"), m_small, QRectF(0, 0, m_width, 0), {});
    m_totalHeight = mm(1.5) + row(nullptr, totalCells(), m_bold, 0);
}

qreal PageComposer::mm(qreal millimetres) const
{
    return millimetres * m_device.logicalDpiY() / 25.4;
}

qreal PageComposer::text(QPainter* painter, const QString& text, const QFont& font, const QRectF& box,
                         Qt::Alignment alignment) const
{
    QTextLayout layout(text, font, &m_device);
    QTextOption option(alignment);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    qreal height = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(box.width());
        line.setPosition(QPointF(0, height));
        height += line.height();
    }
    layout.endLayout();
    if (painter)
        layout.draw(painter, box.topLeft());
    return height;
}

// One line of the table; its height is that of its tallest cell.
qreal PageComposer::row(QPainter* painter, const QStringList& cells, const QFont& font, qreal y) const
{
    const qreal padX = mm(1.2);
    const qreal padY = mm(0.8);
    qreal tallest = 0;
    for (std::size_t c = 0; c < m_columnX.size() && c < static_cast<std::size_t>(cells.size()); ++c) {
        const QRectF box(m_columnX[c] + padX, y + padY, m_columnWidth[c] - 2 * padX, 0);
        const Qt::Alignment alignment = m_report.columns[c].alignRight ? Qt::AlignRight : Qt::AlignLeft;
        tallest = std::max(tallest, text(painter, cells.at(static_cast<qsizetype>(c)), font, box, alignment));
    }
    return tallest + 2 * padY;
}

// Product name, title with the period, the account; returns where the table starts.
qreal PageComposer::heading(QPainter* painter) const
{
    qreal y = 0;
    const auto line = [&](const QString& caption, const QFont& font, qreal gapAfter) {
        y += text(painter, caption, font, QRectF(0, y, m_width, 0), Qt::AlignLeft) + gapAfter;
    };
    line(QString::fromUtf8(texts::productName), m_small, mm(1));
    line(m_report.title, m_title, mm(1));
    if (!m_report.account.isEmpty())
        line(m_report.account, m_heading, mm(1));
    return y + mm(3);
}

void PageComposer::footer(QPainter& painter, int number, int pageCount) const
{
    const qreal top = m_height - m_footerHeight;
    painter.setPen(QPen(kRule, mm(0.2)));
    painter.drawLine(QPointF(0, top + mm(1)), QPointF(m_width, top + mm(1)));
    painter.setPen(Qt::black);
    const QRectF box(0, top + mm(3), m_width, 0);
    text(&painter, QString::fromUtf8(texts::productName), m_small, box, Qt::AlignLeft);
    text(&painter, QString::fromUtf8(texts::reportPage).arg(number).arg(pageCount), m_small, box,
         Qt::AlignRight);
}

QStringList PageComposer::headers() const
{
    QStringList headers;
    for (const ReportColumn& column : m_report.columns)
        headers.append(column.header);
    return headers;
}

QStringList PageComposer::totalCells() const
{
    QStringList cells(static_cast<qsizetype>(m_report.columns.size()));
    const QStringList values = {m_report.totalLabel, m_report.total, m_report.count};
    for (qsizetype i = 0; i < cells.size() && i < values.size(); ++i)
        cells[i] = values[i];
    return cells;
}

qreal PageComposer::rowsRoom() const
{
    return m_height - m_headingHeight - m_columnsHeight - m_footerHeight - mm(2);
}

std::vector<PageComposer::Page> PageComposer::paginate() const
{
    std::vector<Page> pages;
    Page page;
    qreal used = 0;
    for (std::size_t i = 0; i < m_report.lines.size(); ++i) {
        const qreal height = row(nullptr, m_report.lines[i], m_body, 0);
        if (page.count > 0 && used + height > rowsRoom()) {
            pages.push_back(page);
            page = Page{i, 0, false};
            used = 0;
        }
        ++page.count;
        used += height;
    }
    if (page.count > 0 && used + m_totalHeight > rowsRoom()) {
        pages.push_back(page);
        page = Page{m_report.lines.size(), 0, false};
    }
    page.last = true;
    pages.push_back(page);
    return pages;
}

void PageComposer::paintPage(QPainter& painter, const Page& page, int number, int pageCount) const
{
    painter.setPen(Qt::black);
    qreal y = heading(&painter);
    painter.fillRect(QRectF(0, y, m_width, m_columnsHeight), kHeaderFill);
    y += row(&painter, headers(), m_bold, y);
    painter.setPen(QPen(kRule, mm(0.3)));
    painter.drawLine(QPointF(0, y), QPointF(m_width, y));
    painter.setPen(Qt::black);
    for (std::size_t i = page.first; i < page.first + page.count; ++i) {
        const qreal height = row(nullptr, m_report.lines[i], m_body, y);
        if (i % 2 == 1)
            painter.fillRect(QRectF(0, y, m_width, height), kStripeFill);
        y += row(&painter, m_report.lines[i], m_body, y);
    }
    if (page.last) {
        painter.setPen(QPen(kRule, mm(0.3)));
        painter.drawLine(QPointF(0, y + mm(0.5)), QPointF(m_width, y + mm(0.5)));
        painter.setPen(Qt::black);
        row(&painter, totalCells(), m_bold, y + mm(1.5));
    }
    footer(painter, number, pageCount);
}

} // namespace analytics
