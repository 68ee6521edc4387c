// A ship from the form to a package and back: the main window's BuildPackage,
// Save, OpenPackage and ShowPackage, with real files and a scripted prompter.
#include "WindowFixture.h"
#include "core/Services.h"
#include "core/StatusProgressBar.h"
#include "forms/WListView.h"
#include "gamedata/ShipLine.h"
#include "package/Lzma.h"

#include <QStatusBar>
#include <QtTest>

namespace {

QByteArray Decompressed(const QString& package, const QString& scratch)
{
    return DecompressFile(package, scratch) ? ReadFile(scratch) : QByteArray();
}

void AddRows(QTreeWidgetItem* parent, QStringList& out, const QString& prefix)
{
    for (int i = 0; i < parent->childCount(); ++i) {
        QTreeWidgetItem* row = parent->child(i);
        QStringList cells;
        for (int c = 0; c < row->columnCount(); ++c)
            cells.append(row->text(c));
        out.append(prefix + cells.join('|'));
        AddRows(row, out, prefix + "  ");
    }
}

// Everything the form shows of a ship, as lines of text.
QStringList Snapshot(DCreateShip& window)
{
    QStringList out;
    for (const QLineEdit* line :
         {window.LineName, window.LineAuthor, window.LineVersion, window.LineID, window.LineWeb,
          window.LineMirror1, window.LineMirror2, window.LineScreen, window.LineShipScene,
          window.LineCockpitScene, window.LineSceneFile, window.LineSceneFileCp})
        out.append(line->objectName() + "=" + line->text());
    for (const QCheckBox* box :
         {window.CheckArgon, window.CheckBoron, window.CheckParanid, window.CheckTeladi, window.CheckSplit,
          window.CheckPirate, window.CheckFriend, window.CheckXenon, window.CheckLangText,
          window.CheckExisting, window.CheckExistingShip})
        out.append(box->objectName() + "=" + (box->isChecked() ? "on" : "off"));
    out.append("SpinOrgDesc=" + QString::number(window.SpinOrgDesc->value()) +
               (window.SpinOrgDesc->isEnabled() ? " enabled" : " disabled"));
    out.append("TextRaw=" + window.TextRaw->toPlainText());
    out.append("TextComment=" + window.TextComment->toPlainText());
    for (QTreeWidget* list : std::initializer_list<QTreeWidget*>{
             window.modelList(), window.otherList(), window.scriptList(), window.ListText, window.ListDummy,
             window.ListComp, window.ListCockpit}) {
        out.append(list->objectName() + ":");
        AddRows(list->invisibleRootItem(), out, "  ");
    }
    return out;
}

QTreeWidgetItem* Row(QTreeWidget* list, const QStringList& cells)
{
    return new QTreeWidgetItem(list, cells);
}

} // namespace

class TestPackageRoundTrip : public QObject
{
    Q_OBJECT
private slots:
    void shipMakesTheWholeRound();
    void buildPackageSettlesLineAndModels();
    void openFailuresAndTheirMessages();
    void failedSaveKeepsThePackage();
    void updateNoteBesideThePackage();
};

void TestPackageRoundTrip::shipMakesTheWholeRound()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    QTemporaryDir files;
    const auto src = [&](const QString& name) { return files.filePath("src/" + name); };
    WriteFile(src("scene.bod"), "// ship scene\nVER: 1;\nP 0; B hull;\n");
    WriteFile(src("cockpit.bod"), "VER: 1;\nP 0; B cockpit;\n");
    WriteFile(src("hull.bod"), "MATERIAL6: 1; 2; tex.dds;\n0; 1; 2; -1;\n");
    WriteFile(src("turret.bob"), RandomBytes(20000, 1));
    WriteFile(src("tex ture.dds"), RandomBytes(60000, 2) + "\nPackager: 2\n");
    WriteFile(src("setup.ship.xml"), "<script>\n</script>\n");
    WriteFile(src("shot.png"), RandomBytes(500, 3));

    window.LineName->setText("Round Trip");
    window.LineAuthor->setText("Tester");
    window.LineVersion->setText("1.2");
    window.LineID->setText("SS_SH_RT");
    window.LineWeb->setText("http://example.invalid/rt");
    window.LineMirror1->setText("mirror one");
    for (QCheckBox* box : {window.CheckArgon, window.CheckSplit, window.CheckXenon, window.CheckLangText,
                           window.CheckExistingShip, window.CheckExisting})
        box->setChecked(true);
    window.SpinOrgDesc->setValue(4321);
    QString line = QString::fromLatin1(DefaultShipLine);
    line = SetShipField(SetShipField(line, 31, "2"), 32, "5");
    window.TextRaw->setPlainText(line);
    window.LineShipScene->setText("ships\\rt_scene");
    window.LineCockpitScene->setText("rt_cockpit");
    window.LineSceneFile->setText(src("scene.bod"));
    window.LineSceneFileCp->setText(src("cockpit.bod"));
    Row(window.modelList(), {src("hull.bod"), "objects/ships"});
    Row(window.modelList(), {src("turret.bob"), "objects/ships/parts"});
    Row(window.otherList(), {src("tex ture.dds"), "textures"});
    Row(window.scriptList(), {src("setup.ship.xml"), "    20 B", "1700000000"});
    Row(window.ListText, {"44", "Round: Trip", "Description: with colons: kept"});
    Row(window.ListText, {"49", "Rundreise", "Beschreibung"});
    Row(window.ListDummy, {"SDTYPE_GUN", "1;2;3;"});
    auto* laser = Row(window.ListComp, {"SCTYPE_LASER", "12"});
    new QTreeWidgetItem(laser, {QString(), QString(), "a;b;"});
    new QTreeWidgetItem(laser, {QString(), QString(), "c;d;"});
    Row(window.ListCockpit, {"COCK_GAME", "2", "game;cockpit;line;COCK_GAME;"});
    Row(window.ListCockpit, {"COCK_OWN", "<PACKAGE>", "own;cockpit;COCK_OWN;"});
    window.LineScreen->setText(src("shot.png"));
    window.TextComment->setPlainText("line one\nline two: with colon");

    const QString first = files.filePath("out/first.xsp");
    const QString second = files.filePath("out/second.xsp");
    QDir().mkpath(files.filePath("out"));
    QVERIFY(window.Save(first));
    QCOMPARE(window.document().CurrentFile(), first);
    QCOMPARE(fixture.prompts->messages("information").size(), 1);
    QVERIFY(!window.progressBar()->isVisible());
    QVERIFY(window.TabData->isEnabled());
    // The saved line names the turret's cockpit and ends in the id.
    const QString data = window.TextRaw->toPlainText();
    QCOMPARE(ShipField(data, 31), QString("COCK_GAME"));
    QCOMPARE(ShipField(data, 32), QString("5"));
    QCOMPARE(ShipField(data, 16), QString("ships\\rt_scene"));
    QVERIFY(data.endsWith(";SS_SH_RT"));

    QVERIFY(window.ClearDocument());
    QVERIFY(window.OpenPackage(first));
    QVERIFY(!window.IsModified());
    QCOMPARE(window.document().CurrentFile(), first);
    const QStringList opened = Snapshot(window);

    // The form shows the package's files in WorkDir, in their stored forms.
    QCOMPARE(window.LineName->text(), QString("Round Trip"));
    QCOMPARE(window.TextRaw->toPlainText(), data);
    QCOMPARE(window.LineShipScene->text(), QString("ships\\rt_scene"));
    QCOMPARE(window.LineSceneFile->text(), QString("<PACKAGE>/objects/ships/rt_scene.pbd"));
    QCOMPARE(window.LineSceneFileCp->text(), QString("<PACKAGE>/objects/cut/rt_cockpit.pbd"));
    QCOMPARE(window.LineScreen->text(), QString("<PACKAGE>/ShipPics/RoundTrip-Tester.png"));
    QCOMPARE(ReadFile(fixture.home.filePath("ShipInstall/ShipPics/RoundTrip-Tester.png")),
             ReadFile(src("shot.png")));
    QCOMPARE(window.TextComment->toPlainText(), QString("line one\nline two: with colon"));
    QVERIFY(window.CheckExisting->isChecked() && window.SpinOrgDesc->isEnabled() &&
            !window.ListText->isEnabled());
    QCOMPARE(window.SpinOrgDesc->value(), 4321);
    QVERIFY(opened.contains("  <PACKAGE>/objects/ships/hull.pbd|objects/ships"));
    QVERIFY(opened.contains("  <PACKAGE>/objects/ships/parts/turret.pbb|objects/ships/parts"));
    QVERIFY(opened.contains("  <PACKAGE>/textures/tex ture.dds|textures"));
    QCOMPARE(ReadFile(fixture.home.filePath("ShipInstall/textures/tex ture.dds")),
             ReadFile(src("tex ture.dds")));
    QCOMPARE(ReadFile(fixture.home.filePath("ShipInstall/objects/ships/parts/turret.pbb")).isEmpty(), false);
    QCOMPARE(window.scriptList()->topLevelItem(0)->text(0), QString("<PACKAGE>/Scripts/setup.ship.xml"));
    QCOMPARE(window.scriptList()->topLevelItem(0)->text(2), QString("1700000000"));
    QCOMPARE(ReadFile(fixture.home.filePath("ShipInstall/Scripts/setup.ship.xml")),
             ReadFile(src("setup.ship.xml")));
    QVERIFY(opened.contains("  44|Round Trip|Description: with colons: kept"));
    QVERIFY(opened.contains("  SDTYPE_GUN|1;2;3;"));
    QVERIFY(opened.contains("  SCTYPE_LASER|12") && opened.contains("    ||a;b;") &&
            opened.contains("    ||c;d;"));
    QVERIFY(opened.contains("  COCK_GAME|<PACKAGE>|game;cockpit;line;COCK_GAME;"));
    QVERIFY(opened.contains("  COCK_OWN|<PACKAGE>|own;cockpit;COCK_OWN;"));

    // A save with no change writes the same records and files. The lists show
    // their rows sorted, so the cockpit lines may come in another order than
    // the first save collected them; from then on the stream stays the same.
    QVERIFY(window.Save(second));
    QVERIFY(!window.IsModified());
    const QByteArray stream = Decompressed(first, files.filePath("first.stream"));
    QVERIFY(stream.startsWith("Packager: 1\nName: Round Trip\n"));
    const QByteArray again = Decompressed(second, files.filePath("second.stream"));
    QList<QByteArray> firstPieces = stream.split('\n');
    QList<QByteArray> secondPieces = again.split('\n');
    std::sort(firstPieces.begin(), firstPieces.end());
    std::sort(secondPieces.begin(), secondPieces.end());
    QCOMPARE(secondPieces, firstPieces);
    QVERIFY(window.ClearDocument());
    QVERIFY(window.OpenPackage(second));
    QVERIFY(!window.IsModified());
    QCOMPARE(Snapshot(window), opened);
    const QString third = files.filePath("out/third.xsp");
    QVERIFY(window.Save(third));
    QCOMPARE(Decompressed(third, files.filePath("third.stream")), again);
    QVERIFY(fixture.prompts->messages("critical").isEmpty() &&
            fixture.prompts->messages("warning").isEmpty());

    // A change after the open gives the star; changing it back removes it.
    window.LineName->setText("Other");
    QVERIFY(window.IsModified());
    window.LineName->setText("Round Trip");
    QVERIFY(!window.IsModified());
}

void TestPackageRoundTrip::buildPackageSettlesLineAndModels()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    QTemporaryDir files;
    const auto src = [&](const QString& name) { return files.filePath(name); };
    for (const char* name :
         {"a/hull.bod", "b/hull.bob", "c/gun.bob", "d/gun.bod", "scene.bod", "wing.pbd", "x.txt", "y/x.txt"})
        WriteFile(src(name), name);

    window.LineID->setText("SS_NEW");
    QString line = QString::fromLatin1(DefaultShipLine);
    line = SetShipField(line, 33, "7"); // no cockpit of the list has number 7
    window.TextRaw->setPlainText(line);
    window.LineShipScene->setText("wing");
    window.LineCockpitScene->setText("ck");
    window.LineSceneFile->setText(src("scene.bod"));
    Row(window.modelList(), {src("a/hull.bod"), "objects/ships"});
    Row(window.modelList(), {src("b/hull.bob"), "objects/ships/"}); // .bob after .bod replaces it
    Row(window.modelList(), {src("c/gun.bob"), "objects/guns"});
    Row(window.modelList(), {src("d/gun.bod"), "objects/guns"}); // .bod after .bob is dropped
    Row(window.modelList(), {src("wing.pbd"), "objects/cut"});   // the ship scene's stem: packed already
    Row(window.modelList(), {src("missing.bob"), "objects"});    // no file: dropped
    Row(window.modelList(), {src("c/gun.bob"), ""});             // a name at the game's root
    Row(window.otherList(), {src("x.txt"), "docs"});
    Row(window.otherList(), {src("y/x.txt"), "docs"}); // same name in the package: dropped

    const std::unique_ptr<ShipPackage> record = window.BuildPackage();
    QVERIFY(record->SceneFile);
    QCOMPARE(record->SceneFile->Name, QString("objects/cut/wing.bod"));
    QVERIFY(!record->CockpitFile); // no file chosen
    QStringList models;
    for (const FileEntry& model : record->Models)
        models.append(model.Name + " <- " + QDir(files.path()).relativeFilePath(model.LocalPath));
    QCOMPARE(models, (QStringList{"objects/ships/hull.bob <- b/hull.bob", "objects/guns/gun.bob <- c/gun.bob",
                                  "gun.bob <- c/gun.bob"}));
    QCOMPARE(record->Models[0].Size, uint32_t(QByteArray("b/hull.bob").size()));
    QCOMPARE(record->Files.size(), 1);
    QCOMPARE(record->Files[0].Name, QString("docs/x.txt"));

    const QString data = window.TextRaw->toPlainText();
    QCOMPARE(data, record->Data);
    QCOMPARE(ShipField(data, 33), QString("7"));
    QCOMPARE(ShipField(data, 16), QString("wing"));
    QCOMPARE(ShipField(data, 17), QString("ck"));
    QCOMPARE(ShipLineId(data), QString("SS_NEW"));
    QVERIFY(!data.endsWith(';'));
    QCOMPARE(data.count(';'), QString::fromLatin1(DefaultShipLine).count(';') - 1);
}

void TestPackageRoundTrip::openFailuresAndTheirMessages()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    QTemporaryDir files;
    const auto package = [&](const QString& name, const QByteArray& stream) {
        WriteFile(files.filePath(name + ".stream"), stream);
        CompressFile(files.filePath(name + ".stream"), files.filePath(name));
        return files.filePath(name);
    };
    const auto criticals = [&] { return fixture.prompts->messages("critical"); };

    // A newer format: its own message, and the form stays empty.
    QVERIFY(!window.OpenPackage(package("new.xsp", "Packager: 1.5\nName: N\nAuthor: A\n")));
    QCOMPARE(criticals().size(), 1);
    QCOMPARE(criticals().last().caption, window.uiTextExtra()[1]);
    QCOMPARE(criticals().last().text, window.uiTextExtra()[2]);
    QCOMPARE(criticals().last().buttons, QStringList{window.uiTextExtra()[0]});
    QVERIFY(!window.document().Saved() && window.document().CurrentFile().isEmpty() &&
            window.LineName->text().isEmpty());

    // A name that leaves WorkDir: refused with the entry named, nothing written outside.
    const QString hostile =
        package("hostile.xsp", "Packager: 1\nName: N\nAuthor: A\nModel: 1 4 ../../escaped.pbd\nevil\n");
    QVERIFY(!window.OpenPackage(hostile));
    QCOMPARE(criticals().size(), 2);
    QVERIFY2(criticals().last().text.contains("../../escaped.pbd"), qPrintable(criticals().last().text));
    QVERIFY(criticals().last().text.contains(hostile));
    QVERIFY(!QFileInfo::exists(fixture.home.filePath("escaped.pbd")));
    QVERIFY(!QFileInfo::exists(QFileInfo(fixture.home.path()).path() + "/escaped.pbd"));

    // Damaged: the open's message. Not a package at all: no message.
    const QString whole = package("whole.xsp", "Packager: 1\nName: N\nAuthor: A\nFiles: 1 9000 big.bin\n" +
                                                   RandomBytes(9000, 4) + "\n");
    WriteFile(files.filePath("cut.xsp"), ReadFile(whole).left(int(QFileInfo(whole).size() / 2)));
    QVERIFY(!window.OpenPackage(files.filePath("cut.xsp")));
    QCOMPARE(criticals().size(), 3);
    QCOMPARE(criticals().last().caption, window.uiText()[63]);
    QCOMPARE(criticals().last().text, window.uiText()[64] + " " + files.filePath("cut.xsp"));
    QVERIFY(!QFileInfo::exists(fixture.home.filePath("ShipInstall/big.bin")));

    WriteFile(files.filePath("text.xsp"), "this is a letter, not a package\n");
    QVERIFY(!window.OpenPackage(files.filePath("text.xsp")));
    QVERIFY(!window.OpenPackage(package("noauthor.xsp", "Packager: 1\nName: N\n")));
    QCOMPARE(criticals().size(), 3);

    QVERIFY(!window.OpenPackage(files.filePath("missing.xsp")));
    QCOMPARE(criticals().size(), 4);
    QCOMPARE(criticals().last().text, window.uiText()[64] + " " + files.filePath("missing.xsp"));
    QVERIFY(!window.document().Saved() && window.document().CurrentFile().isEmpty());
    QVERIFY(window.TabData->isEnabled());

    // A plain stream opens as well as a compressed one.
    WriteFile(files.filePath("plain.xsp"), "Packager: 1\nName: Plain\nAuthor: A\nData: 1;2\n");
    QVERIFY(window.OpenPackage(files.filePath("plain.xsp")));
    QCOMPARE(window.LineName->text(), QString("Plain"));
    QCOMPARE(window.LineVersion->text(), QString());
    QVERIFY(!window.IsModified());
}

void TestPackageRoundTrip::failedSaveKeepsThePackage()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    QTemporaryDir files;
    WriteFile(files.filePath("big.dds"), RandomBytes(3 << 20, 5));
    window.LineName->setText("N");
    window.LineAuthor->setText("A");
    window.LineID->setText("ID");
    Row(window.otherList(), {files.filePath("big.dds"), "textures"});
    const QString target = files.filePath("ship.xsp");
    const QByteArray previous = "the package saved yesterday";
    WriteFile(target, previous);
    const QString stream = fixture.home.filePath("temp/ship.xsp.tMp");

    // The stream shrinks under the encoder: the compression fails.
    bool truncated = false;
    QObject::connect(window.progressBar(), &QProgressBar::valueChanged, [&] {
        if (!truncated && window.QMainWindow::statusBar()->currentMessage().startsWith(window.uiText()[361]))
            truncated = QFile::resize(stream, 10);
    });
    QVERIFY(!window.Save(target));
    QVERIFY(truncated);
    QCOMPARE(ReadFile(target), previous);
    QCOMPARE(QDir(files.path()).entryList(QDir::Files), (QStringList{"big.dds", "ship.xsp"}));
    QVERIFY(!QFileInfo::exists(stream));
    QVERIFY(fixture.prompts->shown.isEmpty()); // no box, and above all no confirmation
    QCOMPARE(window.QMainWindow::statusBar()->currentMessage(), FormatMessage(window.uiText()[76], target));
    QVERIFY(!window.document().Saved() && window.document().CurrentFile().isEmpty()); // still unsaved
    QVERIFY(window.TabData->isEnabled() && !window.progressBar()->isVisible());

    // A stream file that cannot be made: the save's critical box, and nothing changes.
    QDir().mkpath(stream); // a directory where the stream would go
    window.TextRaw->setPlainText("1;2;3;");
    QVERIFY(!window.Save(target));
    const auto criticals = fixture.prompts->messages("critical");
    QCOMPARE(criticals.size(), 1);
    QCOMPARE(criticals.last().caption, window.uiText()[75]);
    QCOMPARE(criticals.last().text, FormatMessage(window.uiText()[76], target));
    QCOMPARE(window.TextRaw->toPlainText(), QString("1;2;3;"));
    QCOMPARE(ReadFile(target), previous);
}

void TestPackageRoundTrip::updateNoteBesideThePackage()
{
    WindowFixture fixture("SaveWeb\n");
    DCreateShip& window = fixture.make();
    QVERIFY(window.settings().SaveWeb);
    QTemporaryDir files;
    window.LineName->setText("Fast Ship");
    window.LineAuthor->setText("A");
    window.LineID->setText("ID");
    window.LineVersion->setText("3");
    window.LineWeb->setText("http://example.invalid");
    QVERIFY(window.Save(files.filePath("fast.xsp")));
    QCOMPARE(ReadFile(files.filePath("FastShip.dat")),
             QByteArray("Script: Fast Ship\nVersion: 3\nFile: fast.xsp\n"));

    // Without a web address there is no note.
    window.LineWeb->clear();
    QVERIFY(window.Save(files.filePath("slow.xsp")));
    QCOMPARE(QDir(files.path()).entryList({"*.dat"}), QStringList{"FastShip.dat"});
}

QTEST_MAIN(TestPackageRoundTrip)
#include "tst_packageroundtrip.moc"
