#include "package/ShipPackage.h"

#include <QtTest>

class TestRecord : public QObject
{
    Q_OBJECT
private slots:
    void newRecordIsEmpty();
    void copiesOwnTheirSceneEntries();
    void commentTravelsOnOneLine();
};

void TestRecord::newRecordIsEmpty()
{
    const ShipPackage record;
    QVERIFY(record.Name.isEmpty() && record.Data.isEmpty());
    QVERIFY(!record.SceneFile && !record.CockpitFile);
    QVERIFY(record.Models.isEmpty() && record.Cockpits.isEmpty());
    QVERIFY(!record.Enabled && !record.GlobalEnabled && !record.LanguageText);
    for (bool yard : record.Shipyards)
        QVERIFY(!yard);
    QCOMPARE(record.OriginalDesc, 0);
    QVERIFY(!record.IsTombstone());
}

void TestRecord::copiesOwnTheirSceneEntries()
{
    ShipPackage original;
    original.Name = "Falcon";
    original.SceneFile =
        std::make_unique<FileEntry>(FileEntry{7, 100, "scene.bod", "objects/scene.bod", false});
    original.Models.append(FileEntry{1, 2, "a.bob", "objects/a.bob", true});
    original.Shipyards[ShipyardSplit] = true;

    ShipPackage copy(original);
    QVERIFY(copy.SceneFile && copy.SceneFile.get() != original.SceneFile.get());
    QCOMPARE(*copy.SceneFile, *original.SceneFile);
    QVERIFY(!copy.CockpitFile);
    copy.SceneFile->LocalPath = "changed.bod";
    QCOMPARE(original.SceneFile->LocalPath, QString("scene.bod"));

    ShipPackage assigned;
    assigned.CockpitFile = std::make_unique<FileEntry>();
    assigned = original;
    QVERIFY(!assigned.CockpitFile);
    QCOMPARE(assigned.Models, original.Models);
    QVERIFY(assigned.Shipyards[ShipyardSplit] && !assigned.Shipyards[ShipyardTeladi]);
    assigned = assigned; // self-assignment keeps the record
    QCOMPARE(assigned.Name, QString("Falcon"));
    QVERIFY(assigned.SceneFile);

    ShipPackage moved(std::move(copy));
    QCOMPARE(moved.SceneFile->LocalPath, QString("changed.bod"));
}

void TestRecord::commentTravelsOnOneLine()
{
    QCOMPARE(CommentToRecord("one\r\ntwo\nthree"), QString("one <newline>two<newline>three"));
    QCOMPARE(CommentFromRecord("one<newline>two"), QString("one\ntwo"));
    QCOMPARE(CommentFromRecord(CommentToRecord("a\nb\n")), QString("a\nb\n"));
}

QTEST_GUILESS_MAIN(TestRecord)
#include "tst_record.moc"
