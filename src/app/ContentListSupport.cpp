#include "app/ContentListSupport.h"

#include "app/WindowTexts.h"
#include "core/ProgramDir.h"
#include "forms/Prompter.h"

#include <QFileInfo>
#include <QHeaderView>
#include <QMenu>
#include <QTreeWidget>

QIcon ProgramIcon(const char* relative)
{
    return QIcon(ProgramPath(QString::fromLatin1(relative)));
}

QString BareName(const QString& path)
{
    const qsizetype cut = std::max(path.lastIndexOf('/'), path.lastIndexOf('\\'));
    return path.mid(cut + 1);
}

QString FileExtension(const QString& path)
{
    const QString name = BareName(path);
    const qsizetype dot = name.lastIndexOf('.');
    return dot < 0 ? QString() : name.mid(dot + 1).toLower();
}

QString DirectoryPart(const QString& path)
{
    const qsizetype cut = path.lastIndexOf('/');
    return cut < 0 ? QString() : path.left(cut);
}

QStringList DroppedLines(QString text)
{
    text.remove('\r');
    return text.split('\n', Qt::SkipEmptyParts);
}

QStringList WithExtensions(const QStringList& paths, const QStringList& extensions)
{
    if (extensions.isEmpty())
        return paths;
    QStringList kept;
    for (const QString& path : paths)
        if (extensions.contains(FileExtension(path)))
            kept.append(path);
    return kept;
}

QStringList ExistingFiles(const QStringList& paths)
{
    QStringList existing;
    for (const QString& path : paths)
        if (QFileInfo(path).isFile())
            existing.append(path);
    return existing;
}

void KeepSorted(QTreeWidget* list)
{
    if (list->isSortingEnabled())
        list->sortItems(list->sortColumn(), list->header()->sortIndicatorOrder());
}

QList<QTreeWidgetItem*> SelectedRows(const QTreeWidget* list)
{
    QList<QTreeWidgetItem*> rows;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        if (list->topLevelItem(i)->isSelected())
            rows.append(list->topLevelItem(i));
    return rows;
}

QTreeWidgetItem* FirstSelectedRow(const QTreeWidget* list)
{
    const QList<QTreeWidgetItem*> rows = SelectedRows(list);
    return rows.isEmpty() ? nullptr : rows.first();
}

bool RemoveSelectedRows(QTreeWidget* list)
{
    const QList<QTreeWidgetItem*> rows = SelectedRows(list);
    qDeleteAll(rows);
    return !rows.isEmpty();
}

QStringList ColumnTexts(const QTreeWidget* list, int column)
{
    QStringList texts;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        texts.append(list->topLevelItem(i)->text(column));
    return texts;
}

bool PathsMatchSaved(const QStringList& cells, const QList<FileEntry>& saved)
{
    if (cells.size() != saved.size())
        return false;
    for (const QString& cell : cells) {
        if (IsPackagePath(cell))
            continue;
        const QFileInfo info(QString(cell).replace('\\', '/'));
        const QString path = info.path() + "/" + info.fileName();
        const auto isSaved = [&](const FileEntry& entry) { return entry.LocalPath == path; };
        if (std::none_of(saved.begin(), saved.end(), isSaved))
            return false;
    }
    return true;
}

QString BoldLabel(const QString& text)
{
    return "<b>" + text + ":</b>";
}

void AddMenuEntry(QMenu& menu, const QString& text, const char* icon, std::function<void()> action)
{
    QAction* entry = menu.addAction(ProgramIcon(icon), text);
    QObject::connect(entry, &QAction::triggered, &menu, std::move(action));
}

std::optional<QString> AskTargetDir(const WindowContext& context, int labelIndex, const QString& start)
{
    const QStringList& t = context.uiText;
    const std::optional<QString> answer =
        context.prompter.text(context.parent, "Qt: " + t[Txt::TargetDirCaption], t[labelIndex], start);
    if (!answer)
        return std::nullopt;
    return QString(*answer).replace('\\', '/');
}
