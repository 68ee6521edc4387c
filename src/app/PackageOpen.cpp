// Opening a ship package: OpenPackage unpacks it into WorkDir (ShipInstall
// below the program directory) and ShowPackage fills the form from the
// record. Fields that name a file of the package start with "<PACKAGE>/".
#include "app/DCreateShip.h"

#include "app/core/ProgramDir.h"
#include "app/core/Services.h"
#include "forms/WListView.h"
#include "gamedata/ShipLine.h"
#include "package/PackageReader.h"

#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QStatusBar>

namespace {

const QString PackageToken = QStringLiteral("<PACKAGE>/");

QIcon ProgramIcon(const QString& relative)
{
    return QIcon(ProgramPath(relative));
}

// A file row of the model or other-files list: the package path and its directory.
void AddFileRow(QTreeWidget* list, const FileEntry& entry, const QString& icon)
{
    const QString name = QString(entry.LocalPath).replace('\\', '/');
    auto* row = new QTreeWidgetItem(list, {PackageToken + name, QFileInfo(name).path()});
    row->setIcon(0, ProgramIcon(icon));
    row->setIcon(1, ProgramIcon("/Icons/savedir.png"));
}

} // namespace

bool DCreateShip::OpenPackage(const QString& path)
{
    auto record = std::make_unique<ShipPackage>();
    QFile file(path);
    bool opened = false;
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        prompter().critical(this, UiText[63], UiText[64] + " " + path, {UiText[60]});
    } else {
        const PackageReadResult read = ReadPackage(file, ProgramDir(), *record, "ShipInstall/Scripts", true);
        if (read.check == PackageCheck::NewerFormat)
            prompter().critical(this, UiTextExtra[1], UiTextExtra[2], {UiTextExtra[0]});
        else if (read.failure == ReadFailure::UnsafeName)
            prompter().critical(this, UiText[63], FormatMessage(UiTextExtra[3], path, read.entry),
                                {UiText[60]});
        else if (read.failure != ReadFailure::None && read.failure != ReadFailure::NotAPackage)
            prompter().critical(this, UiText[63], UiText[64] + " " + path, {UiText[60]});
        if (read.ok) {
            ShowPackage(*record);
            CurrentFile = path;
            SavedPackage = std::move(record);
            opened = true;
        }
    }

    const QString line = TextRaw->toPlainText();
    LineShipScene->setText(ShipField(line, 16));
    LineCockpitScene->setText(ShipField(line, 17));
    UpdateCaption();
    QMainWindow::statusBar()->clearMessage();
    SetBusy(true);
    return opened;
}

void DCreateShip::ShowPackage(const ShipPackage& record)
{
    const std::array<QCheckBox*, ShipyardCount> yards = {CheckArgon,  CheckBoron,  CheckParanid, CheckSplit,
                                                         CheckTeladi, CheckPirate, CheckFriend,  CheckXenon};
    for (int i = 0; i < ShipyardCount; ++i)
        yards[i]->setChecked(record.Shipyards[i]);
    CheckLangText->setChecked(record.LanguageText);
    CheckExistingShip->setChecked(record.ExistingShip);
    LineName->setText(record.Name);
    LineAuthor->setText(record.Author);
    LineVersion->setText(record.Version);
    LineID->setText(record.ID);
    LineWeb->setText(record.Web);
    LineMirror1->setText(record.Mirror1);
    LineMirror2->setText(record.Mirror2);
    TextRaw->setPlainText(record.Data);
    TextComment->setPlainText(CommentFromRecord(record.Comment));

    if (record.OriginalDesc != 0) {
        CheckExisting->setChecked(true);
        SpinOrgDesc->setValue(record.OriginalDesc);
    }
    SpinOrgDesc->setEnabled(record.OriginalDesc != 0);
    ListText->setEnabled(record.OriginalDesc == 0);

    if (!record.ScreenShot.isEmpty())
        LineScreen->setText(PackageToken + "ShipPics/" + record.ScreenShot);

    for (const TextEntry& text : record.Texts) {
        auto* row =
            new QTreeWidgetItem(ListText, {QString::number(text.Language), text.Title, text.Description});
        row->setIcon(0, ProgramIcon("/Icons/text.png"));
    }

    if (record.SceneFile)
        LineSceneFile->setText(PackageToken + record.SceneFile->LocalPath);
    if (record.CockpitFile)
        LineSceneFileCp->setText(PackageToken + record.CockpitFile->LocalPath);

    for (const FileEntry& model : record.Models)
        AddFileRow(ModelList, model, "/Icons/model.png");
    for (const FileEntry& file : record.Files)
        AddFileRow(OtherList, file, "/Icons/other.png");
    for (const FileEntry& script : record.Scripts) {
        auto* row = new QTreeWidgetItem(ScriptList, {PackageToken + "Scripts/" + script.LocalPath,
                                                     FormatSize(script.Size), QString::number(script.Time)});
        row->setIcon(0, ProgramIcon("/Icons/script.png"));
    }

    for (const DummyEntry& dummy : record.Dummies)
        new QTreeWidgetItem(ListDummy, {dummy.Section, dummy.Data});

    for (const ComponentEntry& component : record.Components) {
        QTreeWidgetItem* top = nullptr;
        for (int i = 0; !top && i < ListComp->topLevelItemCount(); ++i) {
            QTreeWidgetItem* candidate = ListComp->topLevelItem(i);
            if (candidate->text(0) == component.Section && candidate->text(1) == component.Id)
                top = candidate;
        }
        if (!top)
            top = new QTreeWidgetItem(ListComp, {component.Section, component.Id});
        new QTreeWidgetItem(top, {QString(), QString(), component.Data});
    }

    for (const QString& cockpit : record.Cockpits) {
        auto* row =
            new QTreeWidgetItem(ListCockpit, {ShipLineId(cockpit), QStringLiteral("<PACKAGE>"), cockpit});
        row->setIcon(0, ProgramIcon("/Icons/cockpit.png"));
    }
}
