// The settings dialog: on its own with a scripted prompter, and as the main
// window runs it, where a timer plays the user while the dialog is modal.
#include "WindowFixture.h"
#include "app/DConfigDialog.h"
#include "app/GameDirSearch.h"
#include "app/WindowTexts.h"

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
    void dialogHandsBackWhatItWasGiven();
    void acceptWritesTheSettingsAndSwitchesLanguage();
    void cancelKeepsAnAddedDirectoryOutOfTheFile();
    void gameDirectoriesNeedTheExecutableAndStayTen();
    void directoryButtonsFillTheirFields();
};

void TestConfigDialog::dialogHandsBackWhatItWasGiven()
{
    AppSettings given;
    given.Language = "Deutsch";
    given.GameDirs = {"/g1", "/g2"};
    given.BaseLang = "49"; // no widget: passes through
    int n = 0;
    for (QString AppSettings::*field :
         {&AppSettings::ModDir, &AppSettings::ModelDir, &AppSettings::SaveDir, &AppSettings::TypeDir,
          &AppSettings::TextDir, &AppSettings::X2bcDir, &AppSettings::ScriptDir, &AppSettings::DefAuthor,
          &AppSettings::DefWeb, &AppSettings::DefMirror1, &AppSettings::DefMirror2})
        given.*field = "value " + QString::number(++n); // each field its own, so a swap shows
    given.SaveWeb = true;
    given.Prefix = true;
    given.ReadTextAtStart = false;
    const QList<LanguageEntry> languages{{"English", 44, "a"}, {"Deutsch", 49, "b"}};
    const QStringList texts = PlaceholderUiTexts(UiTextCount);
    ScriptedPrompter prompts;
    DConfigDialog dialog(given, languages, texts, prompts, nullptr);
    QCOMPARE(dialog.Settings(), given);

    // X2BC off and NoText set: their dependants start disabled and follow their boxes.
    QVERIFY(!dialog.LineDirX2bc->isEnabled() && !dialog.ButDirX2bc->isEnabled());
    QVERIFY(!dialog.CheckTextT->isEnabled());
    dialog.CheckX2bc->click();
    dialog.CheckText->click();
    QVERIFY(dialog.LineDirX2bc->isEnabled() && dialog.CheckTextT->isEnabled());

    // The game directory chosen in the combo becomes the one in use.
    dialog.ComboDir->setCurrentIndex(1);
    QCOMPARE(dialog.Settings().GameDirs, QStringList({"/g2", "/g1"}));
}

void TestConfigDialog::acceptWritesTheSettingsAndSwitchesLanguage()
{
    WindowFixture fixture("DefAuthor: Old Name\n");
    fixture.home.writeFile("config.dat",
                           fixture.home.readFile("config.dat") + "<other>\nkept: yes\n</other>\n");
    DCreateShip& window = fixture.make();
    const QString englishNewShip = window.uiText()[Txt::NewShipCaption];

    RunConfig(window, [&](DConfigDialog& dialog) {
        dialog.ComboLang->setCurrentIndex(1);
        dialog.LineDefAuthor->setText("New Author of Ships");
        dialog.CheckX2bc->setChecked(true);
        dialog.CheckText->setChecked(false);
        dialog.ButDone->click();
    });

    QCOMPARE(window.settings().Language, QString("Deutsch"));
    QVERIFY(window.uiText()[Txt::NewShipCaption] != englishNewShip);
    QVERIFY2(window.windowTitle().contains(window.uiText()[Txt::NewShipCaption]),
             "the window changed language at once");
    QCOMPARE(window.settings().DefAuthor, QString("New Author of Ships"));
    QVERIFY(window.settings().X2BC && !window.settings().ReadTextAtStart);

    // The file holds what the window holds, and the other program's lines.
    QCOMPARE(ReadSettingsFile(fixture.home.filePath("config.dat"), HoldsGameExecutable), window.settings());
    QVERIFY(fixture.home.readFile("config.dat").endsWith("<other>\nkept: yes\n</other>\n"));
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
    QCOMPARE(window.settings().GameDirs, QStringList({added, fixture.home.filePath("game")}));
    QCOMPARE(window.settings().DefAuthor, QString("Someone"));
    QCOMPARE(fixture.home.readFile("config.dat"), before);

    // The next accepted dialog writes it.
    RunConfig(window, [&](DConfigDialog& dialog) { dialog.ButDone->click(); });
    QCOMPARE(DirLines(fixture.home.readFile("config.dat")),
             QStringList({added, fixture.home.filePath("game")}));
}

void TestConfigDialog::gameDirectoriesNeedTheExecutableAndStayTen()
{
    TempHome home;
    AppSettings settings;
    for (int i = 0; i < 10; ++i)
        settings.GameDirs.append(MakeGame(home, "game" + QString::number(i)));
    const QStringList texts = PlaceholderUiTexts(UiTextCount);
    ScriptedPrompter prompts;
    DConfigDialog dialog(settings, {}, texts, prompts, nullptr);

    home.writeFile("empty/readme.txt", "");
    prompts.fileAnswers.enqueue(home.filePath("empty"));
    dialog.Slot_OpenDir();
    QCOMPARE(prompts.messages("critical").size(), 1);
    QCOMPARE(dialog.GameDirs(), settings.GameDirs);
    prompts.fileAnswers.enqueue(QString()); // cancelled: nothing changes
    dialog.Slot_OpenDir();
    QCOMPARE(dialog.GameDirs(), settings.GameDirs);

    // A directory already in the list moves to the front, once.
    prompts.fileAnswers.enqueue(settings.GameDirs[4]);
    dialog.Slot_OpenDir();
    QCOMPARE(dialog.GameDirs().size(), 10);
    QCOMPARE(dialog.GameDirs()[0], home.filePath("game4"));

    const QString added = MakeGame(home, "new game");
    prompts.fileAnswers.enqueue(added);
    dialog.Slot_OpenDir();
    QCOMPARE(dialog.GameDirs().size(), AppSettings::MaxGameDirs);
    QCOMPARE(dialog.GameDirs()[0], added);
    QVERIFY2(!dialog.GameDirs().contains(home.filePath("game9")), "the oldest entry goes");
    QCOMPARE(dialog.ComboDir->currentText(), added);
    QCOMPARE(dialog.ComboDir->count(), 10);
}

void TestConfigDialog::directoryButtonsFillTheirFields()
{
    const QStringList texts = PlaceholderUiTexts(UiTextCount);
    ScriptedPrompter prompts;
    DConfigDialog dialog(AppSettings(), {}, texts, prompts, nullptr);
    dialog.CheckX2bc->setChecked(true);
    const std::pair<QPushButton*, QLineEdit*> rows[] = {
        {dialog.ButDirMod, dialog.LineDirMod},   {dialog.ButDirModel, dialog.LineDirModel},
        {dialog.ButDirType, dialog.LineDirType}, {dialog.ButDirSave, dialog.LineDirSave},
        {dialog.ButDirText, dialog.LineDirText}, {dialog.ButDirScript, dialog.LineDirScript},
        {dialog.ButDirX2bc, dialog.LineDirX2bc},
    };
    for (const auto& [button, line] : rows) {
        line->setText("/old");
        prompts.shown.clear();
        prompts.fileAnswers.enqueue("C:\\Games\\picked");
        button->click();
        QCOMPARE(line->text(), QString("C:/Games/picked"));
        QCOMPARE(prompts.shown.value(0).text, QString("/old")); // the dialog starts at the field
        prompts.fileAnswers.enqueue(QString());                 // cancelled
        button->click();
        QCOMPARE(line->text(), QString("C:/Games/picked"));
    }
    // The converter's setting is the program itself, picked with the file dialog.
    QCOMPARE(prompts.shown.last().kind, QString("openFile"));
}

QTEST_MAIN(TestConfigDialog)
#include "tst_configdialog.moc"
