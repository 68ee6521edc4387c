// Edit mode: the main window shows one ship installed in a game directory
// instead of a package, and Save writes the ship back there. Started by "-e
// <game directory>/<author>~<name>"; the window's StartEditMode and Save
// delegate to this part, which keeps what edit mode knows: the game
// directory, the ship's key and the registry as it was read.
//
// A target that names no ship leaves the window a normal one; so does a
// registry that could not be read completely (or an earlier save that was
// cut off and could not be completed), and then the user is told why. A
// failed save leaves the window open with the user's changes; a good one
// closes it.
#pragma once

#include "app/PackageDocument.h"
#include "app/WindowContext.h"
#include "forms/Prompter.h"
#include "package/InstalledShips.h"

#include <QString>

namespace Ui {
class CreateShip;
}

// Indices of edit mode's texts in UiTextExtra.
namespace EditModeText {
enum : int
{
    NotOpenedCaption = 30,   // the ship is not opened, or some of its files could not be read
    RegistryUnreadable = 31, // %1 the registry, %2 what could not be read
    SaveUnfinished = 32,     // %1 the game directory, %2 why an earlier save stopped
    FilesMissing = 33,       // %1 the files of the ship that could not be read
    NotSavedCaption = 34,
    NotSaved = 35, // %1 the game directory, %2 why
    SavedCaption = 36,
    SavedWithNotes = 37, // %1 what was left as it was, and why
};
} // namespace EditModeText

class EditMode
{
public:
    // The form, the document and its parts belong to the window; the
    // context's parent is the window itself, which a good save closes.
    EditMode(Ui::CreateShip& form, PackageDocument& document, DocumentParts parts, WindowContext context);

    // Opens the ship that `editTarget` names and turns the window into its
    // editor; false when the window stays a normal one.
    bool Start(const QString& editTarget);
    // Saves the form into the game directory; true when it was saved.
    bool Save();

private:
    void LockForm(const ShipPackage& record);
    void Tell(int caption, const QString& text, MessageKind kind = MessageKind::Warning);

    Ui::CreateShip& m_form;
    PackageDocument& m_document;
    DocumentParts m_parts;
    WindowContext m_context;
    QString m_gameDir;
    ShipKey m_key;
    InstalledShipsRead m_registry;
};
