// The import wizard's matching, on small catalogs built for each case.
#include "ModCatalog.h"
#include "deploy/ModelTextures.h"
#include "wizard/ImportNames.h"
#include "wizard/ImportSession.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace wizardtest;

namespace {

QList<QString> TickedKeys(const CheckTree& tree)
{
    QList<QString> keys;
    for (const CheckPlace& place : tree.Ticked())
        keys.append(tree.Row(place).Text);
    return keys;
}

} // namespace

class TestImportSession : public QObject
{
    Q_OBJECT

    TempHome m_home;
    QTemporaryDir m_scratch;

    // A catalog of `files` and an open session on it.
    std::unique_ptr<ImportSession> open(const QList<ModFile>& files, const QString& name = "mod.cat",
                                        const QString& rawEntry = {})
    {
        const QString catalog = m_scratch.filePath(name);
        if (!BuildModCatalog(catalog, files, m_scratch.path()))
            return nullptr;
        if (!rawEntry.isEmpty() && !AppendRawEntry(catalog, rawEntry, "evil"))
            return nullptr;
        auto session = std::make_unique<ImportSession>(ImportSetup{catalog, m_home.path()});
        return session->Open() ? std::move(session) : nullptr;
    }

private slots:
    void namingRules()
    {
        QCOMPARE(UnpackedName("objects/a.b/hull.x.PBB"), QString("objects/a.b/hull.x.bob"));
        QCOMPARE(UnpackedName("objects\\hull.pbd"), QString("objects\\hull.bod"));
        QCOMPARE(UnpackedName("dds/hull.dds"), QString("dds/hull.dds"));
        QCOMPARE(SceneLookupName("scene"), QString("objects/cut/scene"));
        QCOMPARE(SceneLookupName("ships\\x\\scene.bod"), QString("objects/ships/x/scene"));
        QCOMPARE(SceneLookupName("ships\\x\\scene.long"), QString("objects/ships/x/scene.long"));
        QCOMPARE(SceneLookupName(""), QString());
        QCOMPARE(ModelShortName("OBJECTS\\Ships\\Hull.v2.pbd"), QString("ships\\hull"));
        QCOMPARE(BodyModelName("17"), QString("v\\00017"));
        QCOMPARE(BodyModelName("123456"), QString("v\\123456"));
        QCOMPARE(BodyModelName("ships\\hull"), QString("ships\\hull"));
        QVERIFY(PartMatchesKey("17", "17a"));
        QVERIFY(!PartMatchesKey("17", "17ab"));
        QVERIFY(!PartMatchesKey("0", "0a"));
        QVERIFY(PartMatchesKey("Ships\\Hull", "ships\\hull"));
        QVERIFY(!IsContainedEntryName("objects\\..\\..\\evil.pbd"));
        QVERIFY(!IsContainedEntryName("C:\\evil.pbd"));
        QVERIFY(IsContainedEntryName("objects\\ships\\a..b.pbd"));
    }

    // Scenes with and without directory, numbered bodies, a number with one
    // letter, models in two forms, the first matching dummy row only, guns.
    void matchesWhatTheShipNames()
    {
        const QStringList ships = {
            ShipLine("SS_A", "ships\\a_scene", "a_cp.bod", {}, "weapons\\gun"),
            ShipLine("SS_B", "ships\\b.long", "", {}, ""),
        };
        auto session = open({
            {"types\\TShips.txt", Table(ships)},
            {"types\\Dummies.txt", "SDTYPE_DOCK;4;\nships\\other;0;\n17;1;\nships\\hull;1;\nships\\hull;2;\n"
                                   "SDTYPE_ANIMATED;1;\nships\\hull;3;\n"},
            {"types\\Components.txt", "SCTYPE_LASER;1;\nweapons\\gun;1;\nweapons\\barrel;0;\n"},
            {"objects\\ships\\a_scene.bod", Scene({"ships\\hull", "17a", "17", "ships\\missing"})},
            {"objects\\ships\\a_scene.bob", "a second form of the scene"},
            {"objects\\cut\\a_cp.bod", Scene({"cockpits\\seat"})},
            {"objects\\ships\\hull.bod", "hull as text"},
            {"objects\\ships\\hull.bob", "hull as binary"},
            {"objects\\v\\00017.bob", "numbered body"},
            {"objects\\weapons\\gun.bod", "gun"},
            {"objects\\cockpits\\seat.bod", "seat"},
            {"objects\\ships\\other.bod", "another ship's model"},
            {"objects\\ships\\b.long.bod", Scene({"ships\\other"})},
        });
        QVERIFY(session);
        QCOMPARE(session->ShipRows().size(), 2);

        session->CollectShipParts(0);
        QCOMPARE(session->ShipScene(), QString("objects/ships/a_scene.pbd"));
        QCOMPARE(session->CockpitScene(), QString("objects/cut/a_cp.pbd"));
        QStringList chosen = session->Models().Chosen();
        chosen.sort();
        QCOMPARE(chosen, (QStringList{"objects\\cockpits\\seat.pbd", "objects\\ships\\hull.pbb",
                                      "objects\\ships\\hull.pbd", "objects\\v\\00017.pbb",
                                      "objects\\weapons\\gun.pbd"}));
        // The second form of the scene is offered as a model; the scene itself is not.
        QVERIFY(session->Models().Available().contains("objects\\ships\\a_scene.pbb"));
        QVERIFY(!session->Models().Available().contains("objects\\ships\\a_scene.pbd"));
        // Sections are matched in the order they are shown, sorted by name.
        QCOMPARE(TickedKeys(session->Dummies()), (QList<QString>{"ships\\hull;3;", "17;1;"}));
        QCOMPARE(TickedKeys(session->Components()), QList<QString>{"weapons\\gun"});
        QCOMPARE(session->NotFound(), QStringList{"ships\\missing"});

        // A scene named with an extension of four characters keeps it.
        session->CollectShipParts(1);
        QCOMPARE(session->ShipScene(), QString("objects/ships/b.long.pbd"));
        QCOMPARE(session->Models().Chosen(), QStringList{"objects\\ships\\other.pbd"});
        QCOMPARE(TickedKeys(session->Dummies()), QList<QString>{"ships\\other;0;"});
        QCOMPARE(TickedKeys(session->Components()), QList<QString>{});
    }

    void cockpitsByTurretSlot()
    {
        const QString cockpits = "47;4;\n0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;CP_NONE;\n;;;;\n"
                                 "0;0;0;0;0;0;0;cockpits\\front_scene;0;0;0;0;0;0;0;0;0;0;CP_FRONT;\n"
                                 "0;0;0;0;0;0;0;4512;0;0;0;0;0;0;0;0;0;0;CP_REAR;\n";
        auto session = open({
            {"types\\TShips.txt", Table({ShipLine("SS_A", "", "", {2, 1, 3, 3, 9, 0})})},
            {"types\\TCockpits.txt", cockpits.toUtf8()},
            {"objects\\cockpits\\front_scene.bod", Scene({"cockpits\\gunner"})},
            {"objects\\cockpits\\gunner.bod", "gunner"},
        });
        QVERIFY(session);
        session->CollectShipParts(0);
        // Row 1 is a line of semicolons and row 9 lies beyond the table: neither adds a cockpit.
        QCOMPARE(session->Cockpits().Chosen(), (QStringList{"CP_FRONT", "CP_REAR"}));
        QCOMPARE(session->Cockpits().Available(), QStringList{"CP_NONE"});
        // The scene of a chosen cockpit comes along with what it names.
        QStringList models = session->Models().Chosen();
        models.sort();
        QCOMPARE(models,
                 (QStringList{"objects\\cockpits\\front_scene.pbd", "objects\\cockpits\\gunner.pbd"}));

        const ImportResult result = session->Finish();
        QCOMPARE(result.Cockpits.size(), 2);
        QCOMPARE(result.Cockpits[0].Index, 2);
        QCOMPARE(result.Cockpits[1].Name, QString("CP_REAR"));
    }

    // Dummy rows name scenes; those scenes tick further rows. A circle ends,
    // and a chain deeper than the limit is cut.
    void nestedScenesEnd()
    {
        const int chain = MaxSceneDepth + 4;
        QString dummies = "SDTYPE_ANIMATED;" + QString::number(chain + 2) + ";\n";
        QList<ModFile> files;
        // The circle: a names scene_b, whose body b names scene_a, whose body is a again.
        dummies += "a;0;0;0;0;circle\\scene_b;\nb;0;0;0;0;circle\\scene_a;\n";
        files.append({"objects\\circle\\scene_b.bod", Scene({"b"})});
        files.append({"objects\\circle\\scene_a.bod", Scene({"a"})});
        // The chain: body n names the scene deep\s<n>, which places body n + 1.
        for (int n = 0; n < chain; ++n) {
            dummies += QString("n%1;0;0;0;0;deep\\s%1;\n").arg(n);
            files.append({QString("objects\\deep\\s%1.bod").arg(n), Scene({QString("n%1").arg(n + 1)})});
        }
        files.append({"types\\TShips.txt", Table({ShipLine("SS_A", "ships\\scene", "")})});
        files.append({"types\\Dummies.txt", dummies.toUtf8()});
        files.append({"objects\\ships\\scene.bod", Scene({"a", "n0"})});
        auto session = open(files);
        QVERIFY(session);
        session->CollectShipParts(0);
        session->CollectDummyModels();
        const QStringList chosen = session->Models().Chosen();
        QVERIFY(chosen.contains("objects\\circle\\scene_a.pbd"));
        QVERIFY(chosen.contains("objects\\circle\\scene_b.pbd"));
        QVERIFY(chosen.contains(QString("objects\\deep\\s%1.pbd").arg(MaxSceneDepth)));
        QVERIFY(!chosen.contains(QString("objects\\deep\\s%1.pbd").arg(MaxSceneDepth + 1)));
        QVERIFY(session->NotFound().contains(QString("objects/deep/s%1.pbd").arg(MaxSceneDepth)));
    }

    void badInput()
    {
        // A damaged catalog, and one without ship table, are no mod.
        QVERIFY(WriteFile(m_scratch.filePath("damaged.cat"), RandomBytes(300, 7)));
        QVERIFY(WriteFile(m_scratch.filePath("damaged.dat"), RandomBytes(3000, 8)));
        ImportSession damaged(ImportSetup{m_scratch.filePath("damaged.cat"), m_home.path()});
        QVERIFY(!damaged.Open());
        QVERIFY(!open({{"types\\Dummies.txt", "SDTYPE_GUN;0;\n"}}, "notable.cat"));

        // A scene the mod does not hold, bodies it does not hold, lines of
        // semicolons, and entry names that would climb out of ShipInstall.
        auto session = open(
            {
                {"types\\TShips.txt",
                 Table({";;;;;", ShipLine("SS_A", "ships\\gone", "", {}, "weapons\\none")})},
                {"types\\Dummies.txt", ";;;\nSDTYPE_GUN;1;\n;;;\nweapons\\none;0;\n"},
                {"objects\\ships\\fine.bod", "fine"},
            },
            "bad.cat", "objects\\..\\..\\escape.bod");
        QVERIFY(session);
        QCOMPARE(session->ShipRows().size(), 1);
        QCOMPARE(session->ShipRows().first().Id, QString("SS_A"));
        session->CollectShipParts(0);
        QCOMPARE(session->NotFound(), QStringList{"objects/ships/gone"});
        QCOMPARE(TickedKeys(session->Dummies()), QList<QString>{"weapons\\none;0;"});
        QCOMPARE(session->Models().Available(), QStringList{"objects\\ships\\fine.pbd"});
        session->Models().ChooseAll();
        const ImportResult result = session->Finish();
        QVERIFY(result.ShipSceneFile.isEmpty());
        QCOMPARE(result.Models.size(), 1);
        QVERIFY(!QFile::exists(QDir(m_home.path()).absoluteFilePath("../escape.bod")));
    }

    void finishUnpacksIntoShipInstall()
    {
        auto session = open(
            {
                {"types\\TShips.txt", Table({ShipLine("SS_A", "ships\\a_scene", "")})},
                {"types\\Components.txt",
                 "SCTYPE_LASER;2;\nships\\mount;1;\nline one;\nships\\mount;1;\nline two;\n"},
                {"objects\\ships\\a_scene.bod", Scene({"ships\\mount"})},
                {"objects\\ships\\mount.bod", "MATERIAL6: 1; 0x2000000; 23; tex; 1; Mount.DDS; 0;\n1000;\n"},
                {"dds\\mount.dds", "texture", true},
                {"tex\\x\\mount.dds", "another texture of that name", true},
            },
            "finish.cat");
        QVERIFY(session);
        QVERIFY(session->HasTextures());
        session->CollectShipParts(0);
        session->Components().SetTicked({0, 1}, true);
        session->ScanModelTextures({});
        QCOMPARE(session->Textures().Chosen(), QStringList{"dds\\mount.dds"});

        const ImportResult result = session->Finish();
        QCOMPARE(result.ShipSceneFile, QString("<PACKAGE>/objects/ships/a_scene.bod"));
        QCOMPARE(result.Models.size(), 1);
        QCOMPARE(result.Models[0].Path, QString("<PACKAGE>/objects/ships/mount.bod"));
        QCOMPARE(result.Models[0].Directory, QString("objects/ships"));
        QCOMPARE(ReadFile(m_home.filePath("ShipInstall/objects/ships/mount.bod")).left(10),
                 QByteArray("MATERIAL6:"));
        QCOMPARE(result.Textures[0].Path, QString("<PACKAGE>/dds/mount.dds"));
        // Two ticked groups of one section and id become one.
        QCOMPARE(result.Components.size(), 1);
        QCOMPARE(result.Components[0].Lines, (QStringList{"line one;", "line two;"}));

        // The work files went with the session.
        const QString work = session->WorkDir();
        session.reset();
        QVERIFY(!QFileInfo::exists(work));
        QCOMPARE(QDir(m_home.filePath("temp")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
                 QStringList{});
    }

    void materialLines()
    {
        const QString model =
            "// comment\n\nmaterial6: 1; 0x1; a.dds; b; dir\\C.TGA;x.\nMATERIAL6: 2; 3; a.dds;\n"
            "1000;\nMATERIAL6: 3; 4; late.dds;\n";
        QCOMPARE(MaterialTextureNames(model), (QStringList{"a.dds", "c.tga"}));
    }
};

QTEST_GUILESS_MAIN(TestImportSession)
#include "tst_importsession.moc"
