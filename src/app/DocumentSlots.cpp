// New, open, save and close: the slots of the File menu and the buttons under
// the tabs. A long job never runs in the slot the user triggered: the slot
// makes the window busy, shows a status text and starts a 100 ms timer whose
// slot does the work.
#include "app/DCreateShip.h"

#include "app/core/StatusProgressBar.h"

#include <QStatusBar>
#include <QTimer>

namespace {

constexpr int kJobDelayMs = 100;

} // namespace

void DCreateShip::Slot_New()
{
    ClearDocument();
}

void DCreateShip::Slot_Open()
{
    const QString path = prompter().openFile(this, UiText[66], SaveDir, UiText[65] + " (*.xsp)");
    if (path.isEmpty())
        return;
    if (!ClearDocument())
        return;
    SetBusy(false);
    repaint();
    PathToOpen = path;
    QMainWindow::statusBar()->showMessage(UiText[67] + " " + path + "...");
    QTimer::singleShot(kJobDelayMs, this, &DCreateShip::Slot_OpenFile);
}

void DCreateShip::Slot_OpenFile()
{
    QMainWindow::statusBar()->showMessage(UiText[67] + " " + PathToOpen + "...");
    OpenPackage(PathToOpen);
}

bool DCreateShip::ValidateForSave()
{
    int message = -1;
    if (LineName->text().isEmpty())
        message = 71;
    else if (LineAuthor->text().isEmpty())
        message = 72;
    else if (LineID->text().isEmpty())
        message = 73;
    else if (TextRaw->toPlainText().isEmpty())
        message = 74;
    else if (LineShipScene->text().isEmpty() || LineCockpitScene->text().isEmpty())
        message = 362;
    if (message < 0)
        return true;
    prompter().warning(this, UiText[70], UiText[message], {UiText[60]});
    return false;
}

void DCreateShip::StartSave(bool alwaysAsk)
{
    if (!ValidateForSave())
        return;
    QString path;
    if (!EditTarget.isEmpty())
        path = EditTarget;
    else if (!alwaysAsk)
        path = CurrentFile;
    if (path.isEmpty())
        path = prompter().saveFile(this, UiText[69], SaveDir, UiText[65] + " (*.xsp)");
    if (path.isEmpty())
        return;
    if (path.right(4).toLower() != ".xsp")
        path += ".xsp";

    SetBusy(false);
    ProgressBar->show();
    repaint();
    PathToSave = path;
    QMainWindow::statusBar()->showMessage(UiText[68] + " " + path + "...");
    QTimer::singleShot(kJobDelayMs, this, &DCreateShip::Slot_SaveFile);
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
    QMainWindow::statusBar()->showMessage(UiText[68] + " " + PathToSave + "...");
    Save(PathToSave);
}

void DCreateShip::Slot_Close()
{
    CleanWorkDirs();
    close();
}
