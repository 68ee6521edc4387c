#include "language/GameText.h"

#include <QFile>

#include <algorithm>

namespace {

constexpr int PageOffset = 300000;
constexpr int FirstRankText = 95;
constexpr int LastRankText = 110;
constexpr int RanksPerRace = 16;
constexpr int FirstCargoText = 10;

bool IsElement(const QString& name, QLatin1StringView wanted)
{
    return name.compare(wanted, Qt::CaseInsensitive) == 0;
}

// The attribute "id" in any case, as a number; a value that does not parse
// reads as 0, like every number of the game's files.
int32_t IdAttribute(const QXmlStreamAttributes& attributes)
{
    for (const QXmlStreamAttribute& attribute : attributes) {
        if (attribute.name().compare(QLatin1StringView("id"), Qt::CaseInsensitive) == 0)
            return attribute.value().trimmed().toInt();
    }
    return 0;
}

QHash<int32_t, QList<qsizetype>> PositionsById(const QList<IdName>* list)
{
    QHash<int32_t, QList<qsizetype>> positions;
    if (list != nullptr) {
        for (qsizetype i = 0; i < list->size(); ++i)
            positions[list->at(i).Id].append(i);
    }
    return positions;
}

// Gives `text` to names[i] for every position i of the list with this id.
// True when at least one position matched.
bool StoreByPositions(const QHash<int32_t, QList<qsizetype>>& positions, int32_t id, QStringList* names,
                      const QString& text)
{
    if (names == nullptr)
        return false;
    const auto found = positions.constFind(id);
    if (found == positions.constEnd())
        return false;
    bool matched = false;
    for (qsizetype i : *found) {
        if (i < names->size()) {
            (*names)[i] = text;
            matched = true;
        }
    }
    return matched;
}

template <class Handler> bool ParseFile(const QString& path, Handler& handler)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QXmlStreamReader reader(&file);
    return DriveSaxHandler(reader, handler);
}

} // namespace

void BuildGameTextIndex(const QList<GameText>& texts, GameTextIndex& index)
{
    index.clear();
    index.reserve(texts.size());
    // Lookups take the first entry with an id, so a later duplicate is not indexed.
    for (qsizetype i = 0; i < texts.size(); ++i) {
        if (!index.contains(texts.at(i).Id))
            index.insert(texts.at(i).Id, i);
    }
}

int BasePage(int page)
{
    return page >= PageOffset ? page - PageOffset : page;
}

// --- GameTextHandler

GameTextHandler::GameTextHandler(QList<GameText>* texts, const QList<IdName>* variants,
                                 QStringList* variantNames, int32_t targetId, const QList<IdName>* classes,
                                 QStringList* classNames, GameTextIndex* index)
    : m_texts(texts), m_variantNames(variantNames), m_targetId(targetId), m_classNames(classNames),
      m_index(index), m_variantPositions(PositionsById(variantNames ? variants : nullptr)),
      m_classPositions(PositionsById(classNames ? classes : nullptr))
{
    if (m_texts != nullptr && m_index == nullptr) {
        BuildGameTextIndex(*m_texts, m_ownIndex);
        m_index = &m_ownIndex;
    }
}

bool GameTextHandler::startElement(const QString& name, const QXmlStreamAttributes& attributes)
{
    if (IsElement(name, QLatin1StringView("page"))) {
        m_page = IdAttribute(attributes);
        return true;
    }
    const int page = BasePage(m_page);
    if ((page == ShipTextPage || page == ShipClassPage) && IsElement(name, QLatin1StringView("t")))
        m_text = IdAttribute(attributes);
    return true;
}

bool GameTextHandler::endElement(const QString& name)
{
    if (IsElement(name, QLatin1StringView("page")))
        m_page = -1;
    else if (IsElement(name, QLatin1StringView("t")))
        m_text = -1;
    return true;
}

bool GameTextHandler::characters(const QString& text)
{
    // The text number is only set inside a t of a page that is read.
    if (m_text < 0)
        return true;
    if (m_text == m_targetId)
        m_name = text;
    else if (m_targetId >= 0 && m_text == m_targetId + 1)
        m_description = text;

    if (m_texts != nullptr)
        storeText(text);
    StoreByPositions(m_variantPositions, m_text, m_variantNames, text);
    if (BasePage(m_page) == ShipClassPage)
        StoreByPositions(m_classPositions, m_text, m_classNames, text);
    return true;
}

void GameTextHandler::storeText(const QString& text)
{
    const auto found = m_index->constFind(m_text);
    if (found != m_index->constEnd()) {
        (*m_texts)[*found].Text = text;
        return;
    }
    m_index->insert(m_text, m_texts->size());
    m_texts->append(GameText{m_text, text});
}

// --- ConfigTextHandler

ConfigTextHandler::ConfigTextHandler(const ConfigTextTargets& targets)
    : m_targets(targets),
      m_variantPositions(PositionsById(targets.VariantNames ? targets.Variants : nullptr)),
      m_classPositions(PositionsById(targets.ClassNames ? targets.Classes : nullptr))
{
}

bool ConfigTextHandler::startElement(const QString& name, const QXmlStreamAttributes& attributes)
{
    if (IsElement(name, QLatin1StringView("page"))) {
        m_page = IdAttribute(attributes);
        return true;
    }
    if (!IsElement(name, QLatin1StringView("t")))
        return true;
    const int page = BasePage(m_page);
    const bool read = page == ShipTextPage || page == ShipClassPage || page == RacePage ||
                      page == CargoPage || (page >= FirstRankPage && page <= LastRankPage);
    if (read)
        m_text = IdAttribute(attributes);
    return true;
}

bool ConfigTextHandler::endElement(const QString& name)
{
    if (IsElement(name, QLatin1StringView("page")))
        m_page = -1;
    else if (IsElement(name, QLatin1StringView("t")))
        m_text = -1;
    return true;
}

bool ConfigTextHandler::characters(const QString& text)
{
    if (m_text < 0)
        return true;
    const int page = BasePage(m_page);
    auto store = [&text](QStringList* names, int index) {
        if (names != nullptr && index >= 0 && index < names->size())
            (*names)[index] = text;
    };

    if (page == RacePage) {
        if (m_text >= 1 && m_text <= RaceNameCount)
            store(m_targets.RaceNames, m_text - 1);
    } else if (page >= FirstRankPage && page <= LastRankPage) {
        // Within a race the highest number comes first.
        if (m_text >= FirstRankText && m_text <= LastRankText)
            store(m_targets.RankNames, (page - FirstRankPage) * RanksPerRace + LastRankText - m_text);
    } else if (page == CargoPage) {
        if (m_text >= FirstCargoText && m_text < FirstCargoText + CargoNameCount)
            store(m_targets.CargoNames, m_text - FirstCargoText);
    } else if (page == ShipTextPage) {
        // A variant takes its text first; only a number that is no variant's
        // names equipment.
        if (!storeVariantName(text)) {
            storeEquipmentName(m_targets.Shields, text);
            storeEquipmentName(m_targets.Lasers, text);
            storeEquipmentName(m_targets.Missiles, text);
        }
    } else if (page == ShipClassPage) {
        StoreByPositions(m_classPositions, m_text, m_targets.ClassNames, text);
    }
    return true;
}

bool ConfigTextHandler::storeVariantName(const QString& text)
{
    return StoreByPositions(m_variantPositions, m_text, m_targets.VariantNames, text);
}

void ConfigTextHandler::storeEquipmentName(QList<NamedTextId>* list, const QString& text)
{
    if (list == nullptr)
        return;
    for (NamedTextId& entry : *list) {
        if (entry.TextId == m_text)
            entry.Name = text;
    }
}

// --- Files

bool ParseGameTextFile(const QString& path, GameTextHandler& handler)
{
    return ParseFile(path, handler);
}

bool ParseGameTextFile(const QString& path, ConfigTextHandler& handler)
{
    return ParseFile(path, handler);
}

QString GameTextLanguage(const QString& fileName)
{
    const qsizetype slash =
        std::max(fileName.lastIndexOf(QLatin1Char('/')), fileName.lastIndexOf(QLatin1Char('\\')));
    QString name = fileName.mid(slash + 1);
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot >= 0)
        name.truncate(dot);
    name.chop(4);
    return name;
}

void ResolveVariantReferences(const QList<IdName>& variants, QStringList& variantNames)
{
    for (qsizetype i = 0; i < variantNames.size(); ++i) {
        const QString& name = variantNames.at(i);
        if (!name.startsWith(QLatin1String("{17,")))
            continue;
        QString number = name.section(QLatin1Char(','), 1);
        number.remove(QLatin1Char('}'));
        const int id = number.trimmed().toInt();
        // A referenced name that is not known yet leaves the reference for a
        // later file to resolve.
        for (qsizetype j = 0; j < variants.size() && j < variantNames.size(); ++j) {
            if (variants.at(j).Id == id) {
                if (!variantNames.at(j).isEmpty())
                    variantNames[i] = variantNames.at(j);
                break;
            }
        }
    }
}
