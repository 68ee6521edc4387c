// Fuzz harness of the language readers: an input is an XML file, read as a
// game language page (by both handlers, the second time into the same text
// list) and as the program's interface text file.
#include "FuzzSupport.h"
#include "language/GameText.h"
#include "language/UiTexts.h"

#include <QSet>
#include <QString>
#include <QStringList>

namespace {

constexpr const char* kHarness = "fuzz_language";

void Require(bool condition, const char* what)
{
    fuzz::Require(condition, kHarness, what);
}

const QString& InputPath()
{
    static const fuzz::ScratchDirectory directory("hw-fuzz-language");
    static const QString path = QString::fromStdString((directory.path() / "input.xml").string());
    return path;
}

// Ids as the program's data/variant and data/classes have them.
const QList<IdName> kVariants = {{0, "Standard"}, {10001, "Vanguard"}, {10004, "Hauler"}, {10001, "Again"}};
const QList<IdName> kClasses = {{2021, "M1"}, {2022, "M2"}, {0, "None"}};
constexpr int32_t kTargetId = 9001;

void CheckGameTexts(const QString& path)
{
    QList<GameText> texts;
    GameTextIndex index;
    QStringList variantNames(kVariants.size());
    QStringList classNames(kClasses.size());
    GameTextHandler handler(&texts, &kVariants, &variantNames, kTargetId, &kClasses, &classNames, &index);
    ParseGameTextFile(path, handler);
    Require(variantNames.size() == kVariants.size() && classNames.size() == kClasses.size(),
            "a name table changed its size");

    QSet<int32_t> ids;
    for (const GameText& text : texts)
        ids.insert(text.Id);
    Require(ids.size() == texts.size(), "a text number is held twice");
    GameTextIndex rebuilt;
    BuildGameTextIndex(texts, rebuilt);
    Require(rebuilt == index, "the kept index does not describe the list");
    const auto target = index.find(kTargetId);
    Require(target == index.end() ? handler.Name().isEmpty() : handler.Name() == texts[*target].Text,
            "the wanted name differs from its text");

    // The same file again into the same list replaces, and adds nothing.
    const QList<GameText> first = texts;
    GameTextHandler again(&texts, nullptr, nullptr, -1, nullptr, nullptr, &index);
    ParseGameTextFile(path, again);
    Require(texts.size() == first.size(), "a second read added texts");
    for (qsizetype i = 0; i < texts.size(); ++i)
        Require(texts[i].Id == first[i].Id && texts[i].Text == first[i].Text, "a second read changed a text");

    ResolveVariantReferences(kVariants, variantNames);
    Require(variantNames.size() == kVariants.size(), "resolving changed the variant names' size");
}

void CheckConfigTexts(const QString& path)
{
    QStringList races(RaceNameCount), ranks(RankNameCount), cargo(CargoNameCount);
    QStringList variantNames(kVariants.size()), classNames(kClasses.size());
    QList<NamedTextId> shields = {{{}, 9001}, {{}, 10001}}, lasers = {{{}, 9011}}, missiles = {{{}, 0}};
    ConfigTextTargets targets;
    targets.RaceNames = &races;
    targets.RankNames = &ranks;
    targets.CargoNames = &cargo;
    targets.Variants = &kVariants;
    targets.VariantNames = &variantNames;
    targets.Classes = &kClasses;
    targets.ClassNames = &classNames;
    targets.Shields = &shields;
    targets.Lasers = &lasers;
    targets.Missiles = &missiles;
    ConfigTextHandler handler(targets);
    ParseGameTextFile(path, handler);
    Require(races.size() == RaceNameCount && ranks.size() == RankNameCount &&
                cargo.size() == CargoNameCount && variantNames.size() == kVariants.size() &&
                classNames.size() == kClasses.size() && shields.size() == 2 && lasers.size() == 1 &&
                missiles.size() == 1,
            "a target table changed its size");
}

void CheckUiTexts(const QString& path)
{
    QStringList uiText = PlaceholderUiTexts(UiTextCount);
    QStringList uiTextExtra = PlaceholderUiTexts(UiTextExtraCount);
    QList<LanguageEntry> languages;
    ReadUiTexts(path, "English", uiText, uiTextExtra, languages);
    Require(uiText.size() == UiTextCount && uiTextExtra.size() == UiTextExtraCount,
            "an interface table changed its size");
    // Every text went through the markup, which leaves no underscore.
    for (const QString& text : uiText + uiTextExtra)
        Require(!text.contains(u'_'), "an interface text escaped the markup");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    fuzz::WriteBytes(InputPath().toStdString(), bytes, size);
    CheckGameTexts(InputPath());
    CheckConfigTexts(InputPath());
    CheckUiTexts(InputPath());
    return 0;
}
