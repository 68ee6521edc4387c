// AutoBalance always ends: a seeded property test over random profiles and
// ship lines, including equal and empty ranges, reversed and huge limits,
// mid values of 0, tuning ranges of 0, shield scales without positions, shield
// types out of range and lines with text where numbers belong. Every run must
// end within the model's step bound, never cross 100, leave the user's slider
// alone, keep the line's field count and write no NaN or infinity; where the
// steps are fine enough to land on 100 and 100 can be reached, it must.
#include "BalanceTestLines.h"
#include "balance/BalanceModel.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QtTest>

#include <limits>

namespace {

constexpr quint32 kSeed = 20240611;
constexpr int kCases = 4000;
constexpr int32_t kIntMax = std::numeric_limits<int32_t>::max();
constexpr int32_t kIntMin = std::numeric_limits<int32_t>::min();

// With `wellFormed` a plain range of some width, else any kind of range.
std::pair<int32_t, int32_t> RandomRange(QRandomGenerator& r, bool wellFormed)
{
    const int32_t base = r.bounded(0, 200000);
    switch (wellFormed ? 9 : r.bounded(10)) {
    case 0:
        return {base, base}; // equal Min and Max
    case 1:
        return {0, 0};
    case 2:
        return {base, base - r.bounded(1, 5000)}; // reversed
    case 3:
        return {-base, base + r.bounded(2)}; // mid 0
    case 4:
        return {-base, r.bounded(0, 5000)}; // negative bottom
    case 5:
        return r.bounded(2) ? std::pair{kIntMin + r.bounded(100), kIntMax - r.bounded(100)}
                            : std::pair{kIntMax - r.bounded(100), kIntMax};
    case 6:
        return {0, r.bounded(1, 4)}; // a few units only
    default:
        return {base, base + r.bounded(1, 300000)};
    }
}

BalanceProfile RandomProfile(QRandomGenerator& r)
{
    const bool wellFormed = r.bounded(3) == 0;
    BalanceProfile p;
    p.Profile = QStringLiteral("random");
    p.Class = 0;
    for (auto [low, high] : SliderRanges(p))
        std::tie(*low, *high) = RandomRange(r, wellFormed);
    p.TuningMin = r.bounded(0, 20);
    p.TuningMax = p.TuningMin + r.bounded(-2, 12); // a range of 0 now and then
    p.CargoAvg = r.bounded(-100, 100000);
    p.CargoDiff = r.bounded(-100, 50000);
    p.ShieldMinType = r.bounded(-2, 8);
    p.ShieldMaxType = r.bounded(-2, 8);
    p.ShieldMaxCount = r.bounded(-3, 16);
    return p;
}

// A value for a field that a slider stands for: near the profile's range,
// or text that reads as a number only partly or not at all.
QString RandomNumberText(QRandomGenerator& r, int32_t min, int32_t max)
{
    static const char* const odd[] = {"abc", "", "12x"};
    if (r.bounded(6) == 0)
        return QLatin1String(odd[r.bounded(int(std::size(odd)))]);
    if (r.bounded(6) == 0)
        return QString::number(qint32(r.generate())); // any 32-bit value
    const int64_t span = int64_t(max) - min;
    return QString::number(int64_t(min) - span / 4 - 10 +
                           int64_t(r.generateDouble() * double(span * 3 / 2 + 20)));
}

QString RandomFloatText(QRandomGenerator& r, double typical)
{
    static const char* const odd[] = {"nan", "inf", "-inf", "1e40", "-0.5", "x"};
    if (r.bounded(8) == 0)
        return QLatin1String(odd[r.bounded(int(std::size(odd)))]);
    return QString::number(r.generateDouble() * typical * 2, 'g', 6);
}

QString RandomLine(QRandomGenerator& r, const BalanceProfile& p)
{
    QString line = ShipLineWith({
        {ShipLineField::Speed, RandomNumberText(r, p.SpeedMin, p.SpeedMax)},
        {ShipLineField::Acceleration, RandomNumberText(r, p.AccelMin, p.AccelMax)},
        {ShipLineField::ReactorOutput, RandomNumberText(r, p.ReactorMin, p.ReactorMax)},
        {ShipLineField::WeaponEnergy, RandomNumberText(r, p.WeaponMin, p.WeaponMax)},
        {ShipLineField::RechargeRate, RandomFloatText(r, 0.05)},
        {ShipLineField::CargoMax, RandomNumberText(r, p.CargoMin, p.CargoMax)},
        {ShipLineField::Hull, RandomNumberText(r, p.HullMin, p.HullMax)},
        {ShipLineField::Pitch, RandomFloatText(r, double(p.TurnMax) / 6000.0)},
        {ShipLineField::ShieldType, QString::number(r.bounded(-2, 9))},
        {ShipLineField::ShieldCount, QString::number(r.bounded(-1, 20))},
    });
    const int cut = r.bounded(10);
    if (cut == 0) // a short line from a foreign source
        line = line.section(u';', 0, r.bounded(0, ShipLineField::Hull + 1));
    else if (cut == 1) // without its final ";"
        line.chop(1);
    return line;
}

int FieldCount(const QString& line)
{
    return int(line.count(u';')) + 1;
}

bool AtEnd(const BalanceModel& model, int index, bool raise)
{
    return raise ? model.Position(index) >= model.Top(index) : model.Position(index) <= 0;
}

// Every step of every slider that can move changes the average by well under
// one point, and every fraction grows with its slider: 100 cannot be jumped.
bool StepsAreFine(const BalanceModel& model, int changed)
{
    for (int index = 0; index < BalanceIndex::Count; ++index) {
        if (index == changed || model.Top(index) == 0)
            continue;
        const int64_t min = model.Minimum(index);
        const int64_t mid = min + (int64_t(model.Maximum(index)) - min) / 2;
        if (min < 0 || mid <= 0 || 100.0 * model.AutoStep(index) / (9.0 * mid) > 0.9)
            return false;
    }
    return true;
}

// The average with every slider that may move at the end the average needs.
int ExtremeAverage(BalanceModel model, int changed, bool raise)
{
    for (int index = 0; index < BalanceIndex::Count; ++index)
        if (index != changed)
            model.SetPosition(index, raise ? model.Top(index) : 0);
    return model.UpdateDisplay().average;
}

bool HasNonFinite(const QString& text)
{
    static const QRegularExpression word(QStringLiteral("nan|inf"),
                                         QRegularExpression::CaseInsensitiveOption);
    return word.match(text).hasMatch();
}

QString DisplayText(const BalanceDisplay& d)
{
    return QStringList(d.percent.begin(), d.percent.end()).join(u' ') +
           QStringList{d.shieldPercent, d.tuning, d.speedMin, d.speedMax, d.yaw,
                       d.pitch,         d.roll,   d.cargoMin, d.cargoMax, d.recharge}
               .join(u' ');
}

} // namespace

class TestAutoBalance : public QObject
{
    Q_OBJECT
private slots:
    void alwaysEnds();
};

void TestAutoBalance::alwaysEnds()
{
    QRandomGenerator r(kSeed);
    QElapsedTimer timer;
    timer.start();
    int balanced = 0, stuck = 0, fineReachable = 0;
    int64_t worstSteps = 0;
    for (int n = 0; n < kCases; ++n) {
        const QString where = QStringLiteral("case %1 of seed %2").arg(n).arg(kSeed);
        const BalanceProfile profile = RandomProfile(r);
        const QString line = RandomLine(r, profile);
        BalanceModel model(profile);
        model.LoadFromShipLine(line);

        // Now and then an earlier balance leaves Touched flags, and a slider is moved by hand.
        if (r.bounded(3) == 0)
            model.AutoBalance(-1, BalanceMode(r.bounded(3)));
        const int changed = r.bounded(2) ? -1 : r.bounded(BalanceIndex::Count);
        if (changed >= 0)
            model.SetPosition(changed, r.bounded(0, std::max(1, model.Top(changed))));
        // As in the dialog's slider slots, the average shown may still be the
        // one from before that move.
        const bool stale = changed >= 0 && r.bounded(2) == 0;
        if (!stale)
            model.UpdateDisplay();

        const int start = model.Display().average;
        const bool raise = start < 100;
        const int32_t changedAt = changed >= 0 ? model.Position(changed) : 0;
        const bool fine = !stale && start != 100 && StepsAreFine(model, changed);
        const bool reachable = fine && [&] {
            const int extreme = ExtremeAverage(model, changed, raise);
            return extreme == 100 || (extreme < 100) != raise;
        }();

        const BalanceRun run = model.AutoBalance(changed, BalanceMode(r.bounded(3)));

        QVERIFY2(run.stop != BalanceStop::StepLimit, qPrintable(where));
        QVERIFY2(run.steps <= model.StepBound(), qPrintable(where));
        worstSteps = std::max<int64_t>(worstSteps, run.steps);
        QCOMPARE(run.average, model.Display().average);
        if (changed >= 0)
            QVERIFY2(model.Position(changed) == changedAt, qPrintable(where));
        if (run.stop == BalanceStop::Balanced)
            QVERIFY2(run.average == 100, qPrintable(where));
        if (start == 100)
            QVERIFY2(run.stop == BalanceStop::AlreadyBalanced && run.steps == 0, qPrintable(where));
        if (!stale && start != 100)
            QVERIFY2(run.average == 100 || (run.average < 100) == raise, qPrintable(where + ": crossed 100"));
        if (!stale && run.stop == BalanceStop::NothingCanMove)
            for (int index = 0; index < BalanceIndex::Count; ++index)
                QVERIFY2(index == changed || AtEnd(model, index, raise) || (run.coarse & (1u << index)),
                         qPrintable(where + QStringLiteral(": slider %1 could still move").arg(index)));
        if (reachable) {
            QVERIFY2(run.stop == BalanceStop::Balanced, qPrintable(where + ": 100 was reachable"));
            ++fineReachable;
        }
        balanced += run.stop == BalanceStop::Balanced;
        stuck += run.stop == BalanceStop::NothingCanMove;

        const QString written = model.ApplyToShipLine(line);
        QVERIFY2(FieldCount(written) == std::max(FieldCount(line), ShipLineField::Hull + 2),
                 qPrintable(where));
        for (const int field : {2, 3, 4, 7, 8, 13, 20, 21, 22, 23, 26, 27, 28, 29, 46})
            QVERIFY2(!HasNonFinite(ShipField(written, field)), qPrintable(where));
        QVERIFY2(!HasNonFinite(DisplayText(model.Display())), qPrintable(where));
    }
    // The seed must reach every kind of ending, and the reachability check must bite.
    QVERIFY(balanced > kCases / 10);
    QVERIFY(stuck > kCases / 10);
    qInfo("%d cases in %lld ms: %d balanced, %d could not move further, %d fine and reachable; worst %lld "
          "steps",
          kCases, static_cast<long long>(timer.elapsed()), balanced, stuck, fineReachable,
          static_cast<long long>(worstSteps));
    QVERIFY(fineReachable > kCases / 20);
}

QTEST_GUILESS_MAIN(TestAutoBalance)
#include "tst_autobalance.moc"
