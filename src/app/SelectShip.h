// The dialog that shows the lines of a TShips or TCockpits table and hands
// the chosen ones back.
//
// The table comes from a plain .txt, from a packed .pck (unpacked into the
// .txt beside it, which stays), or from a catalog, out of which the default
// entry is taken into a work file that is deleted after reading. The dialog
// keeps no lines in memory: choosing reads the table again.
//
// With a game directory the rows show the ship's name from the game's texts
// (the chosen catalog's own pages of the base language first, so that a mod's
// names win), with the variant name behind it, and a hidden row number by
// which the list is sorted, so that it keeps the table's order. Without one
// the list shows the ids alone, sorted by id.
#pragma once

#include "forms/SelectShip.h"
#include "language/GameText.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <cstdint>

class Prompter;

// One chosen line of the table.
struct SelectedLine
{
    QString Id;        // the line's last field that has text
    QString Line;      // the whole line as read
    int32_t Index = 0; // number of the data line, from 0, the header not counted
};

class DSelectShip : public SelectShip
{
    Q_OBJECT
public:
    // `gameDir` empty means no names are looked up; `gameTexts`, `variants`
    // and `variantNames` may then be null. The pointers are borrowed.
    DSelectShip(Prompter& prompter, const QStringList& uiText, const QString& gameDir = QString(),
                const QString& baseLang = QString(), const QList<GameText>* gameTexts = nullptr,
                const QList<IdName>* variants = nullptr, const QStringList* variantNames = nullptr,
                QWidget* parent = nullptr);

    // The file dialog's filter, caption and start directory, and the table's
    // entry in a catalog (such as "types\TShips.pck").
    void Setup(const QString& filter, const QString& caption, const QString& defaultEntry,
               const QString& startDir);

    // Fills the list from the chosen file, as Slot_OpenFile does after its
    // file dialog. A catalog that lacks the default entry gives the one
    // warning and leaves the list as it was; every other failure leaves an
    // empty list.
    void OpenTable(const QString& chosen);

    // The chosen lines in the order of the file, walked by a first/next pair
    // (null at the end).
    const SelectedLine* FirstSelected();
    const SelectedLine* NextSelected();
    const QList<SelectedLine>& SelectedLines() const { return m_selected; }

    // The row number shown in the hidden sort column: at least four digits.
    static QString RowNumber(int row);

public slots:
    void Slot_OpenFile() override;
    void Slot_Selected() override;

private:
    bool HasGameDir() const { return !m_gameDir.isEmpty(); }
    void SetUpColumns();
    void ResetVariantNames();
    QString ExtractWorkFile(const QString& source);
    void ReadCatalogTexts(const QString& catalog);
    void ForgetCatalogTexts();
    QString LookUpName(int textId) const;
    QString DisplayName(const QString& line) const;
    void FillList(const QStringList& records);

    Prompter& m_prompter;
    QStringList m_uiText;
    QString m_gameDir;
    QString m_baseLang;
    const QList<GameText>* m_gameTexts;
    GameTextIndex m_gameTextIndex;
    const QList<IdName>* m_variants;
    // A copy of the window's variant names: the pages of a chosen catalog may
    // rename variants for this dialog without touching the window's names.
    QStringList m_variantNames;
    const QStringList* m_windowVariantNames;
    // The texts of the chosen catalog's own pages.
    QList<GameText> m_catalogTexts;
    GameTextIndex m_catalogTextIndex;

    QString m_filter;
    QString m_caption;
    QString m_defaultEntry;
    QString m_startDir;

    QList<SelectedLine> m_selected;
    qsizetype m_cursor = 0;
};
