// Balance profile files: round trips, the reader's rules for keys, values and
// file names, bad input, atomic writes, and which profiles fit a ship.
#include "TestSupport.h"
#include "balance/BalanceProfile.h"
#include "gamedata/ShipLine.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <unistd.h>

namespace {

BalanceProfile Sample()
{
    BalanceProfile p;
    p.Profile = QStringLiteral("  Heavy  Fighters of the Rim ");
    p.Class = 5;
    p.Variant = 0;
    int32_t next = -7;
    for (int32_t* field :
         {&p.TuningMin,     &p.TuningMax,      &p.AccelMin,    &p.AccelMax,      &p.TurnMin,
          &p.TurnMax,       &p.SpeedMin,       &p.SpeedMax,    &p.ReactorMin,    &p.ReactorMax,
          &p.WeaponMin,     &p.WeaponMax,      &p.RechargeMin, &p.RechargeMax,   &p.CargoMin,
          &p.CargoMax,      &p.CargoAvg,       &p.CargoDiff,   &p.ShieldMinType, &p.ShieldMinCount,
          &p.ShieldMaxType, &p.ShieldMaxCount, &p.HullMin,     &p.HullMax})
        *field = next += 1013;
    p.HullMax = 2147483647;
    return p;
}

} // namespace

class TestBalanceProfile : public QObject
{
    Q_OBJECT
private slots:
    void roundTripMakesTheDirectory();
    void readerTakesKeysInAnyCaseAndOrder();
    void badInputLoadsWithDefaultsOrNotAtAll();
    void writeReplacesTheFileWhole();
    void profilesForShip();
};

void TestBalanceProfile::roundTripMakesTheDirectory()
{
    QTemporaryDir dir;
    const QString profiles = dir.filePath("Profiles");
    BalanceProfile profile = Sample();
    profile.FileName = "rim fighters";
    QVERIFY(SaveProfile(profile, profiles));
    QCOMPARE(LoadProfile(profiles + "/rim fighters.xbp"), std::optional(profile));

    // The file name comes from the disk, up to the last dot, not from the content.
    QVERIFY(QFile::rename(profiles + "/rim fighters.xbp", profiles + "/M3.fighters.v2.xbp"));
    const QList<BalanceProfile> all = LoadProfiles(profiles);
    QCOMPARE(all.size(), 1);
    QCOMPARE(all[0].FileName, QStringLiteral("M3.fighters.v2"));
    QCOMPARE(all[0].Profile, profile.Profile);
}

void TestBalanceProfile::readerTakesKeysInAnyCaseAndOrder()
{
    const BalanceProfile expected = [] {
        BalanceProfile p = Sample();
        p.FileName = "x";
        return p;
    }();
    const QString text = ProfileText(expected);
    const QStringList lines = text.split(u'\n', Qt::SkipEmptyParts);
    QStringList shuffled;
    for (qsizetype i = lines.size() - 1; i >= 0; --i) {
        const QString key = lines[i].section(u' ', 0, 0);
        const QString rest = lines[i].mid(key.size());
        shuffled.append((i % 2 ? key.toUpper() : key.toLower()) + rest);
    }
    // A key that comes twice takes the later value; other keys are passed over.
    shuffled.prepend("Hull: 1;2");
    shuffled.append("Unknown: 5;6");
    QCOMPARE(ParseProfile(shuffled.join("\r\n").toUtf8(), "x"), std::optional(expected));
}

void TestBalanceProfile::badInputLoadsWithDefaultsOrNotAtAll()
{
    const std::optional<BalanceProfile> sparse =
        ParseProfile("PROFILE: Odd\nclass: seven\nCargo: 5\nSpeed: x;-40\nHull: 99999999999;12\n", "odd");
    QVERIFY(sparse);
    QCOMPARE(sparse->Class, 0);    // text where a number belongs reads as 0
    QCOMPARE(sparse->Variant, -1); // a missing key keeps its default
    QCOMPARE(sparse->CargoMin, 5);
    QCOMPARE(sparse->CargoAvg, 0); // missing pieces read as 0
    QCOMPARE(sparse->SpeedMin, 0);
    QCOMPARE(sparse->SpeedMax, -40);
    QCOMPARE(sparse->HullMin, 0); // too big for 32 bits
    QCOMPARE(sparse->HullMax, 12);

    QVERIFY(!ParseProfile("Class: 3\nHull: 1;2\n", "a"));   // no name
    QVERIFY(!ParseProfile("Profile: x\nHull: 1;2\n", "a")); // no class
    QVERIFY(!ParseProfile(RandomBytes(4000, 7), "a"));
    QVERIFY(!LoadProfile(QDir::tempPath() + "/no-such-dir/none.xbp"));
}

void TestBalanceProfile::writeReplacesTheFileWhole()
{
    QTemporaryDir dir;
    BalanceProfile profile = Sample();
    profile.FileName = "p";
    QVERIFY(SaveProfile(profile, dir.path()));
    // A second name for the old file: a write beside and a rename leaves the
    // old content under it, a write in place would change it.
    QVERIFY(::link(QFile::encodeName(dir.filePath("p.xbp")).constData(),
                   QFile::encodeName(dir.filePath("old")).constData()) == 0);
    const QByteArray before = ReadFile(dir.filePath("p.xbp"));
    profile.Profile = "Changed";
    QVERIFY(SaveProfile(profile, dir.path()));
    QCOMPARE(ReadFile(dir.filePath("old")), before);
    QCOMPARE(LoadProfile(dir.filePath("p.xbp"))->Profile, QStringLiteral("Changed"));

    // Names that would leave the directory are refused.
    for (const QString& name :
         {QString("../escape"), QString("a/b"), QString("a\\b"), QString(".."), QString()}) {
        profile.FileName = name;
        QVERIFY2(!SaveProfile(profile, dir.filePath("inner")), qPrintable(name));
    }
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot).size(), 2);
}

void TestBalanceProfile::profilesForShip()
{
    QList<BalanceProfile> all;
    for (const auto& [name, shipClass, variant] : {std::tuple{"any", 5, -1},
                                                   {"plain", 5, 0},
                                                   {"other", 4, -1},
                                                   {"raider", 5, 4},
                                                   {"any again", 5, -1}})
        all.append(*ParseProfile(QStringLiteral("Profile: %1\nClass: %2\nVariant: %3\n")
                                     .arg(QLatin1String(name))
                                     .arg(shipClass)
                                     .arg(variant)
                                     .toUtf8(),
                                 "f"));
    const auto names = [&all](int shipClass, int variation) {
        QStringList fields(60, "0");
        fields[ShipLineField::ShipClass] = QString::number(shipClass);
        fields[ShipLineField::Variation] = QString::number(variation);
        QStringList result;
        for (const BalanceProfile& p : ProfilesForShip(all, fields.join(u';')))
            result.append(p.Profile);
        return result;
    };
    QCOMPARE(names(5, 0), QStringList{"plain"}); // Variant 0 is the plain ship, not any
    QCOMPARE(names(5, 2), (QStringList{"any", "any again"}));
    QCOMPARE(names(3, 0), QStringList{});
}

QTEST_GUILESS_MAIN(TestBalanceProfile)
#include "tst_balanceprofile.moc"
