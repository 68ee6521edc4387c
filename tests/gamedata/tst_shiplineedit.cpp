#include "TestSupport.h"
#include "gamedata/ShipLineEdit.h"
#include "gamedata/TypesFile.h"

#include <QRandomGenerator>
#include <QtTest>

namespace {

const QString NewShip = "0;0;0;0;0;0;0;0;0;106;1;5;37;0;112;202;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;"
                        "0;0;0;0;0;0;0;0;0;0;0;35;36;1;0;0;0;0;0;1;0;25;1;0;0;0;0;0;HW_NEW_SHIP;";

// The first field of cockpit block `block`; Block(N) is G.
int Block(int block)
{
    return ShipLineField::FirstCockpitBlock + 4 * block;
}

int Fields(const QString& line)
{
    return int(line.count(u';')) + 1;
}

// Everything from T on.
QStringList Tail(const QString& line)
{
    return line.split(u';').mid(TailIndex(line));
}

// The numbering that every edit leaves: groups numbered from 1, Pos and
// Index running through the counts, GunCount their total.
void CheckNumbering(const QString& line)
{
    int counter = 1;
    const QList<GunGroup> groups = GunGroupsOf(line);
    for (int g = 0; g < groups.size(); ++g) {
        QCOMPARE(ReadInt(groups[g].Number), g + 1);
        QCOMPARE(ReadInt(groups[g].Pos), counter);
        for (const GunEntry& entry : groups[g].Entries) {
            QCOMPARE(ReadInt(entry.Index), counter);
            counter += ReadInt(entry.Count);
        }
    }
    QCOMPARE(ShipFieldInt(line, ShipLineField::GunCount), counter - 1);
}

QStringList TableLines(const QString& path)
{
    return ParseTypesText(QString::fromUtf8(ReadFile(path))).records;
}

} // namespace

class TestShipLineEdit : public QObject
{
    Q_OBJECT
private slots:
    void newShipGetsCockpitThenTurrets();
    void removingATurretMovesLaterOnesDown();
    void gunEntriesMoveTheTailBySix();
    void walkNamesWhereALineBreaks();
    void randomEditsKeepLinesWalkable();
};

void TestShipLineEdit::newShipGetsCockpitThenTurrets()
{
    QCOMPARE(AddTurret(NewShip, 1), NewShip); // no main cockpit block yet

    const QString cockpit = AddMainCockpit(NewShip, {"ships\\x\\mount", "1"});
    QCOMPARE(GunIndexField(cockpit), Block(1));
    QCOMPARE(TailIndex(cockpit), Block(1) + 5);
    QCOMPARE(Tail(cockpit), Tail(NewShip));
    QCOMPARE(JoinNode(CockpitNode(cockpit, 0)), QString("ships\\x\\mount:1"));
    QCOMPARE(GunGroupsOf(cockpit).size(), 1);
    QCOMPARE(AddMainCockpit(cockpit, {"other", "2"}), cockpit);

    QString line = cockpit;
    for (int turret = 1; turret <= 6; ++turret) {
        const int tail = TailIndex(line);
        line = AddTurret(line, 7 - turret);
        QCOMPARE(TailIndex(line), tail + 8);
        QCOMPARE(Tail(line), Tail(NewShip));
        QCOMPARE(ShipField(line, TurretCockpitField(turret - 1)), QString("0"));
        QCOMPARE(ShipFieldInt(line, TurretPositionField(turret - 1)), 7 - turret);
    }
    QCOMPARE(CockpitCount(line), 7);
    QCOMPARE(GunGroupsOf(line).size(), 7);
    QCOMPARE(TurretsOf(line).size(), 6);
    QCOMPARE(AddTurret(line, 1), line); // six turrets are all there is room for
    QCOMPARE(WalkShipLine(line), LineWalk::Complete);
    CheckNumbering(line);

    // A line whose groups outnumber its blocks keeps them for the cockpit.
    const QString groupOnly =
        SetShipField(SetShipField(NewShip, Block(0), "1") + ";", Block(0) + 1, "1;0;1;0");
    QCOMPARE(GunGroupsOf(AddMainCockpit(groupOnly, {"a", "1"})).size(), 1);
}

void TestShipLineEdit::removingATurretMovesLaterOnesDown()
{
    QString line = AddMainCockpit(NewShip, {"main", "0"});
    for (int position : {4, 5, 6})
        line = AddTurret(line, position);
    line = SetShipField(line, TurretCockpitField(0), "11");
    line = SetShipField(line, TurretCockpitField(2), "SS_COCKPIT_MINE");
    line = AddGunEntry(line, 2); // two guns on turret 2
    line = SetGunEntry(line, 2, 0, {{}, "1", {"gun", "3"}, {"", "-1"}});
    line = AddGunEntry(line, 2);
    line = SetGunEntry(line, 2, 1, {{}, "1", {"gun", "4"}, {"barrel", "1"}});
    line = AddGunEntry(line, 3);
    line = SetGunEntry(line, 3, 0, {{}, "1", {"gun", "5"}, {"", "-1"}});

    const int tail = TailIndex(line);
    const QString removed = RemoveTurret(line, 2);
    QCOMPARE(TailIndex(removed), tail - 8 - 2 * 6);
    QCOMPARE(Tail(removed), Tail(line));
    const QList<TurretInfo> turrets = TurretsOf(removed);
    QCOMPARE(turrets.size(), 2);
    QCOMPARE(turrets[0].Cockpit, QString("11"));
    QCOMPARE(turrets[0].Position, 4);
    QCOMPARE(turrets[1].Number, 2); // the third turret moved down
    QCOMPARE(turrets[1].Cockpit, QString("SS_COCKPIT_MINE"));
    QCOMPARE(turrets[1].Position, 6);
    QCOMPARE(ShipFieldInt(removed, TurretPositionField(2)), 0);
    // Its gun came along, renumbered from 1.
    const QList<GunGroup> groups = GunGroupsOf(removed);
    QCOMPARE(groups.size(), 3);
    QCOMPARE(JoinNode(groups[2].Entries.value(0).Primary), QString("gun:5"));
    CheckNumbering(removed);
    QCOMPARE(ShipFieldInt(removed, Block(2)), 3); // block 2's index fields are numbered again
    QCOMPARE(ShipFieldInt(removed, Block(2) + 1), 2);

    QCOMPARE(RemoveTurret(removed, 0), removed); // the main cockpit is no turret
    QCOMPARE(RemoveTurret(removed, 3), removed);
}

void TestShipLineEdit::gunEntriesMoveTheTailBySix()
{
    QString line = AddTurret(AddMainCockpit(NewShip, {"main", "0"}), 1);
    const int tail = TailIndex(line);
    for (int group : {0, 0, 1})
        line = AddGunEntry(line, group);
    QCOMPARE(TailIndex(line), tail + 18);
    // An entry of count 0 shares its Index with the next one.
    line = SetGunEntry(line, 0, 1, {{}, "1", {"gun", "2"}, {"", "-1"}});
    line = SetGunEntry(line, 1, 0, {{}, "2", {"gun", "3"}, {"", "-1"}});
    const QList<GunGroup> groups = GunGroupsOf(line);
    QCOMPARE(groups[0].Entries[1].Index, groups[0].Entries[0].Index);
    QCOMPARE(groups[0].Guns, QString("1"));
    QCOMPARE(ShipFieldInt(line, ShipLineField::GunCount), 3);
    CheckNumbering(line);
    // A group may lose all its entries and stays, empty.
    const QString empty = RemoveGunEntry(RemoveGunEntry(line, 0, 1), 0, 0);
    QCOMPARE(TailIndex(empty), TailIndex(line) - 12);
    QCOMPARE(GunGroupsOf(empty).size(), 2);
    QCOMPARE(ShipFieldInt(empty, ShipLineField::GunCount), 2);
    QCOMPARE(RemoveGunEntry(empty, 0, 0), empty);
}

void TestShipLineEdit::walkNamesWhereALineBreaks()
{
    QCOMPARE(WalkShipLine(NewShip), LineWalk::Complete);
    QCOMPARE(WalkShipLine(NewShip.chopped(1)), LineWalk::Complete); // without the final ";"
    QCOMPARE(WalkShipLine("1;2;3"), LineWalk::ShortHead);
    QCOMPARE(WalkShipLine(SetShipField(NewShip, ShipLineField::CockpitCount, "40")),
             LineWalk::CockpitsPastEnd);
    QCOMPARE(WalkShipLine(SetShipField(NewShip, ShipLineField::CockpitCount, "-1")),
             LineWalk::CockpitsPastEnd);
    QCOMPARE(WalkShipLine(SetShipField(NewShip, Block(0), "3")), LineWalk::GroupsPastEnd);
    QCOMPARE(WalkShipLine(NewShip.left(NewShip.lastIndexOf(u';', -3))), LineWalk::TailPastEnd);

    // Edits of broken lines stay inside them and give lines that walk.
    for (const QString& broken : {QString("1;2;3"), SetShipField(NewShip, Block(0), "2147483647")}) {
        const QString edited = AddTurret(AddMainCockpit(broken, {"a", "1"}), 2);
        QVERIFY(WalkShipLine(edited) != LineWalk::ShortHead);
        QCOMPARE(TurretsOf(edited).size(), 1);
    }
}

void TestShipLineEdit::randomEditsKeepLinesWalkable()
{
    QStringList lines =
        TableLines(qEnvironmentVariable("HW_SOURCE_DIR") + "/samples/game-src/types/TShips.txt");
    QVERIFY(lines.size() >= 10);
    const QString corpus = qEnvironmentVariable("HW_CORPUS_DIR") + "/x3tc/types/TShips.txt";
    if (QFile::exists(corpus))
        lines += TableLines(corpus).mid(0, 60);
    else
        qInfo("corpus not found at %s: the sample's ships only", qPrintable(corpus));
    lines.append(NewShip);

    QRandomGenerator random(20240611);
    for (const QString& start : lines) {
        QString line = start;
        const QString id = ShipLineId(start);
        const QStringList tail = Tail(start);
        for (int step = 0; step < 12; ++step) {
            const int blocks = CockpitCount(line);
            const int groups = int(GunGroupsOf(line).size());
            const int before = TailIndex(line);
            QString next;
            int moved = 0;
            switch (random.bounded(5)) {
            case 0:
                next = blocks == 0 ? AddMainCockpit(line, {"m", "1"}) : AddTurret(line, random.bounded(1, 7));
                moved = next == line ? 0 : (blocks == 0 && groups > 0 ? 4 : 8);
                break;
            case 1: {
                const int turret = blocks > 1 ? random.bounded(1, blocks) : 1;
                next = RemoveTurret(line, turret);
                const int entries = turret < groups ? int(GunGroupsOf(line)[turret].Entries.size()) : 0;
                moved = next == line ? 0 : -8 - 6 * entries;
                break;
            }
            case 2:
            case 3:
                next = groups > 0 ? AddGunEntry(line, random.bounded(groups)) : line;
                moved = next == line ? 0 : 6;
                break;
            default: {
                const int group = groups > 0 ? random.bounded(groups) : 0;
                const int entries = groups > 0 ? int(GunGroupsOf(line)[group].Entries.size()) : 0;
                next = entries > 0 ? RemoveGunEntry(line, group, random.bounded(entries)) : line;
                moved = next == line ? 0 : -6;
            }
            }
            QCOMPARE(WalkShipLine(next), LineWalk::Complete);
            QCOMPARE(TailIndex(next), before + moved);
            QCOMPARE(Tail(next), tail);
            QCOMPARE(ShipField(next, TailIndex(next) + ShipTailOffset::ShipId), id);
            QCOMPARE(Fields(next), Fields(line) + moved);
            if (next != line)
                CheckNumbering(next);
            line = next;
        }
    }
}

QTEST_GUILESS_MAIN(TestShipLineEdit)
#include "tst_shiplineedit.moc"
