// The one binding between the main window's form and the package record.
//
// The form is the working copy of the open package. This table says which
// widget holds which field of `ShipPackage`, and drives the four walks over
// them: showing a record, reading the form into one for a save, comparing
// the form with the saved record, and clearing the form. The content lists
// have controllers of their own; the document joins both.
//
// A plain text field is one TextRow, a flag one FlagRow: adding such a field
// to the record means adding one row here. The few fields with rules of their
// own (the ship line, the comment, the original description, the screenshot,
// the scene names and scene files) are told apart below.
#pragma once

#include "core/AppSettings.h"
#include "package/ShipPackage.h"

#include <QList>

class QCheckBox;
class QLineEdit;
namespace Ui {
class CreateShip;
}

class FormBinding
{
public:
    // The form and the settings belong to the window and outlive the binding.
    FormBinding(Ui::CreateShip& form, const AppSettings& settings);

    // Fills the fields of the form from `record`, whose files lie in WorkDir.
    // The scene names come from the line (ShowSceneNames).
    void Show(const ShipPackage& record) const;
    // The scene name fields take fields 16 and 17 of the form's ship line.
    void ShowSceneNames() const;
    // Reads the fields into `record`, all but the ship line and the scene
    // files, which a save settles and resolves on its own.
    void Read(ShipPackage& record) const;
    // True when the fields equal the saved record: exact compares of texts
    // and flags; the scene names against the line; a picture or scene file
    // counts as unchanged only while it is still the package's.
    bool Matches(const ShipPackage& saved) const;
    // Empties every field; texts with a default take it.
    void Clear() const;
    // True when some field holds something a new form does not.
    bool HasContent() const;

    QString ShipLine() const;
    void SetShipLine(const QString& line) const;
    // The scene names of the ship and its cockpit, and the files chosen for them.
    QString ShipSceneName() const;
    QString CockpitSceneName() const;
    QString ShipSceneFile() const;
    QString CockpitSceneFile() const;

private:
    struct TextRow
    {
        QLineEdit* edit;
        QString ShipPackage::*field;
        QString AppSettings::*cleared = nullptr; // the default a new form shows; null: empty
    };
    struct FlagRow
    {
        QCheckBox* box;
        bool ShipPackage::*field = nullptr; // or:
        int shipyard = -1;                  // an index into the record's shipyards
        bool compared = true;               // part of the modified check
        bool& In(ShipPackage& record) const;
        bool In(const ShipPackage& record) const;
    };

    QString Cleared(const TextRow& row) const;
    bool ScreenShotMatches(const ShipPackage& saved) const;

    Ui::CreateShip& m_form;
    const AppSettings& m_settings;
    QList<TextRow> m_texts;
    QList<FlagRow> m_flags;
};
