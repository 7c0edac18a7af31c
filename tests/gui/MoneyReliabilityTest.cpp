// A long random run of the main window's money buttons, right and wrong
// input mixed, with a fixed seed. The test keeps its own account of every
// operation the window confirmed; wrong input must leave the file's bytes
// alone. At checkpoints and at the end the data file must hold exactly that
// account, and mdb-export must read the same rows as our reader.
#include "MoneyWindowDriver.h"

#include "jet/CsvExport.h"
#include "jet/Reader.h"
#include "store/Amount.h"
#include "store/Schema.h"
#include "store/WideAmount.h"

#include <QFileInfo>
#include <QProcess>
#include <QRadioButton>
#include <QTest>

#include <map>
#include <random>

using namespace velmora::test;
using store::Amount;
using store::WideAmount;

namespace {

constexpr int kSteps = 2400;
constexpr int kCheckEvery = 200;
const QStringList kTexts = {"Зарплата", "Д'Артаньян", "\"в кавычках\"",   "таб\tуляция",
                            "",         "x",          QString(255, u'ж'), "Продукты 'на неделю'"};
const QStringList kBadAmounts = {"", "абв", "1,2,3", "١٢", "12 5", "1e2", "922337203685478", "--1"};
const QStringList kBadDates = {"31.02.2026", "2026-13-01", "среда", "", "1.1"};

// What the confirmed operations add up to.
struct Account
{
    WideAmount bank;     // the stored rows of Bank
    WideAmount expenses; // the stored rows of Bills
    std::map<int, WideAmount> purses;
    std::optional<int> open; // the purse open for editing
};

class Run
{
public:
    explicit Run(MoneyWindowDriver& w) : m_w(w), m_random(20260315) {}

    void step();
    void compareWithFile();
    bool failed() const { return QTest::currentTestFailed(); }
    const Account& account() const { return m_account; }

private:
    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(m_random); }
    bool chance(int percent) { return pick(100) < percent; }
    QString anyOf(const QStringList& list) { return list.at(pick(static_cast<int>(list.size()))); }
    QString typedAmount();
    QString typedDate();
    void expectRefused(const QByteArray& before, const QString& message);
    void expectBox(const QString& box);
    bool openSomePurse();
    void closed() { m_account.open.reset(); }

    void bank();
    void newPurse();
    void purseMove();
    void expense();
    void rename();
    void remove();

    MoneyWindowDriver& m_w;
    std::mt19937 m_random;
    Account m_account;
};

QString Run::typedAmount()
{
    const int whole = chance(10) ? pick(100000) : pick(3000);
    const int decimals = pick(4); // 0 to 3 digits after the separator
    QString text = QString::number(chance(5) ? -whole : whole);
    if (decimals > 0)
        text += (chance(50) ? "," : ".") + QString::number(pick(1000)).rightJustified(3, '0').left(decimals);
    return text;
}

QString Run::typedDate()
{
    const QDate day = QDate(2025, 1, 1).addDays(pick(500));
    const QStringList forms = {"dd.MM.yyyy", "d.M.yyyy", "yyyy-MM-dd", "dd.MM.yy"};
    return day.toString(anyOf(forms));
}

void Run::expectBox(const QString& box)
{
    const QStringList boxes = m_w.newBoxes();
    QVERIFY2(boxes == QStringList{box}, qPrintable(boxes.join(" / ") + " instead of " + box));
}

void Run::expectRefused(const QByteArray& before, const QString& message)
{
    expectBox("Ошибка: " + message);
    QVERIFY2(m_w.bytes() == before, qPrintable("the file changed after: " + message));
}

void Run::step()
{
    switch (pick(9)) {
    case 0:
    case 1:
        return bank();
    case 2:
        return newPurse();
    case 3:
    case 4:
        return purseMove();
    case 5:
    case 6:
        return expense();
    case 7:
        return rename();
    default:
        return remove();
    }
}

void Run::bank()
{
    const QByteArray before = m_w.bytes();
    const bool badAmount = chance(10);
    const bool badDate = !badAmount && chance(10);
    const QString typed = badAmount ? anyOf(kBadAmounts) : typedAmount();
    m_w.enter("T12", badDate ? anyOf(kBadDates) : typedDate());
    m_w.enter("T9", typed);
    const int choice = pick(3); // Положить, Снять, or as it was
    if (choice < 2)
        m_w.click(choice == 0 ? "O1" : "O2");
    const bool deposit = qobject_cast<QRadioButton*>(m_w.harness().mainControl("O1"))->isChecked();
    // The comment is asked for only when amount and date are right.
    if (!badAmount && !badDate) {
        if (chance(80))
            m_w.dialogs().answerText(anyOf(kTexts));
        else
            m_w.dialogs().cancelText();
    }
    m_w.click("Command1");
    closed();
    if (badAmount)
        return expectRefused(before, "Необходимо вводить число!");
    if (badDate)
        return expectRefused(before, "Необходимо задать правильную дату операции!");
    const WideAmount amount = *Amount::parse(typed);
    m_account.bank += (deposit ? amount : -amount).roundedToCents();
    expectBox("Ошибка: Сумма в размере " + typed + (deposit ? " добавлена" : " снята"));
}

void Run::newPurse()
{
    const QString name = chance(15) ? QString() : anyOf(kTexts);
    m_w.dialogs().answerText(name);
    const int code = m_account.purses.empty() ? 1 : m_account.purses.rbegin()->first + 1;
    m_w.click("VC4");
    closed();
    if (name.isEmpty()) {
        QVERIFY(m_w.newBoxes().isEmpty());
        return;
    }
    m_account.purses[code] = WideAmount();
    expectBox("Информация: Кошелек успешно добавлен");
}

bool Run::openSomePurse()
{
    if (m_account.open)
        return true;
    if (m_account.purses.empty() || chance(5))
        return false;
    auto chosen = m_account.purses.begin();
    std::advance(chosen, pick(static_cast<int>(m_account.purses.size())));
    m_w.list("Combo1")->setCurrentIndex(static_cast<int>(std::distance(m_account.purses.begin(), chosen)));
    m_w.click("VC1");
    m_account.open = chosen->first;
    const QString state = m_w.text("T4");
    if (state != chosen->second.toDisplayString())
        QTest::qFail(qPrintable("the opened purse shows " + state), __FILE__, __LINE__);
    return true;
}

void Run::purseMove()
{
    const QByteArray before = m_w.bytes();
    const bool isOpen = openSomePurse();
    const bool badAmount = chance(10);
    const QString typed = badAmount ? anyOf(kBadAmounts) : typedAmount();
    const bool putIn = chance(50);
    m_w.click(putIn ? "O3" : "O4");
    m_w.enter("T14", typed);
    m_w.click("Command2");
    if (!isOpen)
        return expectRefused(before, "Необходимо вызвать Кошелек на редакцию!");
    if (badAmount)
        return expectRefused(before, "Необходимо вводить число!");
    const WideAmount amount = *Amount::parse(typed);
    m_account.purses[*m_account.open] += (putIn ? amount : -amount).roundedToCents();
    closed();
    expectBox("Информация: Сумма в размере " + typed +
              (putIn ? " добавлена в кошелек" : " снята с кошелька"));
}

void Run::expense()
{
    const QByteArray before = m_w.bytes();
    const bool isOpen = openSomePurse();
    const bool account = chance(92);
    m_w.list("R2")->setCurrentIndex(account ? pick(3) : -1);
    const bool badAmount = chance(8);
    const QString typed = badAmount ? anyOf(kBadAmounts) : typedAmount();
    const bool badDate = chance(8);
    m_w.enter("T12", badDate ? anyOf(kBadDates) : typedDate());
    m_w.enter("R1", typed);
    const QString name = anyOf(kTexts);
    m_w.field("R3")->setText(name);
    m_w.field("R4")->setText(anyOf(kTexts));
    m_w.click("B3");
    if (!isOpen || !account || badAmount)
        return expectRefused(before, "Необходимо указать номер счета, сумму расхода и выбрать кошелек!");
    if (badDate)
        return expectRefused(before, "Необходимо задать правильную дату операции!");
    const WideAmount spent = Amount::parse(typed)->roundedToCents();
    m_account.expenses += spent;
    m_account.purses[*m_account.open] -= spent;
    expectBox("Информация: Расход на сумму - " + typed + "\r\nЗа - " + name + "\r\nУспешно добавлен!");
    QCOMPARE(m_w.text("T4"), m_account.purses[*m_account.open].toDisplayString());
}

void Run::rename()
{
    const QByteArray before = m_w.bytes();
    const bool isOpen = openSomePurse();
    const QString name = chance(10) ? QString() : anyOf(kTexts);
    m_w.field("T1")->setText(name);
    m_w.field("T3")->setText(anyOf(kTexts));
    m_w.click("VC2");
    const bool valid = isOpen && !name.isEmpty();
    closed();
    if (!valid)
        return expectRefused(before, "Необходимо задать код кошелька, например - 2");
    expectBox("Информация: Изменеия успешно внесены");
}

void Run::remove()
{
    const QByteArray before = m_w.bytes();
    const bool isOpen = openSomePurse();
    const bool yes = chance(60);
    if (isOpen)
        m_w.dialogs().answer(yes ? ui::DialogAnswer::Yes : ui::DialogAnswer::No);
    m_w.click("VC3");
    const std::optional<int> purse = m_account.open;
    closed();
    if (!isOpen)
        return expectRefused(before, "Необходимо выбрать кошелек для удаления");
    if (!yes)
        return expectBox("ВНИМАНИЕ!!! УДАЛЕНИЕ!!!: Подтвердите удаление кошелька!");
    m_account.purses.erase(*purse);
    QCOMPARE(m_w.newBoxes(), QStringList({"ВНИМАНИЕ!!! УДАЛЕНИЕ!!!: Подтвердите удаление кошелька!",
                                          "Информация: Кошелек успешно удален"}));
}

WideAmount sumOf(store::Store& reader, const char* sql)
{
    const store::Rows rows = reader.query(sql);
    return rows.empty() ? WideAmount() : rows.front().wide(0);
}

void Run::compareWithFile()
{
    store::Store reader(m_w.folder().path());
    QCOMPARE(sumOf(reader, "SELECT SUM(F2) FROM Bank"), m_account.bank);
    QCOMPARE(sumOf(reader, "SELECT SUM(F3) FROM Bills"), m_account.expenses);
    QCOMPARE(sumOf(reader, "SELECT F2 FROM Tech WHERE F0 = 'OSTATOK'"), m_account.bank - m_account.expenses);
    std::map<int, WideAmount> purses;
    for (const store::Row& row : reader.query("SELECT F0, F1 FROM Purse"))
        QVERIFY2(purses.emplace(static_cast<int>(row.integer(0)), row.amount(1)).second,
                 "two rows of one purse");
    QVERIFY(purses == m_account.purses);
    QCOMPARE(reader.rows("Purse_Dict").size(), m_account.purses.size());
}

// mdb-export's CSV of every table against our reader's.
void compareWithMdbExport(const QString& path)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    const jet::Database db = jet::readDatabase(
        {reinterpret_cast<const std::uint8_t*>(bytes.constData()), static_cast<std::size_t>(bytes.size())},
        store::kFilePassword);
    for (const jet::Table& table : db.tables) {
        const QString name = QString::fromStdU16String(table.name);
        QProcess exporter;
        exporter.start("mdb-export", {path, name});
        QVERIFY2(exporter.waitForFinished(60000), "mdb-export did not finish");
        QCOMPARE(exporter.exitCode(), 0);
        QCOMPARE(QString::fromUtf8(exporter.readAllStandardOutput()),
                 QString::fromStdString(jet::exportCsv(table)));
    }
}

} // namespace

class MoneyReliabilityTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void longRandomRun();
};

// About a thousand saves, each with two fsyncs: on a memory file system they
// cost nothing, and the run is about the bookkeeping, not the disk.
void MoneyReliabilityTest::initTestCase()
{
    if (QFileInfo("/dev/shm").isWritable())
        qputenv("TMPDIR", "/dev/shm");
}

void MoneyReliabilityTest::longRandomRun()
{
    DataBuilder data;
    data.account(1, "Питание").account(2, "Транспорт").account(3, "Связь");
    MoneyWindowDriver w(data);
    QVERIFY(w.start());
    Run run(w);
    for (int i = 1; i <= kSteps && !run.failed(); ++i) {
        run.step();
        if (i % kCheckEvery == 0 && !run.failed())
            run.compareWithFile();
        if (run.failed())
            qWarning("failed at step %d", i);
    }
    QVERIFY(!run.failed());
    w.harness().frame().mainWindow()->refreshListsAndBalances();
    WideAmount inPurses;
    for (const auto& [code, amount] : run.account().purses)
        inPurses += amount;
    QCOMPARE(w.text("T10"), inPurses.toBalanceString());
    QCOMPARE(w.text("T11"), (run.account().bank - run.account().expenses - inPurses).toBalanceString());
    const QStringList bills = w.rows("Bills"), bank = w.rows("Bank");
    qInfo("%lld bank operations, %lld expenses, %zu purses left", bank.size(), bills.size(),
          run.account().purses.size());
    QVERIFY(bills.size() > 100 && bank.size() > 100);
    compareWithMdbExport(w.folder().dataFilePath());
}

QTEST_MAIN(MoneyReliabilityTest)
#include "MoneyReliabilityTest.moc"
