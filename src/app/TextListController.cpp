#include "app/TextListController.h"

#include "app/ShipTextImport.h"
#include "app/WindowTexts.h"
#include "core/AppSettings.h"
#include "forms/LanguageText.h"
#include "forms/Prompter.h"
#include "gamedata/ShipLine.h"

#include <QFileInfo>
#include <QMenu>
#include <QTreeWidget>

namespace {

const char* const TextIcon = "/Icons/text.png";
constexpr int NameColumn = 1;
constexpr int DescriptionColumn = 2;

} // namespace

TextListController::TextListController(QTreeWidget* list, WindowContext context,
                                       std::function<QString()> shipLine)
    : m_list(list), m_context(std::move(context)), m_shipLine(std::move(shipLine))
{
    // A plain list view of the form: its right click comes as a request in
    // viewport coordinates.
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_list, &QWidget::customContextMenuRequested, this, [this](const QPoint& pos) {
        ShowMenu(m_list->itemAt(pos), m_list->viewport()->mapToGlobal(pos));
    });
    connect(m_list, &QTreeWidget::itemDoubleClicked, this, &TextListController::DoubleClicked);
}

void TextListController::AddRow(const QString& language, const QString& name, const QString& description)
{
    auto* row = new QTreeWidgetItem(m_list, {language, name, description}); // owned by the list
    row->setIcon(0, ProgramIcon(TextIcon));
    KeepSorted(m_list);
}

void TextListController::Show(const QList<TextEntry>& texts)
{
    for (const TextEntry& text : texts)
        AddRow(QString::number(text.Language), text.Title, text.Description);
}

QList<TextEntry> TextListController::Rows() const
{
    QList<TextEntry> texts;
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = m_list->topLevelItem(i);
        texts.append({ReadInt(row->text(0)), QString(row->text(NameColumn)).remove(':'),
                      row->text(DescriptionColumn)});
    }
    return texts;
}

bool TextListController::Matches(const QList<TextEntry>& saved) const
{
    if (m_list->topLevelItemCount() != saved.size())
        return false;
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = m_list->topLevelItem(i);
        if (!saved.contains(
                TextEntry{row->text(0).toInt(), row->text(NameColumn), row->text(DescriptionColumn)}))
            return false;
    }
    return true;
}

void TextListController::Clear()
{
    m_list->clear();
}

void TextListController::AddLanguage()
{
    LanguageText dialog(m_context.parent, "language text", true);
    dialog.setWindowTitle("Qt: " + Text(Txt::LanguageTextCaption));
    dialog.LabelNumber->setText(BoldLabel(Text(Txt::LanguageTextLanguage)));
    dialog.LabelName->setText(BoldLabel(Text(Txt::LanguageTextName)));
    dialog.LabelDesc->setText(BoldLabel(Text(Txt::LanguageTextDescription)));
    dialog.ButOk->setText(Text(Txt::DialogOk));
    dialog.ButCancel->setText(Text(Txt::DialogCancel));
    dialog.SpinLang->setValue(44);
    if (dialog.exec() != QDialog::Accepted)
        return;
    AddRow(dialog.SpinLang->text(), dialog.LineName->text(), dialog.TextDesc->toPlainText());
    m_context.modified();
}

void TextListController::RemoveLanguage()
{
    if (RemoveSelectedRows(m_list))
        m_context.modified();
}

// Asks for a new text of one column of the selected row. An empty answer,
// like a cancel, keeps the old text.
bool TextListController::ChangeColumn(int column, int captionIndex, int labelIndex)
{
    QTreeWidgetItem* row = FirstSelectedRow(m_list);
    if (!row)
        return false;
    const std::optional<QString> answer =
        m_context.prompter.text(m_context.parent, "Qt: " + Text(captionIndex),
                                Text(labelIndex) + " (" + row->text(0) + ")", row->text(column));
    if (!answer || answer->isEmpty())
        return false;
    row->setText(column, *answer);
    return true;
}

void TextListController::ChangeName()
{
    if (ChangeColumn(NameColumn, Txt::ChangeNameCaption, Txt::ChangeNameLabel))
        m_context.modified();
}

void TextListController::ChangeDescription()
{
    if (ChangeColumn(DescriptionColumn, Txt::ChangeDescriptionCaption, Txt::ChangeDescriptionLabel))
        m_context.modified();
}

void TextListController::ClearList()
{
    m_list->clear();
    m_context.modified();
}

void TextListController::DoubleClicked(QTreeWidgetItem* item, int column)
{
    if (!item)
        return;
    m_list->setCurrentItem(item);
    if (column == NameColumn)
        ChangeName();
    else if (column == DescriptionColumn)
        ChangeDescription();
}

int TextListController::NameId() const
{
    return ShipFieldInt(m_shipLine(), ShipLineField::NameId);
}

bool TextListController::AddImported(const QList<ShipText>& texts)
{
    for (const ShipText& text : texts)
        AddRow(text.language, text.name, text.description);
    return !texts.isEmpty();
}

void TextListController::ImportFiles()
{
    const QStringList files = m_context.prompter.openFiles(
        m_context.parent, Text(Txt::LanguageFileCaption), m_context.settings.TextDir,
        Text(Txt::LanguageFileFilter) + " (*.pck *.xml *.cat)");
    bool added = false;
    for (const QString& file : files) {
        // A catalog brings every language it holds.
        if (QFileInfo(file).suffix().compare(QLatin1String("cat"), Qt::CaseInsensitive) == 0) {
            added |= AddImported(ReadShipTextsFromCatalog(file, NameId()));
        } else if (const std::optional<ShipText> text = ReadShipText(file, NameId())) {
            added |= AddImported({*text});
        }
    }
    if (added)
        m_context.modified();
}

void TextListController::ImportDirectory()
{
    QString directory =
        m_context.prompter.directory(m_context.parent, Text(Txt::TextDirCaption), m_context.settings.TextDir);
    if (directory.isEmpty())
        return;
    directory.replace('\\', '/');
    const QStringList pages = TextPagesIn(directory);
    if (pages.isEmpty())
        return;
    const std::optional<QString> page = m_context.prompter.item(
        m_context.parent, "Qt: " + Text(Txt::TextPageCaption), Text(Txt::TextPageLabel), pages, 0, false);
    if (!page || page->isEmpty())
        return;
    bool added = false;
    for (const QString& file : PageFilesIn(directory, *page))
        if (const std::optional<ShipText> text = ReadShipText(file, NameId()))
            added |= AddImported({*text});
    if (added)
        m_context.modified();
}

std::unique_ptr<QMenu> TextListController::BuildMenu(QTreeWidgetItem* item)
{
    auto menu = std::make_unique<QMenu>();
    // Importing looks the ship's texts up by its line, so it needs one.
    if (!m_shipLine().isEmpty()) {
        AddMenuEntry(*menu, Text(Txt::MenuImportText), "/Icons/import.png", [this] { ImportFiles(); });
        AddMenuEntry(*menu, Text(Txt::MenuImportTextDir), "/Icons/importdir.png",
                     [this] { ImportDirectory(); });
        menu->addSeparator();
    }
    AddMenuEntry(*menu, Text(Txt::MenuAddLanguage), "/Icons/add.png", [this] { AddLanguage(); });
    if (item) {
        AddMenuEntry(*menu, Text(Txt::MenuRemoveLanguage), "/Icons/remove.png", [this] { RemoveLanguage(); });
        menu->addSeparator();
        AddMenuEntry(*menu, Text(Txt::MenuChangeName), "/Icons/edit.png", [this] { ChangeName(); });
        AddMenuEntry(*menu, Text(Txt::MenuChangeDescription), "/Icons/edit.png",
                     [this] { ChangeDescription(); });
    }
    menu->addSeparator();
    AddMenuEntry(*menu, Text(Txt::MenuClearList), "/Icons/trash.png", [this] { ClearList(); });
    return menu;
}

void TextListController::ShowMenu(QTreeWidgetItem* item, const QPoint& globalPos)
{
    BuildMenu(item)->exec(globalPos);
}
