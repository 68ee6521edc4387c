// Saving an installed ship on a copy of the built sample game, whose registry
// holds the ship Kestrel with its two scenes in mods/Hullwright.cat.
#include "TestSupport.h"
#include "catfs/transfer/GameFile.h"
#include "deploy/InstallJournal.h"
#include "deploy/InstalledShipOpen.h"
#include "deploy/InstalledShipSave.h"
#include "gamedata/ShipLine.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const ShipKey KestrelKey{"Hullwright", "Kestrel"};
const QString KestrelScene = "objects/ships/kestrel/kestrel_scene.bod";
const QString KestrelCockpit = "objects/cockpits/kestrel/kestrel_cp_scene.bod";
const QString Unchanged = "<PACKAGE>/";

// The entries of the mod catalog, unpacked.
QMap<QString, QByteArray> ModCatalog(const QString& gameDir)
{
    QMap<QString, QByteArray> content;
    QTemporaryDir out;
    for (const GameFileListEntry& entry : GameFileList(ModCatalogPath(gameDir))) {
        GameFileExtract(ModCatalogPath(gameDir) + "::" + entry.name, out.filePath("x"), false, false);
        content[entry.name] = ReadFile(out.filePath("x"));
    }
    return content;
}

QString WriteChosen(const QTemporaryDir& dir, const QString& name, const QByteArray& bytes, qint64 time)
{
    const QString path = dir.filePath(name);
    WriteFile(path, bytes);
    QFile file(path);
    file.open(QIODevice::ReadWrite);
    file.setFileTime(QDateTime::fromSecsSinceEpoch(time), QFileDevice::FileModificationTime);
    return path;
}

// Every file that a live ship of the registry names can be read, and has the
// size the registry gives it; what the ship has is put into `files`.
void CheckEveryFileIsThere(const QString& gameDir, QMap<QString, QByteArray>* files = nullptr)
{
    const InstalledShipsRead read = ReadInstalledShips(gameDir);
    QVERIFY(read.FullyRead());
    for (const InstalledShip& ship : read.Registry.Ships) {
        if (ship.Record.IsTombstone())
            continue;
        QTemporaryDir work;
        const InstalledShipOpened opened =
            OpenInstalledShip(gameDir, {ship.Record.Author, ship.Record.Name}, work.path());
        QCOMPARE(opened.Status, InstalledShipOpenStatus::Opened);
        QVERIFY2(opened.Missing.isEmpty(), qPrintable(opened.Missing.join(", ")));
        QList<FileEntry> entries = ship.Record.Models;
        for (const auto& scene : {ship.Record.SceneFile, ship.Record.CockpitFile})
            if (scene)
                entries.append(*scene);
        for (const FileEntry& entry : entries) {
            const QByteArray bytes = ReadFile(work.filePath(entry.LocalPath));
            QCOMPARE(qint64(bytes.size()), qint64(entry.Size));
            if (files)
                (*files)[entry.LocalPath] = bytes;
        }
    }
}

} // namespace

class TestInstalledShipSave : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void replacementBySameNameLosesNoFile();
    void sharedFilesStayAndUnsharedGo();
    void disabledShipStaysOutOfCatalog();
    void refusalsLeaveEverythingAsItWas();
    void fileSearchRules();

private:
    ShipPackage kestrel() const
    {
        return m_read.Registry.Ships[FindInstalledShip(m_read.Registry.Ships, KestrelKey)].Record;
    }
    InstalledShipSaveResult save(const ShipPackage& edited, const InstalledShipChoices& choices)
    {
        return SaveInstalledShip(m_game->path(), KestrelKey, edited, choices, m_read);
    }
    InstalledShipChoices unchangedChoices() const
    {
        return {Unchanged + "ShipPics/x", Unchanged + KestrelScene, Unchanged + KestrelCockpit};
    }

    std::unique_ptr<QTemporaryDir> m_game;
    QTemporaryDir m_chosen;
    InstalledShipsRead m_read;
};

void TestInstalledShipSave::init()
{
    const QString sample = qEnvironmentVariable("HW_SAMPLE_GAME_DIR");
    if (!QFile::exists(sample + "/ShipInstall/ships.dat"))
        QSKIP("the sample game with its installed ship is not built");
    m_game = std::make_unique<QTemporaryDir>();
    QVERIFY(CopyTree(sample, m_game->path()));
    m_read = ReadInstalledShips(m_game->path());
    QVERIFY(m_read.FullyRead());
}

void TestInstalledShipSave::replacementBySameNameLosesNoFile()
{
    const QByteArray scene = "// the new Kestrel scene\nVER: 6;\n" + QByteArray(3000, 'x') + "\n";
    ShipPackage edited = kestrel();
    edited.Version = "1.1";
    edited.Comment = "two\nlines";
    InstalledShipChoices choices = unchangedChoices();
    // An older file than the installed one: only the ship's own entry has that
    // name, and it is the one being replaced.
    choices.SceneFile = WriteChosen(m_chosen, "kestrel_scene.bod", scene, 1000);
    const InstalledShipSaveResult saved = save(edited, choices);
    QCOMPARE(saved.Status, InstalledShipSaveStatus::Saved);
    QVERIFY2(saved.Notes.isEmpty(), qPrintable(saved.Notes.join('\n')));

    QMap<QString, QByteArray> files;
    CheckEveryFileIsThere(m_game->path(), &files);
    QCOMPARE(files.value(KestrelScene), scene);
    const ShipPackage now = ReadInstalledShips(m_game->path()).Registry.Ships.value(0).Record;
    QCOMPARE(now.SceneFile->LocalPath, KestrelScene);
    QCOMPARE(now.SceneFile->Time, 1000u);
    QCOMPARE(now.Version, QString("1.1"));
    QCOMPARE(now.Comment, QString("two lines"));
    QCOMPARE(ModCatalog(m_game->path()).size(), 2);
    QVERIFY(!QFile::exists(m_game->filePath(PendingInstallDir)));
}

void TestInstalledShipSave::sharedFilesStayAndUnsharedGo()
{
    // Another ship uses the Kestrel's cockpit, named in other case, as a model.
    InstalledShip wren;
    wren.Record.Name = "Wren";
    wren.Record.Author = "Other";
    wren.Record.Enabled = wren.Record.GlobalEnabled = true;
    wren.Record.Models.append({5, 438, KestrelCockpit.toUpper(), {}, false});
    m_read.Registry.Ships.prepend(wren);
    QVERIFY(WriteInstalledShips(m_game->path(), m_read.Registry));
    m_read = ReadInstalledShips(m_game->path());

    // The cockpit moves to a new name, the ship scene is cleared.
    ShipPackage edited = kestrel();
    edited.Data = SetShipField(edited.Data, ShipLineField::CockpitScene, "cockpits\\kestrel\\kestrel_cp_v2");
    InstalledShipChoices choices = unchangedChoices();
    choices.CockpitFile = WriteChosen(m_chosen, "v2.bod", "VER: 6;\n", 2000);
    choices.SceneFile.clear();
    QCOMPARE(save(edited, choices).Status, InstalledShipSaveStatus::Saved);

    const QStringList entries = ModCatalog(m_game->path()).keys();
    QCOMPARE(entries, QStringList({"objects\\cockpits\\kestrel\\kestrel_cp_scene.pbd",
                                   "objects\\cockpits\\kestrel\\kestrel_cp_v2.pbd"}));
    const ShipPackage now = kestrel();
    QVERIFY(!now.SceneFile);
    QCOMPARE(now.CockpitFile->LocalPath, QString("objects/cockpits/kestrel/kestrel_cp_v2.bod"));
    CheckEveryFileIsThere(m_game->path());
}

void TestInstalledShipSave::disabledShipStaysOutOfCatalog()
{
    // Disable the Kestrel: its files lie loose below ShipInstall/.
    m_read.Registry.Ships[0].Record.Enabled = false;
    QVERIFY(WriteInstalledShips(m_game->path(), m_read.Registry));
    for (const QString& name : {KestrelScene, KestrelCockpit})
        QVERIFY(WriteFile(m_game->filePath("ShipInstall/" + name), "old " + name.toLatin1()));
    m_read = ReadInstalledShips(m_game->path());
    const QByteArray catalog = ReadFile(m_game->filePath("mods/Hullwright.dat"));

    ShipPackage edited = kestrel();
    edited.Name = "Kes trel";
    edited.Data = SetShipField(edited.Data, ShipLineField::ShipScene, "scene_b");
    InstalledShipChoices choices = unchangedChoices();
    choices.SceneFile = WriteChosen(m_chosen, "b.bod", "new scene", 3000);
    choices.ScreenShot = WriteChosen(m_chosen, "shot.png", "picture", 3000);
    QCOMPARE(save(edited, choices).Status, InstalledShipSaveStatus::Saved);

    QCOMPARE(ReadFile(m_game->filePath("ShipInstall/objects/cut/scene_b.bod")), QByteArray("new scene"));
    QVERIFY(!QFile::exists(m_game->filePath("ShipInstall/" + KestrelScene)));
    QVERIFY(QFile::exists(m_game->filePath("ShipInstall/" + KestrelCockpit)));
    QCOMPARE(ReadFile(m_game->filePath("mods/Hullwright.dat")), catalog);
    QCOMPARE(ReadFile(m_game->filePath("ShipInstall/ShipPics/Kestrel-Hullwright.png")),
             QByteArray("picture"));
    const ShipPackage now = ReadInstalledShips(m_game->path()).Registry.Ships.value(0).Record;
    QCOMPARE(now.ScreenShot, QString("Kestrel-Hullwright.png"));
    QCOMPARE(now.SceneFile->LocalPath, QString("objects/cut/scene_b.bod"));
}

void TestInstalledShipSave::refusalsLeaveEverythingAsItWas()
{
    const QByteArray registry = ReadFile(m_game->filePath(InstalledShipsPath));
    const QMap<QString, QByteArray> catalog = ModCatalog(m_game->path());

    // A chosen file that cannot be read keeps the scene as it was.
    InstalledShipChoices choices = unchangedChoices();
    choices.SceneFile = m_chosen.filePath("missing.bod");
    InstalledShipSaveResult saved = save(kestrel(), choices);
    QCOMPARE(saved.Status, InstalledShipSaveStatus::Saved);
    QCOMPARE(saved.Notes.size(), 1);
    QCOMPARE(ReadFile(m_game->filePath(InstalledShipsPath)), registry);
    QCOMPARE(ModCatalog(m_game->path()), catalog);

    // A registry that changed on disk since it was read is not written.
    const QByteArray foreign = registry + "Deleted: 9\n";
    QVERIFY(WriteFile(m_game->filePath(InstalledShipsPath), foreign));
    QCOMPARE(save(kestrel(), unchangedChoices()).Status, InstalledShipSaveStatus::RegistryChanged);
    QCOMPARE(ReadFile(m_game->filePath(InstalledShipsPath)), foreign);

    // Nor is one that could not be read completely.
    QVERIFY(WriteFile(m_game->filePath(InstalledShipsPath), registry + "<ship>\n"));
    m_read = ReadInstalledShips(m_game->path());
    QCOMPARE(save(kestrel(), unchangedChoices()).Status, InstalledShipSaveStatus::RegistryNotFullyRead);
    QCOMPARE(ReadFile(m_game->filePath(InstalledShipsPath)), registry + "<ship>\n");
    QCOMPARE(OpenInstalledShip(m_game->path(), KestrelKey, m_chosen.path()).Status,
             InstalledShipOpenStatus::NotFullyRead);

    // A ship the registry does not have changes nothing.
    QVERIFY(WriteFile(m_game->filePath(InstalledShipsPath), registry));
    m_read = ReadInstalledShips(m_game->path());
    QCOMPARE(
        SaveInstalledShip(m_game->path(), {"Hullwright", "kestrel"}, kestrel(), unchangedChoices(), m_read)
            .Status,
        InstalledShipSaveStatus::ShipNotFound);
    QCOMPARE(ReadFile(m_game->filePath(InstalledShipsPath)), registry);
}

void TestInstalledShipSave::fileSearchRules()
{
    QList<InstalledShip> ships(3);
    ships[0].Record.Name = "A";
    ships[0].Record.SceneFile = FileEntry{1, 1, "objects/cut/a.bod", {}, false};
    ships[1].Record.Deleted = 3; // a tombstone names nothing, whatever it holds
    ships[1].Record.Models.append({1, 1, "objects/cut/b.bod", {}, false});
    ships[2].Record.Name = "C";
    ships[2].Record.Files.append({uint32_t(-5), 1, "objects/cut/c.bod", {}, false});

    QVERIFY(IsFileUsedByOtherShip(ships, "OBJECTS\\CUT\\A.PBD", nullptr, InstalledFileKind::Models));
    QVERIFY(!IsFileUsedByOtherShip(ships, "objects/cut/a.bod", &ships[0].Record, InstalledFileKind::Models));
    QVERIFY(!IsFileUsedByOtherShip(ships, "objects/cut/b.bod", nullptr, InstalledFileKind::Models));
    QVERIFY(!IsFileUsedByOtherShip(ships, "objects/cut/c.bod", nullptr, InstalledFileKind::Models));
    QVERIFY(IsFileUsedByOtherShip(ships, "objects/cut/c.bod", nullptr, InstalledFileKind::Files));

    // Times compare as signed numbers, and the name exactly.
    QVERIFY(!IsNewestFile(ships, {1, 1, "objects/cut/a.bod", {}, false}, InstalledFileKind::Models));
    QVERIFY(IsNewestFile(ships, {2, 1, "objects/cut/a.bod", {}, false}, InstalledFileKind::Models));
    QVERIFY(IsNewestFile(ships, {1, 0, "objects/cut/A.bod", {}, false}, InstalledFileKind::Models));
    QVERIFY(IsNewestFile(ships, {0, 0, "objects/cut/b.bod", {}, false}, InstalledFileKind::Models));
    QVERIFY(IsNewestFile(ships, {1, 0, "objects/cut/c.bod", {}, false}, InstalledFileKind::Files));
    QVERIFY(
        !IsNewestFile(ships, {uint32_t(-6), 0, "objects/cut/c.bod", {}, false}, InstalledFileKind::Files));
}

QTEST_GUILESS_MAIN(TestInstalledShipSave)
#include "tst_installedshipsave.moc"
