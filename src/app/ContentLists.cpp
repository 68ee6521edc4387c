// The package content lists of the main window: models, other files,
// scripts and language texts, the two scene file fields and the picture.
//
// The rows are the document. Operations that change a list through a dialog
// or a menu refresh the caption through Slot_Modified; drops do not, so the
// caption shows a drop only at the next change that reaches Slot_Modified.
#include "app/DCreateShip.h"

#include "app/core/ProgramDir.h"
#include "forms/LanguageText.h"
#include "forms/WListView.h"

#include <QDateTime>
#include <QFileInfo>
#include <QHeaderView>
#include <QIcon>

#include <initializer_list>
#include <optional>

namespace {

const char* const ModelIcon = "/Icons/model.png";
const char* const OtherIcon = "/Icons/other.png";
const char* const TargetDirIcon = "/Icons/savedir.png";
const char* const ScriptIcon = "/Icons/script.png";
const char* const TextIcon = "/Icons/text.png";

const QString ModelStartDir = QStringLiteral("objects/");

// The icons lie beside the program and are read at each use.
QIcon ProgramIcon(const char* relative)
{
    return QIcon(ProgramPath(QString::fromLatin1(relative)));
}

QString ToSlashes(QString path)
{
    return path.replace('\\', '/');
}

// The file name without its directory; either kind of slash separates.
QString BareName(const QString& path)
{
    const qsizetype cut = std::max(path.lastIndexOf('/'), path.lastIndexOf('\\'));
    return path.mid(cut + 1);
}

// The lower-cased text behind the last dot of the bare name; empty without one.
QString Extension(const QString& path)
{
    const QString name = BareName(path);
    const qsizetype dot = name.lastIndexOf('.');
    return dot < 0 ? QString() : name.mid(dot + 1).toLower();
}

// The directory part of a path: everything before the last slash.
QString DirectoryPart(const QString& path)
{
    const qsizetype cut = path.lastIndexOf('/');
    return cut < 0 ? QString() : path.left(cut);
}

// A drop's text as lines: carriage returns removed, empty lines dropped.
QStringList DroppedLines(QString text)
{
    text.remove('\r');
    return text.split('\n', Qt::SkipEmptyParts);
}

QStringList WithExtensions(const QStringList& paths, std::initializer_list<const char*> extensions)
{
    QStringList kept;
    for (const QString& path : paths) {
        const QString extension = Extension(path);
        for (const char* wanted : extensions)
            if (extension == QLatin1String(wanted)) {
                kept.append(path);
                break;
            }
    }
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

// Keeps the shown order, by which the package is written, up to date at once
// rather than at the toolkit's next pass through the event loop.
void KeepSorted(QTreeWidget* list)
{
    if (list->isSortingEnabled())
        list->sortItems(list->sortColumn(), list->header()->sortIndicatorOrder());
}

// The selected rows in their shown order.
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

void AddFileRows(QTreeWidget* list, const QStringList& paths, const QString& targetDir, const char* icon)
{
    for (const QString& path : paths) {
        auto* row = new QTreeWidgetItem(list, {path, targetDir}); // owned by the list
        row->setIcon(0, ProgramIcon(icon));
        row->setIcon(1, ProgramIcon(TargetDirIcon));
    }
    KeepSorted(list);
}

// A script row: path, size for the user and the file time in seconds since
// 1970. A file that is not there shows size and time 0.
void AddScriptRow(const DCreateShip& window, QTreeWidget* list, const QString& path)
{
    const QFileInfo info(path);
    const bool exists = info.exists();
    const qint64 size = exists ? info.size() : 0;
    const qint64 time = exists ? info.lastModified().toSecsSinceEpoch() : 0;
    auto* row = new QTreeWidgetItem(list, {path, window.FormatSize(size), QString::number(time)});
    row->setIcon(0, ProgramIcon(ScriptIcon));
}

bool HasRowNamed(const QTreeWidget* list, const QString& bareName)
{
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        if (BareName(list->topLevelItem(i)->text(0)) == bareName)
            return true;
    return false;
}

// The target directory box; no value when cancelled. Backslashes become slashes.
std::optional<QString> AskTargetDir(DCreateShip& window, const QString& label, const QString& start)
{
    const std::optional<QString> answer =
        window.prompter().text(&window, "Qt: " + window.uiText()[93], label, start);
    if (!answer)
        return std::nullopt;
    return ToSlashes(*answer);
}

// Deletes every selected row; true when there was one.
bool RemoveSelectedRows(QTreeWidget* list)
{
    const QList<QTreeWidgetItem*> rows = SelectedRows(list);
    qDeleteAll(rows);
    return !rows.isEmpty();
}

QString ModelFilter(const QStringList& t)
{
    return t[95] + " (*.pbd; *.bod; *.bob)";
}

QString BoldLabel(const QString& text)
{
    return "<b>" + text + ":</b>";
}

} // namespace

void DCreateShip::ConnectContentLists()
{
    connect(ModelList, &WListView::DroppedFile, this, &DCreateShip::Slot_Dropped);
    connect(OtherList, &WListView::DroppedFile, this, &DCreateShip::Slot_OtherDropped);
    connect(ScriptList, &WListView::DroppedFile, this, &DCreateShip::Slot_ScriptDropped);
    connect(ModelList, &WListView::RightButtonClicked, this, &DCreateShip::Slot_ModelMenu);
    connect(OtherList, &WListView::RightButtonClicked, this, &DCreateShip::Slot_OtherMenu);
    connect(ScriptList, &WListView::RightButtonClicked, this, &DCreateShip::Slot_ScriptMenu);

    // ListText is a plain list view of the form: its right click comes as a
    // request in viewport coordinates.
    ListText->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(ListText, &QWidget::customContextMenuRequested, this, [this](const QPoint& pos) {
        QTreeWidgetItem* item = ListText->itemAt(pos);
        Slot_TextMenu(item, ListText->viewport()->mapToGlobal(pos), item ? ListText->columnAt(pos.x()) : -1);
    });
    connect(ListText, &QTreeWidget::itemDoubleClicked, this, &DCreateShip::Slot_DCTextMenu);
}

// --- Drops

void DCreateShip::Slot_Dropped(const QString& text)
{
    const QStringList models = WithExtensions(DroppedLines(text), {"pbd", "bod", "bob"});
    if (models.isEmpty())
        return;
    const std::optional<QString> dir = AskTargetDir(*this, UiText[94], ModelStartDir);
    if (!dir)
        return;
    AddFileRows(ModelList, models, *dir, ModelIcon);
}

void DCreateShip::Slot_OtherDropped(const QString& text)
{
    const QStringList files = DroppedLines(text);
    if (files.isEmpty())
        return;
    const std::optional<QString> dir = AskTargetDir(*this, UiText[94], QString());
    if (!dir)
        return;
    AddFileRows(OtherList, files, *dir, OtherIcon);
}

void DCreateShip::Slot_ScriptDropped(const QString& text)
{
    // A script is taken once by its bare name: the game knows scripts by name only.
    for (const QString& path : WithExtensions(DroppedLines(text), {"xml", "pck"}))
        if (!HasRowNamed(ScriptList, BareName(path)))
            AddScriptRow(*this, ScriptList, path);
    KeepSorted(ScriptList);
}

// --- Model list

void DCreateShip::Slot_AddModel()
{
    const QStringList files =
        prompter().openFiles(this, UiText[96], ModelDir, UiText[95] + " (*.pbd *.bod *.bob *.pbb)");
    if (files.isEmpty())
        return;
    const std::optional<QString> dir = AskTargetDir(*this, UiText[94], ModelStartDir);
    if (!dir)
        return;
    AddFileRows(ModelList, ExistingFiles(files), *dir, ModelIcon);
    Slot_Modified();
}

void DCreateShip::Slot_ChangeModel()
{
    QTreeWidgetItem* row = FirstSelectedRow(ModelList);
    if (!row)
        return;
    const QString answer = prompter().openFile(this, UiText[96], row->text(0), ModelFilter(UiText));
    if (QFileInfo(answer).isFile()) {
        row->setText(0, answer);
        KeepSorted(ModelList);
    }
    Slot_Modified();
}

void DCreateShip::Slot_ChangeDir()
{
    const QList<QTreeWidgetItem*> rows = SelectedRows(ModelList);
    if (rows.isEmpty())
        return;
    const std::optional<QString> dir = AskTargetDir(*this, UiText[94], rows.first()->text(1));
    if (!dir)
        return;
    for (QTreeWidgetItem* row : rows)
        row->setText(1, *dir);
    Slot_Modified();
}

void DCreateShip::Slot_RemoveModel()
{
    if (RemoveSelectedRows(ModelList))
        Slot_Modified();
}

void DCreateShip::ClearModels()
{
    ModelList->clear();
    Slot_Modified();
}

namespace {

// Exchanges the first selected model row with a scene file field. An empty
// field takes the model, and the row goes.
void SwitchWithScene(QTreeWidget* models, QLineEdit* scene)
{
    QTreeWidgetItem* row = FirstSelectedRow(models);
    if (!row)
        return;
    const QString previous = scene->text();
    scene->setText(row->text(0));
    if (previous.isEmpty())
        delete row;
    else
        row->setText(0, previous);
    KeepSorted(models);
}

} // namespace

void DCreateShip::Slot_SwitchScene()
{
    SwitchWithScene(ModelList, LineSceneFile);
    Slot_Modified();
}

void DCreateShip::Slot_SwitchCockpit()
{
    SwitchWithScene(ModelList, LineSceneFileCp);
    Slot_Modified();
}

// --- Other-files list

void DCreateShip::Slot_AddFile()
{
    const QStringList files = prompter().openFiles(this, UiText[233], ModelDir, UiText[232] + " (*.*)");
    if (files.isEmpty())
        return;
    const std::optional<QString> dir = AskTargetDir(*this, UiText[234], QString());
    if (!dir)
        return;
    AddFileRows(OtherList, ExistingFiles(files), *dir, OtherIcon);
    Slot_Modified();
}

void DCreateShip::Slot_ChangeOther()
{
    QTreeWidgetItem* row = FirstSelectedRow(OtherList);
    if (!row)
        return;
    const QString answer = prompter().openFile(this, UiText[233], ModelDir, UiText[232] + " (*.*)");
    if (QFileInfo(answer).isFile()) {
        row->setText(0, answer);
        KeepSorted(OtherList);
    }
    Slot_Modified();
}

void DCreateShip::Slot_ChangeOtherDir()
{
    const QList<QTreeWidgetItem*> rows = SelectedRows(OtherList);
    if (rows.isEmpty())
        return;
    const std::optional<QString> dir = AskTargetDir(*this, UiText[234], rows.first()->text(1));
    if (!dir)
        return;
    for (QTreeWidgetItem* row : rows)
        row->setText(1, *dir);
    Slot_Modified();
}

void DCreateShip::Slot_RemoveFile()
{
    if (RemoveSelectedRows(OtherList))
        Slot_Modified();
}

void DCreateShip::ClearOther()
{
    OtherList->clear();
    Slot_Modified();
}

// --- Script list

void DCreateShip::Slot_AddScript()
{
    const QStringList files =
        prompter().openFiles(this, UiText[184], ScriptDir, UiText[183] + " (*.xml *.pck)");
    if (files.isEmpty())
        return;
    // Unlike a drop, the menu takes a script of a name the list holds already.
    for (const QString& path : ExistingFiles(files))
        AddScriptRow(*this, ScriptList, path);
    KeepSorted(ScriptList);
    Slot_Modified();
}

void DCreateShip::Slot_RemoveScript()
{
    if (RemoveSelectedRows(ScriptList))
        Slot_Modified();
}

void DCreateShip::ClearScripts()
{
    ScriptList->clear();
    Slot_Modified();
}

QString DCreateShip::FormatSize(qint64 size) const
{
    // The unit changes at 1000, not 1024, so that no value shows with four
    // digits before the point below the largest unit.
    double value = static_cast<double>(size);
    int unit = 0;
    while (value >= 1000 && unit < 3) {
        value *= 0.0009765625;
        ++unit;
    }
    const QString number = unit == 0 ? QString::asprintf("%.0f", value) : QString::asprintf("%.2f", value);
    return "    " + number + UiText[185 + unit];
}

// --- Language texts

void DCreateShip::Slot_AddLanguage()
{
    LanguageText dialog(this, "language text", true);
    dialog.setWindowTitle("Qt: " + UiText[85]);
    dialog.LabelNumber->setText(BoldLabel(UiText[86]));
    dialog.LabelName->setText(BoldLabel(UiText[87]));
    dialog.LabelDesc->setText(BoldLabel(UiText[88]));
    dialog.ButOk->setText(UiText[89]);
    dialog.ButCancel->setText(UiText[90]);
    dialog.SpinLang->setValue(44);
    if (dialog.exec() != QDialog::Accepted)
        return;
    // A language the list holds already is taken again: each row is one text.
    auto* row = new QTreeWidgetItem(
        ListText, {dialog.SpinLang->text(), dialog.LineName->text(), dialog.TextDesc->toPlainText()});
    row->setIcon(0, ProgramIcon(TextIcon));
    KeepSorted(ListText);
    Slot_Modified();
}

void DCreateShip::Slot_RemoveLanguage()
{
    if (RemoveSelectedRows(ListText))
        Slot_Modified();
}

namespace {

// Asks for a new text of one column of the selected language row. An empty
// answer, like a cancel, keeps the old text.
bool ChangeTextColumn(DCreateShip& window, int column, int captionIndex, int labelIndex)
{
    QTreeWidgetItem* row = FirstSelectedRow(window.ListText);
    if (!row)
        return false;
    const QStringList& t = window.uiText();
    const std::optional<QString> answer = window.prompter().text(
        &window, "Qt: " + t[captionIndex], t[labelIndex] + " (" + row->text(0) + ")", row->text(column));
    if (!answer || answer->isEmpty())
        return false;
    row->setText(column, *answer);
    return true;
}

} // namespace

void DCreateShip::Slot_ChangeName()
{
    if (ChangeTextColumn(*this, 1, 51, 52))
        Slot_Modified();
}

void DCreateShip::Slot_ChangeDesc()
{
    if (ChangeTextColumn(*this, 2, 53, 54))
        Slot_Modified();
}

void DCreateShip::ClearText()
{
    ListText->clear();
    Slot_Modified();
}

void DCreateShip::Slot_DCTextMenu(QTreeWidgetItem* item, int column)
{
    if (!item)
        return;
    ListText->setCurrentItem(item);
    if (column == 1)
        Slot_ChangeName();
    else if (column == 2)
        Slot_ChangeDesc();
}

// --- Scene files and picture

void DCreateShip::Slot_SelectSceneFile()
{
    const QString answer = prompter().openFile(this, UiText[96], ModelDir, ModelFilter(UiText));
    if (QFileInfo(answer).isFile())
        LineSceneFile->setText(answer);
}

void DCreateShip::Slot_SelectSceneFileCp()
{
    const QString answer = prompter().openFile(this, UiText[96], ModelDir, ModelFilter(UiText));
    if (QFileInfo(answer).isFile())
        LineSceneFileCp->setText(answer);
}

void DCreateShip::Slot_ClearShipScene()
{
    LineSceneFile->clear();
}

void DCreateShip::Slot_ClearCockpitScene()
{
    LineSceneFileCp->clear();
}

void DCreateShip::Slot_SelectPic()
{
    const QString answer =
        prompter().openFile(this, UiText[205], DirectoryPart(LineScreen->text()), UiText[204] + " (*.*)");
    if (!answer.isEmpty())
        LineScreen->setText(answer);
}
