// The window's side of operations whose work is done by the package reader
// and writer, the installed-ships registry, the extraction and the game-text
// loader. Each keeps the window's state consistent (busy state, status bar,
// progress bar) so that the flows around them are complete.
#include "app/DCreateShip.h"

#include "app/core/StatusProgressBar.h"

#include <QStatusBar>

void DCreateShip::StartEditMode() {}

void DCreateShip::Slot_StartExtract()
{
    QMainWindow::statusBar()->clearMessage();
    SetBusy(true);
}
