#include "gamedata/ShipLine.h"

#include <QtTest>

namespace {

const QString NewShip = "0;0;0;0;0;0;0;0;0;106;1;5;37;0;112;202;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;"
                        "0;0;0;0;0;0;0;0;0;0;0;35;36;1;0;0;0;0;0;1;0;25;1;0;0;0;0;0;HW_NEW_SHIP;";

// A head of 53 fields, then N, the cockpit blocks, the gun groups and a tail.
QString Line(int cockpits, const QString& middle, const QString& tail = "1;500;0;0;0;900;-5;3;0;SS_TEST;")
{
    QStringList head;
    for (int i = 0; i < 53; ++i)
        head.append(QString::number(i));
    return head.join(';') + ";" + QString::number(cockpits) + ";" + middle + ";" + tail;
}

} // namespace

class TestShipLine : public QObject
{
    Q_OBJECT
private slots:
    void fieldsAndRuns();
    void idWithAndWithoutFinalSeparator();
    void setFieldKeepsTheRest();
    void numbersReadZeroOnText();
    void layoutWithCockpitsAndGroups();
    void layoutOfBrokenLinesStaysInside();
    void renumberingGuns();
    void settlingForASave();
};

void TestShipLine::fieldsAndRuns()
{
    const QString line = "a;b;;d;;";
    QCOMPARE(ShipField(line, 0), QString("a"));
    QCOMPARE(ShipField(line, 3), QString("d"));
    QCOMPARE(ShipField(line, 9), QString());
    QCOMPARE(ShipField(line, -1), QString());
    QCOMPARE(ShipField(line, -3), QString("d"));
    QCOMPARE(ShipFields(line, 1, 3), QString("b;;d"));
    QCOMPARE(ShipFields(line, 1, -1), QString("b;;d")); // no empty fields at the end of a run
    QCOMPARE(ShipFields(line, 4, -1), QString());
    QCOMPARE(ShipFields(line, 3, 1), QString());
    QCOMPARE(ShipFields("x;y", 0, -1), QString("x;y"));

    const int t = TailIndex(NewShip);
    const QString rebuilt = ShipFields(NewShip, 0, t + 8) + ";" + ShipFields(NewShip, t + 9, -1);
    QCOMPARE(rebuilt, NewShip.chopped(1));
}

void TestShipLine::idWithAndWithoutFinalSeparator()
{
    QCOMPARE(ShipLineId(NewShip), QString("HW_NEW_SHIP"));
    QCOMPARE(ShipLineId(NewShip.chopped(1)), QString("HW_NEW_SHIP"));
    QCOMPARE(ShipLineId("1;2;SS_X;;;"), QString("SS_X"));
    QCOMPARE(ShipLineId(";;"), QString());
}

void TestShipLine::setFieldKeepsTheRest()
{
    QCOMPARE(SetShipField("a;b;c;", 1, "x y"), QString("a;x y;c;"));
    QCOMPARE(SetShipField("a;b", 4, "e"), QString("a;b;;;e"));
    QCOMPARE(SetShipField("a;b", -1, "e"), QString("a;b"));
}

void TestShipLine::numbersReadZeroOnText()
{
    QCOMPARE(ReadInt("42"), 42);
    QCOMPARE(ReadInt("-7"), -7);
    QCOMPARE(ReadInt("SG_SH_M3"), 0);
    QCOMPARE(ReadInt("0x10"), 0);
    QCOMPARE(ReadInt(""), 0);
    QCOMPARE(ReadFloat("0.25"), 0.25);
    QCOMPARE(ReadFloat("fast"), 0.0);
    QCOMPARE(FormatFloat(1.0 / 3.0), QString("0.333333"));
    QCOMPARE(FormatFloat(1234567.0), QString("1.23457e+06"));
    QCOMPARE(FormatFloat(60.0), QString("60"));
}

void TestShipLine::layoutWithCockpitsAndGroups()
{
    // No block at all: G = 54, T = 55.
    const ShipLineLayout none = LayoutOf(NewShip);
    QCOMPARE(none.cockpitCount, 0);
    QCOMPARE(none.gunIndexField, 54);
    QCOMPARE(none.tailIndex, 55);
    QVERIFY(none.groups.isEmpty());

    // One cockpit with an empty group: G = 58, T = 63.
    const QString one = Line(1, "1;0;body;0;1;1;0;1;0");
    QCOMPARE(GunIndexField(one), 58);
    QCOMPARE(TailIndex(one), 63);
    QCOMPARE(ShipField(one, TailIndex(one) + 9), QString("SS_TEST"));

    // A turret added: one more block and one more empty group.
    const QString two = Line(2, "1;0;body;0;2;1;t1;2;2;1;0;1;0;1;0;2;0");
    QCOMPARE(CockpitCount(two), 2);
    QCOMPARE(GunIndexField(two), 62);
    QCOMPARE(TailIndex(two), 71);
    QCOMPARE(ShipField(two, TailIndex(two) + 9), QString("SS_TEST"));

    // Groups with entries: each entry moves T by six.
    const QString guns = Line(1, "1;0;body;0;1;1;2;1;2;1;1;b;3;;-1;2;1;c;4;d;5");
    const ShipLineLayout layout = LayoutOf(guns);
    QCOMPARE(layout.groups.size(), 1);
    QCOMPARE(layout.groups[0].entries, 2);
    QCOMPARE(layout.tailIndex, 75);
    QCOMPARE(ShipField(guns, layout.groups[0].FirstEntry() + 2), QString("b"));
    QCOMPARE(ShipField(guns, layout.tailIndex + 9), QString("SS_TEST"));
}

void TestShipLine::layoutOfBrokenLinesStaysInside()
{
    for (const QString& line : {QString(), QString("1;2;3"), Line(99999, "1"),
                                Line(0, "2147483647;1;1;1;99999"), Line(0, "3;1;1;1;-5"), Line(-4, "0")}) {
        const ShipLineLayout layout = LayoutOf(line);
        const int fields = static_cast<int>(line.count(';')) + 1;
        QVERIFY2(layout.cockpitCount >= 0, qPrintable(line.right(40)));
        QVERIFY2(layout.tailIndex <= std::max(fields, 55), qPrintable(line.right(40)));
        for (const GunGroupPlace& group : layout.groups)
            QVERIFY(group.FirstEntry() + 6 * group.entries <= fields);
    }
    QCOMPARE(GunIndexField("1;2;3"), 54);
}

void TestShipLine::renumberingGuns()
{
    // Two groups; the first has an entry of count 0, which shares its Index
    // with the entry behind it.
    const QString before = Line(2, "1;0;body;0;2;1;t1;2;"
                                   "2;9;9;1;2;9;0;b;0;;-1;9;1;c;1;;-1;"
                                   "9;9;2;1;9;1;d;2;e;3");
    const QString after = RenumberGuns(before);
    const ShipLineLayout layout = LayoutOf(after);
    QCOMPARE(layout.groups.size(), 2);
    QCOMPARE(ShipFieldInt(after, layout.groups[0].header + 1), 1);   // Pos of group 1
    QCOMPARE(ShipFieldInt(after, layout.groups[0].FirstEntry()), 1); // count 0
    QCOMPARE(ShipFieldInt(after, layout.groups[0].FirstEntry() + 6), 1);
    QCOMPARE(ShipFieldInt(after, layout.groups[1].header + 1), 2);
    QCOMPARE(ShipFieldInt(after, layout.groups[1].FirstEntry()), 2);
    QCOMPARE(ShipFieldInt(after, 19), 2);
    QCOMPARE(ShipLineId(after), QString("SS_TEST"));
    QVERIFY(after.endsWith(';'));
    QCOMPARE(RenumberGuns(NewShip), NewShip); // no guns: GunCount stays 0
}

void TestShipLine::settlingForASave()
{
    // Turret 1 names standard cockpit row 7, turret 2 a custom cockpit by name,
    // turret 3 row 7 again, turret 4 a row that is not in the list.
    QString line = SetShipField(NewShip, ShipLineField::ShipScene, "old\\scene");
    line = SetShipField(line, TurretCockpitField(0), "7");
    line = SetShipField(line, TurretPositionField(0), "2");
    line = SetShipField(line, TurretCockpitField(1), "MY_PIT");
    line = SetShipField(line, TurretCockpitField(2), "7");
    line = SetShipField(line, TurretCockpitField(3), "9");
    const QList<CockpitListRow> cockpits = {
        {"SS_STD_7", "7", "std7;"}, {"MY_PIT", PackageCockpitSource, "mine;"}, {"SS_STD_3", "3", "std3;"}};
    const SettledShipLine settled =
        SettleShipLine(line, "ships\\falcon", "cockpits\\c1", cockpits, "SS_FALCON");

    QCOMPARE(ShipField(settled.Data, ShipLineField::ShipScene), QString("ships\\falcon"));
    QCOMPARE(ShipField(settled.Data, ShipLineField::CockpitScene), QString("cockpits\\c1"));
    QCOMPARE(ShipField(settled.Data, TurretCockpitField(0)), QString("SS_STD_7"));
    QCOMPARE(ShipField(settled.Data, TurretPositionField(0)), QString("2"));
    QCOMPARE(ShipField(settled.Data, TurretCockpitField(1)), QString("MY_PIT"));
    QCOMPARE(ShipField(settled.Data, TurretCockpitField(2)), QString("SS_STD_7"));
    QCOMPARE(ShipField(settled.Data, TurretCockpitField(3)), QString("9"));
    // Custom cockpits first, then each standard one a turret uses, once.
    QCOMPARE(settled.Cockpits, QStringList({"mine;", "std7;"}));
    // The id replaces the last field, with no separator behind it; the rest is kept.
    QVERIFY(settled.Data.endsWith(";0;SS_FALCON"));
    QCOMPARE(settled.Data.count(';'), NewShip.count(';') - 1);
    QCOMPARE(ShipFields(settled.Data, 0, ShipLineField::ShipScene - 1),
             ShipFields(NewShip, 0, ShipLineField::ShipScene - 1));

    // Settling is stable: a settled line settles to itself.
    QCOMPARE(SettleShipLine(settled.Data, "ships\\falcon", "cockpits\\c1", cockpits, "SS_FALCON").Data,
             settled.Data);
}

QTEST_GUILESS_MAIN(TestShipLine)
#include "tst_shipline.moc"
