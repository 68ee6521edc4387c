// Saving the form as a ship package: BuildPackage reads the form into a
// record, Save hands the record to the package writer and makes it the
// SavedPackage.
#include "app/DCreateShip.h"

#include "app/core/ProgramDir.h"
#include "app/core/Services.h"
#include "app/core/StatusProgressBar.h"
#include "forms/WListView.h"
#include "gamedata/ShipLine.h"
#include "package/PackageWriter.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStatusBar>

#include <climits>

namespace {

const QString PackageToken = QStringLiteral("<PACKAGE>/");
const QString PackageColumn = QStringLiteral("<PACKAGE>");
constexpr int kTurretSlots[] = {31, 33, 35, 37, 39, 41};

// A path cell of the form as a path on disk: the token of the open package
// resolved, line breaks removed.
QString ResolveCell(QString cell)
{
    cell.replace(PackageToken, ProgramPath("/ShipInstall/"));
    cell.remove('\n');
    cell.remove('\r');
    return cell;
}

bool IsReadable(const QString& path)
{
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly);
}

FileEntry EntryForFile(const QString& path, const QString& name)
{
    const QFileInfo info(path);
    FileEntry entry;
    entry.Time = uint32_t(std::max<qint64>(info.lastModified().toSecsSinceEpoch(), 0));
    entry.Size = uint32_t(info.size());
    entry.LocalPath = path;
    entry.Name = name;
    return entry;
}

// Name of a list file in the package: its target directory and its bare
// file name. A name never starts with a slash: it is relative to the game.
QString ListEntryName(const QString& directory, const QString& path)
{
    QString name = directory + "/" + QFileInfo(path).fileName();
    while (name.contains("//"))
        name.replace("//", "/");
    while (name.startsWith('/'))
        name.remove(0, 1);
    return name;
}

// The name without its last extension, with its directory.
QString Stem(const QString& name)
{
    const QFileInfo info(name);
    return info.path() + "/" + info.completeBaseName();
}

QString Suffix(const QString& name)
{
    return QFileInfo(name).suffix().toLower();
}

// Adds a model row to the list, keeping one entry per stem: a .bob replaces
// a .bod of the same stem, and every other repeat is dropped.
void AddModel(QList<FileEntry>& models, const FileEntry& model)
{
    const QString stem = Stem(model.Name);
    for (FileEntry& present : models) {
        if (Stem(present.Name) != stem)
            continue;
        if (Suffix(present.Name) == "bod" && Suffix(model.Name) == "bob")
            present = model;
        return;
    }
    models.append(model);
}

} // namespace

std::unique_ptr<ShipPackage> DCreateShip::BuildPackage()
{
    auto record = std::make_unique<ShipPackage>();

    const std::array<const QCheckBox*, ShipyardCount> yards = {
        CheckArgon, CheckBoron, CheckParanid, CheckSplit, CheckTeladi, CheckPirate, CheckFriend, CheckXenon};
    for (int i = 0; i < ShipyardCount; ++i)
        record->Shipyards[i] = yards[i]->isChecked();
    record->LanguageText = CheckLangText->isChecked();
    record->ExistingShip = CheckExistingShip->isChecked();
    record->ScreenShot = LineScreen->text();
    record->Comment = CommentToRecord(TextComment->toPlainText());
    record->OriginalDesc = CheckExisting->isChecked() ? SpinOrgDesc->value() : 0;

    // The ship line as it travels: the scene fields from their line edits,
    // turret cockpits of the cockpit list by name, the id as its last field.
    const QString raw = TextRaw->toPlainText();
    QStringList fields;
    for (int n = 0; n <= 15; ++n)
        fields.append(ShipField(raw, n));
    fields.append(LineShipScene->text());
    fields.append(LineCockpitScene->text());
    for (int n = 18; n <= 30; ++n)
        fields.append(ShipField(raw, n));

    QStringList cockpitNames;
    QStringList cockpitLines;
    for (int i = 0; i < ListCockpit->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = ListCockpit->topLevelItem(i);
        if (row->text(1) == PackageColumn) {
            cockpitNames.append(row->text(0));
            cockpitLines.append(row->text(2));
        }
    }
    for (int n : kTurretSlots) {
        const int number = ReadInt(ShipField(raw, n));
        const QTreeWidgetItem* match = nullptr;
        for (int i = 0; number != 0 && !match && i < ListCockpit->topLevelItemCount(); ++i) {
            const QTreeWidgetItem* row = ListCockpit->topLevelItem(i);
            if (row->text(1) != PackageColumn && ReadInt(row->text(1)) == number)
                match = row;
        }
        if (match) {
            fields.append(match->text(0));
            if (!cockpitNames.contains(match->text(0))) {
                cockpitNames.append(match->text(0));
                cockpitLines.append(match->text(2));
            }
        } else {
            fields.append(ShipField(raw, n));
        }
        fields.append(ShipField(raw, n + 1));
    }
    QString data = fields.join(';') + ";" + ShipFields(raw, 43, -1);
    data.truncate(data.lastIndexOf(';') + 1);
    data += LineID->text();
    record->Data = data;
    TextRaw->setPlainText(data);
    record->Cockpits = cockpitLines;

    record->Name = LineName->text();
    record->Author = LineAuthor->text();
    record->ID = LineID->text();
    record->Version = LineVersion->text();

    for (int i = 0; i < ListText->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = ListText->topLevelItem(i);
        QString title = row->text(1);
        title.remove(':');
        record->Texts.append(TextEntry{ReadInt(row->text(0)), title, row->text(2)});
    }

    const auto sceneEntry = [](const QLineEdit* scene, const QLineEdit* file) -> std::optional<FileEntry> {
        if (scene->text().isEmpty() || file->text().isEmpty())
            return std::nullopt;
        const QString path = ResolveCell(file->text()).replace("%5c", "/");
        if (!IsReadable(path))
            return std::nullopt;
        QString sceneName = scene->text();
        sceneName.replace('\\', '/');
        const QString directory = QFileInfo(sceneName).path();
        QString name =
            (directory.isEmpty() || directory == ".") ? "objects/cut/" + sceneName : "objects/" + sceneName;
        const QString lower = name.toLower();
        if (!lower.endsWith(".pbd") && !lower.endsWith(".bod") && !lower.endsWith(".bob"))
            name += "." + QFileInfo(path).suffix();
        return EntryForFile(path, name);
    };
    record->SceneFile = sceneEntry(LineShipScene, LineSceneFile);
    record->CockpitFile = sceneEntry(LineCockpitScene, LineSceneFileCp);

    QStringList sceneStems;
    for (const std::optional<FileEntry>& scene : {record->SceneFile, record->CockpitFile})
        if (scene)
            sceneStems.append(Stem(scene->Name));
    for (int i = 0; i < ModelList->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = ModelList->topLevelItem(i);
        const QString path = ResolveCell(row->text(0));
        if (!IsReadable(path))
            continue;
        const FileEntry model = EntryForFile(path, ListEntryName(row->text(1), path));
        if (!sceneStems.contains(Stem(model.Name)))
            AddModel(record->Models, model);
    }
    for (int i = 0; i < OtherList->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = OtherList->topLevelItem(i);
        const QString path = ResolveCell(row->text(0));
        if (!IsReadable(path))
            continue;
        const FileEntry file = EntryForFile(path, ListEntryName(row->text(1), path));
        const bool known = std::any_of(record->Files.begin(), record->Files.end(),
                                       [&](const FileEntry& present) { return present.Name == file.Name; });
        if (!known)
            record->Files.append(file);
    }

    for (int i = 0; i < ListDummy->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = ListDummy->topLevelItem(i);
        record->Dummies.append(DummyEntry{row->text(0), row->text(1)});
    }
    for (int i = 0; i < ListComp->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* top = ListComp->topLevelItem(i);
        for (int c = 0; c < top->childCount(); ++c)
            record->Components.append(ComponentEntry{top->text(0), top->text(1), top->child(c)->text(2)});
    }
    for (int i = 0; i < ScriptList->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = ScriptList->topLevelItem(i);
        FileEntry script;
        script.LocalPath = row->text(0);
        script.Time = row->text(2).toUInt();
        record->Scripts.append(script);
    }

    record->Web = LineWeb->text();
    record->Mirror1 = LineMirror1->text();
    record->Mirror2 = LineMirror2->text();
    record->SaveWeb = SaveWeb;
    return record;
}

bool DCreateShip::Save(const QString& path)
{
    const auto finish = [this] {
        ProgressBar->hide();
        QMainWindow::statusBar()->clearMessage();
        SetBusy(true);
    };
    if (!EditTarget.isEmpty()) {
        // Edit mode installs the ship into its game directory instead of
        // writing a package; that save is not part of the package writer.
        finish();
        return false;
    }

    QDir(ProgramDir()).mkpath("temp");
    QFile stream(ProgramPath("/temp/") + QFileInfo(path).fileName() + ".tMp");
    if (!stream.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        prompter().critical(this, UiText[75], FormatMessage(UiText[76], path), {UiText[60]});
        finish();
        return false;
    }

    const QString savingText = UiText[68] + " " + path + "...";
    ProgressBar->show();
    QMainWindow::statusBar()->showMessage(savingText);
    std::unique_ptr<ShipPackage> record = BuildPackage();

    PackageWriteHooks hooks;
    hooks.prepare = [this](FileEntry& entry, bool compile) { return PrepareFile(entry, compile); };
    hooks.compileModels = X2BC;
    hooks.packageDir = ProgramPath("/ShipInstall/");
    hooks.progress = [this](int64_t done, int64_t total) { ShowProgress(done, total); };
    hooks.adding = [this, savingText](const QString& name) {
        QMainWindow::statusBar()->showMessage(name.isEmpty() ? savingText
                                                             : UiText[360] + ": " + name + "...");
    };
    hooks.compressing = [this, &path] {
        QMainWindow::statusBar()->showMessage(UiText[361] + ": " + path + "...");
    };
    const PackageSaveResult result = SavePackageFile(*record, stream, path, hooks);

    if (result == PackageSaveResult::Saved) {
        CurrentFile = path;
        if (record->SaveWeb && !record->Web.isEmpty())
            WriteUpdateNote(*record, path);
        ProgressBar->hide();
        QMainWindow::statusBar()->clearMessage();
        prompter().information(this, UiText[77], FormatMessage(UiText[78], path), {UiText[60]});
        // The record keeps the paths of the form, so that IsModified can
        // compare rows with it; the writer prepared its own copies.
        SavedPackage = std::move(record);
        TextRaw->setPlainText(SavedPackage->Data);
    }
    UpdateCaption();
    finish();
    // A failed compression shows no box; the status bar keeps saying it. The
    // package that stood at the path is untouched, and the form keeps
    // counting as unsaved.
    if (result != PackageSaveResult::Saved)
        QMainWindow::statusBar()->showMessage(FormatMessage(UiText[76], path));
    return result == PackageSaveResult::Saved;
}

void DCreateShip::ShowProgress(int64_t done, int64_t total)
{
    // The bar counts in int: large totals are scaled down together with the value.
    int64_t scale = 1;
    while (total / scale > INT_MAX / 2)
        scale *= 2;
    const int maximum = int(std::max<int64_t>(total / scale, 1));
    if (ProgressBar->maximum() != maximum || ProgressBar->minimum() != 0)
        ProgressBar->setRange(0, maximum);
    ProgressBar->setValue(int(std::min<int64_t>(done / scale, maximum)));
}
