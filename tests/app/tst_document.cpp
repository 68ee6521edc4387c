#include "WindowFixture.h"
#include "app/core/StatusProgressBar.h"
#include "forms/WListView.h"

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
    auto* model = new QTreeWidgetItem(window.ModelList, {"/mods/models\\falcon.bod", "objects/ships"});
    Q_UNUSED(model);
    new QTreeWidgetItem(window.ListDummy, {"SDTYPE_GUN", "1;2;"});
    new QTreeWidgetItem(window.ListText, {"44", "Falcon", "A fast ship"});
    new QTreeWidgetItem(window.ListCockpit, {"C1", "0", "cockpit line;"});
}

// Puts the window into the state after a save of SavedShip to `path`.
void MakeClean(DCreateShip& window, const QString& path)
{
    FillShip(window);
    window.SavedPackage = SavedShip();
    window.CurrentFile = path;
    window.UpdateCaption();
}

} // namespace

class TestDocument : public QObject
{
    Q_OBJECT
private slots:
    void newWindowHoldsANewShip();
    void neverSavedShipShowsNoStar();
    void captionFollowsComparisonNotAFlag();
    void componentsDoNotModify();
    void listsCompareByPathOrPackageToken();
    void otherDifferencesAreSeen();
    void defaultAuthorAloneIsNoContent();
    void clearDocumentAsksOnlyWithUnsavedContent();
    void clearDocumentResetsTheForm();
    void saveValidatesInOrder();
    void saveResolvesThePath();
    void busyStateDisablesTheControls();
    void cleanWorkDirsRemovesBoth();
    void startAsksForAGameDirectory();
    void classAndVariantFiles();
};

void TestDocument::newWindowHoldsANewShip()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    QCOMPARE(window.windowTitle(), "X3 - Hullwright V2.00 [" + window.UiText[30] + "]");
    QVERIFY(!window.UiText[30].startsWith("ReadText-"));
    QCOMPARE(window.TextRaw->toPlainText(), NewShipLine);
    QCOMPARE(NewShipLine.count(';'), 65);
    QVERIFY(!window.HasContent());
    QVERIFY(window.IsModified()); // nothing saved yet
    QVERIFY(!window.SpinOrgDesc->isEnabled());
    QCOMPARE(window.ModelList->objectName(), QString("models list"));
    QCOMPARE(window.ScriptList->selectionMode(), QAbstractItemView::SingleSelection);
    QCOMPARE(window.OtherList->selectionMode(), QAbstractItemView::ExtendedSelection);
    QCOMPARE(window.ScriptList->columnCount(), 3);
    QCOMPARE(window.ModelList->headerItem()->text(0), window.UiText[91]);
    QVERIFY(window.ProgressBar && window.ProgressBar->isHidden());
    QVERIFY(QFileInfo(fixture.home.filePath("temp")).isDir());
    QCOMPARE(window.GameDirs, QStringList{fixture.home.filePath("game")});
}

void TestDocument::neverSavedShipShowsNoStar()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    const QString before = window.windowTitle();
    window.LineName->setText("Anything");
    QCOMPARE(window.windowTitle(), before);
    QVERIFY(!window.windowTitle().contains('*'));
}

void TestDocument::captionFollowsComparisonNotAFlag()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    MakeClean(window, "/ships/falcon.xsp");
    QVERIFY2(!window.IsModified(), "a form equal to the saved record is clean");
    QCOMPARE(window.windowTitle(), QString("X3 - Hullwright V2.00 [/ships/falcon.xsp]"));

    window.LineName->setText("Falcon II");
    QCOMPARE(window.windowTitle(), QString("X3 - Hullwright V2.00 [*/ships/falcon.xsp]"));
    window.LineName->setText("Falcon");
    QCOMPARE(window.windowTitle(), QString("X3 - Hullwright V2.00 [/ships/falcon.xsp]"));

    window.CheckTeladi->click(); // the shipyard boxes report clicks
    QVERIFY(window.windowTitle().contains("[*"));
}

void TestDocument::componentsDoNotModify()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    MakeClean(window, "/ships/falcon.xsp");
    auto* top = new QTreeWidgetItem(window.ListComp, {"SCTYPE_LASER", "1", ""});
    new QTreeWidgetItem(top, {"", "", "0;0;0;"});
    QVERIFY(!window.IsModified());
}

void TestDocument::listsCompareByPathOrPackageToken()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    MakeClean(window, "/ships/falcon.xsp");

    window.ModelList->topLevelItem(0)->setText(0, "<PACKAGE>/objects/ships/falcon.bod");
    QVERIFY2(!window.IsModified(), "a row from the package is unchanged");
    window.ModelList->topLevelItem(0)->setText(0, "/mods/models/other.bod");
    QVERIFY(window.IsModified());
    window.ModelList->topLevelItem(0)->setText(0, "/mods/models/falcon.bod");
    QVERIFY(!window.IsModified());

    new QTreeWidgetItem(window.ScriptList, {"/scripts/a.xml", "1 KB", "0"});
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
    window.TextRaw->setPlainText("1;2;3;0;0;0;0;0;0;0;0;0;0;0;0;0;ships\\falcon;;");
    window.SavedPackage->Data = window.TextRaw->toPlainText();
    QVERIFY(!window.IsModified());

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

void TestDocument::defaultAuthorAloneIsNoContent()
{
    WindowFixture fixture("DefAuthor: Jane Q Modder\nDefWeb: http://example.org\n");
    DCreateShip& window = fixture.make();
    QCOMPARE(window.LineAuthor->text(), QString("Jane Q Modder"));
    QCOMPARE(window.LineWeb->text(), QString("http://example.org"));
    QVERIFY(!window.HasContent());
    window.Slot_New();
    QVERIFY2(fixture.prompts->shown.isEmpty(), "a pristine form is cleared without asking");
    window.LineAuthor->setText("Somebody Else");
    QVERIFY(window.HasContent());
    window.LineAuthor->setText("");
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
    const auto asked = fixture.prompts->messages("question");
    QCOMPARE(asked.size(), 1);
    QCOMPARE(asked[0].caption, window.UiText[393]);
    QCOMPARE(asked[0].text, window.UiText[394]);
    QCOMPARE(asked[0].buttons, (QStringList{window.UiText[81], window.UiText[82]}));

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
    QVERIFY(window.SpinOrgDesc->isEnabled());
    QVERIFY(!window.ListText->isEnabled());
    window.SpinOrgDesc->setValue(7);
    window.LineShipScene->setText("scene");
    window.LineScreen->setText("<PACKAGE>/ShipPics/a.jpg");

    QVERIFY(window.ClearDocument());
    QVERIFY(!window.HasContent());
    QCOMPARE(window.TextRaw->toPlainText(), NewShipLine);
    QCOMPARE(window.SpinOrgDesc->value(), 1);
    QVERIFY(!window.SpinOrgDesc->isEnabled());
    QVERIFY(window.ListText->isEnabled());
    QCOMPARE(window.ModelList->topLevelItemCount(), 0);
    QCOMPARE(window.LineMirror1->text(), QString("http://mirror.example"));
    QVERIFY(!window.SavedPackage);
    QVERIFY(window.CurrentFile.isEmpty());
    QCOMPARE(window.windowTitle(), "X3 - Hullwright V2.00 [" + window.UiText[30] + "]");
}

void TestDocument::saveValidatesInOrder()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    window.LineAuthor->clear();
    window.TextRaw->clear();
    const std::pair<QLineEdit*, int> steps[] = {{window.LineName, 71},
                                                {window.LineAuthor, 72},
                                                {window.LineID, 73},
                                                {nullptr, 74},
                                                {window.LineShipScene, 362}};
    for (const auto& [field, message] : steps) {
        fixture.prompts->shown.clear();
        window.Slot_Save();
        const auto warnings = fixture.prompts->messages("warning");
        QCOMPARE(warnings.size(), 1);
        QCOMPARE(warnings[0].caption, window.UiText[70]);
        QCOMPARE(warnings[0].text, window.UiText[message]);
        QCOMPARE(warnings[0].buttons, QStringList{window.UiText[60]});
        if (field)
            field->setText("filled");
        else
            window.TextRaw->setPlainText(NewShipLine);
    }
    fixture.prompts->shown.clear();
    window.Slot_SaveAs(); // the cockpit scene is still missing
    QCOMPARE(fixture.prompts->messages("warning").value(0).text, window.UiText[362]);
}

void TestDocument::saveResolvesThePath()
{
    WindowFixture fixture("SaveDir: /saves\n");
    DCreateShip& window = fixture.make();
    for (QLineEdit* field : {window.LineName, window.LineID, window.LineShipScene, window.LineCockpitScene})
        field->setText("x");
    window.LineAuthor->setText("me");

    fixture.prompts->fileAnswers.enqueue("/out/SHIP.XSP");
    window.Slot_Save();
    QCOMPARE(fixture.prompts->shown.size(), 1);
    QCOMPARE(fixture.prompts->shown[0].kind, QString("saveFile"));
    QCOMPARE(fixture.prompts->shown[0].caption, window.UiText[69]);
    QCOMPARE(fixture.prompts->shown[0].text, QString("/saves"));
    QCOMPARE(fixture.prompts->shown[0].buttons, QStringList{window.UiText[65] + " (*.xsp)"});
    QCOMPARE(window.PathToSave, QString("/out/SHIP.XSP"));
    QVERIFY(!window.TabData->isEnabled());
    QTRY_VERIFY(window.TabData->isEnabled()); // the timer ran the save and freed the window

    fixture.prompts->fileAnswers.enqueue("/out/ship");
    window.Slot_SaveAs();
    QCOMPARE(window.PathToSave, QString("/out/ship.xsp"));
    QTRY_VERIFY(window.TabData->isEnabled());

    // A package with a file is saved to it again without a question...
    fixture.prompts->shown.clear();
    window.CurrentFile = "/ships/open.xsp";
    window.Slot_Save();
    QVERIFY(fixture.prompts->shown.isEmpty());
    QCOMPARE(window.PathToSave, QString("/ships/open.xsp"));
    QTRY_VERIFY(window.TabData->isEnabled());
    // ...but Save As always asks, and cancelling ends it.
    window.Slot_SaveAs();
    QCOMPARE(fixture.prompts->shown.size(), 1);
    QVERIFY(window.TabData->isEnabled());
}

void TestDocument::busyStateDisablesTheControls()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    const QList<QWidget*> controls{window.ButLoad, window.ButImport, window.ButClose,  window.ButSave,
                                   window.TabData, window.ButSaveAs, window.ButCustom, window.ButBalance};
    window.SetBusy(false);
    for (QWidget* control : controls)
        QVERIFY2(!control->isEnabled(), qPrintable(control->objectName()));
    QCOMPARE(window.cursor().shape(), Qt::WaitCursor);
    window.SetBusy(true);
    for (QWidget* control : controls)
        QVERIFY2(control->isEnabled(), qPrintable(control->objectName()));
    QCOMPARE(window.cursor().shape(), Qt::ArrowCursor);
}

void TestDocument::cleanWorkDirsRemovesBoth()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
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
    QDir(home.path()).mkpath("game");
    home.writeFile("game/x3.exe", "");

    auto first = std::make_unique<ScriptedPrompter>();
    ScriptedPrompter* prompts = first.get();
    prompts->fileAnswers.enqueue(home.filePath("nogame"));
    DCreateShip refused(std::move(first));
    QCOMPARE(prompts->shown.size(), 2);
    QCOMPARE(prompts->shown[0].kind, QString("directory"));
    QCOMPARE(prompts->shown[0].caption, refused.UiText[235]);
    QCOMPARE(prompts->shown[1].kind, QString("critical"));
    QCOMPARE(prompts->shown[1].caption, refused.UiText[353]);
    QCOMPARE(prompts->shown[1].text, refused.UiText[354]);
    QVERIFY(refused.GameDirs.isEmpty());

    auto second = std::make_unique<ScriptedPrompter>();
    second->fileAnswers.enqueue(home.filePath("game"));
    DCreateShip accepted(std::move(second));
    QCOMPARE(accepted.GameDirs, QStringList{home.filePath("game")});
}

void TestDocument::classAndVariantFiles()
{
    TempHome home;
    home.writeFile("classes", "// comment\n1:M1 Carrier\n0:Nothing\nx:Bad\n5:Name: with colon\n");
    home.writeFile("variant", "0:Standard\n0:\n3:Vanguard\n//4:Commented\n");
    const QList<IdName> classes = ReadIdNameFile(home.filePath("classes"), false);
    QCOMPARE(classes.size(), 2);
    QCOMPARE(classes[0].Id, 1);
    QCOMPARE(classes[0].Name, QString("M1 Carrier"));
    QCOMPARE(classes[1].Name, QString("Name: with colon"));
    const QList<IdName> variants = ReadIdNameFile(home.filePath("variant"), true);
    QCOMPARE(variants.size(), 2);
    QCOMPARE(variants[0].Id, 0);
    QCOMPARE(variants[0].Name, QString("Standard"));
    QCOMPARE(variants[1].Id, 3);
    QVERIFY(ReadIdNameFile(home.filePath("missing"), false).isEmpty());
}

QTEST_MAIN(TestDocument)
#include "tst_document.moc"
