// Finding the game without a registry: fake home directories with Steam
// libraries, Wine prefixes and the X3_GAME_DIR variable.
#include "TestSupport.h"
#include "app/DCreateShip.h"
#include "app/GameDirSearch.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {

// A game folder at `dir` with its executable under the name `exe`.
QString MakeGame(const QString& dir, const QString& exe = "x3.exe")
{
    WriteFile(dir + "/" + exe);
    return dir;
}

QByteArray LibraryVdf(const QStringList& paths)
{
    QByteArray vdf = "\"libraryfolders\"\n{\n";
    for (int i = 0; i < paths.size(); ++i) {
        QString escaped = paths[i];
        escaped.replace("\\", "\\\\");
        escaped.replace("\"", "\\\"");
        vdf +=
            "\t\"" + QByteArray::number(i) + "\"\n\t{\n\t\t\"path\"\t\t\"" + escaped.toUtf8() +
            "\"\n\t\t\"label\"\t\t\"\"\n\t\t\"apps\"\n\t\t{\n\t\t\t\"2820\"\t\t\"4061798401\"\n\t\t}\n\t}\n";
    }
    return vdf + "}\n";
}

class EnvGuard
{
public:
    EnvGuard(const char* name, const QByteArray& value)
        : m_name(name), m_old(qgetenv(name)), m_had(qEnvironmentVariableIsSet(name))
    {
        if (value.isNull())
            qunsetenv(name);
        else
            qputenv(name, value);
    }
    ~EnvGuard()
    {
        if (m_had)
            qputenv(m_name, m_old);
        else
            qunsetenv(m_name);
    }

private:
    const char* m_name;
    QByteArray m_old;
    bool m_had;
};

} // namespace

class TestGameDirs : public QObject
{
    Q_OBJECT
private slots:
    void sourcesAreSearchedInOrder();
    void namesMatchWithoutCase();
    void steamLibrariesFromBothFiles();
    void libraryFileParsing();
    void nothingFound();
    void windowDetectsOnlyWithAnEmptyList();
};

void TestGameDirs::sourcesAreSearchedInOrder()
{
    QTemporaryDir home, elsewhere;
    const QString fromEnv = MakeGame(elsewhere.filePath("my x3"));
    const QString library = elsewhere.filePath("SteamLibrary");
    const QString fromSteam = MakeGame(library + "/steamapps/common/X3 - Reunion");
    QVERIFY(
        WriteFile(home.filePath(".local/share/Steam/steamapps/libraryfolders.vdf"), LibraryVdf({library})));
    const QString fromWine = MakeGame(home.filePath(".wine/drive_c/Program Files/Deep Silver/X3 Reunion"));
    const QString wineSteam =
        MakeGame(home.filePath(".wine/drive_c/Program Files (x86)/Steam/steamapps/common/x3 - reunion"));

    QCOMPARE(GameDirCandidates(home.path(), fromEnv), QStringList({fromEnv, fromSteam, fromWine, wineSteam}));
    QCOMPARE(FindGameDirWithoutRegistry(home.path(), fromEnv), fromEnv);
    QCOMPARE(FindGameDirWithoutRegistry(home.path(), fromEnv + "\\"), fromEnv); // slashes made plain

    // A candidate without the executable is passed over for the next source.
    QVERIFY(QFile::remove(fromEnv + "/x3.exe"));
    QCOMPARE(FindGameDirWithoutRegistry(home.path(), fromEnv), fromSteam);
    QVERIFY(QFile::remove(fromSteam + "/x3.exe"));
    QCOMPARE(FindGameDirWithoutRegistry(home.path(), QString()), fromWine);
    QVERIFY(QFile::remove(fromWine + "/x3.exe"));
    QCOMPARE(FindGameDirWithoutRegistry(home.path(), QString()), wineSteam);
}

void TestGameDirs::namesMatchWithoutCase()
{
    QTemporaryDir home;
    const QString steamGame = MakeGame(home.filePath(".steam/steam/SteamApps/Common/x3 - REUNION"), "X3.EXE");
    QVERIFY(WriteFile(home.filePath(".steam/steam/SteamApps/libraryfolders.vdf"), LibraryVdf({})));
    QCOMPARE(FindGameDirWithoutRegistry(home.path(), QString()), steamGame);
    QVERIFY(HoldsGameExecutable(steamGame));

    QVERIFY(QDir(steamGame).removeRecursively());
    const QString wineGame = MakeGame(
        home.filePath(".wine/drive_c/program files (x86)/steam/steamapps/common/X3 - Reunion"), "X3.exe");
    QCOMPARE(FindGameDirWithoutRegistry(home.path(), QString()), wineGame);

    // The proof must be a file, and its name must be the whole name.
    QTemporaryDir other;
    QVERIFY(QDir().mkpath(other.filePath("a/X3.exe")));
    QVERIFY(!HoldsGameExecutable(other.filePath("a")));
    QVERIFY(WriteFile(other.filePath("b/x3.exe.bak")));
    QVERIFY(!HoldsGameExecutable(other.filePath("b")));

    QCOMPARE(ResolveWithoutCase(home.path(), ".WINE/Drive_C"), home.filePath(".wine/drive_c"));
    QCOMPARE(ResolveWithoutCase(home.path(), ".wine/drive_d"), QString());
}

void TestGameDirs::steamLibrariesFromBothFiles()
{
    QTemporaryDir home, elsewhere;
    const QString rootGame = MakeGame(home.filePath(".local/share/Steam/steamapps/common/X3 - Reunion"));
    const QString libraryGame = MakeGame(elsewhere.filePath("games/steamapps/common/X3 - Reunion"));
    // The usual layout: ~/.steam/steam is a link to the real Steam folder, and
    // the folder itself is not listed; both files name the same library.
    QVERIFY(QDir().mkpath(home.filePath(".steam")));
    QVERIFY(QFile::link(home.filePath(".local/share/Steam"), home.filePath(".steam/steam")));
    QVERIFY(WriteFile(home.filePath(".local/share/Steam/steamapps/libraryfolders.vdf"),
                      LibraryVdf({elsewhere.filePath("games")})));

    const QStringList found = GameDirCandidates(home.path(), QString());
    QCOMPARE(found.size(), 2);
    QCOMPARE(found[0], elsewhere.filePath("games/steamapps/common/X3 - Reunion"));
    QCOMPARE(QFileInfo(found[1]).canonicalFilePath(), QFileInfo(rootGame).canonicalFilePath());
    QCOMPARE(FindGameDirWithoutRegistry(home.path(), QString()), libraryGame);
}

void TestGameDirs::libraryFileParsing()
{
    const QByteArray current = LibraryVdf({"/home/u/.local/share/Steam", "/mnt/games/with \"quote\" and \\"});
    QCOMPARE(ParseSteamLibraryFolders(current),
             QStringList({"/home/u/.local/share/Steam", "/mnt/games/with \"quote\" and \\"}));

    const QByteArray older = "\"LibraryFolders\"\n{\n\t\"TimeNextStatsReport\"\t\t\"1690000000\"\n"
                             "\t\"ContentStatsID\"\t\t\"-123\"\n\t\"1\"\t\t\"/media/disk/Steam\"\n"
                             "\t// a comment \"path\" \"/not/this\"\n\t\"2\"\t\t\"/media/other\"\n}\n";
    QCOMPARE(ParseSteamLibraryFolders(older), QStringList({"/media/disk/Steam", "/media/other"}));

    QVERIFY(ParseSteamLibraryFolders("").isEmpty());
    // A file cut short gives what stands in it.
    QCOMPARE(ParseSteamLibraryFolders("\"0\" { \"path\" \"/cut"), QStringList{"/cut"});
}

void TestGameDirs::nothingFound()
{
    QTemporaryDir home;
    QVERIFY(WriteFile(home.filePath(".local/share/Steam/steamapps/libraryfolders.vdf"),
                      LibraryVdf({home.filePath("missing")})));
    QVERIFY(QDir().mkpath(home.filePath(".wine/drive_c/Program Files")));
    QCOMPARE(FindGameDirWithoutRegistry(home.path(), home.filePath("nope")), QString());
    QCOMPARE(FindGameDirWithoutRegistry(QString(), QString()), QString());
}

void TestGameDirs::windowDetectsOnlyWithAnEmptyList()
{
    TempHome program(true);
    QTemporaryDir home, elsewhere;
    const QString game = MakeGame(elsewhere.filePath("X3"));
    const QString wineGame = MakeGame(home.filePath(".wine/drive_c/Program Files/Deep Silver/X3 Reunion"));
    EnvGuard homeVar("HOME", home.path().toUtf8());
    EnvGuard gameVar("X3_GAME_DIR", game.toUtf8());

    // No Dir: in the settings: the search fills the list, nothing is asked.
    QVERIFY(program.writeFile("config.dat", "<common>\nLanguage: English\n</common>\n"));
    {
        auto prompts = std::make_unique<ScriptedPrompter>();
        ScriptedPrompter* shown = prompts.get();
        DCreateShip window(std::move(prompts));
        QCOMPARE(window.settings().GameDirs, QStringList{game});
        QVERIFY(shown->shown.isEmpty());

        AppSettings settings = window.settings();
        settings.GameDirs = {wineGame};
        window.setSettings(settings);
        window.DetectGameDirs();
        QCOMPARE(window.settings().GameDirs, QStringList{wineGame});
    }
}

QTEST_MAIN(TestGameDirs)
#include "tst_gamedirs.moc"
