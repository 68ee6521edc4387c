// Reads the built sample game back the way the program reads a game directory:
// catalogs through the transfer layer, tables through the types readers, pages
// and scenes extracted to work files. Checks that the sample holds what the
// dialogs expect of a game: consistent ship lines, names in both languages,
// and scenes with the nodes the lines name. That the newer catalog wins is
// shown by the readers' own tests on this game.
#include "catfs/transfer/GameFile.h"
#include "gamedata/GroupedTables.h"
#include "gamedata/ShipLine.h"
#include "gamedata/TypesFile.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QSet>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

#include <algorithm>

namespace {

constexpr int kRaceCount = 19;

// page -> text id -> text
using Pages = QHash<int, QHash<int, QString>>;

struct IdName
{
    int id = 0;
    QString name;
};

QString Attribute(const QXmlStreamReader& xml, const QString& wanted)
{
    for (const QXmlStreamAttribute& attribute : xml.attributes())
        if (attribute.name().toString().toLower() == wanted)
            return attribute.value().toString();
    return {};
}

// The pages of a game language file. Element and attribute names are compared
// in lower case, as the game's readers do. Sets `error` for XML that is broken.
Pages ReadPages(const QString& path, QString* error)
{
    Pages pages;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = "cannot open " + path;
        return pages;
    }
    QXmlStreamReader xml(&file);
    int page = -1;
    while (!xml.atEnd()) {
        xml.readNext();
        const QString name = xml.name().toString().toLower();
        if (xml.isStartElement() && name == "page")
            page = Attribute(xml, "id").toInt();
        else if (xml.isStartElement() && name == "t" && page >= 0) {
            const int id = Attribute(xml, "id").toInt(); // before the reader moves on
            pages[page][id] = xml.readElementText();
        } else if (xml.isEndElement() && name == "page")
            page = -1;
    }
    if (xml.hasError())
        *error = path + ": " + xml.errorString();
    return pages;
}

// "<id>:<name>" lines of the program's class and variant lists. A class needs
// a real id; a variant of id 0 counts when it has a name.
QList<IdName> ReadIdNames(const QString& path, bool variants)
{
    QList<IdName> list;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return list;
    const QStringList lines = QString::fromUtf8(file.readAll()).split('\n');
    for (const QString& line : lines) {
        if (line.startsWith("//") || line.trimmed().isEmpty())
            continue;
        bool ok = false;
        const int id = line.section(':', 0, 0).toInt(&ok);
        const QString name = line.section(':', 1);
        if ((!ok || id == 0) && (!variants || name.isEmpty()))
            continue;
        list.append({id, name});
    }
    return list;
}

// The nodes of a scene: "body:part" for each "P <part>; B <body>" line whose
// body is a name and no number.
QSet<QString> SceneNodes(const QString& text)
{
    QSet<QString> nodes;
    for (const QString& line : text.split('\n')) {
        if (!line.startsWith("P "))
            continue;
        const QString part = QString::number(line.section(';', 0, 0).section(' ', 1, 1).toInt());
        const QString body = line.section(';', 1, 1).trimmed();
        if (body.startsWith("B ") && body.section(' ', 1).toInt() == 0)
            nodes.insert(body.section(' ', 1) + ":" + part);
    }
    return nodes;
}

} // namespace

class TestSampleGame : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void catalogsHoldEveryPackedSourceOnce();
    void shipLinesAreConsistent();
    void shipLinesReferToExistingRows();
    void shipsCoverTheShapesTheDialogsMeet();
    void namesHaveTextsInBothLanguages();
    void variantReferencesNameListedVariants();
    void scenesNamedByShipsHoldTheirNodes();
    void gunBodiesAndGroupedTablesAreComplete();

private:
    QString entry(const QString& catalog, const QString& name) const;
    QString extractText(const QString& source, bool usePackedName = false);
    TypesTable table(const QString& name);
    TypesTable catalogTable(const QString& catalog, const QString& name);
    Pages pages(const QString& catalog, const QString& language);
    QStringList entryNames(const QString& catalog) const;
    QString newestCatalogWith(const QString& name) const;

    QString m_game;
    QString m_sources;
    QTemporaryDir m_work;
    QStringList m_ships;
    QList<IdName> m_classes;
    QList<IdName> m_variants;
};

QString TestSampleGame::entry(const QString& catalog, const QString& name) const
{
    return m_game + "/" + catalog + "::" + name;
}

// The plain text of a file or entry, through a work file that is deleted again.
// A null string when the extraction fails.
QString TestSampleGame::extractText(const QString& source, bool usePackedName)
{
    const QString target = m_work.filePath("extracted.txt");
    if (!GameFileExtract(source, target, usePackedName, false))
        return {};
    QFile file(target);
    QString text;
    if (file.open(QIODevice::ReadOnly))
        text = QString::fromUtf8(file.readAll());
    file.remove();
    return text.isNull() ? QString("") : text;
}

// A table as the program fetches it: from the newest catalog that holds it.
TypesTable TestSampleGame::table(const QString& name)
{
    return LoadGameTable(m_game, name, m_work.filePath(name + ".txt"));
}

TypesTable TestSampleGame::catalogTable(const QString& catalog, const QString& name)
{
    return ParseTypesText(extractText(entry(catalog, "types\\" + name + ".pck")));
}

Pages TestSampleGame::pages(const QString& catalog, const QString& language)
{
    const QString target = m_work.filePath("page.xml");
    if (!GameFileExtract(entry(catalog, "t\\" + language + "0001.pck"), target, false, false))
        return {};
    QString error;
    const Pages result = ReadPages(target, &error);
    QFile::remove(target);
    if (!error.isEmpty())
        qWarning("%s", qPrintable(error));
    return error.isEmpty() ? result : Pages{};
}

QStringList TestSampleGame::entryNames(const QString& catalog) const
{
    QStringList names;
    for (const GameFileListEntry& listed : GameFileList(m_game + "/" + catalog))
        names.append(listed.name);
    return names;
}

QString TestSampleGame::newestCatalogWith(const QString& name) const
{
    for (int i = HighestCatalog(m_game); i >= 1; --i)
        if (entryNames(CatalogName(i)).contains(name))
            return CatalogName(i);
    return {};
}

void TestSampleGame::initTestCase()
{
    m_game = qEnvironmentVariable("HW_SAMPLE_GAME_DIR");
    m_sources = qEnvironmentVariable("HW_SOURCE_DIR") + "/samples/game-src";
    QVERIFY2(!m_game.isEmpty(), "HW_SAMPLE_GAME_DIR is not set");
    QVERIFY2(QFileInfo::exists(m_game + "/01.cat"), qPrintable(m_game + " has no 01.cat: build sample_game"));
    QVERIFY(m_work.isValid());

    const TypesTable ships = table("TShips");
    m_ships = ships.records;
    QVERIFY(!m_ships.isEmpty());
    QCOMPARE(ShipField(ships.header, 1).toInt(), m_ships.size());

    const QString data = qEnvironmentVariable("HW_DATA_DIR");
    m_classes = ReadIdNames(data + "/data/classes", false);
    m_variants = ReadIdNames(data + "/data/variant", true);
    QVERIFY(!m_classes.isEmpty());
    QVERIFY(!m_variants.isEmpty());
}

void TestSampleGame::catalogsHoldEveryPackedSourceOnce()
{
    QVERIFY(QFileInfo::exists(m_game + "/x3.exe"));
    QCOMPARE(HighestCatalog(m_game), 2);

    // Each source file has exactly one entry, under its packed name; a rebuild
    // that appended to old catalogs would list names twice.
    QStringList expected;
    QDirIterator it(m_sources, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString relative = QDir(m_sources).relativeFilePath(it.next());
        if (relative == "x3.exe" || relative.startsWith("override/"))
            continue;
        expected.append(GameFilePackedName(QString(relative).replace('/', '\\'), true));
    }
    QStringList listed = entryNames("01.cat");
    QCOMPARE(QSet<QString>(listed.begin(), listed.end()).size(), listed.size());
    expected.sort();
    listed.sort();
    QCOMPARE(listed, expected);

    QStringList overrides = entryNames("02.cat");
    overrides.sort();
    QCOMPARE(overrides, (QStringList{"t\\440001.pck", "types\\TShields.pck"}));
}

void TestSampleGame::shipLinesAreConsistent()
{
    for (const QString& line : std::as_const(m_ships)) {
        const QString ship = ShipLineId(line);
        const ShipLineLayout layout = LayoutOf(line);
        const int n = ShipFieldInt(line, 53);
        QCOMPARE(layout.cockpitCount, n);

        // The id stands at T + 9 and is the line's last field.
        QVERIFY2(ship.startsWith("SS_SH_SAMPLE_"), qPrintable(ship));
        QCOMPARE(ShipField(line, layout.tailIndex + 9), ship);
        QVERIFY2(ShipFields(line, layout.tailIndex + 10, -1).isEmpty(), qPrintable(ship));
        QVERIFY2(line.endsWith(';'), qPrintable(ship));

        // Blocks are numbered 1, 2, ... with their predecessor; one gun group
        // for each block, numbered from 1, whose Guns is the sum of its counts.
        for (int k = 0; k < n; ++k) {
            QCOMPARE(ShipFieldInt(line, 54 + 4 * k), k + 1);
            QCOMPARE(ShipFieldInt(line, 55 + 4 * k), k);
        }
        QCOMPARE(layout.groups.size(), n);
        for (int g = 0; g < layout.groups.size(); ++g) {
            const GunGroupPlace& group = layout.groups[g];
            QCOMPARE(ShipFieldInt(line, group.header + 3), g + 1);
            int guns = 0;
            for (int e = 0; e < group.entries; ++e) {
                const int first = group.FirstEntry() + 6 * e;
                const int count = ShipFieldInt(line, first + 1);
                // The dialog's rule: count 1 with a primary body, 0 without.
                QVERIFY2(count == (ShipField(line, first + 2) == "0" ? 0 : 1), qPrintable(ship));
                guns += count;
            }
            QVERIFY2(ShipFieldInt(line, group.header + 2) == guns, qPrintable(ship));
        }
        // Pos, Index and GunCount (field 19) are as renumbering makes them.
        QCOMPARE(RenumberGuns(line), line);
    }
}

void TestSampleGame::shipLinesReferToExistingRows()
{
    const int cockpits = table("TCockpits").records.size();
    const int shields = catalogTable("01.cat", "TShields").records.size();
    const int lasers = table("TLaser").records.size();
    const int missiles = table("TMissiles").records.size();
    QVERIFY(cockpits > 0 && shields > 0 && lasers > 0 && lasers < 31 && missiles > 0 && missiles < 31);

    for (const QString& line : std::as_const(m_ships)) {
        const QByteArray ship = ShipLineId(line).toUtf8();
        const int classRow = ShipFieldInt(line, 5);
        QVERIFY2(classRow >= 0 && classRow < m_classes.size(), ship);
        QCOMPARE(ShipFieldInt(line, 52), m_classes[classRow].id);
        QVERIFY2(ShipFieldInt(line, 50) >= 0 && ShipFieldInt(line, 50) <= m_variants.size(), ship);
        QVERIFY2(ShipFieldInt(line, 45) >= 1 && ShipFieldInt(line, 45) <= kRaceCount, ship);
        QVERIFY2(ShipFieldInt(line, 44) >= 0 && ShipFieldInt(line, 44) <= 9, ship);
        QVERIFY2(ShipFieldInt(line, 22) >= 0 && ShipFieldInt(line, 22) < shields, ship);
        QVERIFY2(ShipFieldInt(line, 18) >= 0 && ShipFieldInt(line, 18) < (1 << lasers), ship);
        QVERIFY2(ShipFieldInt(line, 24) >= 0 && ShipFieldInt(line, 24) < (1 << missiles), ship);
        QVERIFY2(ShipFieldInt(line, 28) <= ShipFieldInt(line, 29), ship);

        // Turret slot s is used exactly when block s exists: a cockpit row and
        // one of the six positions, each position once.
        const int n = ShipFieldInt(line, 53);
        QSet<int> positions;
        for (int s = 1; s <= 6; ++s) {
            const int cockpit = ShipFieldInt(line, 29 + 2 * s);
            const int position = ShipFieldInt(line, 30 + 2 * s);
            if (s < n) {
                QVERIFY2(position >= 1 && position <= 6 && !positions.contains(position), ship);
                QVERIFY2(cockpit >= 0 && cockpit < cockpits, ship);
                positions.insert(position);
            } else {
                QVERIFY2(cockpit == 0 && position == 0, ship);
            }
        }
    }
}

void TestSampleGame::shipsCoverTheShapesTheDialogsMeet()
{
    bool noBlock = false, mainOnly = false, severalTurrets = false, emptyEntry = false, manyEntries = false,
         emptyGroup = false, variant = false;
    QSet<int> classes, races;
    for (const QString& line : std::as_const(m_ships)) {
        const ShipLineLayout layout = LayoutOf(line);
        noBlock |= layout.cockpitCount == 0;
        mainOnly |= layout.cockpitCount == 1;
        severalTurrets |= layout.cockpitCount >= 4;
        variant |= ShipFieldInt(line, 50) != 0;
        classes.insert(ShipFieldInt(line, 5));
        races.insert(ShipFieldInt(line, 45));
        for (const GunGroupPlace& group : layout.groups) {
            emptyGroup |= group.entries == 0;
            manyEntries |= group.entries >= 3;
            for (int e = 0; e < group.entries; ++e)
                emptyEntry |= ShipFieldInt(line, group.FirstEntry() + 6 * e + 1) == 0;
        }
    }
    QVERIFY(noBlock);
    QVERIFY(mainOnly);
    QVERIFY(severalTurrets);
    QVERIFY(emptyEntry);
    QVERIFY(manyEntries);
    QVERIFY(emptyGroup);
    QVERIFY(variant);
    QVERIFY(classes.size() >= 5);
    QVERIFY(races.size() >= 5);
}

void TestSampleGame::namesHaveTextsInBothLanguages()
{
    QList<int> shipTexts;
    for (const QString& line : std::as_const(m_ships))
        shipTexts << ShipFieldInt(line, 6) << ShipFieldInt(line, 6) + 1;
    QList<int> equipment;
    for (const QString& name : QStringList{"TLaser", "TShields", "TMissiles"})
        for (const QString& row : table(name).records)
            equipment << ShipFieldInt(row, 6);

    for (const QString& language : QStringList{"44", "49"}) {
        const Pages texts = pages(newestCatalogWith("t\\" + language + "0001.pck"), language);
        QVERIFY2(!texts.isEmpty(), qPrintable("no page file " + language + "0001"));
        auto has = [&](int page, int id) { return !texts.value(page).value(id).trimmed().isEmpty(); };
        for (int id : std::as_const(shipTexts))
            QVERIFY2(has(17, id), qPrintable(language + ": ship text " + QString::number(id)));
        for (int id : std::as_const(equipment))
            QVERIFY2(has(17, id), qPrintable(language + ": equipment text " + QString::number(id)));
        for (const IdName& row : std::as_const(m_classes))
            QVERIFY2(has(2006, row.id), qPrintable(language + ": class " + row.name));
        for (const IdName& row : std::as_const(m_variants))
            QVERIFY2(row.id == 0 || has(17, row.id), qPrintable(language + ": variant " + row.name));
        for (int race = 1; race <= kRaceCount; ++race)
            QVERIFY2(has(1266, race), qPrintable(language + ": race " + QString::number(race)));
        for (int cargo = 10; cargo <= 19; ++cargo)
            QVERIFY2(has(1999, cargo), qPrintable(language + ": cargo class " + QString::number(cargo)));
        for (int page = 300023; page <= 300028; ++page)
            for (int rank = 95; rank <= 110; ++rank)
                QVERIFY2(has(page, rank), qPrintable(language + ": rank " + QString::number(rank)));
    }
    // The languages differ: a German page that repeats the English one would
    // not show that the base language is honoured.
    QVERIFY(pages("01.cat", "44").value(17).value(9001) != pages("01.cat", "49").value(17).value(9001));
}

void TestSampleGame::variantReferencesNameListedVariants()
{
    int references = 0;
    for (const QString& language : QStringList{"44", "49"}) {
        const QHash<int, QString> page = pages("01.cat", language).value(17);
        for (const IdName& row : std::as_const(m_variants)) {
            const QString text = page.value(row.id);
            if (!text.startsWith("{17,"))
                continue;
            ++references;
            const int target = text.section(',', 1).remove('}').toInt();
            const bool listed = std::any_of(m_variants.begin(), m_variants.end(),
                                            [&](const IdName& other) { return other.id == target; });
            QVERIFY2(listed, qPrintable(text + " names no listed variant"));
            QVERIFY2(!page.value(target).isEmpty() && !page.value(target).startsWith('{'), qPrintable(text));
        }
    }
    QVERIFY(references >= 2);
}

void TestSampleGame::scenesNamedByShipsHoldTheirNodes()
{
    const QStringList listed = entryNames("01.cat");
    QHash<QString, QSet<QString>> scenes;
    for (const QString& line : std::as_const(m_ships)) {
        const QByteArray ship = ShipLineId(line).toUtf8();
        const QString cockpitScene = "objects\\" + ShipField(line, 17) + ".pbd";
        QVERIFY2(listed.contains(cockpitScene), qPrintable(cockpitScene));

        const QString scene = ShipField(line, 16);
        if (!scenes.contains(scene)) {
            // The program names the scene .bod and finds it under its packed name.
            const QString text = extractText(entry("01.cat", "objects\\" + scene + ".bod"), true);
            QVERIFY2(!text.isNull(), qPrintable(scene));
            scenes.insert(scene, SceneNodes(text));
        }
        const QSet<QString> nodes = scenes.value(scene);
        const ShipLineLayout layout = LayoutOf(line);
        for (int k = 0; k < layout.cockpitCount; ++k) {
            const QString node = ShipField(line, 56 + 4 * k) + ":" + ShipField(line, 57 + 4 * k);
            QVERIFY2(nodes.contains(node), qPrintable(QString(ship) + ": block " + node));
        }
        for (const GunGroupPlace& group : layout.groups)
            for (int e = 0; e < group.entries; ++e) {
                const int first = group.FirstEntry() + 6 * e;
                if (ShipFieldInt(line, first + 1) == 0)
                    continue;
                const QString node = ShipField(line, first + 2) + ":" + ShipField(line, first + 3);
                QVERIFY2(nodes.contains(node), qPrintable(QString(ship) + ": gun " + node));
            }
    }
    for (const QString& row : table("TCockpits").records) {
        const QString scene = ShipField(row, 7);
        if (scene.toInt() == 0 && scene != "0")
            QVERIFY2(listed.contains("objects\\" + scene + ".pbd"), qPrintable(scene));
    }
}

void TestSampleGame::gunBodiesAndGroupedTablesAreComplete()
{
    const TypesTable dummyTable = table("Dummies");
    const QList<DummySection> dummies =
        ParseDummies((QStringList{dummyTable.header} + dummyTable.records).join('\n'));
    // A wrong count shifts the lines behind it: a data line would then be read
    // as a section, and its name would not be one of the game's sections.
    const QStringList known = DummySectionNames();
    for (const DummySection& section : dummies)
        QVERIFY2(known.contains(section.Name), qPrintable(section.Name));
    QVERIFY(dummies.size() >= 2);

    // Gun bodies as the dialog reads them: field 0 the body, field 2 the number
    // n of pairs, field 2n + 3 the number m of nodes, node j at field 2n + 4 + 2j.
    QHash<QString, QStringList> gunBodies;
    for (const QString& line : GunDummyLines(dummies)) {
        const int n = ShipFieldInt(line, 2);
        const int m = ShipFieldInt(line, 2 * n + 3);
        for (int j = 0; j < m; ++j)
            gunBodies[ShipField(line, 0)].append(ShipField(line, 2 * n + 4 + 2 * j) + ":" +
                                                 QString::number(j + 1));
    }
    QVERIFY(!gunBodies.isEmpty());
    for (const QString& line : std::as_const(m_ships)) {
        for (const GunGroupPlace& group : LayoutOf(line).groups)
            for (int e = 0; e < group.entries; ++e) {
                const int first = group.FirstEntry() + 6 * e;
                if (ShipFieldInt(line, first + 1) == 0)
                    continue;
                const QString body = ShipField(line, first + 2);
                const QString secondary = ShipField(line, first + 4) + ":" + ShipField(line, first + 5);
                QVERIFY2(gunBodies.value(body).contains(secondary),
                         qPrintable(ShipLineId(line) + ": " + body + " has no node " + secondary));
            }
    }

    const TypesTable componentTable = table("Components");
    const QList<ComponentSection> components =
        ParseComponents((QStringList{componentTable.header} + componentTable.records).join('\n'));
    QVERIFY(!components.isEmpty());
    for (const ComponentSection& section : components) {
        QVERIFY2(section.Name.startsWith("SCTYPE_"), qPrintable(section.Name));
        for (const ComponentGroup& group : section.Groups)
            QVERIFY2(!group.Lines.isEmpty(), qPrintable(section.Name + ": " + group.Id));
    }
}

QTEST_GUILESS_MAIN(TestSampleGame)
#include "tst_sample_game.moc"
