// The import wizard from the main window, end to end on the sample mod: the
// ship taken out of the mod, saved as a package and opened again, holds every
// file and row it needs and nothing of the other ship.
#include "../app/WindowFixture.h"
#include "app/ModImport.h"
#include "wizard/DImportWizard.h"
#include "wizard/ImportShipPage.h"

#include <QDirIterator>
#include <QSet>
#include <QTest>

namespace {

QString ModSources()
{
    return qEnvironmentVariable("HW_SOURCE_DIR") + "/samples/mod-src";
}

QString SampleMod()
{
    const QString game = qEnvironmentVariable("HW_SAMPLE_GAME_DIR");
    return game.isEmpty() ? QString() : game + "/mods/SampleMod.cat";
}

// The files of the mod's sources whose name holds `ship`, as the game names
// them: models and scenes packed.
QSet<QString> ModFilesOf(const QString& ship)
{
    QSet<QString> files;
    const QDir root(ModSources());
    QDirIterator it(ModSources(), QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QString name = root.relativeFilePath(it.next());
        if (!name.contains(ship) || name.startsWith("t/") || name.startsWith("types/"))
            continue;
        if (name.endsWith(".bod"))
            name.replace(name.size() - 3, 3, "pbd");
        files.insert(name);
    }
    return files;
}

// The data lines of a table of the mod's sources that hold `ship`.
QStringList TableLinesOf(const QString& table, const QString& ship)
{
    QStringList lines;
    for (const QString& line : QString::fromUtf8(ReadFile(ModSources() + "/types/" + table)).split('\n'))
        if (line.contains(ship) && !line.startsWith("//"))
            lines.append(line);
    return lines;
}

} // namespace

class TestModImport : public QObject
{
    Q_OBJECT

private slots:
    void importSaveAndOpenAgain()
    {
        if (!QFile::exists(SampleMod()))
            QSKIP("the sample game is not built (HW_SAMPLE_GAME_DIR)");
        WindowFixture fixture;
        DCreateShip& window = fixture.make();
        fixture.prompts->fileAnswers.enqueue(SampleMod());
        window.modImport().SetRunner([](DImportWizard& wizard) {
            wizard.restart();
            wizard.ShipList()->SelectShip("SS_SH_SAMPLEMOD_BULWARK");
            while (wizard.currentId() != DImportWizard::TextPage)
                wizard.next(); // the texture question is answered with its first button
            return int(QDialog::Accepted);
        });
        window.Slot_ImportWizard();
        QCOMPARE(window.LineID->text(), QString("SS_SH_SAMPLEMOD_BULWARK"));
        QVERIFY(window.ButSave->isEnabled());
        QVERIFY(window.IsModified());

        // The one field a save asks for that a mod does not give.
        window.LineAuthor->setText("Tester");
        const QString package = fixture.home.filePath("bulwark.xsp");
        QVERIFY(window.Save(package));
        window.document().Clear();
        QVERIFY(window.OpenPackage(package));
        const ShipPackage& saved = *window.document().Saved();

        QSet<QString> files;
        for (const std::optional<FileEntry>& scene : {saved.SceneFile, saved.CockpitFile}) {
            QVERIFY(scene);
            files.insert(scene->LocalPath);
        }
        for (const QList<FileEntry>* list : {&saved.Models, &saved.Files})
            for (const FileEntry& file : *list)
                files.insert(file.LocalPath);
        QCOMPARE(files, ModFilesOf("bulwark"));
        for (const QString& file : files)
            QVERIFY2(QFile::exists(fixture.home.filePath("ShipInstall/" + file)), qPrintable(file));

        QStringList dummies;
        for (const DummyEntry& dummy : saved.Dummies)
            dummies.append(dummy.Data);
        QCOMPARE(dummies.size(), TableLinesOf("Dummies.txt", "bulwark").size());
        QSet<QString> components;
        for (const ComponentEntry& component : saved.Components)
            components.insert(component.Id + " " + component.Data);
        QCOMPARE(components.size(), 2);
        for (const QString& row : dummies + components.values())
            QVERIFY2(row.contains("bulwark") && !row.contains("kestrel"), qPrintable(row));

        // The turrets' cockpits travel with the ship and the line names them.
        QCOMPARE(saved.Cockpits, TableLinesOf("TCockpits.txt", "BULWARK"));
        QCOMPARE(ShipField(saved.Data, TurretCockpitField(0)), QString("SS_COCKPIT_SAMPLEMOD_BULWARK_FRONT"));
        QCOMPARE(ShipField(saved.Data, TurretCockpitField(1)), QString("SS_COCKPIT_SAMPLEMOD_BULWARK_REAR"));

        QCOMPARE(saved.Name, QString("Bulwark"));
        QCOMPARE(saved.Texts.size(), 2);
        QVERIFY(saved.Shipyards[ShipyardTeladi]);
        QCOMPARE(std::count(saved.Shipyards.begin(), saved.Shipyards.end(), true), 1);
    }
};

QTEST_MAIN(TestModImport)
#include "tst_modimport.moc"
