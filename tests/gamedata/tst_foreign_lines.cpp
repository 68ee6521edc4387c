// Ship lines from foreign sources with numbers no ship has: the walk and the
// renumbering of the guns stay defined.

#include "gamedata/ShipLine.h"

#include <QtTest>

class TestForeignLines : public QObject
{
    Q_OBJECT
private slots:
    void gunCountsBeyondTheIntRange();
};

void TestForeignLines::gunCountsBeyondTheIntRange()
{
    // One cockpit block, one gun group of two entries of 2^31 - 1 guns each.
    QStringList fields(53, "0");
    fields << "1"
           << "1;0;body;1"
           << "1"
           << "0;0;1;2"
           << "0;2147483647;gun;1;;-1"
           << "0;2147483647;gun;2;;-1"
           << "1;500;0;0;0;900;-5;3;0;SS_TEST;";
    const QString line = fields.join(';');
    QCOMPARE(LayoutOf(line).groups.size(), 1);

    const QString renumbered = RenumberGuns(line);
    QCOMPARE(ShipField(renumbered, ShipLineField::GunCount), QString("4294967294"));
    QCOMPARE(ShipField(renumbered, LayoutOf(line).groups[0].FirstEntry() + 6), QString("2147483648"));
    QCOMPARE(RenumberGuns(renumbered), renumbered);
}

QTEST_GUILESS_MAIN(TestForeignLines)
#include "tst_foreign_lines.moc"
