// Customize Ship from the main window: the button and Tools > Configure Ship
// run the dialog over the form, and what it gives back reaches the form and
// the settings.
#include "../app/WindowFixture.h"
#include "ConfigShipFixture.h"
#include "app/ShipConfigFlow.h"
#include "core/AppSettings.h"
#include "core/ProgramDir.h"
#include "gamedata/CockpitTable.h"

#include <QStatusBar>
#include <QtTest>

class TestCustomiseWindow : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void acceptWritesTheFormAndCancelOnlyTheLanguage();
    void anEmptyShipLineIsRefused();
};

void TestCustomiseWindow::initTestCase()
{
    if (!fixture::HaveSampleGame())
        QSKIP("the sample game is not built");
}

void TestCustomiseWindow::acceptWritesTheFormAndCancelOnlyTheLanguage()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    ChangeSettings(window, [](AppSettings& settings) { settings.GameDirs = {fixture::SampleGame()}; });
    const QString line =
        SetShipField(fixture::SampleShip("SS_SH_SAMPLE_HALBERD"), TurretCockpitField(0), "SS_COCKPIT_MINE");
    window.TextRaw->setPlainText(line);
    for (const char* name : {"SS_COCKPIT_MINE", "SS_COCKPIT_UNUSED"})
        new QTreeWidgetItem(window.ListCockpit,
                            {name, "<PACKAGE>", NewCockpitLine(name)}); // owned by the list

    QString shown;
    window.shipConfig().runDialog = [&shown](DConfigShip& dialog) {
        shown = dialog.Line;
        dialog.SpinHull->setValue(12345);
        return int(QDialog::Accepted);
    };
    window.ButCustom->click();
    QCOMPARE(shown, line);
    const QString built = window.TextRaw->toPlainText();
    QCOMPARE(ShipFieldInt(built, ShipLineField::Hull), 12345);
    QCOMPARE(ShipField(built, TurretCockpitField(0)), QString("SS_COCKPIT_MINE"));
    QCOMPARE(window.ListCockpit->topLevelItemCount(), 1);
    QCOMPARE(window.ListCockpit->topLevelItem(0)->text(0), QString("SS_COCKPIT_MINE"));
    QVERIFY(window.IsModified());

    // A cancel from the menu leaves the form, but the base language chosen
    // stays; a scene that cannot be read is named in the status bar.
    const QString missingScene = fixture.home.filePath("objects/none.bod");
    window.LineSceneFile->setText(missingScene);
    window.shipConfig().runDialog = [](DConfigShip& dialog) {
        dialog.SpinHull->setValue(1);
        dialog.Slot_BaseLang("49");
        return int(QDialog::Rejected);
    };
    window.toolsConfig->trigger();
    QCOMPARE(window.TextRaw->toPlainText(), built);
    QCOMPARE(window.ListCockpit->topLevelItemCount(), 1);
    QCOMPARE(window.settings().BaseLang, QString("49"));
    QVERIFY(window.QMainWindow::statusBar()->currentMessage().contains(missingScene));
    const AppSettings saved =
        ReadSettingsFile(ProgramPath("/config.dat"), [](const QString&) { return true; });
    QCOMPARE(saved.BaseLang, QString("49"));
    QCOMPARE(saved.GameDirs.value(0), fixture::SampleGame());
}

void TestCustomiseWindow::anEmptyShipLineIsRefused()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    window.TextRaw->clear();
    bool ran = false;
    window.shipConfig().runDialog = [&ran](DConfigShip&) {
        ran = true;
        return int(QDialog::Accepted);
    };
    window.ButCustom->click();
    QVERIFY(!ran);
    QCOMPARE(fixture.prompts->messages("warning").size(), 1);
    QVERIFY(window.TextRaw->toPlainText().isEmpty());
}

QTEST_MAIN(TestCustomiseWindow)
#include "tst_customisewindow.moc"
