#include "app/ScriptListController.h"

#include "app/WindowTexts.h"
#include "core/AppSettings.h"
#include "forms/Prompter.h"
#include "forms/WListView.h"

#include <QDateTime>
#include <QFileInfo>
#include <QMenu>

namespace {

const char* const ScriptIcon = "/Icons/script.png";
constexpr int TimeColumn = 2;

} // namespace

QString FormatSize(qint64 size, const QStringList& uiText)
{
    double value = static_cast<double>(size);
    int unit = 0;
    while (value >= 1000 && unit < 3) {
        value *= 0.0009765625;
        ++unit;
    }
    const QString number = unit == 0 ? QString::asprintf("%.0f", value) : QString::asprintf("%.2f", value);
    return "    " + number + uiText[Txt::SizeBytes + unit];
}

ScriptListController::ScriptListController(WListView* list, WindowContext context)
    : m_list(list), m_context(std::move(context))
{
    connect(m_list, &WListView::DroppedFile, this, &ScriptListController::Dropped);
    connect(m_list, &WListView::RightButtonClicked, this,
            [this](QTreeWidgetItem* item, const QPoint& pos, int) { ShowMenu(item, pos); });
}

void ScriptListController::AddRow(const QString& path, qint64 size, qint64 time)
{
    auto* row =
        new QTreeWidgetItem(m_list, {path, FormatSize(size, m_context.uiText), QString::number(time)});
    row->setIcon(0, ProgramIcon(ScriptIcon));
}

// A file that is not there shows size and time 0.
void ScriptListController::AddFileRow(const QString& path)
{
    const QFileInfo info(path);
    const bool exists = info.exists();
    AddRow(path, exists ? info.size() : 0, exists ? info.lastModified().toSecsSinceEpoch() : 0);
}

bool ScriptListController::HasRowNamed(const QString& bareName) const
{
    const QStringList paths = ColumnTexts(m_list, 0);
    return std::any_of(paths.begin(), paths.end(),
                       [&](const QString& path) { return BareName(path) == bareName; });
}

void ScriptListController::Show(const QList<FileEntry>& scripts)
{
    for (const FileEntry& script : scripts)
        AddRow(PackageToken + "Scripts/" + script.LocalPath, script.Size, script.Time);
    KeepSorted(m_list);
}

QList<FileEntry> ScriptListController::Rows() const
{
    QList<FileEntry> scripts;
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = m_list->topLevelItem(i);
        FileEntry script;
        script.LocalPath = row->text(0);
        script.Time = row->text(TimeColumn).toUInt();
        scripts.append(script);
    }
    return scripts;
}

bool ScriptListController::Matches(const QList<FileEntry>& saved) const
{
    return PathsMatchSaved(ColumnTexts(m_list, 0), saved);
}

void ScriptListController::Clear()
{
    m_list->clear();
}

void ScriptListController::Dropped(const QString& text)
{
    for (const QString& path : WithExtensions(DroppedLines(text), {"xml", "pck"}))
        if (!HasRowNamed(BareName(path)))
            AddFileRow(path);
    KeepSorted(m_list);
}

void ScriptListController::Add()
{
    const QStringList& t = m_context.uiText;
    const QStringList files =
        m_context.prompter.openFiles(m_context.parent, t[Txt::ScriptCaption], m_context.settings.ScriptDir,
                                     t[Txt::ScriptFilter] + " (*.xml *.pck)");
    if (files.isEmpty())
        return;
    for (const QString& path : ExistingFiles(files))
        AddFileRow(path);
    KeepSorted(m_list);
    m_context.modified();
}

void ScriptListController::Remove()
{
    if (RemoveSelectedRows(m_list))
        m_context.modified();
}

void ScriptListController::ClearList()
{
    m_list->clear();
    m_context.modified();
}

std::unique_ptr<QMenu> ScriptListController::BuildMenu(QTreeWidgetItem* item)
{
    const QStringList& t = m_context.uiText;
    auto menu = std::make_unique<QMenu>();
    AddMenuEntry(*menu, t[Txt::MenuAdd], "/Icons/add.png", [this] { Add(); });
    if (item)
        AddMenuEntry(*menu, t[Txt::MenuRemove], "/Icons/remove.png", [this] { Remove(); });
    menu->addSeparator();
    AddMenuEntry(*menu, t[Txt::MenuClearList], "/Icons/trash.png", [this] { ClearList(); });
    return menu;
}

void ScriptListController::ShowMenu(QTreeWidgetItem* item, const QPoint& globalPos)
{
    BuildMenu(item)->exec(globalPos);
}
