// The import of profile limits from a TShips table, the class codes, and the
// profiles the program ships: made by this import from the sample game's
// TShips, so the test makes them again and compares. To write them afresh
// after a change of the sample or the import, run the test with
// HW_WRITE_PROFILES set to the data/Profiles folder of the source tree.
#include "TestSupport.h"
#include "balance/ProfileImport.h"
#include "gamedata/ShipLine.h"
#include "gamedata/TypesFile.h"

#include <QDir>
#include <QMap>
#include <QRegularExpression>
#include <QtTest>

namespace {

// A ship of class `shipClass` and variation `variation` with the values given
// in the order speed, accel, cargo floor, cargo, hull, reactor, tunings,
// pitch, energy, rate, shield type, shield count.
QString Ship(int shipClass, int variation, const QStringList& v, const QString& scene = "ships\\s")
{
    QStringList f(65, "0");
    f[ShipLineField::ShipClass] = QString::number(shipClass);
    f[ShipLineField::Variation] = QString::number(variation);
    f[ShipLineField::ShipScene] = scene;
    const int fields[] = {
        ShipLineField::Speed,           ShipLineField::Acceleration, ShipLineField::CargoMin,
        ShipLineField::CargoMax,        ShipLineField::Hull,         ShipLineField::ReactorOutput,
        ShipLineField::SpeedExtensions, ShipLineField::Pitch,        ShipLineField::WeaponEnergy,
        ShipLineField::RechargeRate,    ShipLineField::ShieldType,   ShipLineField::ShieldCount};
    for (int i = 0; i < v.size(); ++i)
        f[fields[i]] = v[i];
    return f.join(u';') + u';';
}

const QString kSourceDir = qEnvironmentVariable("HW_SOURCE_DIR");

// The classes of data/data/classes: "<id>:<name>" lines, "//" comments.
QStringList ClassNames()
{
    QStringList names;
    for (const QString& line : QString::fromUtf8(ReadFile(kSourceDir + "/data/data/classes")).split(u'\n')) {
        if (line.startsWith(u"//") || !line.contains(u':'))
            continue;
        names.append(line.section(u':', 1).trimmed());
    }
    return names;
}

QString FileNameFor(const QString& className)
{
    static const QRegularExpression other(QStringLiteral("[^a-z0-9]+"));
    return className.toLower().replace(other, QStringLiteral("_"));
}

// A profile for each class that has a ship in the sample's TShips, for any
// variant (the plain ship and the first 19 variants, as the import offers).
QMap<QString, QByteArray> ShippedProfiles()
{
    const TypesTable table = ReadTypesFile(kSourceDir + "/samples/game-src/types/TShips.txt");
    QList<int> allVariants;
    for (int v = 0; v <= 19; ++v)
        allVariants.append(v);
    QMap<QString, QByteArray> files;
    const QStringList classes = ClassNames();
    for (int shipClass = 0; shipClass < classes.size(); ++shipClass) {
        std::optional<BalanceProfile> profile =
            ImportProfileLimits(table.records, shipClass, -1, allVariants);
        if (!profile)
            continue;
        profile->Profile = classes[shipClass];
        profile->FileName = FileNameFor(classes[shipClass]);
        files.insert(profile->FileName + ".xbp", ProfileText(*profile).toUtf8());
    }
    return files;
}

} // namespace

class TestProfileImport : public QObject
{
    Q_OBJECT
private slots:
    void limitsOfTheShipsOfAClass();
    void variantsAndDummies();
    void classCodes();
    void shippedProfilesAreOurImport();
    void everySampleShipHasAProfile();
};

void TestProfileImport::limitsOfTheShipsOfAClass()
{
    const QStringList records = {
        Ship(5, 0, {"60000", "16000", "25", "60", "5200", "600", "5", "0.0625", "1800", "0.025", "2", "3"}),
        // Its cargo floor lies above its cargo: it counts for everything but the floor.
        Ship(5, 2,
             {"50000", "18000", "90", "80", "6100", "700", "3", "0.0499833", "2100", "0.0271", "1", "5"}),
        Ship(5, 0, {"55000", "17000", "35", "70", "4400", "500", "8", "0.07", "1500", "0.03", "2", "1"}),
        Ship(4, 0, {"1", "1", "1", "1", "1", "1", "1", "1", "1", "1", "9", "9"}), // another class
    };
    const std::optional<BalanceProfile> p = ImportProfileLimits(records, 5, -1, {0, 2});
    QVERIFY(p);
    QCOMPARE(p->Class, 5);
    QCOMPARE(p->Variant, -1);
    QCOMPARE(std::pair(p->SpeedMin, p->SpeedMax), std::pair(50000, 60000));
    QCOMPARE(std::pair(p->AccelMin, p->AccelMax), std::pair(16000, 18000));
    QCOMPARE(std::pair(p->CargoMin, p->CargoMax), std::pair(60, 80));
    QCOMPARE(std::pair(p->CargoAvg, p->CargoDiff), std::pair(30, 5)); // floors 25 and 35 only
    QCOMPARE(std::pair(p->HullMin, p->HullMax), std::pair(4400, 6100));
    QCOMPARE(std::pair(p->TuningMin, p->TuningMax), std::pair(3, 8));
    // pitch x 6000 and energy x rate are cut: 299.9 gives 299, 56.91 gives 56.
    QCOMPARE(std::pair(p->TurnMin, p->TurnMax), std::pair(299, 420));
    QCOMPARE(std::pair(p->RechargeMin, p->RechargeMax), std::pair(45, 56));
    // Weakest fitting: lowest type with its lowest count; strongest: highest type, highest count.
    QCOMPARE(std::pair(p->ShieldMinType, p->ShieldMinCount), std::pair(1, 5));
    QCOMPARE(std::pair(p->ShieldMaxType, p->ShieldMaxCount), std::pair(2, 3));
}

void TestProfileImport::variantsAndDummies()
{
    const QStringList values = {"100", "10", "5", "50", "1000", "10", "1", "0.01", "100", "0.1", "0", "1"};
    QStringList fast = values, slow = values;
    fast[0] = "900";
    slow[0] = "200";
    const QStringList records = {
        Ship(2, 0, values),
        Ship(2, 3, fast),
        Ship(2, 7, slow),
        Ship(2, 0, {"1", "10", "5", "50", "1000", "10", "1", "0.01", "100", "0.1"}),        // speed 1
        Ship(2, 0, {"5000", "10", "1", "50", "1000", "10", "1", "0.01", "100", "0.1"}),     // floor 1
        Ship(2, 0, {"5000", "10", "5", "50", "1000", "10", "1", "0.01", "100", "0"}),       // no recharge
        Ship(2, 0, {"5000", "10", "5", "50", "1000", "10", "1", "0.01", "100", "0.1"}, "0") // no scene
    };
    const auto speeds = [&](int variant, const QList<int>& wanted) {
        const std::optional<BalanceProfile> p = ImportProfileLimits(records, 2, variant, wanted);
        return p ? std::pair(p->SpeedMin, p->SpeedMax) : std::pair(-1, -1);
    };
    QCOMPARE(speeds(3, {}), std::pair(900, 900));
    QCOMPARE(speeds(-1, {0}), std::pair(100, 100)); // only the plain ships, and no dummy among them
    QCOMPARE(speeds(-1, {0, 3, 7}), std::pair(100, 900));
    QCOMPARE(speeds(5, {}), std::pair(-1, -1)); // no ship: nothing
    QCOMPARE(speeds(-1, {}), std::pair(-1, -1));
}

void TestProfileImport::classCodes()
{
    QCOMPARE(ClassCode(8), ClassCode(0));
    QCOMPARE(ClassCode(9), ClassCode(1));
    QCOMPARE(ClassCode(5), QStringLiteral("M3"));
    QCOMPARE(ClassCode(12), QStringLiteral("TP"));
    QCOMPARE(ClassCode(13), QString());
    QCOMPARE(ClassCode(-1), QString());
}

void TestProfileImport::shippedProfilesAreOurImport()
{
    const QMap<QString, QByteArray> made = ShippedProfiles();
    QVERIFY(made.size() >= 8);
    const QString target = qEnvironmentVariable("HW_WRITE_PROFILES");
    if (!target.isEmpty())
        for (auto it = made.cbegin(); it != made.cend(); ++it)
            QVERIFY(WriteFile(target + "/" + it.key(), it.value()));

    const QDir shipped(kSourceDir + "/data/Profiles");
    QCOMPARE(shipped.entryList({"*.xbp"}, QDir::Files, QDir::Name), made.keys());
    for (auto it = made.cbegin(); it != made.cend(); ++it)
        QVERIFY2(ReadFile(shipped.filePath(it.key())) == it.value(),
                 qPrintable(it.key() + " differs from the import; see the top of this file"));
}

void TestProfileImport::everySampleShipHasAProfile()
{
    const QList<BalanceProfile> profiles = LoadProfiles(kSourceDir + "/data/Profiles");
    const TypesTable table = ReadTypesFile(kSourceDir + "/samples/game-src/types/TShips.txt");
    QVERIFY(table.records.size() >= 16);
    for (const QString& line : table.records)
        QVERIFY2(ProfilesForShip(profiles, line).size() == 1, qPrintable(ShipLineId(line)));
}

QTEST_GUILESS_MAIN(TestProfileImport)
#include "tst_profileimport.moc"
