// The list of the ship's language texts, ListText on the Text tab: column 0
// the language id, column 1 the ship's name, column 2 its description. Rows
// are added by hand or imported from the game's language pages; two rows of
// one language give two texts.
#pragma once

#include "app/ContentListSupport.h"
#include "package/ShipPackage.h"

#include <QObject>
#include <QPoint>

#include <memory>

class QMenu;
class QTreeWidget;
class QTreeWidgetItem;
struct ShipText;

class TextListController : public QObject
{
    Q_OBJECT
public:
    // `shipLine` gives the ship line of the form: importing looks the texts
    // up by the line's name id.
    TextListController(QTreeWidget* list, WindowContext context, std::function<QString()> shipLine);

    // The document's side. Rows() gives the titles without colons, which
    // separate the fields of a package's text line.
    void Show(const QList<TextEntry>& texts);
    QList<TextEntry> Rows() const;
    bool Matches(const QList<TextEntry>& saved) const;
    void Clear();

    std::unique_ptr<QMenu> BuildMenu(QTreeWidgetItem* item);

public slots:
    void ShowMenu(QTreeWidgetItem* item, const QPoint& globalPos);
    // A double click: column 1 changes the name, column 2 the description.
    void DoubleClicked(QTreeWidgetItem* item, int column);
    void AddLanguage();
    void RemoveLanguage();
    void ChangeName();
    void ChangeDescription();
    void ClearList();
    // Imports from language files (plain, packed or catalogs) the user picks,
    // or from the files of one page in a directory.
    void ImportFiles();
    void ImportDirectory();

private:
    void AddRow(const QString& language, const QString& name, const QString& description);
    bool AddImported(const QList<ShipText>& texts);
    bool ChangeColumn(int column, int captionIndex, int labelIndex);
    int NameId() const;
    const QString& Text(int index) const { return m_context.uiText[index]; }

    QTreeWidget* m_list;
    WindowContext m_context;
    std::function<QString()> m_shipLine;
};
