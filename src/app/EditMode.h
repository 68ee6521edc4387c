// Edit mode: the main window shows one ship installed in a game directory
// instead of a package, and Save writes the ship back there. Started by "-e
// <game directory>/<author>~<name>"; the window's StartEditMode and Save
// delegate to this part, which keeps what edit mode knows: the game
// directory, the ship's key and the registry as it was read.
//
// A target that names no ship leaves the window a normal one; so does a
// registry that could not be read completely (or an interrupted save that
// could not be completed), and then the user is told why. A failed save
// leaves the window open with the user's changes; a good one closes it.
#pragma once

#include "forms/Prompter.h"
#include "package/InstalledShips.h"

#include <QString>

class DCreateShip;

// Texts of edit mode: UiText and UiTextExtra indices.
namespace EditModeText {
enum : int
{
    Caption = 200, // UiText: "Edit Mode", in the caption before the ship's name and author
    Ok = 60,       // UiText: the button of the boxes below
};
} // namespace EditModeText

namespace EditModeExtraText {
enum : int
{
    NotOpenedCaption = 30,   // the ship cannot be opened for editing
    RegistryUnreadable = 31, // %1 the registry, %2 what could not be read
    SaveUnfinished = 32,     // %1 the game directory, %2 why an earlier save stopped
    FilesMissing = 33,       // %1 the files of the ship that could not be read
    NotSavedCaption = 34,
    NotSaved = 35,       // %1 the game directory, %2 why
    SavedCaption = 36,   // saved, but something was left as it was
    SavedWithNotes = 37, // %1 what was left, and why
};
} // namespace EditModeExtraText

class EditMode
{
public:
    explicit EditMode(DCreateShip& window) : m_window(window) {}

    // Opens the ship that `editTarget` names and turns the window into its
    // editor; false when the window stays a normal one.
    bool Start(const QString& editTarget);
    // Saves the form into the game directory; true when it was saved, and
    // then the window closes.
    bool Save();

private:
    ShipPackage Edited() const;
    void LockForm(const ShipPackage& record);
    void Tell(int caption, const QString& text, MessageKind kind = MessageKind::Warning);

    DCreateShip& m_window;
    QString m_gameDir;
    ShipKey m_key;
    InstalledShipsRead m_registry;
};
