#include "CorrectionDialog.h"

#include "OperationsWindowTexts.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

namespace operations {

namespace {

QLineEdit* field(const QString& name, const QString& text, QWidget* parent)
{
    auto* edit = new QLineEdit(text, parent);
    edit->setObjectName(name);
    return edit;
}

} // namespace

CorrectionDialog::CorrectionDialog(const Operation& operation, const Journal& journal, QWidget* parent)
    : QDialog(parent), m_operation(operation)
{
    setObjectName(QStringLiteral("CorrectionDialog"));
    setWindowTitle(tr8(texts::correctionTitle).arg(operation.number));
    const bool expense = operation.kind == Operation::Kind::Expense;
    auto* form = new QFormLayout(this);
    m_date =
        field(QStringLiteral("CorrectDate"), operation.date.toString(QStringLiteral("dd.MM.yyyy")), this);
    m_amount = field(QStringLiteral("CorrectAmount"), operation.amount.toDisplayString(), this);
    if (!expense)
        m_amount->setPlaceholderText(tr8(texts::correctionBankAmountHint));
    m_name = field(QStringLiteral("CorrectName"), operation.name, this);
    form->addRow(tr8(texts::correctionDate), m_date);
    form->addRow(tr8(texts::correctionAmount), m_amount);
    if (expense) {
        m_account = catalogueList("CorrectAccount", journal.accounts, operation.account);
        form->addRow(tr8(texts::account), m_account);
    }
    form->addRow(tr8(expense ? texts::correctionName : texts::correctionComment), m_name);
    if (expense) {
        m_note = field(QStringLiteral("CorrectNote"), operation.note, this);
        form->addRow(tr8(texts::correctionNote), m_note);
        m_purse = catalogueList("CorrectPurse", journal.purses, operation.purse);
        form->addRow(tr8(texts::purse), m_purse);
    }
    auto* buttons = new QDialogButtonBox(this);
    QPushButton* correct = buttons->addButton(tr8(texts::correctionDo), QDialogButtonBox::AcceptRole);
    correct->setObjectName(QStringLiteral("CorrectButtonOk"));
    correct->setDefault(true); // Enter corrects, Esc cancels
    buttons->addButton(tr8(texts::correctionCancel), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
    m_name->setMinimumWidth(fontMetrics().horizontalAdvance(QLatin1Char('M')) * 24);
}

QComboBox* CorrectionDialog::catalogueList(const char* name, const QHash<std::int32_t, QString>& names,
                                           std::int32_t current)
{
    auto* list = new QComboBox(this);
    list->setObjectName(QString::fromLatin1(name));
    // An account or purse that has left the catalogue stays choosable by its code.
    QHash<std::int32_t, QString> choosable = names;
    if (!choosable.contains(current))
        choosable.insert(current, QString());
    for (const auto& [code, entry] : catalogueEntries(choosable))
        list->addItem(entry, code);
    list->setCurrentIndex(list->findData(current));
    return list;
}

QString CorrectionDialog::dateText() const
{
    return m_date->text();
}

QString CorrectionDialog::amountText() const
{
    return m_amount->text();
}

Operation CorrectionDialog::corrected(QDate date, store::Amount amount) const
{
    Operation op = m_operation;
    op.date = date;
    op.amount = amount;
    op.name = m_name->text();
    if (m_account)
        op.account = m_account->currentData().toInt();
    if (m_note)
        op.note = m_note->text();
    if (m_purse)
        op.purse = m_purse->currentData().toInt();
    return op;
}

} // namespace operations
