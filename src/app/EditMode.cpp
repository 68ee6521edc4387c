#include "app/EditMode.h"

#include "app/DCreateShip.h"
#include "app/core/ProgramDir.h"
#include "app/core/Services.h"
#include "deploy/InstalledShipOpen.h"
#include "deploy/InstalledShipSave.h"
#include "gamedata/ShipLine.h"

#include <QDir>
#include <QStatusBar>

bool EditMode::Start(const QString& editTarget)
{
    m_gameDir = GameDirFromEditTarget(editTarget);
    m_key = SplitShipKey(ShipKeyFromEditTarget(editTarget));
    const InstalledShipOpened opened = OpenInstalledShip(m_gameDir, m_key, ProgramPath("/ShipInstall"));
    const QStringList& extra = m_window.uiTextExtra();
    switch (opened.Status) {
    case InstalledShipOpenStatus::NotFound:
        return false;
    case InstalledShipOpenStatus::NotFullyRead:
        Tell(EditModeExtraText::NotOpenedCaption,
             FormatMessage(extra[EditModeExtraText::RegistryUnreadable],
                           QDir(m_gameDir).filePath(InstalledShipsPath), opened.Registry.ProblemText()));
        return false;
    case InstalledShipOpenStatus::Unfinished:
        Tell(EditModeExtraText::NotOpenedCaption,
             FormatMessage(extra[EditModeExtraText::SaveUnfinished], m_gameDir, opened.Error));
        return false;
    case InstalledShipOpenStatus::Opened:
        break;
    }
    m_registry = opened.Registry;
    LockForm(opened.Record);
    if (!opened.Missing.isEmpty())
        Tell(EditModeExtraText::NotOpenedCaption,
             FormatMessage(extra[EditModeExtraText::FilesMissing], opened.Missing.join('\n')));
    return true;
}

void EditMode::LockForm(const ShipPackage& record)
{
    DCreateShip& w = m_window;
    w.setWindowTitle("X3 - Hullwright V" + QString::asprintf("%.2f", 2.0) + " [" +
                     w.uiText()[EditModeText::Caption] + " (" + record.Name + " - " + record.Author + ")]");
    for (QWidget* hidden : {static_cast<QWidget*>(w.MenuBar), static_cast<QWidget*>(w.Toolbar),
                            static_cast<QWidget*>(w.ButSaveAs), static_cast<QWidget*>(w.ButImport)})
        hidden->hide();
    w.ShowPackage(record);
    const QString line = w.TextRaw->toPlainText();
    w.LineShipScene->setText(ShipField(line, ShipLineField::ShipScene));
    w.LineCockpitScene->setText(ShipField(line, ShipLineField::CockpitScene));
    w.ButLoad->hide();
    for (QWidget* locked : {static_cast<QWidget*>(w.LineID), w.TabUpdate, w.TabScene, w.TabModel, w.TabOther,
                            w.TabComp, w.TabDummy, w.TabScripts})
        locked->setEnabled(false);
}

ShipPackage EditMode::Edited() const
{
    const DCreateShip& w = m_window;
    ShipPackage edited;
    edited.Name = w.LineName->text();
    edited.Author = w.LineAuthor->text();
    edited.Version = w.LineVersion->text();
    edited.ID = w.LineID->text();
    edited.Data = w.TextRaw->toPlainText();
    const std::array<const QCheckBox*, ShipyardCount> yards = {w.CheckArgon,  w.CheckBoron,  w.CheckParanid,
                                                               w.CheckSplit,  w.CheckTeladi, w.CheckPirate,
                                                               w.CheckFriend, w.CheckXenon};
    for (int i = 0; i < ShipyardCount; ++i)
        edited.Shipyards[i] = yards[i]->isChecked();
    edited.Comment = w.TextComment->toPlainText();
    edited.LanguageText = w.CheckLangText->isChecked();
    edited.OriginalDesc = w.CheckExisting->isChecked() ? w.SpinOrgDesc->value() : 0;
    for (int i = 0; i < w.ListText->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = w.ListText->topLevelItem(i);
        edited.Texts.append(TextEntry{row->text(0).toInt(), row->text(1), row->text(2)});
    }
    for (int i = 0; i < w.ListCockpit->topLevelItemCount(); ++i)
        edited.Cockpits.append(w.ListCockpit->topLevelItem(i)->text(2));
    return edited;
}

bool EditMode::Save()
{
    const DCreateShip& w = m_window;
    const InstalledShipChoices choices{w.LineScreen->text(), w.LineSceneFile->text(),
                                       w.LineSceneFileCp->text()};
    const InstalledShipSaveResult saved = SaveInstalledShip(m_gameDir, m_key, Edited(), choices, m_registry);
    const QStringList& extra = m_window.uiTextExtra();
    if (saved.Status != InstalledShipSaveStatus::Saved) {
        // The window stays open, so that nothing the user typed is lost.
        Tell(EditModeExtraText::NotSavedCaption,
             FormatMessage(extra[EditModeExtraText::NotSaved], m_gameDir, saved.Error));
        return false;
    }
    if (!saved.Notes.isEmpty())
        Tell(EditModeExtraText::SavedCaption,
             FormatMessage(extra[EditModeExtraText::SavedWithNotes], saved.Notes.join('\n')),
             MessageKind::Information);
    m_window.close();
    return true;
}

void EditMode::Tell(int caption, const QString& text, MessageKind kind)
{
    m_window.prompter().message(kind, &m_window, m_window.uiTextExtra()[caption], text,
                                {m_window.uiText()[EditModeText::Ok]});
}
