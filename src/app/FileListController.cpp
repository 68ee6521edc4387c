#include "app/FileListController.h"

#include "app/WindowTexts.h"
#include "core/AppSettings.h"
#include "forms/Prompter.h"
#include "forms/WListView.h"

#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>

namespace {

const char* const TargetDirIcon = "/Icons/savedir.png";

} // namespace

FileListKind FileListKind::Models()
{
    return {"/Icons/model.png",
            {"pbd", "bod", "bob"},
            "objects/",
            Txt::ModelTargetDirLabel,
            Txt::ModelTargetDirLabel,
            Txt::ModelCaption,
            " (*.pbd *.bod *.bob *.pbb)",
            Txt::ModelFilter,
            " (*.pbd; *.bod; *.bob)",
            true,
            Txt::MenuAdd,
            Txt::MenuRemove,
            true};
}

FileListKind FileListKind::OtherFiles()
{
    return {"/Icons/other.png",
            {},
            QString(),
            Txt::FileTargetDirLabel,
            Txt::FileTargetDirLabel,
            Txt::FileCaption,
            " (*.*)",
            Txt::AnyFileFilter,
            " (*.*)",
            false,
            Txt::MenuAddFile,
            Txt::MenuRemoveFile,
            false};
}

FileListController::FileListController(WListView* list, FileListKind kind, WindowContext context,
                                       QLineEdit* shipScene, QLineEdit* cockpitScene)
    : m_list(list), m_kind(std::move(kind)), m_context(std::move(context)), m_shipScene(shipScene),
      m_cockpitScene(cockpitScene)
{
    connect(m_list, &WListView::DroppedFile, this, &FileListController::Dropped);
    connect(m_list, &WListView::RightButtonClicked, this,
            [this](QTreeWidgetItem* item, const QPoint& pos, int) { ShowMenu(item, pos); });
}

void FileListController::AddRows(const QStringList& paths, const QString& targetDir)
{
    for (const QString& path : paths) {
        auto* row = new QTreeWidgetItem(m_list, {path, targetDir}); // owned by the list
        row->setIcon(0, ProgramIcon(m_kind.icon));
        row->setIcon(1, ProgramIcon(TargetDirIcon));
    }
    KeepSorted(m_list);
}

void FileListController::Show(const QList<FileEntry>& entries)
{
    for (const FileEntry& entry : entries) {
        const QString name = QString(entry.LocalPath).replace('\\', '/');
        AddRows({PackageToken + name}, QFileInfo(name).path());
    }
}

QList<FileRow> FileListController::Rows() const
{
    QList<FileRow> rows;
    for (int i = 0; i < m_list->topLevelItemCount(); ++i)
        rows.append({m_list->topLevelItem(i)->text(0), m_list->topLevelItem(i)->text(1)});
    return rows;
}

bool FileListController::Matches(const QList<FileEntry>& saved) const
{
    return PathsMatchSaved(ColumnTexts(m_list, 0), saved);
}

void FileListController::Clear()
{
    m_list->clear();
}

void FileListController::Dropped(const QString& text)
{
    const QStringList files = WithExtensions(DroppedLines(text), m_kind.dropExtensions);
    if (files.isEmpty())
        return;
    // A drop asks with the models' label on both lists.
    const std::optional<QString> dir = AskTargetDir(m_context, Txt::ModelTargetDirLabel, m_kind.targetStart);
    if (dir)
        AddRows(files, *dir);
}

void FileListController::Add()
{
    const QStringList files =
        m_context.prompter.openFiles(m_context.parent, Text(m_kind.addCaption), m_context.settings.ModelDir,
                                     Text(m_kind.filterName) + m_kind.addFilter);
    if (files.isEmpty())
        return;
    const std::optional<QString> dir = AskTargetDir(m_context, m_kind.addTargetLabel, m_kind.targetStart);
    if (!dir)
        return;
    AddRows(ExistingFiles(files), *dir);
    m_context.modified();
}

void FileListController::Change()
{
    QTreeWidgetItem* row = FirstSelectedRow(m_list);
    if (!row)
        return;
    const QString start = m_kind.changeStartsAtRow ? row->text(0) : m_context.settings.ModelDir;
    const QString answer = m_context.prompter.openFile(m_context.parent, Text(m_kind.addCaption), start,
                                                       Text(m_kind.filterName) + m_kind.changeFilter);
    if (QFileInfo(answer).isFile()) {
        row->setText(0, answer);
        KeepSorted(m_list);
    }
    m_context.modified();
}

void FileListController::ChangeDir()
{
    const QList<QTreeWidgetItem*> rows = SelectedRows(m_list);
    if (rows.isEmpty())
        return;
    const std::optional<QString> dir =
        AskTargetDir(m_context, m_kind.changeTargetLabel, rows.first()->text(1));
    if (!dir)
        return;
    for (QTreeWidgetItem* row : rows)
        row->setText(1, *dir);
    m_context.modified();
}

void FileListController::Remove()
{
    if (RemoveSelectedRows(m_list))
        m_context.modified();
}

void FileListController::ClearList()
{
    m_list->clear();
    m_context.modified();
}

void FileListController::SwitchWithShipScene()
{
    SwitchWithScene(m_shipScene);
}

void FileListController::SwitchWithCockpitScene()
{
    SwitchWithScene(m_cockpitScene);
}

// Exchanges the first selected row with a scene file field. An empty field
// takes the model, and the row goes.
void FileListController::SwitchWithScene(QLineEdit* scene)
{
    QTreeWidgetItem* row = FirstSelectedRow(m_list);
    if (!row || !scene)
        return;
    const QString previous = scene->text();
    scene->setText(row->text(0));
    if (previous.isEmpty())
        delete row;
    else
        row->setText(0, previous);
    KeepSorted(m_list);
    m_context.modified();
}

std::unique_ptr<QMenu> FileListController::BuildMenu(QTreeWidgetItem* item)
{
    const bool withRow = item != nullptr;
    const bool one = withRow && m_list->selectedItems().size() == 1;
    auto menu = std::make_unique<QMenu>();
    AddMenuEntry(*menu, Text(m_kind.menuAdd), "/Icons/add.png", [this] { Add(); });
    if (withRow) {
        AddMenuEntry(*menu, Text(m_kind.menuRemove), "/Icons/remove.png", [this] { Remove(); });
        menu->addSeparator();
        if (one)
            AddMenuEntry(*menu, Text(Txt::MenuChangeFile), "/Icons/edit.png", [this] { Change(); });
        AddMenuEntry(*menu, Text(Txt::MenuChangeDir), "/Icons/edit.png", [this] { ChangeDir(); });
    }
    if (one && m_kind.offersSceneSwitch) {
        menu->addSeparator();
        AddMenuEntry(*menu, Text(Txt::MenuSwitchScene), "/Icons/switch.png",
                     [this] { SwitchWithShipScene(); });
        AddMenuEntry(*menu, Text(Txt::MenuSwitchCockpit), "/Icons/switch.png",
                     [this] { SwitchWithCockpitScene(); });
    }
    menu->addSeparator();
    AddMenuEntry(*menu, Text(Txt::MenuClearList), "/Icons/trash.png", [this] { ClearList(); });
    return menu;
}

void FileListController::ShowMenu(QTreeWidgetItem* item, const QPoint& globalPos)
{
    BuildMenu(item)->exec(globalPos);
}
