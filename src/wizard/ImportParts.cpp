#include "wizard/ImportParts.h"

#include "gamedata/ShipLine.h"
#include "wizard/ImportNames.h"

#include <algorithm>

namespace {

// `rows` as valid, distinct indices of `list`, ascending.
QList<int> ValidRows(const QList<int>& rows, qsizetype size)
{
    QList<int> valid;
    for (int row : rows)
        if (row >= 0 && row < size && !valid.contains(row))
            valid.append(row);
    std::sort(valid.begin(), valid.end());
    return valid;
}

void MoveRows(QStringList& from, QStringList& to, const QList<int>& rows)
{
    const QList<int> valid = ValidRows(rows, from.size());
    for (int row : valid)
        to.append(from[row]);
    for (auto it = valid.crbegin(); it != valid.crend(); ++it)
        from.removeAt(*it);
}

} // namespace

void PickList::Clear()
{
    m_available.clear();
    m_chosen.clear();
}

void PickList::SetAvailable(const QStringList& entries)
{
    m_available = entries;
}

void PickList::ChooseDirectly(const QString& entry)
{
    if (!m_chosen.contains(entry))
        m_chosen.append(entry);
}

void PickList::RemoveChosenFromAvailable()
{
    for (const QString& entry : std::as_const(m_chosen))
        m_available.removeAll(entry);
}

void PickList::Choose(const QList<int>& rows)
{
    MoveRows(m_available, m_chosen, rows);
}

void PickList::Release(const QList<int>& rows)
{
    MoveRows(m_chosen, m_available, rows);
}

void PickList::ChooseAll()
{
    m_chosen += m_available;
    m_available.clear();
}

void PickList::ReleaseAll()
{
    m_available += m_chosen;
    m_chosen.clear();
}

QStringList PickList::ChooseEntries(const QStringList& candidates, bool firstOnly)
{
    QList<int> rows;
    for (const QString& candidate : candidates) {
        const qsizetype row = m_available.indexOf(candidate);
        if (row >= 0)
            rows.append(static_cast<int>(row));
    }
    rows = ValidRows(rows, m_available.size());
    if (firstOnly && rows.size() > 1)
        rows.resize(1);
    QStringList moved;
    for (int row : rows)
        moved.append(m_available[row]);
    Choose(rows);
    return moved;
}

CheckRow::CheckRow(const QString& text, const QStringList& lines)
    : Text(text), Key(ShipField(text, 0)), Lines(lines)
{
}

CheckTree::CheckTree(QList<CheckSection> sections) : m_sections(std::move(sections))
{
    std::stable_sort(m_sections.begin(), m_sections.end(),
                     [](const CheckSection& a, const CheckSection& b) { return a.Name.compare(b.Name) < 0; });
}

void CheckTree::SetTicked(const CheckPlace& place, bool ticked)
{
    if (place.Section >= 0 && place.Section < m_sections.size() && place.Row >= 0 &&
        place.Row < m_sections[place.Section].Rows.size())
        m_sections[place.Section].Rows[place.Row].Ticked = ticked;
}

bool CheckTree::IsTicked(const CheckPlace& place) const
{
    return place.IsValid() && Row(place).Ticked;
}

CheckPlace CheckTree::FirstMatch(const QString& partName) const
{
    for (int s = 0; s < m_sections.size(); ++s) {
        const QList<CheckRow>& rows = m_sections[s].Rows;
        for (int r = 0; r < rows.size(); ++r)
            if (PartMatchesKey(rows[r].Key, partName))
                return {s, r};
    }
    return {};
}

QList<CheckPlace> CheckTree::Ticked() const
{
    QList<CheckPlace> places;
    for (int s = 0; s < m_sections.size(); ++s)
        for (int r = 0; r < m_sections[s].Rows.size(); ++r)
            if (m_sections[s].Rows[r].Ticked)
                places.append({s, r});
    return places;
}
