// The settings dialog: on its own with a scripted prompter, and as the main
// window runs it, where a timer plays the user while the dialog is modal.
#include "WindowFixture.h"
#include "app/DConfigDialog.h"

#include <QTimer>
#include <QtTest>

#include <functional>

namespace {

// Runs Slot_Config and lets `act` play the user on the open dialog.
void RunConfig(DCreateShip& window, const std::function<void(DConfigDialog&)>& act)
{
    bool acted = false;
    QTimer::singleShot(0, &window, [&] {
        auto* dialog = window.findChild<DConfigDialog*>();
        if (!dialog)
            return;
        acted = true;
        act(*dialog);
        if (dialog->isVisible())
            dialog->reject(); // never leave the test hanging in a modal loop
    });
    window.Slot_Config();
    QVERIFY2(acted, "the dialog was not shown");
}

// A game directory below `home`, proved by its x3.exe.
QString MakeGame(TempHome& home, const QString& name)
{
    home.writeFile(name + "/x3.exe", "");
    return home.filePath(name);
}

QStringList DirLines(const QByteArray& config)
{
    QStringList dirs;
    for (const QByteArray& line : config.split('\n'))
        if (line.startsWith("Dir: "))
            dirs.append(QString::fromUtf8(line.mid(5)));
    return dirs;
}

} // namespace

class TestConfigDialog : public QObject
{
    Q_OBJECT
private slots:
    void fieldsComeFromTheSettingsAndEnable();
    void acceptWritesTheSettingsAndSwitchesLanguage();
    void cancelKeepsAnAddedDirectoryOutOfTheFile();
    void chosenDirectoryBecomesTheOneInUse();
    void gameDirectoryNeedsTheExecutable();
    void gameDirectoryListIsCutToTen();
    void directoryButtonsFillTheirFields();
};

void TestConfigDialog::fieldsComeFromTheSettingsAndEnable()
{
    WindowFixture fixture(
        "ModDir: /mods\nModelDir: /models\nTypeDir: /types\nSaveDir: /save\nTextDir: /text\n"
        "X2bcDir: /x2bc.exe\nScriptDir: /scripts\nDefAuthor: Jane Q Modder\nDefWeb: web\n"
        "DefMirror1: m1\nDefMirror2: m2\nSaveWeb\nNoText\n");
    DCreateShip& window = fixture.make();
    RunConfig(window, [&](DConfigDialog& dialog) {
        const QList<QLineEdit*> lines{dialog.LineDirMod,     dialog.LineDirModel,  dialog.LineDirType,
                                      dialog.LineDirSave,    dialog.LineDirText,   dialog.LineDirX2bc,
                                      dialog.LineDirScript,  dialog.LineDefAuthor, dialog.LineDefWeb,
                                      dialog.LineDefMirror1, dialog.LineDefMirror2};
        const QStringList values{"/mods",    "/models",       "/types", "/save", "/text", "/x2bc.exe",
                                 "/scripts", "Jane Q Modder", "web",    "m1",    "m2"};
        for (int i = 0; i < lines.size(); ++i)
            QCOMPARE(lines[i]->text(), values[i]);
        QVERIFY(dialog.CheckWeb->isChecked() && !dialog.CheckPrefix->isChecked());
        QCOMPARE(dialog.ComboDir->currentText(), fixture.home.filePath("game"));
        QCOMPARE(dialog.ComboLang->count(), 2);
        QCOMPARE(dialog.ComboLang->currentText(), QString("English (44) - By Hullwright team"));
        QVERIFY(!dialog.windowTitle().startsWith("Qt: ")); // the form's own caption

        // X2BC off and NoText set: their dependants start disabled...
        QVERIFY(!dialog.CheckX2bc->isChecked() && !dialog.CheckText->isChecked());
        QVERIFY(!dialog.LineDirX2bc->isEnabled() && !dialog.ButDirX2bc->isEnabled());
        QVERIFY(!dialog.CheckTextT->isEnabled());
        // ...and follow their boxes.
        dialog.CheckX2bc->click();
        dialog.CheckText->click();
        QVERIFY(dialog.LineDirX2bc->isEnabled() && dialog.ButDirX2bc->isEnabled());
        QVERIFY(dialog.CheckTextT->isEnabled());
        dialog.CheckX2bc->click();
        QVERIFY(!dialog.LineDirX2bc->isEnabled() && !dialog.ButDirX2bc->isEnabled());
    });

    WindowFixture other("X2BC\nNoTextT\n");
    RunConfig(other.make(), [&](DConfigDialog& dialog) {
        QVERIFY(dialog.CheckX2bc->isChecked() && dialog.LineDirX2bc->isEnabled());
        QVERIFY(dialog.CheckText->isChecked() && dialog.CheckTextT->isEnabled());
        QVERIFY(!dialog.CheckTextT->isChecked());
    });
}

void TestConfigDialog::acceptWritesTheSettingsAndSwitchesLanguage()
{
    WindowFixture fixture("DefAuthor: Old Name\n");
    fixture.home.writeFile("config.dat",
                           fixture.home.readFile("config.dat") + "<other>\nkept: yes\n</other>\n");
    DCreateShip& window = fixture.make();
    const QString englishNewShip = window.UiText[30];

    RunConfig(window, [&](DConfigDialog& dialog) {
        dialog.ComboLang->setCurrentIndex(1);
        dialog.LineDefAuthor->setText("New Author of Ships");
        dialog.LineDirSave->setText("/ships");
        dialog.CheckX2bc->setChecked(true);
        dialog.LineDirX2bc->setText("/tools/x2bc.exe");
        dialog.CheckPrefix->setChecked(true);
        dialog.CheckText->setChecked(false);
        dialog.ButDone->click();
    });

    QCOMPARE(window.Language, QString("Deutsch"));
    QCOMPARE(window.UiText[30], QString("Neues Schiff"));
    QVERIFY(window.UiText[30] != englishNewShip);
    QVERIFY2(window.windowTitle().contains("Neues Schiff"), "the window changed language at once");
    QCOMPARE(window.DefAuthor, QString("New Author of Ships"));
    QCOMPARE(window.SaveDir, QString("/ships"));
    QVERIFY(window.X2BC);
    QCOMPARE(window.X2bcDir, QString("/tools/x2bc.exe"));
    QVERIFY(window.Prefix);
    QVERIFY(!window.ReadTextAtStart);
    QVERIFY(window.ReadTextTableAtStart);

    const QString config = QString::fromUtf8(fixture.home.readFile("config.dat"));
    const QStringList lines = config.split('\n');
    QVERIFY(lines.contains("Language: Deutsch"));
    QVERIFY(lines.contains("DefAuthor: New Author of Ships"));
    QVERIFY(lines.contains("SaveDir: /ships"));
    QVERIFY(lines.contains("X2bcDir: /tools/x2bc.exe"));
    QVERIFY(lines.contains("X2BC"));
    QVERIFY(lines.contains("Prefix"));
    QVERIFY(lines.contains("NoText"));
    QVERIFY(!lines.contains("NoTextT"));
    QVERIFY(config.endsWith("<other>\nkept: yes\n</other>\n"));

    // The next start reads what the dialog wrote.
    window.LoadSettings();
    QCOMPARE(window.Language, QString("Deutsch"));
}

void TestConfigDialog::cancelKeepsAnAddedDirectoryOutOfTheFile()
{
    WindowFixture fixture("DefAuthor: Someone\n");
    DCreateShip& window = fixture.make();
    const QString added = MakeGame(fixture.home, "second game");
    const QByteArray before = fixture.home.readFile("config.dat");

    fixture.prompts->fileAnswers.enqueue(added);
    RunConfig(window, [&](DConfigDialog& dialog) {
        dialog.LineDefAuthor->setText("Changed");
        dialog.ButDir->click();
        QCOMPARE(dialog.ComboDir->currentText(), added);
        dialog.ButCancel->click();
    });
    QCOMPARE(window.GameDirs, QStringList({added, fixture.home.filePath("game")}));
    QCOMPARE(window.DefAuthor, QString("Someone"));
    QCOMPARE(fixture.home.readFile("config.dat"), before);

    // The next accepted dialog writes it.
    RunConfig(window, [&](DConfigDialog& dialog) {
        QCOMPARE(dialog.ComboDir->itemText(0), added);
        dialog.ButDone->click();
    });
    QCOMPARE(DirLines(fixture.home.readFile("config.dat")),
             QStringList({added, fixture.home.filePath("game")}));
}

void TestConfigDialog::chosenDirectoryBecomesTheOneInUse()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    const QString second = MakeGame(fixture.home, "second");
    window.GameDirs.append(second);

    RunConfig(window, [&](DConfigDialog& dialog) {
        QCOMPARE(dialog.ComboDir->currentIndex(), 0);
        dialog.ComboDir->setCurrentIndex(1);
        dialog.ButDone->click();
    });
    QCOMPARE(window.GameDirs, QStringList({second, fixture.home.filePath("game")}));
    QCOMPARE(DirLines(fixture.home.readFile("config.dat")), window.GameDirs);
}

void TestConfigDialog::gameDirectoryNeedsTheExecutable()
{
    TempHome home(true);
    QStringList dirs{"/games/one"};
    QStringList texts = PlaceholderUiTexts(UiTextCount);
    ScriptedPrompter prompts;
    DConfigDialog dialog(&dirs, &texts, &prompts, nullptr);
    dialog.LineDirMod->setText("/start/here");

    home.writeFile("empty/readme.txt", "");
    prompts.fileAnswers.enqueue(home.filePath("empty"));
    dialog.Slot_OpenDir();

    QCOMPARE(prompts.shown.size(), 2);
    QCOMPARE(prompts.shown[0].kind, QString("directory"));
    QCOMPARE(prompts.shown[0].text, QString("/start/here"));
    const QList<ScriptedPrompter::Shown> critical = prompts.messages("critical");
    QCOMPARE(critical.size(), 1);
    QCOMPARE(critical[0].caption, texts[353]);
    QCOMPARE(critical[0].text, texts[354]);
    QCOMPARE(critical[0].buttons, QStringList{texts[60]});
    QCOMPARE(dirs, QStringList{"/games/one"});
    QCOMPARE(dialog.ComboDir->count(), 1);

    // Cancelling the directory dialog changes nothing and asks nothing more.
    prompts.shown.clear();
    dialog.Slot_OpenDir();
    QCOMPARE(prompts.shown.size(), 1);
    QCOMPARE(dirs, QStringList{"/games/one"});
}

void TestConfigDialog::gameDirectoryListIsCutToTen()
{
    TempHome home;
    QStringList dirs;
    for (int i = 0; i < 10; ++i)
        dirs.append(MakeGame(home, "game" + QString::number(i)));
    QStringList texts = PlaceholderUiTexts(UiTextCount);
    ScriptedPrompter prompts;
    DConfigDialog dialog(&dirs, &texts, &prompts, nullptr);
    QCOMPARE(dialog.ComboDir->count(), 10);

    // A directory already in the list moves to the front, once.
    prompts.fileAnswers.enqueue(dirs[4]);
    dialog.Slot_OpenDir();
    QCOMPARE(dirs.size(), 10);
    QCOMPARE(dirs[0], home.filePath("game4"));
    QCOMPARE(dirs.count(home.filePath("game4")), 1);
    QCOMPARE(dialog.ComboDir->count(), 10);

    const QString added = MakeGame(home, "new game");
    prompts.fileAnswers.enqueue(added);
    dialog.Slot_OpenDir();
    QCOMPARE(dirs.size(), DConfigDialog::MaxGameDirs);
    QCOMPARE(dirs.first(), added);
    QVERIFY2(!dirs.contains(home.filePath("game9")), "the oldest entry goes");
    QCOMPARE(dirs[1], home.filePath("game4"));
    QCOMPARE(dialog.ComboDir->count(), 10);
    QCOMPARE(dialog.ComboDir->currentText(), added);
    for (int i = 0; i < dirs.size(); ++i)
        QCOMPARE(dialog.ComboDir->itemText(i), dirs[i]);
}

void TestConfigDialog::directoryButtonsFillTheirFields()
{
    QStringList dirs;
    QStringList texts = PlaceholderUiTexts(UiTextCount);
    ScriptedPrompter prompts;
    DConfigDialog dialog(&dirs, &texts, &prompts, nullptr);
    dialog.CheckX2bc->setChecked(true);

    const struct
    {
        QPushButton* button;
        QLineEdit* line;
        int caption;
    } rows[] = {
        {dialog.ButDirMod, dialog.LineDirMod, 158},   {dialog.ButDirModel, dialog.LineDirModel, 159},
        {dialog.ButDirType, dialog.LineDirType, 160}, {dialog.ButDirSave, dialog.LineDirSave, 161},
        {dialog.ButDirText, dialog.LineDirText, 162}, {dialog.ButDirScript, dialog.LineDirScript, 190},
        {dialog.ButDirX2bc, dialog.LineDirX2bc, 163},
    };
    for (const auto& row : rows) {
        row.line->setText("/old");
        prompts.shown.clear();
        prompts.fileAnswers.enqueue("C:\\Games\\picked");
        row.button->click();
        QCOMPARE(row.line->text(), QString("C:/Games/picked"));
        QCOMPARE(prompts.shown.size(), 1);
        QCOMPARE(prompts.shown[0].caption, texts[row.caption]);
        QCOMPARE(prompts.shown[0].text, QString("/old"));

        prompts.fileAnswers.enqueue(QString()); // cancelled
        row.button->click();
        QCOMPARE(row.line->text(), QString("C:/Games/picked"));
    }
    // The converter's setting is the program itself, picked with the file dialog.
    QCOMPARE(prompts.shown.last().kind, QString("openFile"));
    QCOMPARE(prompts.shown.last().buttons, QStringList{"X2bc (x2bc.exe)"});
}

QTEST_MAIN(TestConfigDialog)
#include "tst_configdialog.moc"
