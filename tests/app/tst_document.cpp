// The document of the main window: the caption, the modified and content
// tests, clearing, the checks and the path of a save, the busy state.
#include "WindowFixture.h"
#include "app/WindowTexts.h"
#include "core/StatusProgressBar.h"
#include "forms/WListView.h"

#include <QStatusBar>
#include <QtTest>

namespace {

const QString NewShipLine = QString::fromLatin1(DefaultShipLine);

// A record equal to what a window filled by FillShip shows.
std::unique_ptr<ShipPackage> SavedShip()
{
    auto saved = std::make_unique<ShipPackage>();
    saved->Name = "Falcon";
    saved->Author = "Someone";
    saved->Version = "1.0";
    saved->ID = "SS_SH_FALCON";
    saved->Data = "1;2;3";
    saved->Shipyards[ShipyardTeladi] = true;
    saved->Comment = "two<newline>lines";
    saved->Models.append(FileEntry{0, 0, "/mods/models/falcon.bod", "objects/ships/falcon.bod", false});
    saved->Dummies.append(DummyEntry{"SDTYPE_GUN", "1;2;"});
    saved->Texts.append(TextEntry{44, "Falcon", "A fast ship"});
    saved->Cockpits.append("cockpit line;");
    return saved;
}

void FillShip(DCreateShip& window)
{
    window.LineName->setText("Falcon");
    window.LineAuthor->setText("Someone");
    window.LineVersion->setText("1.0");
    window.LineID->setText("SS_SH_FALCON");
    window.TextRaw->setPlainText("1;2;3");
    window.CheckTeladi->setChecked(true);
    window.TextComment->setPlainText("two\nlines");
    new QTreeWidgetItem(window.modelList(), {"/mods/models\\falcon.bod", "objects/ships"});
    new QTreeWidgetItem(window.ListDummy, {"SDTYPE_GUN", "1;2;"});
    new QTreeWidgetItem(window.ListText, {"44", "Falcon", "A fast ship"});
    new QTreeWidgetItem(window.ListCockpit, {"C1", "0", "cockpit line;"});
}

// Puts the window into the state after a save of SavedShip to `path`.
void MakeClean(DCreateShip& window, const QString& path)
{
    FillShip(window);
    window.document().Adopt(SavedShip(), path);
    window.UpdateCaption();
}

QString Caption(const QString& inBrackets)
{
    return "X3 - Hullwright V2.00 [" + inBrackets + "]";
}

} // namespace

class TestDocument : public QObject
{
    Q_OBJECT
private slots:
    void newWindowHoldsANewShip();
    void captionFollowsComparisonNotAFlag();
    void shownRecordIsClean();
    void listsCompareByPathOrPackageToken();
    void otherDifferencesAreSeen();
    void defaultsAreNoContent();
    void clearDocumentAsksOnlyWithUnsavedContent();
    void clearDocumentResetsTheForm();
    void saveValidatesInOrder();
    void saveResolvesThePath();
    void busyStateAndWorkDirs();
    void startAsksForAGameDirectory();
};

void TestDocument::newWindowHoldsANewShip()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    QCOMPARE(window.windowTitle(), Caption(window.uiText()[Txt::NewShipCaption]));
    QCOMPARE(window.TextRaw->toPlainText(), NewShipLine);
    QVERIFY(!window.HasContent());
    QVERIFY(window.IsModified()); // nothing saved yet
    QVERIFY(window.progressBar()->isHidden());
    QVERIFY(QFileInfo(fixture.home.filePath("temp")).isDir());
    QCOMPARE(window.settings().GameDirs, QStringList{fixture.home.filePath("game")});

    // A ship that was never saved shows no star, whatever changes.
    window.LineName->setText("Anything");
    QVERIFY(!window.windowTitle().contains('*'));
}

void TestDocument::captionFollowsComparisonNotAFlag()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    MakeClean(window, "/ships/falcon.xsp");
    QVERIFY2(!window.IsModified(), "a form equal to the saved record is clean");
    QCOMPARE(window.windowTitle(), Caption("/ships/falcon.xsp"));

    window.LineName->setText("Falcon II");
    QCOMPARE(window.windowTitle(), Caption("*/ships/falcon.xsp"));
    window.LineName->setText("Falcon");
    QCOMPARE(window.windowTitle(), Caption("/ships/falcon.xsp"));

    window.CheckTeladi->click(); // the shipyard boxes report clicks
    QVERIFY(window.windowTitle().contains("[*"));
    window.CheckTeladi->click();

    // Components take no part in the comparison.
    auto* top = new QTreeWidgetItem(window.ListComp, {"SCTYPE_LASER", "1", ""});
    new QTreeWidgetItem(top, {"", "", "0;0;0;"});
    QVERIFY(!window.IsModified());
}

void TestDocument::shownRecordIsClean()
{
    // Every field a record carries comes back through the form unchanged.
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    ShipPackage record = *SavedShip();
    record.Web = "http://example.org";
    record.Mirror1 = "m1";
    record.Mirror2 = "m2";
    record.Data = NewShipLine;
    for (int yard : {ShipyardArgon, ShipyardSplit, ShipyardXenon})
        record.Shipyards[yard] = true;
    record.LanguageText = true;
    record.ExistingShip = true;
    record.OriginalDesc = 7;
    record.ScreenShot = "falcon.jpg";
    record.SceneFile = FileEntry{1, 2, "objects/cut/falcon.bod", {}, false};
    record.Files.append(FileEntry{1, 2, "docs/readme.txt", {}, false});
    record.Scripts.append(FileEntry{1, 2, "setup.falcon.xml", {}, false});
    record.Components.append(ComponentEntry{"SCTYPE_LASER", "falcon", "1;2;"});
    window.ShowPackage(record);
    window.document().Adopt(std::make_unique<ShipPackage>(record), "/ships/falcon.xsp");
    QVERIFY(!window.IsModified());

    ShipPackage built = *window.BuildPackage();
    for (const auto field :
         {&ShipPackage::Name, &ShipPackage::Author, &ShipPackage::Version, &ShipPackage::ID,
          &ShipPackage::Web, &ShipPackage::Mirror1, &ShipPackage::Mirror2, &ShipPackage::Comment})
        QCOMPARE(built.*field, record.*field);
    QCOMPARE(built.Shipyards, record.Shipyards);
    QVERIFY(built.LanguageText && built.ExistingShip);
    QCOMPARE(built.OriginalDesc, 7);
    QCOMPARE(built.Texts, record.Texts);
    QCOMPARE(built.Dummies, record.Dummies);
    QCOMPARE(built.Components, record.Components);
    QCOMPARE(built.Cockpits, record.Cockpits);
}

void TestDocument::listsCompareByPathOrPackageToken()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    MakeClean(window, "/ships/falcon.xsp");

    window.modelList()->topLevelItem(0)->setText(0, "<PACKAGE>/objects/ships/falcon.bod");
    QVERIFY2(!window.IsModified(), "a row from the package is unchanged");
    window.modelList()->topLevelItem(0)->setText(0, "/mods/models/other.bod");
    QVERIFY(window.IsModified());
    window.modelList()->topLevelItem(0)->setText(0, "/mods/models/falcon.bod");
    QVERIFY(!window.IsModified());

    new QTreeWidgetItem(window.scriptList(), {"/scripts/a.xml", "1 KB", "0"});
    QVERIFY2(window.IsModified(), "one script more than saved");
}

void TestDocument::otherDifferencesAreSeen()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    MakeClean(window, "/ships/falcon.xsp");

    window.LineSceneFile->setText("<PACKAGE>/objects/ships/scene.bod");
    QVERIFY(!window.IsModified());
    window.LineSceneFile->setText("/new/scene.bod");
    QVERIFY(window.IsModified());
    window.LineSceneFile->clear();

    window.LineScreen->setText("/pictures/new.jpg");
    QVERIFY2(window.IsModified(), "a newly chosen picture");
    window.LineScreen->clear();
    QVERIFY(!window.IsModified());

    window.LineShipScene->setText("ships\\falcon");
    QVERIFY2(window.IsModified(), "field 16 of the ship line differs from the scene field");
    window.LineShipScene->clear();

    window.ListText->topLevelItem(0)->setText(2, "A slow ship");
    QVERIFY(window.IsModified());
    window.ListText->topLevelItem(0)->setText(2, "A fast ship");
    window.ListDummy->topLevelItem(0)->setText(1, "9;9;");
    QVERIFY(window.IsModified());
    window.ListDummy->topLevelItem(0)->setText(1, "1;2;");
    window.ListCockpit->topLevelItem(0)->setText(2, "changed;");
    QVERIFY(window.IsModified());
    window.ListCockpit->topLevelItem(0)->setText(2, "cockpit line;");
    window.TextComment->setPlainText("two\nlines!");
    QVERIFY(window.IsModified());
    window.TextComment->setPlainText("two\nlines");
    QVERIFY(!window.IsModified());
}

void TestDocument::defaultsAreNoContent()
{
    WindowFixture fixture("DefAuthor: Jane Q Modder\nDefWeb: http://example.org\n");
    DCreateShip& window = fixture.make();
    QCOMPARE(window.LineAuthor->text(), QString("Jane Q Modder"));
    QVERIFY(!window.HasContent());
    window.Slot_New();
    QVERIFY2(fixture.prompts->shown.isEmpty(), "a pristine form is cleared without asking");
    window.LineAuthor->setText("Somebody Else");
    QVERIFY(window.HasContent());
    window.LineAuthor->setText("");
    QVERIFY(!window.HasContent());
    window.CheckExistingShip->setChecked(true);
    QVERIFY(window.HasContent());
}

void TestDocument::clearDocumentAsksOnlyWithUnsavedContent()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    window.LineName->setText("Unsaved");

    fixture.prompts->messageAnswers.enqueue(1); // the second button: keep the ship
    QVERIFY(!window.ClearDocument());
    QCOMPARE(window.LineName->text(), QString("Unsaved"));
    QCOMPARE(fixture.prompts->messages("question").size(), 1);
    fixture.prompts->messageAnswers.enqueue(-1); // closed otherwise: keep it too
    QVERIFY(!window.ClearDocument());
    fixture.prompts->messageAnswers.enqueue(0);
    QVERIFY(window.ClearDocument());
    QVERIFY(window.LineName->text().isEmpty());

    // A saved, unchanged ship is cleared without a question.
    fixture.prompts->shown.clear();
    MakeClean(window, "/ships/falcon.xsp");
    QVERIFY(window.ClearDocument());
    QVERIFY(fixture.prompts->shown.isEmpty());
}

void TestDocument::clearDocumentResetsTheForm()
{
    WindowFixture fixture("DefMirror1: http://mirror.example\n");
    DCreateShip& window = fixture.make();
    MakeClean(window, "/ships/falcon.xsp");
    window.CheckExisting->setChecked(true);
    QVERIFY(window.SpinOrgDesc->isEnabled() && !window.ListText->isEnabled());
    window.SpinOrgDesc->setValue(7);
    window.LineShipScene->setText("scene");
    window.LineScreen->setText("<PACKAGE>/ShipPics/a.jpg");

    QVERIFY(window.ClearDocument());
    QVERIFY(!window.HasContent());
    QCOMPARE(window.TextRaw->toPlainText(), NewShipLine);
    QCOMPARE(window.SpinOrgDesc->value(), 1);
    QVERIFY(!window.SpinOrgDesc->isEnabled() && window.ListText->isEnabled());
    QCOMPARE(window.LineMirror1->text(), QString("http://mirror.example"));
    QVERIFY(!window.document().Saved());
    QCOMPARE(window.windowTitle(), Caption(window.uiText()[Txt::NewShipCaption]));
}

void TestDocument::saveValidatesInOrder()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    window.LineAuthor->clear();
    window.TextRaw->clear();
    const std::pair<QLineEdit*, int> steps[] = {{window.LineName, Txt::MissingName},
                                                {window.LineAuthor, Txt::MissingAuthor},
                                                {window.LineID, Txt::MissingId},
                                                {nullptr, Txt::MissingShipLine},
                                                {window.LineShipScene, Txt::MissingScene}};
    for (const auto& [field, message] : steps) {
        fixture.prompts->shown.clear();
        window.Slot_Save();
        const auto warnings = fixture.prompts->messages("warning");
        QCOMPARE(warnings.size(), 1);
        QCOMPARE(warnings[0].text, window.uiText()[message]);
        if (field)
            field->setText("filled");
        else
            window.TextRaw->setPlainText(NewShipLine);
    }
    fixture.prompts->shown.clear();
    window.Slot_SaveAs(); // the cockpit scene is still missing
    QCOMPARE(fixture.prompts->messages("warning").value(0).text, window.uiText()[Txt::MissingScene]);
}

void TestDocument::saveResolvesThePath()
{
    WindowFixture fixture("SaveDir: /saves\n");
    DCreateShip& window = fixture.make();
    for (QLineEdit* field : {window.LineName, window.LineID, window.LineShipScene, window.LineCockpitScene})
        field->setText("x");
    window.LineAuthor->setText("me");
    const auto status = [&] { return window.QMainWindow::statusBar()->currentMessage(); };

    fixture.prompts->fileAnswers.enqueue("/out/SHIP.XSP");
    window.Slot_Save();
    QCOMPARE(fixture.prompts->shown.size(), 1);
    QCOMPARE(fixture.prompts->shown[0].kind, QString("saveFile"));
    QCOMPARE(fixture.prompts->shown[0].text, QString("/saves"));
    QVERIFY2(status().contains("/out/SHIP.XSP..."), "the ending in capitals is kept");
    QVERIFY(!window.TabData->isEnabled());
    QTRY_VERIFY(window.TabData->isEnabled()); // the timer ran the save and freed the window

    fixture.prompts->fileAnswers.enqueue("/out/ship");
    window.Slot_SaveAs();
    QVERIFY(status().contains("/out/ship.xsp..."));
    QTRY_VERIFY(window.TabData->isEnabled());

    // A package with a file is saved to it again without a question...
    fixture.prompts->shown.clear();
    window.document().Adopt(SavedShip(), "/ships/open.xsp");
    window.Slot_Save();
    QVERIFY(fixture.prompts->shown.isEmpty());
    QVERIFY(status().contains("/ships/open.xsp..."));
    QTRY_VERIFY(window.TabData->isEnabled());
    // ...but Save As always asks, and cancelling ends it.
    window.Slot_SaveAs();
    QCOMPARE(fixture.prompts->shown.size(), 1);
    QVERIFY(window.TabData->isEnabled());
}

void TestDocument::busyStateAndWorkDirs()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    const QList<QWidget*> controls{window.ButLoad, window.ButImport, window.ButClose,  window.ButSave,
                                   window.TabData, window.ButSaveAs, window.ButCustom, window.ButBalance};
    window.SetBusy(false);
    QVERIFY(std::none_of(controls.begin(), controls.end(), [](QWidget* w) { return w->isEnabled(); }));
    QCOMPARE(window.cursor().shape(), Qt::WaitCursor);
    window.SetBusy(true);
    QVERIFY(std::all_of(controls.begin(), controls.end(), [](QWidget* w) { return w->isEnabled(); }));
    QCOMPARE(window.cursor().shape(), Qt::ArrowCursor);

    fixture.home.writeFile("ShipInstall/objects/a.bod", "model");
    fixture.home.writeFile("temp/work.txt", "work");
    window.CleanWorkDirs();
    QVERIFY(!QFileInfo::exists(fixture.home.filePath("ShipInstall")));
    QVERIFY(!QFileInfo::exists(fixture.home.filePath("temp")));
    QVERIFY(QFileInfo::exists(fixture.home.filePath("config.dat")));
}

void TestDocument::startAsksForAGameDirectory()
{
    TempHome home(true);
    QDir(home.path()).mkpath("nogame");
    home.writeFile("game/x3.exe", "");

    auto first = std::make_unique<ScriptedPrompter>();
    ScriptedPrompter* prompts = first.get();
    prompts->fileAnswers.enqueue(home.filePath("nogame"));
    DCreateShip refused(std::move(first));
    QCOMPARE(prompts->shown.size(), 2);
    QCOMPARE(prompts->shown[0].kind, QString("directory"));
    QCOMPARE(prompts->shown[1].kind, QString("critical")); // no x3.exe in it
    QVERIFY(refused.settings().GameDirs.isEmpty());

    auto second = std::make_unique<ScriptedPrompter>();
    second->fileAnswers.enqueue(home.filePath("game"));
    DCreateShip accepted(std::move(second));
    QCOMPARE(accepted.settings().GameDirs, QStringList{home.filePath("game")});
}

QTEST_MAIN(TestDocument)
#include "tst_document.moc"
