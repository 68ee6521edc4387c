#include "WindowFixture.h"
#include "catfs/CatDriver.h"
#include "catfs/transfer/GameFile.h"
#include "gamedata/ShipLine.h"

#include <QFile>
#include <QRegularExpression>
#include <QStatusBar>
#include <QtTest>

namespace {

// A language page of pages 17 and 2006 from "id=text" pairs.
QByteArray Page(const QList<QPair<int, QString>>& texts, int page = 17)
{
    QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<language id=\"44\">\n<page id=\"" +
                     QByteArray::number(page) + "\">\n";
    for (const auto& [id, text] : texts)
        xml += "  <t id=\"" + QByteArray::number(id) + "\">" + text.toHtmlEscaped().toUtf8() + "</t>\n";
    return xml + "</page>\n</language>\n";
}

bool MakeCatalog(const QString& path)
{
    QDir().mkpath(QFileInfo(path).path());
    CatArchiveHandle* archive = CatOpenArchive(QFile::encodeName(path).constData(), 1);
    return archive && CatCloseArchive(archive);
}

// Stores `content` packed under `entry` (a .xml name, stored as .pck) in the
// catalog, making the catalog when it is missing.
bool AddEntry(const QString& catalog, const QString& entry, const QByteArray& content)
{
    if (!QFile::exists(catalog) && !MakeCatalog(catalog))
        return false;
    QTemporaryDir scratch;
    const QString source = scratch.filePath("page.xml");
    if (!WriteFile(source, content))
        return false;
    QFile input(source);
    return GameFileCopyIn(input, catalog + "::" + entry, true);
}

// A packed copy of `content` on disk at `path` (its name ends in .pck).
bool WritePacked(const QString& path, const QByteArray& content)
{
    QTemporaryDir scratch;
    const QString source = scratch.filePath("page.xml");
    if (!WriteFile(source, content))
        return false;
    QFile input(source);
    QDir().mkpath(QFileInfo(path).path());
    QString plainName = path;
    plainName.replace(QRegularExpression("\\.pck$"), ".xml");
    return GameFileCopyIn(input, plainName, true) && QFile::exists(path);
}

QString TextOf(const DCreateShip& window, int id)
{
    for (const GameText& text : window.gameTexts().Texts()) {
        if (text.Id == id)
            return text.Text;
    }
    return "<none>";
}

// The texts of a page file of the sample game's sources, read with a pattern
// rather than the handler under test.
QHash<int, QString> SourceTexts(const QString& path)
{
    QHash<int, QString> texts;
    const QString xml = QString::fromUtf8(ReadFile(path));
    static const QRegularExpression pattern("<t id=\"(\\d+)\">([^<]*)</t>");
    for (const QRegularExpressionMatch& match : pattern.globalMatch(xml))
        texts.insert(match.captured(1).toInt(), match.captured(2));
    return texts;
}

QStringList Rows(const DCreateShip& window)
{
    QStringList rows;
    for (int i = 0; i < window.ListText->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = window.ListText->topLevelItem(i);
        rows << row->text(0) + "|" + row->text(1) + "|" + row->text(2);
    }
    rows.sort();
    return rows;
}

void SetNameId(DCreateShip& window, int nameId)
{
    window.TextRaw->setPlainText(SetShipField(DefaultShipLine, 6, QString::number(nameId)));
}

} // namespace

class TestGetText : public QObject
{
    Q_OBJECT
private slots:
    void catalogsInOrderThenLooseFiles_data();
    void catalogsInOrderThenLooseFiles();
    void baseLanguageAndVariantReferences();
    void damagedPagesGiveFewerNames();
    void noGameLeavesListsEmpty();
    void classAndVariantFiles();
    void importTextFromFilesAndCatalogs();
    void importTextDirOffersPageFiles();
    void sampleGameNames_data();
    void sampleGameNames();

private:
    // The work files of the program directory must be gone after every operation.
    static void VerifyNoWorkFiles(const WindowFixture& fixture)
    {
        QVERIFY(!QFile::exists(fixture.home.filePath("textfile.txt")));
        QVERIFY(!QFile::exists(fixture.home.filePath("text.xml")));
    }
};

void TestGetText::catalogsInOrderThenLooseFiles_data()
{
    QTest::addColumn<bool>("readLoose");
    QTest::newRow("loose pages read") << true;
    QTest::newRow("NoTextT") << false;
}

void TestGetText::catalogsInOrderThenLooseFiles()
{
    QFETCH(bool, readLoose);
    WindowFixture fixture(readLoose ? QByteArray() : QByteArray("NoTextT\n"));
    const QString game = fixture.home.filePath("game");
    QVERIFY(AddEntry(game + "/01.cat", "t\\440001.xml", Page({{9001, "From 01"}, {9003, "Only in 01"}})));
    QVERIFY(AddEntry(game + "/02.cat", "t\\490001.xml", Page({{9001, "German"}})));
    QVERIFY(AddEntry(game + "/02.cat", "types\\TShips.txt", "48;0;\n"));
    QVERIFY(AddEntry(game + "/03.cat", "t\\440001.xml", Page({{9001, "From 03"}, {9005, "Only in 03"}})));
    QVERIFY(AddEntry(game + "/03.cat", "T\\440002.xml", Page({{2021, "Carrier"}}, 302006)));
    // 04.cat is missing: 05.cat lies behind the gap and is never read.
    QVERIFY(AddEntry(game + "/05.cat", "t\\440001.xml", Page({{9001, "Behind the gap"}, {9007, "Gap"}})));
    QVERIFY(WriteFile(game + "/t/440001.xml", Page({{9005, "Loose xml"}})));
    QVERIFY(WritePacked(game + "/t/440077.pck", Page({{9003, "Loose pck"}})));
    QVERIFY(WriteFile(game + "/t/490001.xml", Page({{9003, "Loose German"}})));

    DCreateShip& window = fixture.make();
    window.setEnabled(false);
    window.QMainWindow::statusBar()->showMessage("loading...");
    window.GetText();

    QCOMPARE(TextOf(window, 9001), QString("From 03"));
    QCOMPARE(TextOf(window, 9003), QString(readLoose ? "Loose pck" : "Only in 01"));
    QCOMPARE(TextOf(window, 9005), QString(readLoose ? "Loose xml" : "Only in 03"));
    QCOMPARE(TextOf(window, 9007), QString("<none>"));
    QCOMPARE(TextOf(window, 2021), QString("Carrier"));
    QCOMPARE(window.gameTexts().Texts().size(), 4);
    QCOMPARE(window.gameTexts().ClassNames().value(0), QString("Carrier"));
    QVERIFY(window.gameTexts().Loaded());
    QVERIFY(window.isEnabled());
    QVERIFY(window.QMainWindow::statusBar()->currentMessage().isEmpty());
    VerifyNoWorkFiles(fixture);

    const QString log = QString::fromUtf8(fixture.home.readFile("log/hullwright_debug.txt"));
    QVERIFY(log.contains("GetText() Dir = " + game + "\r\n"));
    QVERIFY(log.contains("GetText() FileName = 04.cat\r\n"));
    QVERIFY(!log.contains("05.cat"));
    QVERIFY(log.contains("GetText() Checking Catfile: " + game + "/02.cat, Files = 2\r\n"));
    QCOMPARE(log.count("GetText() Extracting file: "), 3);
    QVERIFY(log.contains("GetText() Extracting file: T\\440002.pck, Save To: " +
                         fixture.home.filePath("textfile.txt")));
    QCOMPARE(log.count("GetText() Getting Text from file"), 3);
}

void TestGetText::baseLanguageAndVariantReferences()
{
    WindowFixture fixture("BaseLang: 49\n");
    const QString game = fixture.home.filePath("game");
    QVERIFY(AddEntry(game + "/01.cat", "t\\440001.xml", Page({{10004, "Hauler"}, {9001, "English"}})));
    QVERIFY(AddEntry(game + "/01.cat", "t\\490001.xml",
                     Page({{10008, "{17,10004}"}, {10003, "{17,10001}"}, {10002, "{17,123}"}})));
    // The referenced name arrives with a later file and is resolved then.
    QVERIFY(AddEntry(game + "/02.cat", "t\\490001.xml", Page({{10004, "Frachter"}})));

    DCreateShip& window = fixture.make();
    QCOMPARE(window.settings().BaseLang, QString("49"));
    window.GetText();
    QCOMPARE(TextOf(window, 9001), QString("<none>"));
    QCOMPARE(TextOf(window, 10004), QString("Frachter"));

    auto variantName = [&window](int id) {
        for (qsizetype i = 0; i < window.gameTexts().Variants().size(); ++i) {
            if (window.gameTexts().Variants()[i].Id == id)
                return window.gameTexts().VariantNames().value(i);
        }
        return QString("<no variant>");
    };
    QCOMPARE(variantName(10004), QString("Frachter"));
    QCOMPARE(variantName(10008), QString("Frachter"));
    // 10001 has no text in this language, so its reference stays.
    QCOMPARE(variantName(10003), QString("{17,10001}"));
    QCOMPARE(variantName(10002), QString("{17,123}"));
    VerifyNoWorkFiles(fixture);
}

void TestGetText::damagedPagesGiveFewerNames()
{
    WindowFixture fixture;
    const QString game = fixture.home.filePath("game");
    QVERIFY(AddEntry(game + "/01.cat", "t\\440001.xml", Page({{9001, "Good"}})));
    QVERIFY(AddEntry(
        game + "/01.cat", "t\\440002.xml",
        "<page id='17'><t id='9011'>Before the break</t><t id='x9'>no number</t><t id='9013'>broken"));
    QVERIFY(AddEntry(game + "/01.cat", "t\\440003.xml", RandomBytes(3000, 3)));
    // A loose .pck that is not packed gives nothing, and a plain page with a
    // .pck name gives nothing either: it is not unpacked.
    QVERIFY(WriteFile(game + "/t/440004.pck", Page({{9021, "Plain under a packed name"}})));
    QVERIFY(WriteFile(game + "/t/440005.pck", QByteArray("\x6e\x1f\x8b", 3)));
    QVERIFY(WriteFile(game + "/t/440006.xml", "<page id=\"17\"><t id=\"9031\">Unclosed"));

    DCreateShip& window = fixture.make();
    window.GetText();
    QCOMPARE(TextOf(window, 9001), QString("Good"));
    QCOMPARE(TextOf(window, 9011), QString("Before the break"));
    QCOMPARE(TextOf(window, 0), QString("no number"));
    QCOMPARE(TextOf(window, 9021), QString("<none>"));
    QVERIFY(window.gameTexts().Loaded());
    VerifyNoWorkFiles(fixture);
    QVERIFY(QFile::exists(game + "/t/440004.pck"));
}

void TestGetText::noGameLeavesListsEmpty()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    window.setEnabled(false);
    window.GetText();
    QVERIFY(window.gameTexts().Texts().isEmpty());
    QVERIFY(!window.gameTexts().VariantNames().isEmpty());
    QCOMPARE(window.gameTexts().VariantNames().count(QString()), window.gameTexts().VariantNames().size());
    QVERIFY(window.isEnabled());
    QVERIFY(window.gameTexts().Loaded());
}

void TestGetText::classAndVariantFiles()
{
    TempHome home;
    home.writeFile("classes", "// comment\n1:M1 Carrier\n0:Nothing\nx:Bad\n5:Name: with colon\n");
    home.writeFile("variant", "0:Standard\n0:\n3:Vanguard\n//4:Commented\n");
    const QList<IdName> classes = ReadIdNameFile(home.filePath("classes"), false);
    QCOMPARE(classes.size(), 2);
    QCOMPARE(classes[0].Id, 1);
    QCOMPARE(classes[1].Name, QString("Name: with colon"));
    // A variant of id 0 is kept when it has a name.
    const QList<IdName> variants = ReadIdNameFile(home.filePath("variant"), true);
    QCOMPARE(variants.size(), 2);
    QCOMPARE(variants[0].Name, QString("Standard"));
    QCOMPARE(variants[1].Id, 3);
    QVERIFY(ReadIdNameFile(home.filePath("missing"), false).isEmpty());
}

void TestGetText::importTextFromFilesAndCatalogs()
{
    WindowFixture fixture;
    const QString files = fixture.home.filePath("files");
    const QString twoLanguages = files + "/languages.cat";
    QVERIFY(AddEntry(twoLanguages, "t\\440001.xml", Page({{9001, "Lance"}, {9002, "A fighter"}})));
    QVERIFY(AddEntry(twoLanguages, "t\\490001.xml", Page({{9001, "Lanze"}})));
    QVERIFY(AddEntry(twoLanguages, "t\\330001.xml", Page({{9011, "Not this ship"}})));
    QVERIFY(AddEntry(twoLanguages, "types\\440001.xml", Page({{9001, "Not a language entry"}})));
    const QString twoPages = files + "/pages.cat";
    QVERIFY(AddEntry(twoPages, "T\\440001.xml", Page({{9001, "Page one"}})));
    QVERIFY(AddEntry(twoPages, "t\\440002.xml", Page({{9001, "Page two"}, {9002, "Two"}}, 300017)));
    QVERIFY(WritePacked(files + "/070001.pck", Page({{9001, "Packed"}})));
    QVERIFY(WriteFile(files + "/390001.xml", Page({{9001, "Plain &"}})));
    QVERIFY(WriteFile(files + "/broken.xml", "<page id='17'><t id='9001'"));

    DCreateShip& window = fixture.make();
    SetNameId(window, 9001);
    ChangeSettings(window, [&](AppSettings& s) { s.TextDir = files; });
    fixture.prompts->filesAnswers.enqueue(
        {twoLanguages, twoPages, files + "/070001.pck", files + "/390001.xml", files + "/broken.xml"});
    window.Slot_ImportText();

    QCOMPARE(fixture.prompts->shown.size(), 1);
    QCOMPARE(fixture.prompts->shown[0].kind, QString("openFiles"));
    QCOMPARE(fixture.prompts->shown[0].caption, window.uiText()[84]);
    QCOMPARE(fixture.prompts->shown[0].text, files);
    QCOMPARE(fixture.prompts->shown[0].buttons, QStringList{window.uiText()[83] + " (*.pck *.xml *.cat)"});
    QCOMPARE(Rows(window), QStringList({"07|Packed|", "39|Plain &|", "44|Lance|A fighter", "44|Page one|",
                                        "44|Page two|Two", "49|Lanze|"}));
    VerifyNoWorkFiles(fixture);
    QVERIFY(QFile::exists(files + "/070001.pck"));
    QVERIFY(!QFile::exists(files + "/070001.pck.xml"));

    // A ship without a name id finds nothing.
    window.ListText->clear();
    SetNameId(window, 0);
    fixture.prompts->filesAnswers.enqueue({twoLanguages});
    window.Slot_ImportText();
    QVERIFY(Rows(window).isEmpty());
}

void TestGetText::importTextDirOffersPageFiles()
{
    WindowFixture fixture;
    const QString dir = fixture.home.filePath("pages");
    QVERIFY(WriteFile(dir + "/440001.xml", Page({{9001, "Lance"}})));
    QVERIFY(WritePacked(dir + "/490001.pck", Page({{9001, "Lanze"}, {9002, "Jaeger"}})));
    QVERIFY(WriteFile(dir + "/447016.xml", Page({{9001, "Other page file"}})));
    QVERIFY(WriteFile(dir + "/440000.xml", Page({{9001, "Page file zero"}})));
    QVERIFY(WriteFile(dir + "/notes.xml", Page({{9001, "No page file"}})));
    QVERIFY(WriteFile(dir + "/440001.txt", Page({{9001, "Not a page"}})));

    DCreateShip& window = fixture.make();
    SetNameId(window, 9001);
    fixture.prompts->fileAnswers.enqueue(dir);
    fixture.prompts->inputAnswers.enqueue(QString("0001"));
    window.Slot_ImportTextDir();

    QCOMPARE(fixture.prompts->shown.size(), 2);
    QCOMPARE(fixture.prompts->shown[0].kind, QString("directory"));
    QCOMPARE(fixture.prompts->shown[0].caption, window.uiText()[162]);
    QCOMPARE(fixture.prompts->shown[1].kind, QString("item"));
    QCOMPARE(fixture.prompts->shown[1].caption, "Qt: " + window.uiText()[226]);
    QCOMPARE(fixture.prompts->shown[1].buttons, QStringList({"0001", "7016"}));
    QCOMPARE(Rows(window), QStringList({"44|Lance|", "49|Lanze|Jaeger"}));
    VerifyNoWorkFiles(fixture);

    // Cancelling the choice adds nothing.
    fixture.prompts->fileAnswers.enqueue(dir);
    fixture.prompts->inputAnswers.enqueue(std::nullopt);
    window.Slot_ImportTextDir();
    QCOMPARE(Rows(window).size(), 2);
}

void TestGetText::sampleGameNames_data()
{
    QTest::addColumn<QString>("baseLang");
    QTest::newRow("English") << "44";
    QTest::newRow("German") << "49";
}

void TestGetText::sampleGameNames()
{
    QFETCH(QString, baseLang);
    const QString sample = qEnvironmentVariable("HW_SAMPLE_GAME_DIR");
    if (sample.isEmpty() || !QFile::exists(sample + "/01.cat"))
        QSKIP("the sample game is not built");
    const QString source = qEnvironmentVariable("HW_SOURCE_DIR") + "/samples/game-src";
    QHash<int, QString> expected = SourceTexts(source + "/t/" + baseLang + "0001.xml");
    QVERIFY(!expected.isEmpty());
    if (baseLang == "44")
        expected[9031] = "Halberd Prime"; // the English page of 02.cat changes this name

    WindowFixture fixture("BaseLang: " + baseLang.toUtf8() + "\n");
    fixture.home.writeFile("config.dat", "<common>\nDir: " + sample.toUtf8() +
                                             "\n</common>\n<hullwright>\nBaseLang: " + baseLang.toUtf8() +
                                             "\n</hullwright>\n");
    DCreateShip& window = fixture.make();
    QCOMPARE(window.settings().GameDirs.value(0), sample);
    window.GetText();

    int ships = 0;
    const QStringList lines = QString::fromUtf8(ReadFile(source + "/types/TShips.txt")).split('\n');
    for (const QString& line : lines) {
        if (line.startsWith("//") || line.count(';') < 10)
            continue;
        const int nameId = ShipField(line, 6).toInt();
        QVERIFY2(!expected.value(nameId).isEmpty(), qPrintable(line));
        QCOMPARE(TextOf(window, nameId), expected.value(nameId));
        ++ships;
    }
    QVERIFY(ships >= 10);
    VerifyNoWorkFiles(fixture);
}

QTEST_MAIN(TestGetText)
#include "tst_gettext.moc"
