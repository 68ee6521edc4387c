// The lists of the import wizard as plain values, free of widgets: the pages
// show them and write the user's changes back.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// Entries offered by the mod (available) and entries taken for the ship
// (chosen). An entry moves between the two and is never in both.
class PickList
{
public:
    const QStringList& Available() const { return m_available; }
    const QStringList& Chosen() const { return m_chosen; }

    void Clear();
    void SetAvailable(const QStringList& entries);
    void Offer(const QString& entry) { m_available.append(entry); }
    // Adds `entry` to the chosen entries unless they hold it already.
    void ChooseDirectly(const QString& entry);
    // Takes every chosen entry out of the available ones.
    void RemoveChosenFromAvailable();

    // Moves the available entries at `rows` (or the chosen ones) to the end of
    // the other list, in the order of the list they leave.
    void Choose(const QList<int>& rows);
    void Release(const QList<int>& rows);
    void ChooseAll();
    void ReleaseAll();

    // Moves the available entries that are among `candidates`, in the order
    // of the available list; with `firstOnly` only the first of them.
    // Returns the entries moved.
    QStringList ChooseEntries(const QStringList& candidates, bool firstOnly);

private:
    QStringList m_available;
    QStringList m_chosen;
};

// A row that can be ticked: a dummy (its text is the whole table line) or a
// component group (its text is the group's id, its lines the group's lines).
struct CheckRow
{
    CheckRow() = default;
    explicit CheckRow(const QString& text, const QStringList& lines = {});

    QString Text;
    QString Key; // the part the row belongs to: the first field of its text
    QStringList Lines;
    bool Ticked = false;
};

struct CheckSection
{
    QString Name;
    QList<CheckRow> Rows;
};

// Where a row stands in a tree.
struct CheckPlace
{
    int Section = -1;
    int Row = -1;
    bool IsValid() const { return Section >= 0 && Row >= 0; }
    friend bool operator==(const CheckPlace&, const CheckPlace&) = default;
};

// The sections of a dummy or component table with their rows, in the order
// in which the wizard shows them: sections sorted by name (a stable sort, so
// sections of one name keep the table's order), rows in the table's order.
class CheckTree
{
public:
    CheckTree() = default;
    explicit CheckTree(QList<CheckSection> sections);

    const QList<CheckSection>& Sections() const { return m_sections; }
    bool IsEmpty() const { return m_sections.isEmpty(); }
    void SetTicked(const CheckPlace& place, bool ticked);
    bool IsTicked(const CheckPlace& place) const;
    const CheckRow& Row(const CheckPlace& place) const { return m_sections[place.Section].Rows[place.Row]; }

    // The first row, in shown order, that belongs to `partName`, or an
    // invalid place.
    CheckPlace FirstMatch(const QString& partName) const;
    // Every ticked row in shown order.
    QList<CheckPlace> Ticked() const;

private:
    QList<CheckSection> m_sections;
};
