// Edit mode on a copy of the built sample game: open its installed ship with
// -e, change it, save, and open it again; and the starts that end as normal
// ones.
#include "WindowFixture.h"
#include "app/EditMode.h"
#include "app/WindowTexts.h"
#include "deploy/InstalledShipOpen.h"
#include "package/InstalledShips.h"

#include <QtTest>

class TestEditMode : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void editSaveAndReopen();
    void targetsThatOpenNothingGiveANormalStart();
    void aFailedSaveKeepsTheWindowAndTheRegistry();

private:
    QString game() const { return m_fixture->home.filePath("game"); }
    QString target(const QString& key) const { return "-e " + game() + "/" + key; }

    std::unique_ptr<WindowFixture> m_fixture;
};

void TestEditMode::init()
{
    const QString sample = qEnvironmentVariable("HW_SAMPLE_GAME_DIR");
    if (!QFile::exists(sample + "/ShipInstall/ships.dat"))
        QSKIP("the sample game with its installed ship is not built");
    m_fixture = std::make_unique<WindowFixture>();
    QVERIFY(CopyTree(sample, game()));
}

void TestEditMode::editSaveAndReopen()
{
    DCreateShip& window = m_fixture->make();
    QVERIFY(window.ParseCommandLine({target("Hullwright~Kestrel")}));
    QCOMPARE(window.LineName->text(), QString("Kestrel"));
    QVERIFY(window.windowTitle().contains(window.uiText()[Txt::EditModeCaption] + " (Kestrel - Hullwright)"));
    // The scene came out of the mod catalog to where the form's field points.
    const QString scene = window.LineSceneFile->text();
    QVERIFY(scene.startsWith("<PACKAGE>/"));
    QVERIFY(QFileInfo(m_fixture->home.filePath("ShipInstall/" + scene.mid(10))).size() > 0);
    QVERIFY(m_fixture->prompts->shown.isEmpty());

    window.LineVersion->setText("2.5");
    window.TextComment->setPlainText("changed\nin edit mode");
    window.CheckXenon->setChecked(true);
    window.Slot_Save();
    QTRY_COMPARE(ReadInstalledShips(game()).Registry.Ships.value(0).Record.Version, QString("2.5"));
    QVERIFY(m_fixture->prompts->shown.isEmpty());

    DCreateShip& again = m_fixture->make();
    QVERIFY(again.ParseCommandLine({target("Hullwright~Kestrel")}));
    QCOMPARE(again.LineVersion->text(), QString("2.5"));
    QCOMPARE(again.TextComment->toPlainText(), QString("changed in edit mode"));
    QVERIFY(again.CheckXenon->isChecked() && again.CheckArgon->isChecked());
    QTemporaryDir work;
    const InstalledShipOpened opened = OpenInstalledShip(game(), {"Hullwright", "Kestrel"}, work.path());
    QVERIFY(opened.Missing.isEmpty() && opened.Record.SceneFile && opened.Record.CockpitFile);
}

void TestEditMode::targetsThatOpenNothingGiveANormalStart()
{
    const QByteArray registry = ReadFile(game() + "/ShipInstall/ships.dat");
    const QString damaged[] = {"Nobody~Nothing", "Hullwright~Kestrel"};
    for (const QString& key : damaged) {
        if (key.startsWith("Hullwright"))
            QVERIFY(WriteFile(game() + "/ShipInstall/ships.dat", registry + QByteArray("\xff\0junk\n", 7)));
        DCreateShip& window = m_fixture->make();
        QVERIFY(window.ParseCommandLine({target(key)}));
        QVERIFY(window.editTarget().isEmpty());
        QVERIFY(window.windowTitle().endsWith("[" + window.uiText()[Txt::NewShipCaption] + "]"));
        QVERIFY(window.ButSaveAs->isVisibleTo(&window) && window.LineID->isEnabled());
        // Only the registry that could not be read is worth a word.
        QCOMPARE(m_fixture->prompts->messages("warning").size(), key.startsWith("Hullwright") ? 1 : 0);

        window.LineName->setText("N");
        window.LineAuthor->setText("A");
        window.LineID->setText("I");
        window.LineShipScene->setText("s");
        window.LineCockpitScene->setText("c");
        // Save is a package save again: it asks for a file, and the caption
        // follows the package.
        const QString package = m_fixture->home.filePath(key.section('~', 0, 0) + ".xsp");
        m_fixture->prompts->fileAnswers.enqueue(package);
        window.Slot_Save();
        QVERIFY(m_fixture->prompts->fileAnswers.isEmpty());
        QTRY_VERIFY(window.windowTitle().endsWith("[" + package + "]"));
        m_fixture->prompts->shown.clear();
    }
    QCOMPARE(ReadFile(game() + "/ShipInstall/ships.dat"), registry + QByteArray("\xff\0junk\n", 7));
}

void TestEditMode::aFailedSaveKeepsTheWindowAndTheRegistry()
{
    DCreateShip& window = m_fixture->make();
    QVERIFY(window.ParseCommandLine({target("Hullwright~Kestrel")}));
    window.show();
    window.LineVersion->setText("3.0");
    // Another program changes the registry after the ship was opened.
    const QByteArray changed = ReadFile(game() + "/ShipInstall/ships.dat") + "Comment: added elsewhere\n";
    QVERIFY(WriteFile(game() + "/ShipInstall/ships.dat", changed));

    window.Slot_Save();
    QTRY_COMPARE(m_fixture->prompts->messages("warning").size(), 1);
    const auto boxes = m_fixture->prompts->messages("warning");
    QCOMPARE(boxes[0].caption, window.uiTextExtra()[EditModeText::NotSavedCaption]);
    QCOMPARE(ReadFile(game() + "/ShipInstall/ships.dat"), changed);
    // Nothing typed is lost: the window stays, still editing the ship.
    QVERIFY(window.isVisible());
    QCOMPARE(window.LineVersion->text(), QString("3.0"));
    QVERIFY(!window.editTarget().isEmpty());
}

QTEST_MAIN(TestEditMode)
#include "tst_editmode.moc"
