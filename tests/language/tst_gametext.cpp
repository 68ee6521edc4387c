#include "TestSupport.h"
#include "language/GameText.h"

#include <QtTest>

namespace {

template <class Handler> bool Parse(const QByteArray& xml, Handler& handler)
{
    QXmlStreamReader reader(xml);
    return DriveSaxHandler(reader, handler);
}

QString TextOf(const QList<GameText>& texts, int32_t id)
{
    for (const GameText& text : texts) {
        if (text.Id == id)
            return text.Text;
    }
    return "<none>";
}

const QList<IdName> Variants = {{0, "Standard"}, {10001, "Vanguard"}, {10003, "Raider"}, {10008, "Hauler"}};
const QList<IdName> Classes = {{2021, "M1"}, {2023, "M3"}};

} // namespace

class TestGameText : public QObject
{
    Q_OBJECT
private slots:
    void pagesAndElementsAreMatchedWithoutCase();
    void onlyShipAndClassPagesAreRead();
    void readingAPageAgainReplacesItsTexts();
    void entityReferencesKeepTheWholeText();
    void targetNameAndDescription();
    void malformedInputKeepsWhatWasRead();
    void configHandlerTables();
    void variantWinsOverEquipmentOnShipPage();
    void variantReferencesAndLanguageOfAFile();
};

void TestGameText::pagesAndElementsAreMatchedWithoutCase()
{
    QList<GameText> texts;
    GameTextHandler handler(&texts, nullptr, nullptr, -1, nullptr, nullptr);
    QVERIFY(Parse(R"(<LANGUAGE><PAGE ID="17"><T ID="1000">Upper</T></PAGE>)"
                  R"(<Page Id="300017"><t id="1001">Offset page</t></Page></LANGUAGE>)",
                  handler));
    QCOMPARE(texts.size(), 2);
    QCOMPARE(TextOf(texts, 1000), QString("Upper"));
    QCOMPARE(TextOf(texts, 1001), QString("Offset page"));
}

void TestGameText::onlyShipAndClassPagesAreRead()
{
    QList<GameText> texts;
    QStringList variantNames(Variants.size());
    QStringList classNames(Classes.size());
    GameTextHandler handler(&texts, &Variants, &variantNames, -1, &Classes, &classNames);
    Parse(R"(<language>
               <t id="10001">outside any page</t>
               <page id="1266"><t id="10003">race page</t><t id="2021">race page</t></page>
               <page id="17"><t id="10001">Vanguard text</t><t id="2023">not a class here</t></page>
               <page id="302006"><t id="2021">Carrier</t><t id="10003">Raider text</t></page>
             </language>)",
          handler);
    QCOMPARE(texts.size(), 4);
    QCOMPARE(TextOf(texts, 10001), QString("Vanguard text"));
    QCOMPARE(TextOf(texts, 2021), QString("Carrier"));
    // Variants take their names on both pages, classes only on the class page.
    QCOMPARE(variantNames, QStringList({"", "Vanguard text", "Raider text", ""}));
    QCOMPARE(classNames, QStringList({"Carrier", ""}));
}

void TestGameText::readingAPageAgainReplacesItsTexts()
{
    QList<GameText> texts = {{5, "kept"}};
    GameTextIndex index;
    BuildGameTextIndex(texts, index);
    for (const QByteArray& name : {QByteArray("First"), QByteArray("Second")}) {
        GameTextHandler handler(&texts, nullptr, nullptr, -1, nullptr, nullptr, &index);
        Parse("<page id='17'><t id='7'>" + name + "</t><t id='8'>" + name + " 8</t></page>", handler);
    }
    QCOMPARE(texts.size(), 3);
    QCOMPARE(texts[0].Text, QString("kept"));
    QCOMPARE(TextOf(texts, 7), QString("Second"));
    QCOMPARE(TextOf(texts, 8), QString("Second 8"));
    QCOMPARE(index.value(8), qsizetype(2));

    // Without an index of its own the handler finds the existing entries too.
    GameTextHandler handler(&texts, nullptr, nullptr, -1, nullptr, nullptr);
    Parse("<page id='17'><t id='5'>replaced</t></page>", handler);
    QCOMPARE(texts.size(), 3);
    QCOMPARE(texts[0].Text, QString("replaced"));
}

void TestGameText::entityReferencesKeepTheWholeText()
{
    QList<GameText> texts;
    GameTextHandler handler(&texts, nullptr, nullptr, 1, nullptr, nullptr);
    Parse("<page id='17'><t id='1'>Hull &amp; Shield &lt;Mk2&gt; &#x41;</t>"
          "<t id='2'><![CDATA[a <b>]]> tail</t></page>",
          handler);
    QCOMPARE(handler.Name(), QString("Hull & Shield <Mk2> A"));
    QCOMPARE(handler.Description(), QString("a <b> tail"));
    QCOMPARE(TextOf(texts, 1), handler.Name());
}

void TestGameText::targetNameAndDescription()
{
    const QByteArray page = "<page id='17'><t id='0'>zero</t><t id='9001'>Lance</t><t id='9002'>A fighter</t>"
                            "<t id='9003'>next</t></page><page id='5'><t id='9001'>other page</t></page>";
    GameTextHandler lance(nullptr, nullptr, nullptr, 9001, nullptr, nullptr);
    Parse(page, lance);
    QCOMPARE(lance.Name(), QString("Lance"));
    QCOMPARE(lance.Description(), QString("A fighter"));

    // With no target, a text of id 0 is not taken as the description of -1.
    GameTextHandler none(nullptr, nullptr, nullptr, -1, nullptr, nullptr);
    Parse(page, none);
    QVERIFY(none.Name().isEmpty());
    QVERIFY(none.Description().isEmpty());
}

void TestGameText::malformedInputKeepsWhatWasRead()
{
    QList<GameText> texts;
    GameTextHandler handler(&texts, nullptr, nullptr, -1, nullptr, nullptr);
    QVERIFY(
        !Parse("<page id='17'><t id='1'>one</t><t id='abc'>not a number</t><t id='3'>broken</x>", handler));
    QCOMPARE(TextOf(texts, 1), QString("one"));
    QCOMPARE(TextOf(texts, 0), QString("not a number"));

    QList<GameText> none;
    GameTextHandler binary(&none, nullptr, nullptr, -1, nullptr, nullptr);
    QVERIFY(!Parse(RandomBytes(4096, 7), binary));
    QVERIFY(none.isEmpty());

    TempHome home;
    QVERIFY(!ParseGameTextFile(home.filePath("missing.xml"), binary));
}

void TestGameText::configHandlerTables()
{
    QStringList races(RaceNameCount), ranks(RankNameCount), cargo(CargoNameCount), classNames(Classes.size());
    ConfigTextTargets targets;
    targets.RaceNames = &races;
    targets.RankNames = &ranks;
    targets.CargoNames = &cargo;
    targets.Classes = &Classes;
    targets.ClassNames = &classNames;
    ConfigTextHandler handler(targets);
    Parse(R"(<language>
        <page id="301266"><t id="1">Argon</t><t id="19">Last race</t><t id="20">too far</t><t id="0">none</t></page>
        <page id="300023"><t id="110">Argon top</t><t id="95">Argon bottom</t><t id="111">out</t></page>
        <page id="300024"><t id="110">Boron top</t><t id="109">Boron second</t></page>
        <page id="300028"><t id="95">Goner bottom</t></page>
        <page id="1999"><t id="10">Tiny</t><t id="19">Huge</t><t id="20">out</t></page>
        <page id="2006"><t id="2023">Fighter class</t></page>
    </language>)",
          handler);
    QCOMPARE(races[0], QString("Argon"));
    QCOMPARE(races[18], QString("Last race"));
    QCOMPARE(races.count(""), RaceNameCount - 2);
    // Within a race the highest number comes first.
    QCOMPARE(ranks[0], QString("Argon top"));
    QCOMPARE(ranks[15], QString("Argon bottom"));
    QCOMPARE(ranks[16], QString("Boron top"));
    QCOMPARE(ranks[17], QString("Boron second"));
    QCOMPARE(ranks[95], QString("Goner bottom"));
    QCOMPARE(ranks.count(""), RankNameCount - 5);
    QCOMPARE(cargo[0], QString("Tiny"));
    QCOMPARE(cargo[9], QString("Huge"));
    QCOMPARE(cargo.count(""), CargoNameCount - 2);
    QCOMPARE(classNames, QStringList({"", "Fighter class"}));
}

void TestGameText::variantWinsOverEquipmentOnShipPage()
{
    QStringList variantNames(Variants.size());
    QList<NamedTextId> shields = {{"", 10003}, {"", 500}};
    QList<NamedTextId> lasers = {{"", 500}, {"", 600}};
    QList<NamedTextId> missiles = {{"", 700}};
    ConfigTextTargets targets;
    targets.Variants = &Variants;
    targets.VariantNames = &variantNames;
    targets.Shields = &shields;
    targets.Lasers = &lasers;
    targets.Missiles = &missiles;
    ConfigTextHandler handler(targets);
    Parse(R"(<page id="17"><t id="10003">Raider</t><t id="500">1 MJ</t><t id="700">Wasp</t></page>
             <page id="2006"><t id="600">not on page 17</t></page>)",
          handler);
    QCOMPARE(variantNames[2], QString("Raider"));
    QCOMPARE(shields[0].Name, QString()); // the variant took this number
    QCOMPARE(shields[1].Name, QString("1 MJ"));
    QCOMPARE(lasers[0].Name, QString("1 MJ"));
    QCOMPARE(lasers[1].Name, QString());
    QCOMPARE(missiles[0].Name, QString("Wasp"));
}

void TestGameText::variantReferencesAndLanguageOfAFile()
{
    QStringList names = {"", "Vanguard", "{17,10001}", "{17,99999}"};
    ResolveVariantReferences(Variants, names);
    QCOMPARE(names, QStringList({"", "Vanguard", "Vanguard", "{17,99999}"}));
    // A reference to a name not known yet waits for it.
    names = {"", "", "", "{17,10001}"};
    ResolveVariantReferences(Variants, names);
    QCOMPARE(names[3], QString("{17,10001}"));

    QCOMPARE(GameTextLanguage("t\\440001.pck"), QString("44"));
    QCOMPARE(GameTextLanguage("C:/game/t/490001.xml"), QString("49"));
    QCOMPARE(GameTextLanguage("t\\7016.xml"), QString());
    QCOMPARE(BasePage(300017), 17);
    QCOMPARE(BasePage(2006), 2006);
}

QTEST_GUILESS_MAIN(TestGameText)
#include "tst_gametext.moc"
