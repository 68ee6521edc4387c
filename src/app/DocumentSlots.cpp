// New, open, save and close: the slots of the File menu and the buttons under
// the tabs, and the window's side of opening and saving a package. The work
// itself is the package document's.
#include "app/DCreateShip.h"

#include "app/EditMode.h"
#include "app/PackageDocument.h"
#include "app/WindowTexts.h"
#include "core/Services.h"
#include "core/StatusProgressBar.h"

#include <QStatusBar>
#include <QTimer>

namespace {

constexpr int JobDelayMs = 100;

} // namespace

void DCreateShip::Slot_New()
{
    ClearDocument();
}

void DCreateShip::Slot_Open()
{
    const QString path = prompter().openFile(this, m_uiText[Txt::OpenCaption], m_settings.SaveDir,
                                             m_uiText[Txt::PackageFilter] + " (*.xsp)");
    if (path.isEmpty() || !ClearDocument())
        return;
    m_pathToOpen = path;
    StartBusyJob(m_uiText[Txt::StatusOpening] + " " + path + "...");
    QTimer::singleShot(JobDelayMs, this, &DCreateShip::Slot_OpenFile);
}

void DCreateShip::Slot_OpenFile()
{
    QMainWindow::statusBar()->showMessage(m_uiText[Txt::StatusOpening] + " " + m_pathToOpen + "...");
    OpenPackage(m_pathToOpen);
}

bool DCreateShip::OpenPackage(const QString& path)
{
    const bool opened = m_document->Open(path);
    UpdateCaption();
    FinishBusyJob();
    return opened;
}

std::unique_ptr<ShipPackage> DCreateShip::BuildPackage()
{
    return m_document->Build();
}

void DCreateShip::ShowPackage(const ShipPackage& record)
{
    m_document->Show(record);
}

bool DCreateShip::ValidateForSave()
{
    int message = -1;
    if (LineName->text().isEmpty())
        message = Txt::MissingName;
    else if (LineAuthor->text().isEmpty())
        message = Txt::MissingAuthor;
    else if (LineID->text().isEmpty())
        message = Txt::MissingId;
    else if (TextRaw->toPlainText().isEmpty())
        message = Txt::MissingShipLine;
    else if (LineShipScene->text().isEmpty() || LineCockpitScene->text().isEmpty())
        message = Txt::MissingScene;
    if (message < 0)
        return true;
    prompter().warning(this, m_uiText[Txt::MissingInformation], m_uiText[message], {m_uiText[Txt::Ok]});
    return false;
}

void DCreateShip::StartSave(bool alwaysAsk)
{
    if (!ValidateForSave())
        return;
    QString path;
    if (!m_editTarget.isEmpty())
        path = m_editTarget;
    else if (!alwaysAsk)
        path = m_document->CurrentFile();
    if (path.isEmpty())
        path = prompter().saveFile(this, m_uiText[Txt::SaveCaption], m_settings.SaveDir,
                                   m_uiText[Txt::PackageFilter] + " (*.xsp)");
    if (path.isEmpty())
        return;
    if (path.right(4).toLower() != ".xsp")
        path += ".xsp";

    m_pathToSave = path;
    m_progressBar->show();
    StartBusyJob(m_uiText[Txt::StatusSaving] + " " + path + "...");
    QTimer::singleShot(JobDelayMs, this, &DCreateShip::Slot_SaveFile);
}

void DCreateShip::Slot_Save()
{
    StartSave(false);
}

void DCreateShip::Slot_SaveAs()
{
    StartSave(true);
}

void DCreateShip::Slot_SaveFile()
{
    QMainWindow::statusBar()->showMessage(m_uiText[Txt::StatusSaving] + " " + m_pathToSave + "...");
    Save(m_pathToSave);
}

bool DCreateShip::Save(const QString& path)
{
    if (!m_editTarget.isEmpty()) {
        // Edit mode installs the ship into its game directory instead of
        // writing a package.
        m_progressBar->hide();
        const bool saved = m_editMode->Save();
        FinishBusyJob();
        return saved;
    }
    m_progressBar->show();
    SaveFeedback feedback;
    feedback.status = [this](const QString& text) { QMainWindow::statusBar()->showMessage(text); };
    feedback.progress = [this](int64_t done, int64_t total) { ShowProgress(done, total); };
    feedback.prepare = [this](FileEntry& entry, bool compile) { return PrepareFile(entry, compile); };
    const PackageDocument::SaveOutcome outcome =
        m_document->Save(path, m_settings.X2BC, m_settings.SaveWeb, feedback);
    m_progressBar->hide();
    QMainWindow::statusBar()->clearMessage();

    if (outcome == PackageDocument::SaveOutcome::Saved)
        prompter().information(this, m_uiText[Txt::Saved], FormatMessage(m_uiText[Txt::SavedText], path),
                               {m_uiText[Txt::Ok]});
    UpdateCaption();
    FinishBusyJob();
    // A failed compression shows no box; the status bar keeps saying it. The
    // package that stood at the path is untouched, and the form keeps
    // counting as unsaved.
    if (outcome == PackageDocument::SaveOutcome::Failed)
        QMainWindow::statusBar()->showMessage(FormatMessage(m_uiText[Txt::SaveFailedText], path));
    return outcome == PackageDocument::SaveOutcome::Saved;
}

void DCreateShip::Slot_Close()
{
    CleanWorkDirs();
    close();
}
