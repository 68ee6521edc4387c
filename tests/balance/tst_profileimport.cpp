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

// A ship of class 5 with the values given for speed, cargo floor, cargo,
// pitch, energy, rate, shield type and count, and the variation and scene.
QString Ship(const QStringList& v, int variation = 0, const QString& scene = "ships\\s")
{
    QStringList f(65, "0");
    f[ShipLineField::ShipClass] = "5";
    f[ShipLineField::Variation] = QString::number(variation);
    f[ShipLineField::ShipScene] = scene;
    const int fields[] = {ShipLineField::Speed,      ShipLineField::CargoMin,     ShipLineField::CargoMax,
                          ShipLineField::Pitch,      ShipLineField::WeaponEnergy, ShipLineField::RechargeRate,
                          ShipLineField::ShieldType, ShipLineField::ShieldCount};
    for (int i = 0; i < v.size(); ++i)
        f[fields[i]] = v[i];
    return f.join(u';') + u';';
}

const QString kSourceDir = qEnvironmentVariable("HW_SOURCE_DIR");

// A profile for each class of data/data/classes that has a ship in the
// sample's TShips, for any variant (the plain ship and variants 1 to 19).
QMap<QString, QByteArray> ShippedProfiles()
{
    const TypesTable table = ReadTypesFile(kSourceDir + "/samples/game-src/types/TShips.txt");
    QList<int> variants;
    for (int v = 0; v <= 19; ++v)
        variants.append(v);
    QStringList classes;
    for (const QString& line : QString::fromUtf8(ReadFile(kSourceDir + "/data/data/classes")).split(u'\n'))
        if (!line.startsWith(u"//") && line.contains(u':'))
            classes.append(line.section(u':', 1).trimmed());
    static const QRegularExpression other(QStringLiteral("[^a-z0-9]+"));
    QMap<QString, QByteArray> files;
    for (int shipClass = 0; shipClass < classes.size(); ++shipClass) {
        std::optional<BalanceProfile> profile = ImportProfileLimits(table.records, shipClass, -1, variants);
        if (!profile)
            continue;
        profile->Profile = classes[shipClass];
        profile->FileName = classes[shipClass].toLower().replace(other, QStringLiteral("_"));
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
    void classCodes();
    void shippedProfilesAreOurImport();
};

void TestProfileImport::limitsOfTheShipsOfAClass()
{
    const QStringList records = {
        Ship({"60000", "25", "60", "0.0625", "1800", "0.025", "2", "3"}),
        // Its cargo floor lies above its cargo: it counts for everything but the floor.
        Ship({"50000", "90", "80", "0.0499833", "2100", "0.0271", "1", "5"}, 2),
        Ship({"55000", "35", "70", "0.07", "1500", "0.03", "2", "1"}),
        Ship({"90000", "35", "70", "0.07", "1500", "0.03", "2", "1"}, 7),
        // Dummies: speed 1, cargo floor 1, no recharge, no scene.
        Ship({"1", "35", "70", "0.07", "1500", "0.03"}),
        Ship({"9000", "1", "70", "0.07", "1500", "0.03"}),
        Ship({"9000", "35", "70", "0.07", "1500", "0"}),
        Ship({"9000", "35", "70", "0.07", "1500", "0.03"}, 0, "0"),
    };
    const std::optional<BalanceProfile> p = ImportProfileLimits(records, 5, -1, {0, 2});
    QVERIFY(p);
    QCOMPARE(std::pair(p->Class, p->Variant), std::pair(5, -1));
    QCOMPARE(std::pair(p->SpeedMin, p->SpeedMax), std::pair(50000, 60000));
    QCOMPARE(std::pair(p->CargoMin, p->CargoMax), std::pair(60, 80));
    QCOMPARE(std::pair(p->CargoAvg, p->CargoDiff), std::pair(30, 5)); // floors 25 and 35 only
    // pitch x 6000 and energy x rate are cut: 299.9 gives 299, 56.91 gives 56.
    QCOMPARE(std::pair(p->TurnMin, p->TurnMax), std::pair(299, 420));
    QCOMPARE(std::pair(p->RechargeMin, p->RechargeMax), std::pair(45, 56));
    // Weakest fitting: lowest type with its lowest count; strongest: highest type, highest count.
    QCOMPARE(std::pair(p->ShieldMinType, p->ShieldMinCount), std::pair(1, 5));
    QCOMPARE(std::pair(p->ShieldMaxType, p->ShieldMaxCount), std::pair(2, 3));

    QCOMPARE(ImportProfileLimits(records, 5, 7, {})->SpeedMin, 90000); // one variant, no list asked
    QCOMPARE(ImportProfileLimits(records, 5, -1, {0})->SpeedMax, 60000);
    QVERIFY(!ImportProfileLimits(records, 5, -1, {}));
    QVERIFY(!ImportProfileLimits(records, 4, 0, {}));
}

void TestProfileImport::classCodes()
{
    QCOMPARE(ClassCode(8), ClassCode(0));
    QCOMPARE(ClassCode(9), ClassCode(1));
    QCOMPARE(ClassCode(5), QStringLiteral("M3"));
    QCOMPARE(ClassCode(13), QString());
}

void TestProfileImport::shippedProfilesAreOurImport()
{
    const QMap<QString, QByteArray> made = ShippedProfiles();
    QVERIFY(made.size() >= 8);
    const QString target = qEnvironmentVariable("HW_WRITE_PROFILES");
    for (auto it = made.cbegin(); !target.isEmpty() && it != made.cend(); ++it)
        QVERIFY(WriteFile(target + "/" + it.key(), it.value()));

    const QDir shipped(kSourceDir + "/data/Profiles");
    QCOMPARE(shipped.entryList({"*.xbp"}, QDir::Files, QDir::Name), made.keys());
    for (auto it = made.cbegin(); it != made.cend(); ++it)
        QVERIFY2(ReadFile(shipped.filePath(it.key())) == it.value(),
                 qPrintable(it.key() + " differs from the import; see the top of this file"));

    // Balance Ship finds a profile for every ship of the sample game.
    const QList<BalanceProfile> profiles = LoadProfiles(shipped.path());
    for (const QString& line : ReadTypesFile(kSourceDir + "/samples/game-src/types/TShips.txt").records)
        QVERIFY2(ProfilesForShip(profiles, line).size() == 1, qPrintable(ShipLineId(line)));
}

QTEST_GUILESS_MAIN(TestProfileImport)
#include "tst_profileimport.moc"
