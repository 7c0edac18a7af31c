#include "OperationsWindow.h"

#include "OperationsWindowTexts.h"

#include "operations/OperationTableModel.h"
#include "store/Dates.h"
#include "ui/CloseWindow.h"
#include "ui/TextColumns.h"

#include <QCalendarWidget>
#include <QComboBox>
#include <QDateEdit>
#include <QGridLayout>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTableView>

#include <algorithm>

// The window's fields and buttons, and what the filter fields ask for.
namespace operations {

namespace {

const QDate kNoDate(1900, 1, 1); // the least date a field takes: no bound

QDateEdit* dateField(const QString& name, QWidget* parent)
{
    auto* field = new QDateEdit(parent);
    field->setObjectName(name);
    field->setCalendarPopup(true);
    field->setDisplayFormat(QStringLiteral("dd.MM.yyyy"));
    field->setMinimumDate(kNoDate);
    field->setSpecialValueText(tr8(texts::noDate));
    field->setDate(kNoDate);
    const QDate today = QDate::currentDate();
    field->calendarWidget()->setCurrentPage(today.year(), today.month());
    return field;
}

std::optional<QDate> boundOf(const QDateEdit* field)
{
    return field->date() == kNoDate ? std::nullopt : std::optional(field->date());
}

template <typename T> std::optional<T> chosen(const QComboBox* list)
{
    const QVariant data = list->currentData();
    return data.isValid() ? std::optional(static_cast<T>(data.toInt())) : std::nullopt;
}

// A typed bound; an empty or wrong field is no bound.
std::optional<store::Amount> amountBound(const QLineEdit* field)
{
    return store::Amount::parse(field->text());
}

// Outlines the field when it holds text that is no amount; true then.
bool markedWrong(QLineEdit* field)
{
    const bool wrong = !field->text().trimmed().isEmpty() && !amountBound(field);
    field->setStyleSheet(wrong ? QStringLiteral("QLineEdit { border: 1px solid #c00000; }") : QString());
    return wrong;
}

} // namespace

void OperationsWindow::buildFields()
{
    auto* grid = new QGridLayout(this);
    const auto label = [this](const char* text, QWidget* buddy) {
        auto* l = new QLabel(tr8(text), this);
        l->setBuddy(buddy);
        return l;
    };
    const auto list = [this](const QString& name) {
        auto* combo = new QComboBox(this);
        combo->setObjectName(name);
        combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        combo->setMinimumContentsLength(name == QLatin1String("KindList") ? 11 : 16);
        return combo;
    };
    const auto line = [this](const QString& name) {
        auto* field = new QLineEdit(this);
        field->setObjectName(name);
        return field;
    };
    m_from = dateField(QStringLiteral("FromDate"), this);
    m_to = dateField(QStringLiteral("ToDate"), this);
    m_kind = list(QStringLiteral("KindList"));
    m_kind->addItem(tr8(texts::anyValue));
    for (const Operation::Kind kind :
         {Operation::Kind::Deposit, Operation::Kind::Withdrawal, Operation::Kind::Expense})
        m_kind->addItem(kindText(kind), static_cast<int>(kind));
    m_account = list(QStringLiteral("AccountList"));
    m_purse = list(QStringLiteral("PurseList"));
    m_smallest = line(QStringLiteral("AmountFrom"));
    m_largest = line(QStringLiteral("AmountTo"));
    m_text = line(QStringLiteral("SearchText"));
    m_text->setPlaceholderText(tr8(texts::searchHint));
    m_text->setClearButtonEnabled(true);

    // Each field after its label, left to right.
    const auto place = [&](const char* text, QWidget* field, int row, int column, int span = 1) {
        grid->addWidget(label(text, field), row, column);
        grid->addWidget(field, row, column + 1, 1, span);
    };
    place(texts::from, m_from, 0, 0);
    place(texts::to, m_to, 0, 2);
    place(texts::kind, m_kind, 0, 4);
    place(texts::account, m_account, 0, 6);
    place(texts::purse, m_purse, 0, 8);
    place(texts::amountFrom, m_smallest, 1, 0);
    place(texts::amountTo, m_largest, 1, 2);
    place(texts::search, m_text, 1, 4, 5);
    grid->setColumnStretch(10, 1);

    m_list = new QTableView(this);
    m_list->setObjectName(QStringLiteral("OperationList"));
    m_list->setModel(m_model);
    m_list->setSortingEnabled(true);
    m_list->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    m_list->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    m_list->horizontalHeader()->setStretchLastSection(false);
    m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->verticalHeader()->hide();
    m_list->verticalHeader()->setDefaultSectionSize(m_list->fontMetrics().height() + 6);
    // Each column as wide as a typical value of it or its header; the spare
    // width goes to the name and the note.
    const char* const typical[] = {"00.00.0000",    "Поступление", "-000 000,00",      "7 - Дом и хозяйство",
                                   "Хлеб и молоко", "Примечание",  "3 - Кошелек Маши", "N операции"};
    const QFontMetrics metrics = m_list->fontMetrics();
    for (int column = 0; column < OperationTableModel::ColumnCount; ++column) {
        const bool text = column == OperationTableModel::Name || column == OperationTableModel::Note;
        const QString header = m_model->headerData(column, Qt::Horizontal).toString();
        m_list->setColumnWidth(column, metrics.horizontalAdvance(QLatin1Char('M')) +
                                           std::max(metrics.horizontalAdvance(tr8(typical[column])),
                                                    text ? 0 : metrics.horizontalAdvance(header)));
    }
    (new ui::TextColumns(m_list))->keep({OperationTableModel::Name, OperationTableModel::Note});
    grid->addWidget(m_list, 2, 0, 1, 11);
    grid->setRowStretch(2, 1);

    auto* bottom = new QHBoxLayout;
    m_summary = new QLabel(this);
    m_summary->setObjectName(QStringLiteral("Summary"));
    bottom->addWidget(m_summary, 1);
    const auto button = [this, bottom](const char* text, const QString& name) {
        auto* b = new QPushButton(tr8(text), this);
        b->setObjectName(name);
        bottom->addWidget(b);
        return b;
    };
    QPushButton* correctButton = button(texts::correctChosen, QStringLiteral("CorrectButton"));
    QPushButton* deleteButton = button(texts::deleteChosen, QStringLiteral("DeleteButton"));
    m_undoButton = button(texts::undo, QStringLiteral("UndoButton"));
    m_undoButton->setToolTip(QKeySequence(QKeySequence::Undo).toString(QKeySequence::NativeText));
    m_undoButton->setEnabled(false);
    QPushButton* trashButton = button(texts::openTrash, QStringLiteral("TrashButton"));
    QPushButton* printButton = button(texts::print, QStringLiteral("PrintButton"));
    QPushButton* exportButton = button(texts::exportCsv, QStringLiteral("ExportButton"));
    QPushButton* closeButton = button(texts::close, QStringLiteral("CloseButton"));
    grid->addLayout(bottom, 3, 0, 1, 11);

    const QList<QWidget*> order{m_from,      m_to,          m_kind,       m_account,
                                m_purse,     m_smallest,    m_largest,    m_text,
                                m_list,      correctButton, deleteButton, m_undoButton,
                                trashButton, printButton,   exportButton, closeButton};
    for (qsizetype i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);

    for (QDateEdit* field : {m_from, m_to})
        connect(field, &QDateEdit::dateChanged, this, &OperationsWindow::applyFilter);
    for (QComboBox* field : {m_kind, m_account, m_purse})
        connect(field, &QComboBox::currentIndexChanged, this, &OperationsWindow::applyFilter);
    for (QLineEdit* field : {m_smallest, m_largest, m_text})
        connect(field, &QLineEdit::textChanged, this, &OperationsWindow::applyFilter);
    connect(exportButton, &QPushButton::clicked, this, &OperationsWindow::exportCsv);
    connect(deleteButton, &QPushButton::clicked, this, &OperationsWindow::deleteChosen);
    connect(correctButton, &QPushButton::clicked, this, &OperationsWindow::correctCurrent);
    connect(m_undoButton, &QPushButton::clicked, this, &OperationsWindow::undoLast);
    connect(trashButton, &QPushButton::clicked, this, &OperationsWindow::showTrash);
    connect(printButton, &QPushButton::clicked, this, &OperationsWindow::printList);
    // The fields' own Ctrl+Z undoes typing in them; elsewhere it undoes the last deletion or correction.
    auto* undoKey = new QShortcut(QKeySequence::Undo, this);
    undoKey->setContext(Qt::WidgetWithChildrenShortcut);
    connect(undoKey, &QShortcut::activated, this, &OperationsWindow::undoLast);
    connect(m_list, &QTableView::doubleClicked, this, &OperationsWindow::correctCurrent);
    m_list->installEventFilter(this); // Enter corrects the current row, Delete deletes the chosen ones
    connect(closeButton, &QPushButton::clicked, this, [this] { ui::closeWindow(this); });
}

void OperationsWindow::fillCatalogue(QComboBox* list, const QHash<std::int32_t, QString>& names)
{
    const QVariant kept = list->currentData();
    const QSignalBlocker quiet(list);
    list->clear();
    list->addItem(tr8(texts::anyValue));
    for (const auto& [code, entry] : catalogueEntries(names))
        list->addItem(entry, code);
    list->setCurrentIndex(std::max(0, list->findData(kept)));
}

Filter OperationsWindow::filter() const
{
    Filter f;
    f.from = boundOf(m_from);
    f.to = boundOf(m_to);
    f.kind = chosen<Operation::Kind>(m_kind);
    f.account = chosen<std::int32_t>(m_account);
    f.purse = chosen<std::int32_t>(m_purse);
    f.smallest = amountBound(m_smallest);
    f.largest = amountBound(m_largest);
    f.text = m_text->text();
    return f;
}

void OperationsWindow::applyFilter()
{
    m_model->setFilter(filter());
    showSummary();
}

void OperationsWindow::showSummary()
{
    const bool wrong = markedWrong(m_smallest) | markedWrong(m_largest); // both fields marked
    const Selection& shown = m_model->selection();
    QString text = tr8(texts::summary).arg(shown.rows.size()).arg(shown.sum.toBalanceString());
    if (wrong)
        text += QStringLiteral("    ") + tr8(texts::badAmount);
    m_summary->setText(text);
}

QString OperationsWindow::filterDescription() const
{
    QStringList parts;
    const auto bound = [&parts](const char* label, const QString& value) {
        parts.append(tr8(label) + QLatin1Char(' ') + value);
    };
    const auto named = [&parts](const char* label, const QString& value) {
        parts.append(tr8(label) + QStringLiteral(": ") + value);
    };
    const Filter f = filter();
    if (f.from)
        bound(texts::from, store::displayDate(*f.from));
    if (f.to)
        bound(texts::to, store::displayDate(*f.to));
    for (const auto& [label, list] : {std::pair{texts::kind, m_kind}, std::pair{texts::account, m_account},
                                      std::pair{texts::purse, m_purse}})
        if (list->currentIndex() > 0)
            named(label, list->currentText());
    if (f.smallest)
        bound(texts::amountFrom, f.smallest->toDisplayString());
    if (f.largest)
        bound(texts::amountTo, f.largest->toDisplayString());
    if (!f.text.trimmed().isEmpty())
        named(texts::search, QStringLiteral("«%1»").arg(f.text.trimmed()));
    return parts.isEmpty() ? tr8(texts::reportAll) : parts.join(QStringLiteral(", "));
}

} // namespace operations
