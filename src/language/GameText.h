// Readers of the game's language pages, t\<language><page file>.pck or .xml:
//
//     <language id="44">
//       <page id="17"> <t id="9001">Lance</t> <t id="9002">A fighter.</t> </page>
//     </language>
//
// Two handlers read them, each taking only the pages it needs. Element and
// attribute names are compared without regard to case, so <PAGE ID="17"> is
// <page id="17">. A page P and the page 300000 + P are the same page. Text
// outside the elements read is passed over, and a handler never stops a parse.
//
// The handlers have the three callbacks of a SAX parser; DriveSaxHandler feeds
// them from a QXmlStreamReader.
#pragma once

#include "language/SaxDriver.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <cstdint>

// An id and a name, as read from data/classes and data/variant.
struct IdName
{
    int Id = 0;
    QString Name;
};

// One text of the game: its number within the pages read, and its text.
struct GameText
{
    int32_t Id = 0;
    QString Text;
};

// Where each text number stands in a text list: the position of the first
// entry with that id. Kept beside the list, so that replacing a text by its
// number does not search the list.
using GameTextIndex = QHash<int32_t, qsizetype>;

// Rebuilds `index` for `texts`; the first entry wins for an id held twice.
void BuildGameTextIndex(const QList<GameText>& texts, GameTextIndex& index);

// A shield, laser or missile of the game's tables: the text number of its name
// on page 17, and the name that the language page gives it.
struct NamedTextId
{
    QString Name;
    int32_t TextId = 0;
};

// Page numbers of the pages read here, without the 300000 offset.
inline constexpr int ShipTextPage = 17;
inline constexpr int ShipClassPage = 2006;
inline constexpr int RacePage = 1266;
inline constexpr int CargoPage = 1999;
inline constexpr int FirstRankPage = 23; // 23 to 28: one page per race
inline constexpr int LastRankPage = 28;

inline constexpr int RaceNameCount = 19;
inline constexpr int RankNameCount = 96; // 16 for each of 6 races
inline constexpr int CargoNameCount = 10;

// A page number with the 300000 offset taken off, so that P and 300000 + P
// compare equal.
int BasePage(int page);

// Reads the ship, variant and class names of pages 17 and 2006.
class GameTextHandler
{
public:
    // Every argument may be null (targetId -1 for none). `variantNames` and
    // `classNames` hold one string for each entry of their list. When `index`
    // is given it must describe `texts` and is kept up to date; without one the
    // handler builds its own. Everything is borrowed and must outlive the handler.
    GameTextHandler(QList<GameText>* texts, const QList<IdName>* variants, QStringList* variantNames,
                    int32_t targetId, const QList<IdName>* classes, QStringList* classNames,
                    GameTextIndex* index = nullptr);

    bool startElement(const QString& name, const QXmlStreamAttributes& attributes);
    bool endElement(const QString& name);
    // The whole content of the current text element.
    bool characters(const QString& text);

    // The texts found at the target id and at the target id + 1.
    const QString& Name() const { return m_name; }
    const QString& Description() const { return m_description; }

private:
    void storeText(const QString& text);

    QList<GameText>* m_texts;
    QStringList* m_variantNames;
    int32_t m_targetId;
    QStringList* m_classNames;
    GameTextIndex* m_index;
    GameTextIndex m_ownIndex;
    // Positions in the variant and class lists for each id.
    QHash<int32_t, QList<qsizetype>> m_variantPositions;
    QHash<int32_t, QList<qsizetype>> m_classPositions;

    QString m_name;
    QString m_description;
    int m_page = -1;
    int32_t m_text = -1;
};

// The tables that the ship configuration dialog fills from the game's text.
// Each string list is sized already (race 19, rank 96, cargo 10, variant and
// class names one per list entry); a null target is left alone.
struct ConfigTextTargets
{
    QStringList* RaceNames = nullptr;
    QStringList* RankNames = nullptr;
    QStringList* CargoNames = nullptr;
    const QList<IdName>* Variants = nullptr;
    QStringList* VariantNames = nullptr;
    const QList<IdName>* Classes = nullptr;
    QStringList* ClassNames = nullptr;
    QList<NamedTextId>* Shields = nullptr;
    QList<NamedTextId>* Lasers = nullptr;
    QList<NamedTextId>* Missiles = nullptr;
};

// Reads race, rank, cargo, variant and class names, and names the shields,
// lasers and missiles whose text numbers stand on page 17.
class ConfigTextHandler
{
public:
    explicit ConfigTextHandler(const ConfigTextTargets& targets);

    bool startElement(const QString& name, const QXmlStreamAttributes& attributes);
    bool endElement(const QString& name);
    bool characters(const QString& text);

private:
    // False when no variant has this text number.
    bool storeVariantName(const QString& text);
    void storeEquipmentName(QList<NamedTextId>* list, const QString& text);

    ConfigTextTargets m_targets;
    QHash<int32_t, QList<qsizetype>> m_variantPositions;
    QHash<int32_t, QList<qsizetype>> m_classPositions;
    int m_page = -1;
    int32_t m_text = -1;
};

// Parses the plain language file at `path` with the handler. False when the
// file could not be opened or was not well-formed; what was read before an
// error has reached the handler all the same.
bool ParseGameTextFile(const QString& path, GameTextHandler& handler);
bool ParseGameTextFile(const QString& path, ConfigTextHandler& handler);

// The language of a language file: its name without directory (either slash),
// cut at the last dot, less the last four characters ("440001.pck" -> "44").
QString GameTextLanguage(const QString& fileName);

// Resolves variant names of the form "{17,<id>}": each takes the name of the
// first variant with that id. A reference to a variant that is not listed,
// or whose name is still empty, stays as it is.
void ResolveVariantReferences(const QList<IdName>& variants, QStringList& variantNames);
