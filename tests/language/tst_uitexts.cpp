// Tests of the interface text reader and of the shipped language file.
#include "language/UiTexts.h"

#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

namespace {

// The interface tables as the main window holds them, read from one file.
struct Tables
{
    QStringList main = PlaceholderUiTexts(UiTextCount);
    QStringList extra = PlaceholderUiTexts(UiTextExtraCount);
    QList<LanguageEntry> languages;

    bool read(const QString& path, const QString& language)
    {
        return ReadUiTexts(path, language, main, extra, languages);
    }
};

QString placeholder(int index)
{
    return QStringLiteral("ReadText-%1").arg(index);
}

QString shippedFile()
{
    return qEnvironmentVariable("HW_DATA_DIR") + QStringLiteral("/hw_languages.xml");
}

// Every <t> of one section of one language, by id, with the comments that
// stand in that section.
struct Section
{
    QMap<int, QString> texts; // raw file text, before the markup transform
    QList<int> duplicateIds;
    QList<QPair<int, QString>> comments; // id of the preceding <t>, comment text
};

// language name -> section name -> content. Empty when the file is not
// well-formed; `error` then says why.
QMap<QString, QMap<QString, Section>> scanLanguageFile(const QString& path, QString& error)
{
    QMap<QString, QMap<QString, Section>> result;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = file.errorString();
        return {};
    }
    QXmlStreamReader reader(&file);
    QString language, section;
    int lastId = -1;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement()) {
            const QString name = reader.name().toString().toLower();
            if (name == QLatin1String("language")) {
                language = reader.attributes().value(QLatin1String("name")).toString();
            } else if (name == QLatin1String("hullwright") || name == QLatin1String("shared")) {
                section = name;
                result[language][section];
            } else if (name == QLatin1String("t") && !section.isEmpty()) {
                lastId = reader.attributes().value(QLatin1String("id")).toInt();
                const QString text = reader.readElementText();
                Section& content = result[language][section];
                if (content.texts.contains(lastId))
                    content.duplicateIds.append(lastId);
                content.texts.insert(lastId, text);
            }
        } else if (reader.isEndElement()) {
            const QString name = reader.name().toString().toLower();
            if (name == QLatin1String("hullwright") || name == QLatin1String("shared"))
                section.clear();
        } else if (reader.isComment() && !section.isEmpty()) {
            result[language][section].comments.append({lastId, reader.text().toString()});
        }
    }
    if (reader.hasError()) {
        error = QStringLiteral("line %1: %2").arg(reader.lineNumber()).arg(reader.errorString());
        return {};
    }
    return result;
}

// The index that a comment explains: the number it starts with, or -1.
int commentIndex(const QString& comment)
{
    static const QRegularExpression leadingNumber(QStringLiteral("^\\s*(\\d+)\\s*:"));
    const QRegularExpressionMatch match = leadingNumber.match(comment);
    return match.hasMatch() ? match.captured(1).toInt() : -1;
}

// The indices that a section's comments describe.
QList<int> listedIndices(const Section& section)
{
    QList<int> indices;
    for (const auto& [previousId, comment] : section.comments) {
        if (const int index = commentIndex(comment); index >= 0)
            indices.append(index);
    }
    return indices;
}

QSet<QString> placeholdersIn(const QString& text)
{
    static const QRegularExpression placeholder(QStringLiteral("%[1-9]"));
    QSet<QString> found;
    for (const QRegularExpressionMatch& match : placeholder.globalMatch(text))
        found.insert(match.captured());
    return found;
}

} // namespace

class TestUiTexts : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    int m_fileCount = 0;

    // Writes `content` to a fresh file of the temporary directory.
    QString writeFile(const QByteArray& content)
    {
        const QString path = m_dir.filePath(QStringLiteral("lang%1.xml").arg(++m_fileCount));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write test file %s", qPrintable(path));
        return path;
    }

    // One English language with the given main and shared section bodies.
    QString writeEnglish(const QByteArray& main, const QByteArray& shared = {})
    {
        return writeFile("<?xml version=\"1.0\"?>\n<languages><language "
                         "name=\"English\" id=\"44\" "
                         "translator=\"T\"><hullwright>" +
                         main + "</hullwright><shared>" + shared + "</shared></language></languages>\n");
    }

private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }

    void markupTransforms()
    {
        const std::pair<const char*, const char*> cases[] = {
            {"Open_File", "Open&File"},           // accelerator
            {"_a_b", "&a&b"},                     // every underscore
            {"#lbhello#rb", "<hello>"},           // angle brackets
            {"line\\nbreak", "line\nbreak"},      // line break
            {"C:\\temp\\x\\", "C:\\temp\\x\\"},   // other backslashes stay
            {"[b]x[/b]", "<b>x</b>"},             // bold
            {"a[/b]", "a[/b]"},                   // a lone closing mark stays
            {"[b]x[/b] y[/b]", "<b>x</b> y</b>"}, // every closing mark once bold
            {"[b]_Save#rb[/b]\\n#lbnow", "<b>&Save></b>\n<now"},
            {"Ship Name", "Ship Name"},
            {"", ""},
        };
        for (const auto& [input, expected] : cases)
            QCOMPARE(TransformUiMarkup(input), QString(expected));
    }

    void indicesUpToTheLimitsLandInTheirTables()
    {
        // A text beyond either end must neither grow a table nor fall into the
        // entry read just before it; 50 is a good index of the main table only.
        Tables tables;
        QVERIFY(tables.read(writeEnglish("<t id=\"0\">main zero</t><t id=\"419\">_Last</t><t "
                                         "id=\"420\">beyond</t>"
                                         "<t id=\"-1\">negative</t><t id=\"9999\">far</t>",
                                         "<t id=\"0\">extra zero</t><t id=\"49\">extra last</t>"
                                         "<t id=\"50\">beyond</t><t id=\"-3\">negative</t>"),
                            QStringLiteral("English")));
        QCOMPARE(tables.main.size(), UiTextCount);
        QCOMPARE(tables.extra.size(), UiTextExtraCount);
        QCOMPARE(tables.main.at(0), QStringLiteral("main zero"));
        QCOMPARE(tables.main.at(419), QStringLiteral("&Last"));
        QCOMPARE(tables.extra.at(0), QStringLiteral("extra zero"));
        QCOMPARE(tables.extra.at(49), QStringLiteral("extra last"));
        QCOMPARE(tables.main.at(1), placeholder(1));
        QCOMPARE(tables.main.at(50), placeholder(50));
        for (const QStringList* table : {&tables.main, &tables.extra})
            for (const char* misplaced : {"beyond", "negative", "far"})
                QVERIFY(!table->contains(QLatin1String(misplaced)));
    }

    void tablesSmallerThanTheirLimitsAreNotOverrun()
    {
        QStringList main = PlaceholderUiTexts(10);
        QStringList extra = PlaceholderUiTexts(2);
        QList<LanguageEntry> languages;
        QVERIFY(
            ReadUiTexts(writeEnglish("<t id=\"3\">three</t><t id=\"15\">fifteen</t>", "<t id=\"5\">x</t>"),
                        QStringLiteral("English"), main, extra, languages));
        QCOMPARE(main.size(), 10);
        QCOMPARE(extra.size(), 2);
        QCOMPARE(main.at(3), QStringLiteral("three"));
    }

    void hullwrightOwnSectionsAloneAreRead()
    {
        // Upper-case names, indentation and stray words as in a file edited by
        // hand, and texts outside the two sections or outside any language.
        Tables tables;
        QVERIFY(tables.read(writeFile("<?xml version=\"1.0\"?>\n<LANGUAGES>\n"
                                      "  <Language NAME=\"English\" ID=\"44\" Translator=\"Ann\">\n"
                                      "    <t id=\"1\">loose</t><other><t id=\"2\">other</t></other>\n"
                                      "    <HULLWRIGHT>\n      <T ID=\"3\">three</T> stray\n"
                                      "      <t id=\"4\"/><t id=\"5\"></t><t id=\"300\">300</t>\n"
                                      "    </HULLWRIGHT>\n    <t id=\"6\">after</t>\n"
                                      "    <Shared>\n      <t Id=\"7\">seven</t>\n    </Shared> tail\n"
                                      "  </Language>\n"
                                      "  <hullwright><t id=\"8\">no "
                                      "language</t></hullwright>\n</LANGUAGES>\n"),
                            QStringLiteral("English")));
        for (int outside : {1, 2, 6, 8, 0})
            QCOMPARE(tables.main.at(outside), placeholder(outside));
        QCOMPARE(tables.main.at(3), QStringLiteral("three"));
        QCOMPARE(tables.main.at(4), QString());
        QCOMPARE(tables.main.at(5), QString());
        QCOMPARE(tables.main.at(300), QStringLiteral("300"));
        QCOMPARE(tables.extra.at(7), QStringLiteral("seven"));
        QCOMPARE(tables.extra.at(0), placeholder(0));
        QCOMPARE(tables.languages.size(), 1);
        QCOMPARE(tables.languages.first().Name, QStringLiteral("English"));
        QCOMPARE(tables.languages.first().Id, 44);
        QCOMPARE(tables.languages.first().Translator, QStringLiteral("Ann"));
    }

    void textIsReadWhole()
    {
        // Entity and character references, CDATA and a text far longer than
        // any read buffer must all arrive as one text, blanks included.
        const QString longText = QString(100000, QLatin1Char('x')) + QStringLiteral(" end");
        Tables tables;
        QVERIFY(tables.read(writeEnglish("<t id=\"1\">Load &amp; Save &lt;now&gt; &#65;fter</t>"
                                         "<t id=\"2\">a<![CDATA[ <raw> ]]>b</t>"
                                         "<t id=\"3\">" +
                                         longText.toUtf8() +
                                         "</t>"
                                         "<t id=\"4\">Position </t><t id=\"5\"> KB</t>"
                                         "<t id=\"6\">Stra\xc3\x9f"
                                         "e &amp;</t>"),
                            QStringLiteral("English")));
        QCOMPARE(tables.main.at(1), QStringLiteral("Load & Save <now> After"));
        QCOMPARE(tables.main.at(2), QStringLiteral("a <raw> b"));
        QCOMPARE(tables.main.at(3), longText);
        QCOMPARE(tables.main.at(4), QStringLiteral("Position "));
        QCOMPARE(tables.main.at(5), QStringLiteral(" KB"));
        QCOMPARE(tables.main.at(6), QStringLiteral("Stra\u00dfe &"));
    }

    void selectedLanguageAloneFillsTheTables()
    {
        const QString path = writeFile("<languages>"
                                       "<language name=\"English\" id=\"44\" translator=\"A\"><hullwright>"
                                       "<t id=\"1\">File</t><t id=\"2\">New</t></hullwright>"
                                       "<shared><t id=\"0\">OK</t></shared></language>"
                                       "<language name=\"Deutsch\" id=\"49\" translator=\"B\"><hullwright>"
                                       "<t id=\"1\">Datei</t></hullwright></language>"
                                       "<language name=\"Francais\" id=\"33\" translator=\"C\"><hullwright>"
                                       "<t id=\"2\">Nouveau</t></hullwright></language>"
                                       "</languages>");

        Tables german;
        QVERIFY(german.read(path, QStringLiteral("dEUTSCH")));
        QCOMPARE(german.main.at(1), QStringLiteral("Datei"));
        QCOMPARE(german.main.at(2), placeholder(2));
        QCOMPARE(german.extra.at(0), placeholder(0));
        QCOMPARE(german.languages.size(), 3);
        QCOMPARE(german.languages.at(0).Name, QStringLiteral("English"));
        QCOMPARE(german.languages.at(1).Name, QStringLiteral("Deutsch"));
        QCOMPARE(german.languages.at(1).Id, 49);
        QCOMPARE(german.languages.at(1).Translator, QStringLiteral("B"));
        QCOMPARE(german.languages.at(2).Id, 33);

        // A language the file does not hold: all listed, nothing taken.
        Tables unknown;
        QVERIFY(unknown.read(path, QStringLiteral("Klingon")));
        QCOMPARE(unknown.languages.size(), 3);
        QCOMPARE(unknown.main, PlaceholderUiTexts(UiTextCount));
        QCOMPARE(unknown.extra, PlaceholderUiTexts(UiTextExtraCount));
    }

    void malformedFileKeepsWhatWasRead_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("mismatched tag")
            << QByteArray("<languages><language name=\"English\" id=\"44\"><hullwright>"
                          "<t id=\"1\">one</t><t id=\"2\">two</hullwright>"
                          "<t id=\"3\">three</t></language></languages>");
        QTest::newRow("truncated") << QByteArray(
            "<languages><language name=\"English\" id=\"44\"><hullwright>"
            "<t id=\"1\">one</t><t id=\"3\">thr");
        QTest::newRow("undeclared entity")
            << QByteArray("<languages><language name=\"English\" id=\"44\"><hullwright>"
                          "<t id=\"1\">one</t><t "
                          "id=\"3\">&nbsp;</t></hullwright></language></languages>");
    }

    void malformedFileKeepsWhatWasRead()
    {
        QFETCH(QByteArray, content);
        Tables tables;
        QVERIFY(!tables.read(writeFile(content), QStringLiteral("English")));
        QCOMPARE(tables.main.at(1), QStringLiteral("one"));
        QCOMPARE(tables.main.at(0), placeholder(0));
        QCOMPARE(tables.main.at(4), placeholder(4));
        QCOMPARE(tables.languages.size(), 1);
        QCOMPARE(tables.main.size(), UiTextCount);
    }

    void unreadableFilesLeaveThePlaceholders()
    {
        for (const QString& path : {m_dir.filePath(QStringLiteral("absent.xml")), writeFile(QByteArray()),
                                    writeFile(QByteArray("\x00\x01\xff\xfe garbage", 12))}) {
            Tables tables;
            QVERIFY(!tables.read(path, QStringLiteral("English")));
            QCOMPARE(tables.main, PlaceholderUiTexts(UiTextCount));
            QCOMPARE(tables.extra, PlaceholderUiTexts(UiTextExtraCount));
            QVERIFY(tables.languages.isEmpty());
        }
    }

    // The shipped file.

    void shippedFileIsWellFormedWithUniqueIds()
    {
        QString error;
        const auto languages = scanLanguageFile(shippedFile(), error);
        QVERIFY2(!languages.isEmpty(), qPrintable(error));
        for (auto language = languages.cbegin(); language != languages.cend(); ++language) {
            QVERIFY2(language->contains(QStringLiteral("hullwright")), qPrintable(language.key()));
            QVERIFY2(language->contains(QStringLiteral("shared")), qPrintable(language.key()));
            for (auto section = language->cbegin(); section != language->cend(); ++section) {
                if (!section->duplicateIds.isEmpty())
                    QFAIL(qPrintable(QStringLiteral("%1/%2 repeats id %3")
                                         .arg(language.key(), section.key())
                                         .arg(section->duplicateIds.first())));
                const int limit = section.key() == QLatin1String("shared") ? UiTextExtraCount : UiTextCount;
                for (auto text = section->texts.cbegin(); text != section->texts.cend(); ++text)
                    QVERIFY2(text.key() >= 0 && text.key() < limit,
                             qPrintable(QStringLiteral("%1/%2 id %3")
                                            .arg(language.key(), section.key())
                                            .arg(text.key())));
            }
        }
        QFile file(shippedFile());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(!file.readAll().contains("ReadText-"));

        // The settings keep only the first word of a language entry.
        Tables tables;
        QVERIFY(tables.read(shippedFile(), QStringLiteral("English")));
        QVERIFY(tables.languages.size() > 1);
        for (const LanguageEntry& entry : std::as_const(tables.languages)) {
            QVERIFY(!entry.Name.contains(QLatin1Char(' ')));
            QVERIFY(!entry.Translator.isEmpty());
        }
    }

    void shippedFileFillsEveryListedIndex()
    {
        QString error;
        const auto content = scanLanguageFile(shippedFile(), error);
        QVERIFY2(!content.isEmpty(), qPrintable(error));
        const Section main = content.value(QStringLiteral("English")).value(QStringLiteral("hullwright"));
        const Section shared = content.value(QStringLiteral("English")).value(QStringLiteral("shared"));

        // Each comment explains the text it stands beside.
        for (const Section* section : {&main, &shared}) {
            for (const auto& [previousId, comment] : section->comments)
                QVERIFY2(commentIndex(comment) == previousId,
                         qPrintable(QStringLiteral("comment '%1' after id %2").arg(comment).arg(previousId)));
        }
        const QList<int> listedMain = listedIndices(main);
        const QList<int> listedShared = listedIndices(shared);
        QVERIFY(!listedMain.isEmpty());
        QVERIFY(!listedShared.isEmpty());

        for (const QString& language : {QStringLiteral("English"), QStringLiteral("Deutsch")}) {
            Tables tables;
            QVERIFY(tables.read(shippedFile(), language));
            for (int index : listedMain) {
                const QString& text = tables.main.at(index);
                QVERIFY2(!text.isEmpty() && text != placeholder(index),
                         qPrintable(QStringLiteral("%1 main %2").arg(language).arg(index)));
            }
            for (int index : listedShared) {
                const QString& text = tables.extra.at(index);
                QVERIFY2(!text.isEmpty() && text != placeholder(index),
                         qPrintable(QStringLiteral("%1 shared %2").arg(language).arg(index)));
            }
        }
    }

    void shippedTranslationsKeepPlaceholders()
    {
        Tables english, german;
        QVERIFY(english.read(shippedFile(), QStringLiteral("English")));
        QVERIFY(german.read(shippedFile(), QStringLiteral("Deutsch")));
        for (int index = 0; index < UiTextCount; ++index) {
            QCOMPARE(placeholdersIn(german.main.at(index)), placeholdersIn(english.main.at(index)));
            // An accelerator mark is a single ampersand before a letter.
            for (const QString& text : {english.main.at(index), german.main.at(index)})
                QVERIFY2(text.count(QLatin1Char('&')) <= 1, qPrintable(text));
        }
    }
};

QTEST_GUILESS_MAIN(TestUiTexts)
#include "tst_uitexts.moc"
