// The import of Dummies and Components rows: a table chosen through the
// scripted prompter as .txt, .pck or catalog, the check tree built from it,
// and the rows the user ticks. The dialog's modal run is replaced by a
// function that ticks rows and answers.
#include "TestSupport.h"
#include "app/DImportDummy.h"
#include "catfs/transfer/GameFile.h"
#include "language/UiTexts.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>

namespace {

// Runs the import without showing anything: `answer` sees the filled dialog
// and gives its result.
class TestImport : public DImportDummy
{
public:
    using DImportDummy::DImportDummy;
    std::function<int(DImportDummy&)> answer = [](DImportDummy&) { return int(QDialog::Rejected); };
    bool shown = false;

protected:
    int ExecDialog() override
    {
        shown = true;
        return answer(*this);
    }
};

// Ticks the check items whose text is one of `texts`, wherever they stand.
std::function<int(DImportDummy&)> Tick(const QStringList& texts)
{
    return [texts](DImportDummy& dialog) {
        for (int i = 0; i < dialog.ListDummy->topLevelItemCount(); ++i) {
            QTreeWidgetItem* top = dialog.ListDummy->topLevelItem(i);
            for (int j = 0; j < top->childCount(); ++j)
                if (texts.contains(top->child(j)->text(1)))
                    top->child(j)->setCheckState(0, Qt::Checked);
        }
        return int(QDialog::Accepted);
    };
}

QStringList Texts()
{
    QStringList texts;
    for (int i = 0; i < 420; ++i)
        texts.append(QString("text%1").arg(i));
    return texts;
}

// The rows as "section: line" for dummies, "section/id: line|line" for groups.
QStringList Flat(const ImportedRows& rows)
{
    QStringList flat;
    for (const DummySection& section : rows.dummies)
        for (const QString& line : section.Lines)
            flat.append(section.Name + ": " + line);
    for (const ComponentSection& section : rows.components)
        for (const ComponentGroup& group : section.Groups)
            flat.append(section.Name + "/" + group.Id + ": " + group.Lines.join('|'));
    return flat;
}

const QByteArray DummyTable = "// dummies\n"
                              "SDTYPE_GUN;2;\n"
                              "gun;1;\n"
                              "// a comment between data lines is no line\n"
                              "gun with blanks ;2;\n"
                              "   \n"
                              "SDTYPE_DOCK;0;\n"
                              "SDTYPE_ANIMATED;3;\n"
                              "anim;1;\n";

const QByteArray ComponentTable = "SCTYPE_LASER;2;\n"
                                  "body;2;\n"
                                  "a;0;\n"
                                  "b;0;\n"
                                  "empty;0;\n"
                                  "SCTYPE_DOCKING;1;\n"
                                  "hull;1;\n"
                                  "c;1;\n";

} // namespace

class TestImportDummy : public QObject
{
    Q_OBJECT
private slots:
    void dummiesFromAPlainTable();
    void componentsComeAsWholeGroups();
    void packedTableIsReadWithoutTouchingItsFolder();
    void catalogTableOrItsWarning();
};

void TestImportDummy::dummiesFromAPlainTable()
{
    TempHome home;
    ScriptedPrompter prompts;
    TestImport import(prompts, Texts(), ImportKind::Dummies);
    // A cancelled choice and a table that is not there show no tree.
    QVERIFY(!import.Run(QString()));
    prompts.fileAnswers.enqueue(home.filePath("types/Dummies.txt"));
    QVERIFY(!import.Run(QString()) && !import.shown);

    QVERIFY(home.writeFile("types/Dummies.txt", DummyTable));
    prompts.fileAnswers.enqueue(home.filePath("types/Dummies.txt"));
    import.answer = Tick({"gun;1;", "gun with blanks ;2;", "anim;1;"});
    std::optional<ImportedRows> rows = import.Run(home.filePath("types"));
    QVERIFY(rows && import.shown);
    QCOMPARE(prompts.shown.last().text, home.filePath("types")); // the file dialog started there
    QVERIFY(import.windowTitle().endsWith(" - " + home.filePath("types/Dummies.txt")));
    // The count of 3 runs past the end of the file without harm; the empty
    // section stays a section with no rows.
    QCOMPARE(import.ListDummy->topLevelItemCount(), 3);
    QCOMPARE(Flat(*rows), (QStringList{"SDTYPE_ANIMATED: anim;1;", "SDTYPE_GUN: gun;1;",
                                       "SDTYPE_GUN: gun with blanks ;2;"}));

    // Cancelled, the dialog still counts as shown, with nothing to add.
    prompts.fileAnswers.enqueue(home.filePath("types/Dummies.txt"));
    import.answer = [](DImportDummy&) { return int(QDialog::Rejected);
};
rows = import.Run(QString());
QVERIFY(rows&& Flat(*rows).isEmpty());
}

void TestImportDummy::componentsComeAsWholeGroups()
{
    TempHome home;
    QVERIFY(home.writeFile("Components.txt", ComponentTable));
    ScriptedPrompter prompts;
    prompts.fileAnswers.enqueue(home.filePath("Components.txt"));
    TestImport import(prompts, Texts(), ImportKind::Components);
    import.answer = Tick({"body", "empty"});
    const std::optional<ImportedRows> rows = import.Run(QString());
    QVERIFY(rows);
    // A group without lines is still a row.
    QCOMPARE(Flat(*rows), (QStringList{"SCTYPE_LASER/body: a;0;|b;0;", "SCTYPE_LASER/empty: "}));
}

void TestImportDummy::packedTableIsReadWithoutTouchingItsFolder()
{
    TempHome home;
    QTemporaryDir mod;
    QVERIFY(WriteFile(mod.filePath("source.txt"), DummyTable));
    QFile source(mod.filePath("source.txt"));
    QVERIFY(QDir().mkpath(mod.filePath("types")));
    QVERIFY(GameFileCopyIn(source, mod.filePath("types/Dummies.txt"), true));
    QVERIFY(QFile::exists(mod.filePath("types/Dummies.pck")));
    QVERIFY(WriteFile(mod.filePath("types/Dummies.txt"), "the modder's own table\n"));

    ScriptedPrompter prompts;
    prompts.fileAnswers.enqueue(mod.filePath("types/Dummies.pck"));
    TestImport import(prompts, Texts(), ImportKind::Dummies);
    import.answer = Tick({"anim;1;"});
    const std::optional<ImportedRows> rows = import.Run(QString());
    QVERIFY(rows);
    QCOMPARE(Flat(*rows), QStringList{"SDTYPE_ANIMATED: anim;1;"});
    QCOMPARE(ReadFile(mod.filePath("types/Dummies.txt")), QByteArray("the modder's own table\n"));
    QCOMPARE(QDir(home.filePath("temp")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
}

void TestImportDummy::catalogTableOrItsWarning()
{
    const QString sample = qEnvironmentVariable("HW_SAMPLE_GAME_DIR");
    if (sample.isEmpty() || !QFile::exists(sample + "/02.cat"))
        QSKIP("the sample game is not built");
    TempHome home;
    QVERIFY(CopyTree(sample, home.filePath("game")));
    ScriptedPrompter prompts;
    const QStringList texts = Texts();

    // The first catalog holds the table; every group of it ticked.
    prompts.fileAnswers.enqueue(home.filePath("game/01.cat"));
    TestImport components(prompts, texts, ImportKind::Components);
    components.answer = Tick({"ships\\sample\\props\\gun_mount", "ships\\sample\\hull_large"});
    std::optional<ImportedRows> rows = components.Run(QString());
    QVERIFY(rows);
    QVERIFY(components.windowTitle().endsWith(home.filePath("game/01.cat") + "::types\\Components.pck"));
    QCOMPARE(Flat(*rows).size(), 2);
    QVERIFY(prompts.messages("warning").isEmpty());

    // The second holds no Dummies: a warning, and no dialog.
    prompts.fileAnswers.enqueue(home.filePath("game/02.cat"));
    TestImport dummies(prompts, texts, ImportKind::Dummies);
    QVERIFY(!dummies.Run(QString()));
    QVERIFY(!dummies.shown);
    const auto warnings = prompts.messages("warning");
    QCOMPARE(warnings.size(), 1);
    QCOMPARE(warnings[0].caption, texts[59]);
    QCOMPARE(warnings[0].text, texts[58] + "\ntypes\\Dummies.pck");
    QCOMPARE(QDir(home.filePath("temp")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
}

QTEST_MAIN(TestImportDummy)
#include "tst_importdummy.moc"
