// The ship and cockpit selection: tables from a plain file, a packed file and
// a catalog, names from the catalog's own pages before the game's, and the
// main window's Load Ship Data and cockpit loading on the sample game.
#include "TestSupport.h"
#include "WindowFixture.h"
#include "app/SelectShip.h"
#include "catfs/CatDriver.h"
#include "catfs/transfer/GameFile.h"
#include "gamedata/ShipLine.h"
#include "gamedata/TypesFile.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include <functional>

namespace {

// A TShips line whose name text is `nameId`, of variation `variation`, with
// the scenes and the id given.
QString ShipLineOf(int nameId, int variation, const QString& id)
{
    QStringList fields(65, "0");
    fields[ShipLineField::NameId] = QString::number(nameId);
    fields[ShipLineField::ShipScene] = "ships\\" + id.toLower();
    fields[ShipLineField::CockpitScene] = "cockpits\\" + id.toLower();
    fields[ShipLineField::Variation] = QString::number(variation);
    fields[TailIndex(DefaultShipLine) + ShipTailOffset::ShipId] = id;
    return fields.join(u';') + ";";
}

QByteArray TableText(const QStringList& lines)
{
    return ("// ships\n48;" + QString::number(lines.size()) + ";\n" + lines.join(u'\n') + "\n").toUtf8();
}

bool MakeCatalog(const QString& path)
{
    CatArchiveHandle* archive = CatOpenArchive(QFile::encodeName(path).constData(), 1);
    return archive && CatCloseArchive(archive);
}

// Stores `content` packed at `target` ("<catalog>::<entry>" or a disk path
// whose .txt/.xml name becomes .pck).
bool StorePacked(const QString& target, const QByteArray& content, const QString& scratch)
{
    const QString source = scratch + "/source.bin";
    if (!WriteFile(source, content))
        return false;
    QFile input(source);
    return GameFileCopyIn(input, target, true);
}

QByteArray PageFile(const QList<QPair<int, QString>>& texts)
{
    QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<language><page id=\"17\">\n";
    for (const auto& [id, text] : texts)
        xml += "<t id=\"" + QByteArray::number(id) + "\">" + text.toUtf8() + "</t>\n";
    return xml + "</page></language>\n";
}

QStringList UiTexts()
{
    QStringList texts;
    for (int i = 0; i < 420; ++i)
        texts.append("UI" + QString::number(i));
    return texts;
}

// Ids of the rows in list order, and the name column by id.
QStringList IdsInOrder(const QTreeWidget* list)
{
    QStringList ids;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        ids.append(list->topLevelItem(i)->text(0));
    return ids;
}

QHash<QString, QString> NamesById(const QTreeWidget* list)
{
    QHash<QString, QString> names;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        names.insert(list->topLevelItem(i)->text(0), list->topLevelItem(i)->text(1));
    return names;
}

// Acts on the selection dialog once it runs modally: `act` gets it, and the
// dialog is rejected if `act` left it open. Records whether one was shown.
struct ModalDriver
{
    bool shown = false;
    std::function<void(DSelectShip&)> act;
    QTimer timer;

    ModalDriver()
    {
        timer.setInterval(10);
        QObject::connect(&timer, &QTimer::timeout, &timer, [this] { poll(); });
    }
    void arm() { timer.start(); }
    void poll()
    {
        auto* dialog = qobject_cast<DSelectShip*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        timer.stop();
        shown = true;
        if (act)
            act(*dialog);
        if (dialog->isVisible())
            dialog->reject();
    }
};

void SelectId(DSelectShip& dialog, const QString& id)
{
    const QList<QTreeWidgetItem*> found = dialog.ListShips->findItems(id, Qt::MatchExactly, 0);
    QVERIFY(!found.isEmpty());
    dialog.ListShips->setCurrentItem(found.first());
    found.first()->setSelected(true);
}

} // namespace

class TestSelectShip : public QObject
{
    Q_OBJECT
private slots:
    void rowNumbersKeepTheTableOrderUpTo9999();
    void packedTableLeavesItsTextAndACatalogTableLeavesNothing();
    void catalogWithoutTheTableWarnsOnceAndKeepsTheList();
    void namesComeFromTheCatalogsPagesFirstWithVariants();
    void headerOnlyTableShowsNoDialogAndShortLinesStillLoad();
    void cockpitsAreTakenInFileOrderWithTheirRowNumbers();
    void loadShipDataOffersEverySampleShipInBothLanguages_data();
    void loadShipDataOffersEverySampleShipInBothLanguages();
};

void TestSelectShip::rowNumbersKeepTheTableOrderUpTo9999()
{
    TempHome home;
    QTemporaryDir dir;
    QStringList lines, ids;
    for (int i = 1; i <= 10000; ++i) {
        ids.append("SS_SH_" + QString::number(i));
        lines.append("x;" + ids.last() + ";");
    }
    QVERIFY(WriteFile(dir.filePath("tships.txt"), TableText(lines)));
    ScriptedPrompter prompts;
    DSelectShip dialog(prompts, UiTexts(), dir.path(), "44");
    dialog.OpenTable(dir.filePath("tships.txt"));

    QCOMPARE(dialog.ListShips->topLevelItemCount(), 10000);
    QVERIFY(dialog.ListShips->isColumnHidden(2));
    QCOMPARE(dialog.ListShips->sortColumn(), 2);
    QCOMPARE(dialog.ListShips->headerItem()->text(1), QString("UI32"));
    QStringList shown = IdsInOrder(dialog.ListShips);
    // Row 10000 has five digits and sorts as text; all rows before it keep
    // the table's order.
    shown.removeAll("SS_SH_10000");
    QCOMPARE(shown, ids.mid(0, 9999));
    QCOMPARE(DSelectShip::RowNumber(7), QString("0007"));
    QCOMPARE(DSelectShip::RowNumber(12345), QString("12345"));
}

void TestSelectShip::packedTableLeavesItsTextAndACatalogTableLeavesNothing()
{
    TempHome home;
    QTemporaryDir dir, scratch;
    const QStringList lines{ShipLineOf(9001, 0, "SS_A"), ShipLineOf(9011, 0, "SS_B"),
                            ShipLineOf(9021, 0, "SS_A")};
    ScriptedPrompter prompts;

    // A .pck: its .txt stays beside it, and choosing reads it again.
    QVERIFY(StorePacked(dir.filePath("tships.txt"), TableText(lines), scratch.path()));
    QVERIFY(!QFile::exists(dir.filePath("tships.txt")));
    QVERIFY(QFile::exists(dir.filePath("tships.pck")));
    {
        DSelectShip dialog(prompts, UiTexts());
        dialog.OpenTable(dir.filePath("tships.pck"));
        QCOMPARE(dialog.ListShips->topLevelItemCount(), 3);
        QCOMPARE(dialog.LineFile->text(), dir.filePath("tships.pck"));
        QCOMPARE(dialog.windowTitle(), "Qt: UI61 - " + dir.filePath("tships.pck"));
        QCOMPARE(ReadFile(dir.filePath("tships.txt")), TableText(lines));
        // Two lines share the id SS_A: both follow its first item.
        SelectId(dialog, "SS_A");
        dialog.Slot_Selected();
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(dialog.SelectedLines().size(), 2);
        QCOMPARE(dialog.FirstSelected()->Line, lines[0]);
        const SelectedLine* second = dialog.NextSelected();
        QVERIFY(second);
        QCOMPARE(second->Index, 2);
        QCOMPARE(second->Id, QString("SS_A"));
        QVERIFY(!dialog.NextSelected());
        QVERIFY(QFile::exists(dir.filePath("tships.txt")));
    }

    // A damaged .pck leaves the good .txt beside it as it was.
    QVERIFY(WriteFile(dir.filePath("bad.txt"), "48;0;\nkeep;\n"));
    QVERIFY(WriteFile(dir.filePath("bad.pck"), "this is not a packed file"));
    {
        DSelectShip dialog(prompts, UiTexts());
        dialog.OpenTable(dir.filePath("bad.pck"));
        QCOMPARE(dialog.ListShips->topLevelItemCount(), 0);
        QCOMPARE(ReadFile(dir.filePath("bad.txt")), QByteArray("48;0;\nkeep;\n"));
    }

    // A catalog: the work file below ShipInstall is gone after reading and
    // after choosing, and nothing is left beside the catalog.
    const QString catalog = dir.filePath("mod/01.cat");
    QVERIFY(QDir().mkpath(dir.filePath("mod")));
    QVERIFY(MakeCatalog(catalog));
    QVERIFY(StorePacked(catalog + "::types\\TShips.txt", TableText(lines), scratch.path()));
    const QStringList before = QDir(dir.filePath("mod")).entryList(QDir::Files);
    const QByteArray catalogBefore = ReadFile(catalog) + ReadFile(dir.filePath("mod/01.dat"));
    {
        DSelectShip dialog(prompts, UiTexts());
        dialog.Setup("filter", "caption", "types\\TShips.pck", dir.path());
        prompts.fileAnswers.enqueue(catalog);
        dialog.Slot_OpenFile();
        QCOMPARE(dialog.LineFile->text(), catalog + "::types\\TShips.pck");
        QCOMPARE(IdsInOrder(dialog.ListShips), (QStringList{"SS_A", "SS_A", "SS_B"})); // sorted by id
        QVERIFY(!QFile::exists(home.filePath("ShipInstall/types/TShips.pck")));
        SelectId(dialog, "SS_B");
        dialog.Slot_Selected();
        QCOMPARE(dialog.SelectedLines().size(), 1);
        QCOMPARE(dialog.SelectedLines().first().Line, lines[1]);
        QCOMPARE(dialog.SelectedLines().first().Index, 1);
        QVERIFY(!QFile::exists(home.filePath("ShipInstall/types/TShips.pck")));
    }
    QCOMPARE(QDir(dir.filePath("mod")).entryList(QDir::Files), before);
    QCOMPARE(ReadFile(catalog) + ReadFile(dir.filePath("mod/01.dat")), catalogBefore);
    QVERIFY(prompts.messages("warning").isEmpty());
}

void TestSelectShip::catalogWithoutTheTableWarnsOnceAndKeepsTheList()
{
    TempHome home;
    QTemporaryDir dir;
    QVERIFY(WriteFile(dir.filePath("tships.txt"), TableText({"a;SS_ONE;", "b;SS_TWO;"})));
    QVERIFY(MakeCatalog(dir.filePath("01.cat")));
    ScriptedPrompter prompts;
    DSelectShip dialog(prompts, UiTexts());
    dialog.Setup("filter", "caption", "types\\TShips.pck", dir.path());
    prompts.fileAnswers.enqueue(dir.filePath("tships.txt"));
    dialog.Slot_OpenFile();
    QCOMPARE(dialog.ListShips->topLevelItemCount(), 2);

    prompts.fileAnswers.enqueue(dir.filePath("01.cat"));
    dialog.Slot_OpenFile();
    const QList<ScriptedPrompter::Shown> warnings = prompts.messages("warning");
    QCOMPARE(warnings.size(), 1);
    QCOMPARE(warnings.first().caption, QString("UI58"));
    QCOMPARE(warnings.first().text, QString("UI59\ntypes\\TShips.pck"));
    QCOMPARE(warnings.first().buttons, QStringList{"UI60"});
    QCOMPARE(dialog.ListShips->topLevelItemCount(), 2);
    QCOMPARE(dialog.LineFile->text(), dir.filePath("tships.txt"));

    // A cancelled file dialog changes nothing either.
    dialog.Slot_OpenFile();
    QCOMPARE(dialog.ListShips->topLevelItemCount(), 2);
    QCOMPARE(prompts.messages("warning").size(), 1);
}

void TestSelectShip::namesComeFromTheCatalogsPagesFirstWithVariants()
{
    TempHome home;
    QTemporaryDir dir, scratch;
    const QString catalog = dir.filePath("01.cat");
    QVERIFY(MakeCatalog(catalog));
    const QStringList lines{ShipLineOf(9001, 0, "SS_MOD"),       ShipLineOf(9011, 2, "SS_GAME_VARIANT"),
                            ShipLineOf(9999, 2, "SS_UNNAMED"),   ShipLineOf(9001, 9, "SS_FAR_VARIANT"),
                            ShipLineOf(9021, 1, "SS_EMPTY_VAR"), ShipLineOf(9011, 3, "SS_REFERENCE")};
    QVERIFY(StorePacked(catalog + "::types\\TShips.txt", TableText(lines), scratch.path()));
    // The mod's English page renames ship 9001 and variant 10003; its German
    // page is of another language and is not read.
    QVERIFY(StorePacked(catalog + "::t\\440001.xml",
                        PageFile({{9001, "Mod Lance"}, {10003, "Corsair"}, {10004, "{17,10003}"}}),
                        scratch.path()));
    QVERIFY(StorePacked(catalog + "::t\\490001.xml", PageFile({{9011, "Welle"}}), scratch.path()));

    const QList<GameText> gameTexts{{9001, "Game Lance"}, {9011, "Ripple"}, {9021, "Dart"}};
    const QList<IdName> variants{{0, "Standard"}, {10003, "Raider"}, {10004, "Hauler"}};
    const QStringList variantNames{"", "Raider", "Hauler"};
    ScriptedPrompter prompts;
    DSelectShip dialog(prompts, UiTexts(), dir.path(), "44", &gameTexts, &variants, &variantNames);
    dialog.Setup("filter", "caption", "types\\TShips.pck", dir.path());
    dialog.OpenTable(catalog);

    const QHash<QString, QString> names = NamesById(dialog.ListShips);
    QCOMPARE(names.value("SS_MOD"), QString("Mod Lance"));
    QCOMPARE(names.value("SS_GAME_VARIANT"), QString("Ripple Corsair"));
    QCOMPARE(names.value("SS_UNNAMED"), QString()); // an empty name takes no variant
    QCOMPARE(names.value("SS_FAR_VARIANT"), QString("Mod Lance"));
    QCOMPARE(names.value("SS_EMPTY_VAR"), QString("Dart"));           // variant 1 has no name
    QCOMPARE(names.value("SS_REFERENCE"), QString("Ripple Corsair")); // "{17,10003}" resolved
    QCOMPARE(IdsInOrder(dialog.ListShips).first(), QString("SS_MOD"));
    QVERIFY(!QFile::exists(home.filePath("textfile.txt")));
    // The window's variant names are the window's: the mod's pages only rename
    // variants within this dialog.
    QCOMPARE(variantNames, (QStringList{"", "Raider", "Hauler"}));

    // A plain table names from the game's texts alone.
    QVERIFY(WriteFile(dir.filePath("tships.txt"), TableText(lines)));
    dialog.OpenTable(dir.filePath("tships.txt"));
    QCOMPARE(dialog.ListShips->topLevelItemCount(), int(lines.size())); // replaced, not added
    QCOMPARE(NamesById(dialog.ListShips).value("SS_MOD"), QString("Game Lance"));
}

void TestSelectShip::headerOnlyTableShowsNoDialogAndShortLinesStillLoad()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    const QString rawBefore = window.TextRaw->toPlainText();
    QVERIFY(fixture.home.writeFile("tables/TShips.txt", "// nothing but the header\n48;0;\n"));

    ModalDriver driver;
    driver.arm();
    fixture.prompts->fileAnswers.enqueue(fixture.home.filePath("tables/TShips.txt"));
    window.Slot_LoadShip();
    QVERIFY(!driver.shown);
    QCOMPARE(window.TextRaw->toPlainText(), rawBefore);
    QCOMPARE(fixture.prompts->shown.first().caption, window.uiText()[57]);

    // A line with too few fields loads as it stands: missing fields read as
    // empty or 0.
    QVERIFY(fixture.home.writeFile("tables/TShips.txt", "48;1;\nbody;7;SS_SHORT;\n"));
    fixture.prompts->fileAnswers.enqueue(fixture.home.filePath("tables/TShips.txt"));
    driver.act = [](DSelectShip& dialog) {
        SelectId(dialog, "SS_SHORT");
        dialog.ButSelect->click();
    };
    driver.arm();
    window.Slot_LoadShip();
    QVERIFY(driver.shown);
    QCOMPARE(window.TextRaw->toPlainText(), QString("body;7;SS_SHORT;"));
    QCOMPARE(window.LineID->text(), QString("SS_SHORT"));
    QCOMPARE(window.LineShipScene->text(), QString());
    QCOMPARE(window.LineCockpitScene->text(), QString());
    QCOMPARE(window.SpinOrgDesc->value(), 0);
}

void TestSelectShip::cockpitsAreTakenInFileOrderWithTheirRowNumbers()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    QVERIFY(fixture.home.writeFile("tables/tcockpits.txt",
                                   "47;3;\n"
                                   "0;0;0;0;0;0;0;s;7;0;0;0;0;0;0;-100000;0;0;SS_C_ONE;\n"
                                   "// a comment\n"
                                   "0;0;0;0;0;0;0;s;0;0;0;0;0;0;0;-100000;0;0;SS_C_TWO;\n"
                                   "0;0;0;0;0;0;0;s;0;0;0;0;0;0;0;-100000;0;0;SS_C_AAA;\n"));
    fixture.prompts->fileAnswers.enqueue(fixture.home.filePath("tables/tcockpits.txt"));
    ModalDriver driver;
    driver.act = [](DSelectShip& dialog) {
        QCOMPARE(dialog.ListShips->selectionMode(), QAbstractItemView::MultiSelection);
        QCOMPARE(dialog.ListShips->columnCount(), 1); // ids only, no names
        SelectId(dialog, "SS_C_TWO");
        SelectId(dialog, "SS_C_AAA");
        dialog.ButSelect->click();
    };
    driver.arm();
    window.Slot_LoadCockpit();
    QVERIFY(driver.shown);
    QCOMPARE(fixture.prompts->shown.first().caption, QString("Select the TCockpits file to open"));
    QCOMPARE(window.ListCockpit->topLevelItemCount(), 2);
    QHash<QString, QString> rows;
    for (int i = 0; i < 2; ++i) {
        const QTreeWidgetItem* item = window.ListCockpit->topLevelItem(i);
        rows.insert(item->text(0), item->text(1));
        QCOMPARE(ShipField(item->text(2), 18), item->text(0));
    }
    QCOMPARE(rows.value("SS_C_TWO"), QString("1"));
    QCOMPARE(rows.value("SS_C_AAA"), QString("2"));
}

void TestSelectShip::loadShipDataOffersEverySampleShipInBothLanguages_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("lance");
    QTest::addColumn<QString>("raider");
    QTest::addColumn<QString>("hauler");
    QTest::newRow("English") << "44"
                             << "Lance"
                             << "Lance Raider"
                             << "Ledger Hauler";
    QTest::newRow("German") << "49"
                            << "Lanze"
                            << "Lanze Plünderer"
                            << "Kontobuch Frachter";
}

void TestSelectShip::loadShipDataOffersEverySampleShipInBothLanguages()
{
    QFETCH(QString, language);
    QFETCH(QString, lance);
    QFETCH(QString, raider);
    QFETCH(QString, hauler);
    const QString sample = qEnvironmentVariable("HW_SAMPLE_GAME_DIR");
    if (sample.isEmpty() || !QFile::exists(sample + "/01.cat"))
        QSKIP("the sample game is not built");

    WindowFixture fixture;
    QVERIFY(CopyTree(sample, fixture.home.filePath("game")));
    DCreateShip& window = fixture.make();
    ChangeSettings(window, [&](AppSettings& s) { s.BaseLang = language; });
    window.GetText();

    const QStringList tableLines =
        ReadTypesFile(qEnvironmentVariable("HW_SOURCE_DIR") + "/samples/game-src/types/TShips.txt").records;
    QCOMPARE(tableLines.size(), 16);
    QStringList tableIds;
    for (const QString& line : tableLines)
        tableIds.append(ShipLineId(line));

    QStringList shownIds;
    QHash<QString, QString> names;
    ModalDriver driver;
    driver.act = [&](DSelectShip& dialog) {
        shownIds = IdsInOrder(dialog.ListShips);
        names = NamesById(dialog.ListShips);
        SelectId(dialog, "SS_SH_SAMPLE_LANCE_RAIDER");
        dialog.ButSelect->click();
    };
    driver.arm();
    fixture.prompts->fileAnswers.enqueue(fixture.home.filePath("game/01.cat"));
    window.Slot_LoadShip();
    QVERIFY(driver.shown);

    QCOMPARE(shownIds, tableIds); // every ship, in the table's order
    for (const QString& id : tableIds)
        QVERIFY2(!names.value(id).isEmpty(), qPrintable(id));
    QCOMPARE(names.value("SS_SH_SAMPLE_LANCE"), lance);
    QCOMPARE(names.value("SS_SH_SAMPLE_LANCE_RAIDER"), raider);
    QCOMPARE(names.value("SS_SH_SAMPLE_LEDGER_HAULER"), hauler);

    const QString chosen = tableLines[tableIds.indexOf("SS_SH_SAMPLE_LANCE_RAIDER")];
    QCOMPARE(window.TextRaw->toPlainText(), chosen);
    QCOMPARE(window.LineID->text(), QString("SS_SH_SAMPLE_LANCE_RAIDER"));
    QCOMPARE(window.LineShipScene->text(), QString("ships\\sample\\lance_scene"));
    QCOMPARE(window.LineCockpitScene->text(), QString("cockpits\\sample\\fighter_cp_scene"));
    QCOMPARE(window.SpinOrgDesc->value(), 9001);
    QVERIFY(!QFile::exists(fixture.home.filePath("ShipInstall/types/TShips.pck")));
}

QTEST_MAIN(TestSelectShip)
#include "tst_selectship.moc"
