#include "app/EditMode.h"

#include "app/FormBinding.h"
#include "app/TableListControllers.h"
#include "app/TextListController.h"
#include "app/WindowTexts.h"
#include "core/ProgramDir.h"
#include "core/Services.h"
#include "deploy/InstalledShipOpen.h"
#include "deploy/InstalledShipSave.h"
#include "forms/CreateShip.h"

#include <QDir>

EditMode::EditMode(Ui::CreateShip& form, PackageDocument& document, DocumentParts parts,
                   WindowContext context)
    : m_form(form), m_document(document), m_parts(parts), m_context(context)
{
}

bool EditMode::Start(const QString& editTarget)
{
    m_gameDir = GameDirFromEditTarget(editTarget);
    m_key = SplitShipKey(ShipKeyFromEditTarget(editTarget));
    const InstalledShipOpened opened = OpenInstalledShip(m_gameDir, m_key, ProgramPath("/ShipInstall"));
    const QStringList& extra = m_context.uiTextExtra;
    switch (opened.Status) {
    case InstalledShipOpenStatus::NotFound:
        return false;
    case InstalledShipOpenStatus::NotFullyRead:
        Tell(EditModeText::NotOpenedCaption,
             FormatMessage(extra[EditModeText::RegistryUnreadable],
                           QDir(m_gameDir).filePath(InstalledShipsPath), opened.Registry.ProblemText()));
        return false;
    case InstalledShipOpenStatus::Unfinished:
        Tell(EditModeText::NotOpenedCaption,
             FormatMessage(extra[EditModeText::SaveUnfinished], m_gameDir, opened.Error));
        return false;
    case InstalledShipOpenStatus::Opened:
        break;
    }
    m_registry = opened.Registry;
    LockForm(opened.Record);
    if (!opened.Missing.isEmpty())
        Tell(EditModeText::NotOpenedCaption,
             FormatMessage(extra[EditModeText::FilesMissing], opened.Missing.join('\n')));
    return true;
}

void EditMode::LockForm(const ShipPackage& record)
{
    m_context.parent->setWindowTitle(WindowCaptionHead() + " [" + m_context.uiText[Txt::EditModeCaption] +
                                     " (" + record.Name + " - " + record.Author + ")]");
    for (QWidget* hidden : std::initializer_list<QWidget*>{m_form.MenuBar, m_form.Toolbar, m_form.ButSaveAs,
                                                           m_form.ButImport, m_form.ButLoad})
        hidden->hide();
    m_document.Show(record);
    for (QWidget* locked :
         std::initializer_list<QWidget*>{m_form.LineID, m_form.TabUpdate, m_form.TabScene, m_form.TabModel,
                                         m_form.TabOther, m_form.TabComp, m_form.TabDummy, m_form.TabScripts})
        locked->setEnabled(false);
}

bool EditMode::Save()
{
    ShipPackage edited;
    const FormBinding& form = m_parts.form;
    form.Read(edited);
    edited.Data = form.ShipLine();
    edited.Comment = CommentFromRecord(edited.Comment); // the save puts it on one line its own way
    edited.Texts = m_parts.texts.Rows();
    for (const CockpitListRow& row : m_parts.cockpits.Rows())
        edited.Cockpits.append(row.Line);
    const InstalledShipChoices choices{edited.ScreenShot, form.ShipSceneFile(), form.CockpitSceneFile()};

    const InstalledShipSaveResult saved = SaveInstalledShip(m_gameDir, m_key, edited, choices, m_registry);
    const QStringList& extra = m_context.uiTextExtra;
    if (saved.Status != InstalledShipSaveStatus::Saved) {
        // The window stays open, so that nothing the user typed is lost.
        Tell(EditModeText::NotSavedCaption,
             FormatMessage(extra[EditModeText::NotSaved], m_gameDir, saved.Error));
        return false;
    }
    if (!saved.Notes.isEmpty())
        Tell(EditModeText::SavedCaption,
             FormatMessage(extra[EditModeText::SavedWithNotes], saved.Notes.join('\n')),
             MessageKind::Information);
    m_context.parent->close();
    return true;
}

void EditMode::Tell(int caption, const QString& text, MessageKind kind)
{
    m_context.prompter.message(kind, m_context.parent, m_context.uiTextExtra[caption], text,
                               {m_context.uiText[Txt::Ok]});
}
