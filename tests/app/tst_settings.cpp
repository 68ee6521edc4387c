#include "WindowFixture.h"

#include <QtTest>

class TestSettings : public QObject
{
    Q_OBJECT
private slots:
    void readsBothSectionsAndDropsRemovedGames();
    void garbageAndMissingFileGiveDefaults();
    void saveKeepsForeignSectionsBehindOurs();
};

void TestSettings::readsBothSectionsAndDropsRemovedGames()
{
    TempHome home(true);
    QDir(home.path()).mkpath("game");
    home.writeFile("game/x3.exe", "");
    const QByteArray game = home.filePath("game").toUtf8();
    home.writeFile("config.dat",
                   "<common>\nVersion: 2\nLanguage: English trailing\nDir: /removed/game\nDir: " + game +
                       "\nModDir: /mods dir\n</common>\n<hullwright>\nBaseLang: 44 extra\n"
                       "DefAuthor: Jane Q Modder\nX2BC\nNoTextT\nSaveWeb extra\nUnknown: x\n"
                       "</hullwright>\nDefWeb: outside any section\n");
    auto prompts = std::make_unique<ScriptedPrompter>();
    DCreateShip window(std::move(prompts));
    QCOMPARE(window.GameDirs, QStringList{QString::fromUtf8(game)});
    QCOMPARE(window.Language, QString("English"));
    QCOMPARE(window.BaseLang, QString("44"));
    QCOMPARE(window.ModDir, QString("/mods dir"));
    QCOMPARE(window.DefAuthor, QString("Jane Q Modder"));
    QVERIFY(window.DefWeb.isEmpty());
    QVERIFY(window.X2BC);
    QVERIFY(!window.SaveWeb); // flag lines match as whole lines only
    QVERIFY(window.ReadTextAtStart);
    QVERIFY(!window.ReadTextTableAtStart);
}

void TestSettings::garbageAndMissingFileGiveDefaults()
{
    for (const QByteArray& content : {QByteArray(), QByteArray("\x01\x02garbage\n<hullwright\nDir:\n"),
                                      QByteArray("<common>\nLanguage:\n</common>\n")}) {
        TempHome home(true);
        if (!content.isEmpty())
            home.writeFile("config.dat", content);
        auto prompts = std::make_unique<ScriptedPrompter>();
        ScriptedPrompter* asked = prompts.get();
        DCreateShip window(std::move(prompts));
        QCOMPARE(window.Language, QString("English"));
        QCOMPARE(window.BaseLang, QString("44"));
        QVERIFY(window.ReadTextAtStart);
        QVERIFY(window.GameDirs.isEmpty());
        QCOMPARE(asked->shown.size(), 1); // only the question for a game directory
        QCOMPARE(asked->shown[0].kind, QString("directory"));
    }
}

void TestSettings::saveKeepsForeignSectionsBehindOurs()
{
    WindowFixture fixture;
    fixture.home.writeFile("config.dat", "<other>\nkeep me\n</other>\n<hullwright>\nnot ours to keep\n"
                                         "</hullwright>\ntrailing line\n");
    DCreateShip& window = fixture.make();
    window.GameDirs = QStringList{"/g1", "/g2"};
    window.DefAuthor = "Two Words";
    window.ReadTextAtStart = false;
    window.Prefix = true;
    window.SaveSettings();
    const QString written = QString::fromUtf8(fixture.home.readFile("config.dat"));
    const QString expected = "<common>\nVersion: 2\nLanguage: English\nDir: /g1\nDir: /g2\n</common>\n"
                             "<hullwright>\nModDir: \nBaseLang: 44\nModelDir: \nSaveDir: \nTypeDir: \n"
                             "TextDir: \nX2bcDir: \nScriptDir: \nDefAuthor: Two Words\nDefWeb: \n"
                             "DefMirror1: \nDefMirror2: \nPrefix\nNoText\n</hullwright>\n"
                             "<other>\nkeep me\n</other>\ntrailing line\n";
    QCOMPARE(written, expected);

    window.SaveSettings(); // a second save keeps the same foreign lines once
    QCOMPARE(QString::fromUtf8(fixture.home.readFile("config.dat")), expected);
}

QTEST_MAIN(TestSettings)
#include "tst_settings.moc"
