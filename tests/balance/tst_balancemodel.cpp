// The balance model on worked values: fractions, the shield scale, the detail
// texts, the line that Done writes, the defined results where a formula would
// divide by zero, and the Touched rules of AutoBalance.
#include "BalanceTestLines.h"
#include "balance/BalanceModel.h"

#include <QRandomGenerator>
#include <QtTest>

#include <limits>

class TestBalanceModel : public QObject
{
    Q_OBJECT
private slots:
    void fractionsOnWorkedValues();
    void shieldScale();
    void shieldScaleRoundTrips();
    void detailTexts();
    void lineThatDoneWrites();
    void emptyProfileHasDefinedResults();
    void touchedRules();
};

void TestBalanceModel::fractionsOnWorkedValues()
{
    BalanceProfile p = UniformProfile(100, 201);
    p.HullMin = p.HullMax = 5000;
    BalanceModel model(p);
    QCOMPARE(model.Top(BalanceIndex::Speed), 101);
    QCOMPARE(model.PropertyFraction(BalanceIndex::Speed, 50), 1.0); // mid = 100 + 101 / 2 = 150
    QCOMPARE(model.PropertyFraction(BalanceIndex::Speed, 101), 201.0 / 150.0);
    QCOMPARE(model.PropertyFraction(BalanceIndex::Hull, 0), 1.0); // no travel: 1.0 whatever the ship says

    // Values outside the profile stop at the slider's ends; the recharge is
    // energy x rate and the turning pitch x 6000, truncated (1.9 gives 1).
    model.LoadFromShipLine(ShipLineWith({{ShipLineField::Speed, "99999"},
                                         {ShipLineField::Acceleration, "-5"},
                                         {ShipLineField::WeaponEnergy, "190"},
                                         {ShipLineField::RechargeRate, "0.7"},
                                         {ShipLineField::Pitch, "0.0249"}}));
    QCOMPARE(model.Position(BalanceIndex::Speed), 101);
    QCOMPARE(model.Position(BalanceIndex::Accel), 0);
    QCOMPARE(model.Position(BalanceIndex::Recharge), 133 - 100);
    QCOMPARE(model.Position(BalanceIndex::Turning), 149 - 100);

    // Set to Average: half of each top, truncated, so an odd range stands a
    // half step under the middle.
    model.SetAverage();
    QCOMPARE(model.Position(BalanceIndex::Speed), 50);
    QCOMPARE(model.ShieldPosition(), model.ShieldSteps() / 2);
}

void TestBalanceModel::shieldScale()
{
    // Types 2 (4 steps), 3 (7 steps) and the top type 4 with 3.
    const ShieldScale scale(2, 4, 3);
    QCOMPARE(scale.Steps(), 14);
    QCOMPARE(scale.PairAt(11), std::optional(ShieldPair{3, 7}));
    QCOMPARE(scale.PairAt(14), std::optional(ShieldPair{4, 3}));
    QCOMPARE(scale.PairAt(15), std::nullopt);
    QCOMPARE(scale.PositionOf(4, 4), std::nullopt);
    QCOMPARE(ShieldScale(4, 5, 2).Steps(), 9 + 2); // below the top type, type 4 has 9
    QCOMPARE(ShieldScale(3, 3, 6).Steps(), 6);     // one type: the top count
    QCOMPARE(ShieldScale(5, 2, 6).Steps(), 0);     // reversed: no positions
    QCOMPARE(ShieldScale(0, 3, -4).Steps(), 12);   // a top count below 1 gives the top type none
    QCOMPARE(ShieldScale(std::numeric_limits<int32_t>::min(), 5, 10).Steps(),
             std::numeric_limits<int32_t>::max());

    // A pair the scale does not hold leaves the slider where it stands, and
    // Done writes the pair of that position.
    BalanceProfile p = UniformProfile(0, 100);
    p.ShieldMinType = 2;
    p.ShieldMaxType = 4;
    p.ShieldMaxCount = 3;
    BalanceModel model(p);
    model.SetShieldPosition(6);
    const QString line = ShipLineWith({{ShipLineField::ShieldType, "7"}, {ShipLineField::ShieldCount, "1"}});
    model.LoadFromShipLine(line);
    QCOMPARE(model.ShieldPosition(), 6);
    const QString written = model.ApplyToShipLine(line);
    QCOMPARE(ShipField(written, ShipLineField::ShieldType), QStringLiteral("3"));
    QCOMPARE(ShipField(written, ShipLineField::ShieldCount), QStringLiteral("2"));
}

void TestBalanceModel::shieldScaleRoundTrips()
{
    QRandomGenerator random(4711);
    for (int round = 0; round < 2000; ++round) {
        const int32_t minType = random.bounded(-6, 8);
        const ShieldScale scale(minType, minType + random.bounded(-1, 9), random.bounded(-2, 12));
        const int32_t steps = scale.Steps();
        for (int32_t position = 1; position <= steps; ++position) {
            const std::optional<ShieldPair> pair = scale.PairAt(position);
            QVERIFY(pair);
            QCOMPARE(scale.PositionOf(pair->type, pair->count), std::optional(position));
        }
        QVERIFY(!scale.PairAt(steps + 1));
    }
}

void TestBalanceModel::detailTexts()
{
    BalanceProfile p = UniformProfile(100, 200);
    p.TuningMin = 2;
    p.TuningMax = 6; // one tuning more for each 25 of speed
    p.CargoAvg = 50;
    p.CargoDiff = 10;
    p.ShieldMinType = p.ShieldMaxType = 4;
    p.ShieldMaxCount = 5;
    BalanceModel model(p);
    model.SetPosition(BalanceIndex::Speed, 60);
    model.SetPosition(BalanceIndex::Cargo, 25);
    model.SetShieldPosition(3);
    BalanceDisplay d = model.UpdateDisplay();
    QCOMPARE(d.tuning, QStringLiteral("4"));
    QCOMPARE(d.speedMin, QStringLiteral("0.32"));
    QCOMPARE(d.speedMax, QStringLiteral("0.449")); // (160 + 160 x 4 x 0.1 + 0.5) x 0.002
    QCOMPARE(d.cargoMax, QStringLiteral("125"));
    QCOMPARE(d.cargoMin, QStringLiteral("45")); // 40 + 25 / 100 x 20
    QCOMPARE(d.shieldType, QStringLiteral("1GJ"));
    QCOMPARE(d.shieldPercent, QStringLiteral("120%"));

    model.SetPosition(BalanceIndex::Cargo, 0); // 100 of 200: exactly half, the typical floor
    QCOMPARE(model.UpdateDisplay().cargoMin, QStringLiteral("50"));
    model.SetPosition(BalanceIndex::Cargo, 100);
    QCOMPARE(model.UpdateDisplay().cargoMin, QStringLiteral("60"));

    // A speed range shorter than the tuning range: tunings in proportion.
    p.SpeedMax = 103;
    BalanceModel shortRange(p);
    shortRange.SetPosition(BalanceIndex::Speed, 3);
    QCOMPARE(shortRange.UpdateDisplay().tuning, QStringLiteral("6"));
    // No tuning range: TuningMin.
    p.TuningMax = 2;
    QCOMPARE(BalanceModel(p).Display().tuning, QStringLiteral("2"));
}

void TestBalanceModel::lineThatDoneWrites()
{
    BalanceProfile p = UniformProfile(1000, 3000);
    p.TuningMin = 1;
    p.TuningMax = 11;
    BalanceModel model(p);
    const QString line = ShipLineWith({{ShipLineField::Yaw, "0.9"},
                                       {ShipLineField::Pitch, "0.3"}, // 1800
                                       {ShipLineField::Roll, "0.1"},
                                       {ShipLineField::Speed, "2000"},
                                       {ShipLineField::WeaponEnergy, "2500"},
                                       {ShipLineField::RechargeRate, "0.8"},
                                       {ShipLineField::SpeedExtensions, "3"},
                                       {ShipLineField::RudderExtensions, "9"},
                                       {ShipLineField::CargoMax, "1234"}});
    model.LoadFromShipLine(line);
    const QString written = model.ApplyToShipLine(line);

    QCOMPARE(written.count(u';'), line.count(u';'));
    const QList<int> rewritten = {2, 3, 4, 7, 8, 13, 20, 21, 22, 23, 26, 27, 28, 29, 46};
    for (int field = 0; field < 65; ++field)
        if (!rewritten.contains(field))
            QCOMPARE(ShipField(written, field), ShipField(line, field));
    QVERIFY(written.endsWith(";f64;"));

    // Yaw a quarter above pitch, whatever it was; pitch and roll the same.
    QCOMPARE(ShipField(written, ShipLineField::Pitch), QStringLiteral("0.3"));
    QCOMPARE(ShipField(written, ShipLineField::Roll), QStringLiteral("0.3"));
    QCOMPARE(ShipField(written, ShipLineField::Yaw), QStringLiteral("0.375"));
    // One tuning count for speed and rudder: speed 2000 is half way, 1 + 1000 / 200.
    QCOMPARE(ShipField(written, ShipLineField::SpeedExtensions), QStringLiteral("6"));
    QCOMPARE(ShipField(written, ShipLineField::RudderExtensions), QStringLiteral("6"));
    QCOMPARE(ShipField(written, ShipLineField::Speed), QStringLiteral("2000"));
    QCOMPARE(ShipField(written, ShipLineField::Acceleration),
             QStringLiteral("1000")); // "f8" reads 0: the bottom
    QCOMPARE(ShipField(written, ShipLineField::RechargeRate), QStringLiteral("0.8"));
    QCOMPARE(ShipField(written, ShipLineField::CargoMax), QStringLiteral("1234"));

    // A short line from a foreign source is filled up to the hull.
    QCOMPARE(model.ApplyToShipLine("a;b;c").count(u';'), ShipLineField::Hull + 1);
}

void TestBalanceModel::emptyProfileHasDefinedResults()
{
    BalanceProfile p; // every limit 0, shields from type 0 to type 0 with no count
    p.Class = 0;
    BalanceModel model(p);
    const QString line = ShipLineWith({{ShipLineField::Speed, "500"},
                                       {ShipLineField::ShieldType, "3"},
                                       {ShipLineField::ShieldCount, "2"},
                                       {ShipLineField::CargoMax, "50"}});
    model.LoadFromShipLine(line);
    QCOMPARE(model.ShieldSteps(), 0);
    QCOMPARE(model.Display().average, 100);
    for (int index = 0; index < BalanceIndex::Count; ++index)
        QCOMPARE(model.PropertyFraction(index), 1.0);
    QCOMPARE(model.ShieldFraction(), 1.0);
    QCOMPARE(model.Display().shieldType, QString());

    // Mid 0 with travel: -10 .. 10.
    BalanceProfile around = UniformProfile(-10, 10);
    QCOMPARE(BalanceModel(around).PropertyFraction(BalanceIndex::Speed, 15), 1.0);

    const QString written = model.ApplyToShipLine(line);
    QCOMPARE(ShipField(written, ShipLineField::RechargeRate), QStringLiteral("0")); // no weapon energy
    QCOMPARE(ShipField(written, ShipLineField::ShieldType), QStringLiteral("3"));   // no scale: kept
    QCOMPARE(ShipField(written, ShipLineField::ShieldCount), QStringLiteral("2"));
    QCOMPARE(ShipField(written, ShipLineField::CargoMin), QStringLiteral("0"));
}

void TestBalanceModel::touchedRules()
{
    BalanceModel model(UniformProfile(1000, 3000, 4));
    model.SetAverage();
    model.SetPosition(BalanceIndex::Hull, 0);
    model.UpdateDisplay();
    const int32_t hull = model.Position(BalanceIndex::Hull);
    // The slider the user moved is left alone for the whole balance.
    BalanceRun run = model.AutoBalance(BalanceIndex::Hull, BalanceMode::Equal);
    QCOMPARE(run.stop, BalanceStop::Balanced);
    QCOMPARE(model.Position(BalanceIndex::Hull), hull);

    // Touched flags left by this balance count in the next: a short balance
    // moves only sliders that are not touched yet.
    QList<int> touched, free;
    for (int index = 0; index < BalanceIndex::Count; ++index)
        (model.Touched(index) ? touched : free).append(index);
    QVERIFY2(touched.size() >= 2 && free.size() >= 3, "the first balance must end part way through a round");
    std::array<int32_t, BalanceIndex::Count> before{};
    for (int index = 0; index < BalanceIndex::Count; ++index)
        before[index] = model.Position(index);
    const int lowered = free.first();
    model.SetPosition(lowered, before[lowered] - 2 * model.AutoStep(lowered));
    model.UpdateDisplay();
    QVERIFY(model.Display().average < 100);
    run = model.AutoBalance(lowered, BalanceMode::Equal);
    QCOMPARE(run.stop, BalanceStop::Balanced);
    QVERIFY(run.steps < free.size() - 1);
    for (const int index : touched)
        QCOMPARE(model.Position(index), before[index]);
}

QTEST_GUILESS_MAIN(TestBalanceModel)
#include "tst_balancemodel.moc"
