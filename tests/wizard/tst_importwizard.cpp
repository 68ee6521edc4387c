// The import wizard's pages and its whole run, on the sample mod of the
// sample game.
#include "ModCatalog.h"
#include "forms/WizardShip.h"
#include "forms/WizardText.h"
#include "language/UiTexts.h"
#include "wizard/DImportWizard.h"
#include "wizard/ImportCheckPage.h"
#include "wizard/ImportPickPage.h"
#include "wizard/ImportShipPage.h"
#include "wizard/ImportTextPage.h"
#include "wizard/ImportWizardFlow.h"

#include <QAbstractButton>
#include <QDir>
#include <QListWidget>
#include <QTest>
#include <QTreeWidget>

using namespace wizardtest;

namespace {

QString SampleMod()
{
    const QString game = qEnvironmentVariable("HW_SAMPLE_GAME_DIR");
    return game.isEmpty() ? QString() : game + "/mods/SampleMod.cat";
}

QStringList Shown(const QListWidget* list)
{
    QStringList entries;
    for (int i = 0; i < list->count(); ++i)
        entries.append(list->item(i)->text());
    return entries;
}

// The texts of the ticked rows of a page's tree, column 1.
QStringList TickedRows(const QTreeWidget* tree)
{
    QStringList rows;
    for (int s = 0; s < tree->topLevelItemCount(); ++s)
        for (int r = 0; r < tree->topLevelItem(s)->childCount(); ++r)
            if (tree->topLevelItem(s)->child(r)->checkState(0) == Qt::Checked)
                rows.append(tree->topLevelItem(s)->child(r)->text(1));
    return rows;
}

// Every entry names the ship (by its lower-case name) and none the other.
bool OnlyOf(const QStringList& entries, const QString& ship, const QString& other)
{
    for (const QString& entry : entries)
        if (!entry.contains(ship) || entry.contains(other))
            return false;
    return !entries.isEmpty();
}

// The models of the sample mod that belong to `ship`, its two scenes aside.
int ModelsOf(const QString& ship)
{
    int count = -2;
    for (const GameFileListEntry& entry : GameFileList(SampleMod()))
        count += entry.name.startsWith("objects") && entry.name.contains(ship);
    return count;
}

// A wizard whose language dialog answers by itself.
class ScriptedWizard : public DImportWizard
{
public:
    using DImportWizard::DImportWizard;
    bool ExecLanguageText(LanguageText&) override { return false; }
};

} // namespace

class TestImportWizard : public QObject
{
    Q_OBJECT

    TempHome m_home{true};
    QStringList m_uiText = PlaceholderUiTexts(UiTextCount);
    QStringList m_extra = PlaceholderUiTexts(UiTextExtraCount);
    ScriptedPrompter m_prompts;

    std::unique_ptr<ScriptedWizard> makeWizard(const QString& catalog)
    {
        auto session = std::make_unique<ImportSession>(ImportSetup{catalog, m_home.path()});
        if (!session->Open())
            return nullptr;
        ImportWizardSettings settings;
        settings.ProgramDir = m_home.path();
        auto wizard =
            std::make_unique<ScriptedWizard>(std::move(session), m_prompts, m_uiText, m_extra, settings);
        wizard->restart();
        return wizard;
    }

private slots:
    void init()
    {
        if (!QFile::exists(SampleMod()))
            QSKIP("the sample game is not built (HW_SAMPLE_GAME_DIR)");
    }

    // Each ship of the sample mod, page after page: what the wizard finds
    // belongs to that ship and to no other.
    void walksEachShipOfTheSampleMod()
    {
        auto wizard = makeWizard(SampleMod());
        QVERIFY(wizard);
        for (int page : {DImportWizard::DummyPage, DImportWizard::CockpitPage, DImportWizard::ComponentPage,
                         DImportWizard::TexturePage})
            QVERIFY(wizard->page(page));
        QVERIFY(!wizard->button(QWizard::NextButton)->isEnabled());

        const QList<std::pair<QString, QString>> ships = {{"SS_SH_SAMPLEMOD_BULWARK", "bulwark"},
                                                          {"SS_SH_SAMPLEMOD_KESTREL", "kestrel"}};
        for (const auto& [id, ship] : ships) {
            const QString other = ship == "bulwark" ? "kestrel" : "bulwark";
            while (wizard->currentId() != DImportWizard::ShipPage)
                wizard->back();
            QVERIFY(wizard->ShipList()->SelectShip(id));
            // Named from the mod's own language page.
            QCOMPARE(wizard->ShipList()->Form()->ListShips->currentItem()->text(1).toLower(), ship);
            QVERIFY(wizard->button(QWizard::NextButton)->isEnabled());
            wizard->next();
            QCOMPARE(wizard->currentId(), int(DImportWizard::DummyPage));
            QVERIFY(OnlyOf(TickedRows(wizard->DummyTree()->List()), ship, other));

            wizard->next();
            QCOMPARE(wizard->currentId(), int(DImportWizard::ModelPage));
            const QStringList models = Shown(wizard->ModelList()->ChosenList());
            QCOMPARE(models, wizard->Session().Models().Chosen());
            QVERIFY(OnlyOf(models, ship, other));
            QCOMPARE(models.size(), ModelsOf(ship));
            QVERIFY(wizard->button(QWizard::FinishButton)->isEnabled());

            wizard->next();
            QVERIFY(OnlyOf(Shown(wizard->CockpitList()->ChosenList()), ship.toUpper(), other.toUpper()));
            wizard->next();
            QVERIFY(OnlyOf(TickedRows(wizard->ComponentTree()->List()), ship, other));

            m_prompts.messageAnswers.enqueue(0); // search the models for textures
            wizard->next();
            QCOMPARE(wizard->currentId(), int(DImportWizard::TexturePage));
            QCOMPARE(Shown(wizard->TextureList()->ChosenList()).size(), 2);
            QVERIFY(OnlyOf(Shown(wizard->TextureList()->ChosenList()), ship, other));

            wizard->next();
            QCOMPARE(wizard->currentId(), int(DImportWizard::TextPage));
            QCOMPARE(wizard->TextList()->List()->topLevelItemCount(), 2);
            QCOMPARE(wizard->Session().ShipName().toLower(), ship);
        }
        // The Bulwark's radar lies in a scene that only its dummy row names.
        QVERIFY(wizard->Session().NotFound().isEmpty());
    }

    // What the user changes on a page reaches the session: a tick taken off
    // a dummy, entries moved between the lists.
    void pagesWriteBack()
    {
        auto wizard = makeWizard(SampleMod());
        QVERIFY(wizard);
        QVERIFY(wizard->ShipList()->SelectShip("SS_SH_SAMPLEMOD_KESTREL"));
        wizard->next();
        QTreeWidget* dummies = wizard->DummyTree()->List();
        QTreeWidgetItem* gun = dummies->findItems("SDTYPE_GUN", Qt::MatchExactly).value(0);
        QVERIFY(gun && gun->child(0)->checkState(0) == Qt::Checked);
        gun->child(0)->setCheckState(0, Qt::Unchecked);
        QVERIFY(wizard->Session().Dummies().Ticked().isEmpty());
        wizard->next();
        ImportPickPage* page = wizard->ModelList();
        const int chosen = page->ChosenList()->count();
        page->AvailableList()->item(1)->setSelected(true);
        const QString moved = page->AvailableList()->item(1)->text();
        page->AddButton()->click();
        QCOMPARE(Shown(page->ChosenList()).last(), moved);
        QCOMPARE(page->ChosenList()->count(), chosen + 1);
        page->RemoveAllButton()->click();
        QCOMPARE(page->ChosenList()->count(), 0);
        QVERIFY(Shown(page->AvailableList()).contains(moved));
        QCOMPARE(wizard->Session().Models().Chosen(), QStringList());
    }

    // Texts imported from a packed page on disk leave nothing beside it;
    // rows can be renamed and removed.
    void textPage()
    {
        auto wizard = makeWizard(SampleMod());
        QVERIFY(wizard);
        QVERIFY(wizard->ShipList()->SelectShip("SS_SH_SAMPLEMOD_KESTREL"));
        while (wizard->currentId() != DImportWizard::TextPage) {
            m_prompts.messageAnswers.enqueue(1); // no texture search
            wizard->next();
        }
        QVERIFY(wizard->Session().Textures().Chosen().isEmpty());
        wizard->Slot_ClearText();

        QTemporaryDir dir;
        QVERIFY(WriteFile(dir.filePath("source.xml"),
                          "<language id=\"7\"><page id=\"17\"><t id=\"9101\">Falke</t>"
                          "<t id=\"9102\">Ein Jäger.</t></page></language>"));
        QFile source(dir.filePath("source.xml"));
        QVERIFY(GameFileCopyIn(source, dir.filePath("497001.xml"), true));
        QFile::remove(dir.filePath("source.xml"));
        m_prompts.filesAnswers.enqueue({dir.filePath("497001.pck")});
        wizard->Slot_ImportFile();
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{"497001.pck"});
        QTreeWidget* list = wizard->TextList()->List();
        QCOMPARE(list->topLevelItemCount(), 1);
        QCOMPARE(list->topLevelItem(0)->text(1), QString("Falke"));

        list->topLevelItem(0)->setSelected(true);
        m_prompts.inputAnswers.enqueue(QString("Kestrel II"));
        wizard->Slot_ChangeName();
        QCOMPARE(wizard->Session().Texts().first().Name, QString("Kestrel II"));
        list->topLevelItem(0)->setSelected(true);
        wizard->Slot_RemoveLanguage();
        QCOMPARE(list->topLevelItemCount(), 0);
        wizard->Slot_AddLanguage(); // declined by the scripted dialog
        QVERIFY(wizard->Session().Texts().isEmpty());

        // A whole directory: the page chosen, in each language that has it.
        QVERIFY(WriteFile(dir.filePath("447001.xml"),
                          "<language id=\"44\"><page id=\"17\"><t id=\"9101\">Hawk</t></page></language>"));
        QVERIFY(WriteFile(dir.filePath("440005.xml"),
                          "<language id=\"44\"><page id=\"17\"><t id=\"9101\">Other</t></page></language>"));
        m_prompts.fileAnswers.enqueue(dir.path());
        m_prompts.inputAnswers.enqueue(QString("7001"));
        wizard->Slot_ImportDir();
        QStringList names;
        for (const auto& text : wizard->Session().Texts())
            names.append(text.Name);
        names.sort();
        QCOMPARE(names, QStringList({"Falke", "Hawk"}));
        QCOMPARE(list->topLevelItemCount(), 2);
    }

    void runsAsTheWindowStartsIt()
    {
        QList<bool> busy;
        ImportWizardRequest request;
        request.Prompts = &m_prompts;
        request.UiText = &m_uiText;
        request.UiTextExtra = &m_extra;
        request.ProgramDir = m_home.path();
        request.SetBusy = [&](bool ready, const QString&) { busy.append(ready); };

        // No catalog chosen: nothing happens.
        m_prompts.fileAnswers.enqueue(QString());
        QVERIFY(!RunImportWizard(request));
        QVERIFY(busy.isEmpty());

        // A catalog without a ship table is refused with a warning.
        QTemporaryDir dir;
        QVERIFY(BuildModCatalog(dir.filePath("empty.cat"), {{"types\\Dummies.txt", "SDTYPE_GUN;0;\n"}},
                                dir.path()));
        m_prompts.fileAnswers.enqueue(dir.filePath("empty.cat"));
        QVERIFY(!RunImportWizard(request));
        QCOMPARE(m_prompts.messages("warning").size(), 1);
        QVERIFY(m_prompts.messages("warning").first().text.contains(dir.filePath("empty.cat")));

        // Cancelled, then finished on the second page.
        for (bool finish : {false, true}) {
            busy.clear();
            m_prompts.fileAnswers.enqueue(SampleMod());
            const std::optional<ImportResult> result = RunImportWizard(request, [&](DImportWizard& wizard) {
                wizard.restart();
                wizard.ShipList()->SelectShip("SS_SH_SAMPLEMOD_KESTREL");
                wizard.next();
                return finish ? int(QDialog::Accepted) : int(QDialog::Rejected);
            });
            QCOMPARE(result.has_value(), finish);
            QCOMPARE(busy, (QList<bool>{false, true}));
            QCOMPARE(QDir(m_home.filePath("temp")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
                     QStringList());
        }
    }
};

QTEST_MAIN(TestImportWizard)
#include "tst_importwizard.moc"
