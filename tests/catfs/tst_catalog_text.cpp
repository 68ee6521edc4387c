// The vectorised catalog decoder against a line-by-line reading of the same
// rules, on generated catalogs full of the awkward cases: CR, CR LF and zero
// bytes as line ends, empty lines, blanks in names, sizes with signs, junk or
// too many digits, lines longer than the decoder's blocks and pieces, and a
// last line without a line end.

#include "catfs/CatDriver.h"
#include "catfs/driver/CatalogText.h"

#include <QRandomGenerator>
#include <QtTest>

#include <string>

using namespace catfs;

namespace {

struct Decoded
{
    uint32_t code = CatErrNone;
    std::string dataName;
    std::vector<std::pair<std::string, std::pair<uint32_t, uint32_t>>> entries; // name, offset, size
};

// The rules, one line at a time.
Decoded ReferenceDecode(std::string text)
{
    for (size_t i = 0; i < text.size(); ++i) {
        char& c = text[i];
        c = char(uint8_t(c) ^ uint8_t(CatCatalogKey + i));
        if (c == '/')
            c = '\\';
        else if (c == '\r' || c == '\0')
            c = '\n';
    }
    Decoded result;
    uint64_t offset = 0;
    size_t start = 0;
    bool first = true;
    while (start < text.size() || first) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos)
            end = text.size();
        const std::string line = text.substr(start, end - start);
        start = end + 1;
        if (first) {
            result.dataName = line;
            first = false;
            continue;
        }
        if (line.empty())
            continue;
        const size_t blank = line.rfind(' ');
        if (blank == std::string::npos)
            return {CatErrBadData, {}, {}};
        uint32_t size = 0;
        if (!ParseSize(line.data() + blank + 1, line.data() + line.size(), size) ||
            offset + size > UINT32_MAX)
            return {CatErrInvalidSize, {}, {}};
        result.entries.push_back({line.substr(0, blank), {uint32_t(offset), size}});
        offset += size;
    }
    return result;
}

Decoded FastDecode(const std::string& text, CatalogDecoder decoder)
{
    std::vector<char> buffer(text.begin(), text.end());
    buffer.resize(text.size() + kCatalogTextSlack, '\x55');
    Decoded result;
    CatEntryList entries;
    result.code = DecodeCatalogText(buffer.data(), text.size(), result.dataName, entries, decoder);
    if (result.code != CatErrNone)
        return {result.code, {}, {}};
    for (const CatEntry& entry : entries)
        result.entries.push_back(
            {std::string(buffer.data() + entry.nameOffset, entry.nameLength), {entry.offset, entry.size}});
    return result;
}

std::string Scramble(std::string text)
{
    for (size_t i = 0; i < text.size(); ++i)
        text[i] = char(uint8_t(text[i]) ^ uint8_t(CatCatalogKey + i));
    return text;
}

// A catalog text that is valid most of the time and, when `odd`, odd in many
// small ways; without oddities it is long and takes the decoder's fast way.
std::string GeneratedCatalog(QRandomGenerator& random, bool odd)
{
    static const std::string lineEnds[] = {"\n", "\r\n", "\r", std::string(1, '\0'), "\n\n", "\r\r\n"};
    std::string text = random.bounded(8) == 0 ? "" : "objects/01.dat";
    text += "\n";
    const int lines = odd ? int(random.bounded(300)) : 2000 + int(random.bounded(2000));
    for (int i = 0; i < lines; ++i) {
        std::string name = "objects/ships/model_" + std::to_string(random.bounded(100000));
        switch (odd ? random.bounded(12) : 99) {
        case 0:
            name += " with blanks";
            break;
        case 1:
            name = std::string(60 + random.bounded(5000), 'n');
            break; // across blocks and pieces
        case 2:
            name = "";
            break;
        default:
            break;
        }
        const quint32 largest = random.bounded(50) != 0 ? 70u : odd ? 400000000u : 99999999u;
        std::string size = std::to_string(random.bounded(largest));
        switch (odd ? random.bounded(40) : 99) {
        case 0:
            size = "+" + size;
            break;
        case 1:
            size = "-0";
            break;
        case 2:
            size = size + "abc";
            break;
        case 3:
            size = "0000000000042";
            break;
        case 4:
            size = "";
            break;
        case 5:
            size = "12" + std::string(70 + random.bounded(100), 'x');
            break; // the blank far behind
        case 6:
            size = size + char(':' + random.bounded(6));
            break; // just above '9'
        case 7:
            size = char('/' - random.bounded(3)) + size;
            break; // just below '0'
        default:
            break;
        }
        // Errors are rare, so that most catalogs are read to their end.
        switch (odd ? random.bounded(3000) : 99) {
        case 0:
            size = "-5";
            break;
        case 1:
            size = "4294967296";
            break;
        case 2:
            size = "4000000000";
            break; // the sum overflows
        default:
            break;
        }
        const bool noBlank = odd && random.bounded(3000) == 0;
        text += name + (noBlank ? "" : " ") + size;
        if (i + 1 < lines || random.bounded(2))
            text += odd && random.bounded(6) == 0 ? lineEnds[random.bounded(6)] : lineEnds[0];
    }
    return text;
}

} // namespace

class TestCatalogText : public QObject
{
    Q_OBJECT

private slots:
    void agreesWithTheLineRules();
    void sizesOfEveryDigitCount();
    void lineWithoutBlankBehindOneWithBlanks();
    void blocksFullOfLineEnds();
};

void TestCatalogText::agreesWithTheLineRules()
{
    QRandomGenerator random(20261123);
    int failures = 0;
    int valid = 0;
    for (int round = 0; round < 3000; ++round) {
        const std::string text = Scramble(GeneratedCatalog(random, round % 10 != 0));
        if (text.empty())
            continue;
        const Decoded expected = ReferenceDecode(text);
        valid += expected.code == CatErrNone;
        for (CatalogDecoder decoder : {CatalogDecoder::Best, CatalogDecoder::Portable}) {
            const Decoded got = FastDecode(text, decoder);
            if (got.code != expected.code || got.dataName != expected.dataName ||
                got.entries != expected.entries) {
                if (++failures <= 3)
                    qWarning("round %d, decoder %d: code %u (expected %u), %zu entries (expected %zu)", round,
                             int(decoder), got.code, expected.code, got.entries.size(),
                             expected.entries.size());
            }
        }
    }
    QCOMPARE(failures, 0);
    // The generator must not make every catalog invalid, or only errors were compared.
    QVERIFY2(valid > 300, qPrintable(QString::number(valid)));
}

void TestCatalogText::sizesOfEveryDigitCount()
{
    // Every digit count around the fast path's limit of eight, at every
    // position of the line end within a block.
    for (int digits = 1; digits <= 11; ++digits) {
        for (int pad = 0; pad < 64; ++pad) {
            const std::string number = std::string("9876543210").substr(0, size_t(std::min(digits, 10))) +
                                       std::string(digits > 10 ? 1 : 0, '1');
            const std::string text =
                Scramble("x.dat\n" + std::string(size_t(pad) + 1, 'a') + " " + number + "\n");
            const Decoded expected = ReferenceDecode(text);
            for (CatalogDecoder decoder : {CatalogDecoder::Best, CatalogDecoder::Portable}) {
                const Decoded got = FastDecode(text, decoder);
                QCOMPARE(got.code, expected.code);
                QCOMPARE(got.entries, expected.entries);
            }
            if (digits <= 9)
                QCOMPARE(expected.entries.at(0).second.second, uint32_t(std::stoul(number)));
            else
                QCOMPARE(expected.code, uint32_t(CatErrInvalidSize));
        }
    }
}

void TestCatalogText::lineWithoutBlankBehindOneWithBlanks()
{
    // The nearest blank lies in the line before, at every distance.
    for (int pad = 0; pad < 140; ++pad) {
        for (const char* before : {"a 1 ", "a 1", "a  "}) {
            const std::string text =
                Scramble(std::string("x.dat\n") + before + "\n" + std::string(size_t(pad) + 1, 'b') + "\n");
            for (CatalogDecoder decoder : {CatalogDecoder::Best, CatalogDecoder::Portable})
                QCOMPARE(FastDecode(text, decoder).code, uint32_t(CatErrBadData));
        }
    }
}

void TestCatalogText::blocksFullOfLineEnds()
{
    // Up to 64 line ends in one 64-byte block: tiny entries and runs of
    // empty lines, over several pieces.
    std::string plain = "x.dat\n";
    for (int i = 0; i < 3000; ++i)
        plain += i % 7 == 0 ? std::string(size_t(i % 130), '\n') : std::string("a ") + char('0' + i % 10) + "\n";
    const std::string text = Scramble(plain);
    const Decoded expected = ReferenceDecode(text);
    QCOMPARE(expected.code, uint32_t(CatErrNone));
    for (CatalogDecoder decoder : {CatalogDecoder::Best, CatalogDecoder::Portable}) {
        const Decoded got = FastDecode(text, decoder);
        QCOMPARE(got.code, expected.code);
        QCOMPARE(got.entries, expected.entries);
    }
}

QTEST_APPLESS_MAIN(TestCatalogText)
#include "tst_catalog_text.moc"
