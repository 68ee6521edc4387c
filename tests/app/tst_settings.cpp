// config.dat: reading both sections and keeping other programs' lines.
#include "TestSupport.h"
#include "app/GameDirSearch.h"
#include "core/AppSettings.h"

#include <QFile>
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
    TempHome home;
    home.writeFile("game/x3.exe", "");
    const QByteArray game = home.filePath("game").toUtf8();
    home.writeFile("config.dat",
                   "<common>\nVersion: 2\nLanguage: English trailing\nDir: /removed/game\nDir: " + game +
                       "\nModDir: /mods dir\n</common>\n<hullwright>\nBaseLang: 44 extra\n"
                       "DefAuthor: Jane Q Modder\nX2BC\nNoTextT\nSaveWeb extra\nUnknown: x\n"
                       "</hullwright>\nDefWeb: outside any section\n");
    const AppSettings s = ReadSettingsFile(home.filePath("config.dat"), HoldsGameExecutable);
    QCOMPARE(s.GameDirs, QStringList{QString::fromUtf8(game)});
    QCOMPARE(s.Language, QString("English"));
    QCOMPARE(s.BaseLang, QString("44"));
    QCOMPARE(s.ModDir, QString("/mods dir")); // keys of either section count in either
    QCOMPARE(s.DefAuthor, QString("Jane Q Modder"));
    QVERIFY(s.DefWeb.isEmpty());
    QVERIFY(s.X2BC);
    QVERIFY(!s.SaveWeb); // flag lines match as whole lines only
    QVERIFY(s.ReadTextAtStart && !s.ReadTextTableAtStart);
}

void TestSettings::garbageAndMissingFileGiveDefaults()
{
    TempHome home;
    for (const QByteArray& content : {QByteArray("\x01\x02garbage\n<hullwright\nDir:\n"),
                                      QByteArray("<common>\nLanguage:\n</common>\n")}) {
        home.writeFile("config.dat", content);
        QCOMPARE(ReadSettingsFile(home.filePath("config.dat"), HoldsGameExecutable), AppSettings());
    }
    QCOMPARE(ReadSettingsFile(home.filePath("missing.dat"), HoldsGameExecutable), AppSettings());
}

void TestSettings::saveKeepsForeignSectionsBehindOurs()
{
    TempHome home;
    const QString path = home.filePath("config.dat");
    home.writeFile("config.dat", "<other>\nkeep me\n</other>\n<hullwright>\nnot ours to keep\n"
                                 "</hullwright>\ntrailing line\n");
    AppSettings settings;
    settings.GameDirs = {"/g1", "/g2"};
    settings.DefAuthor = "Two Words";
    settings.ReadTextAtStart = false;
    settings.Prefix = true;
    QVERIFY(WriteSettingsFile(settings, path));
    const QString expected = "<common>\nVersion: 2\nLanguage: English\nDir: /g1\nDir: /g2\n</common>\n"
                             "<hullwright>\nModDir: \nBaseLang: 44\nModelDir: \nSaveDir: \nTypeDir: \n"
                             "TextDir: \nX2bcDir: \nScriptDir: \nDefAuthor: Two Words\nDefWeb: \n"
                             "DefMirror1: \nDefMirror2: \nPrefix\nNoText\n</hullwright>\n"
                             "<other>\nkeep me\n</other>\ntrailing line\n";
    QCOMPARE(QString::fromUtf8(home.readFile("config.dat")), expected);
    QVERIFY(WriteSettingsFile(settings, path)); // a second save keeps the foreign lines once
    QCOMPARE(QString::fromUtf8(home.readFile("config.dat")), expected);

    // What is written reads back as the same value.
    const auto acceptAll = [](const QString&) { return true; };
    QCOMPARE(ReadSettingsFile(path, acceptAll), settings);
}

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
