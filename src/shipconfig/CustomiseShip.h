// Customize Ship: the one way the main window opens the ship configuration
// dialog. It gathers what the dialog cannot reach by itself (the game's
// tables, the package's cockpits, scene and gun bodies), runs it, and gives
// back what changed; the window writes that into its form and its settings.
#pragma once

#include "gamedata/SceneFile.h"
#include "gamedata/ShipLine.h"
#include "language/GameText.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

class DConfigShip;
class Prompter;
class QWidget;

struct CustomiseRequest
{
    QWidget* parent = nullptr;
    Prompter* prompter = nullptr;
    const QStringList* uiText = nullptr;
    QString shipLine;               // the text of TextRaw
    QList<CockpitListRow> cockpits; // the rows of the window's cockpit list
    QStringList packageGunLines;    // the package's SDTYPE_GUN dummy lines
    QString sceneFile;              // the scene box's text; "<PACKAGE>/" is the work directory
    QString baseLanguage;
    QStringList gameDirs; // first in use; as found by the window's search
    const QList<IdName>* classes = nullptr;
    const QList<IdName>* variants = nullptr;
    // Runs the filled dialog and gives QDialog::Accepted or Rejected. Unset:
    // the dialog's exec(). Tests drive the dialog here.
    std::function<int(DConfigShip&)> run;
};

enum class CustomiseOutcome
{
    NoShipLine, // the ship line was empty: a warning, no dialog
    NoGameDir,  // no game directory was known or named: nothing changed
    Cancelled,
    Accepted
};

struct CustomiseResult
{
    CustomiseOutcome outcome = CustomiseOutcome::NoShipLine;
    QString shipLine;               // the new line when accepted
    QList<CockpitListRow> cockpits; // the cockpit list as it is to be now
    QString baseLanguage;           // to be kept, accepted or not
    QStringList gameDirs;           // to be kept, accepted or not
    SceneRead scene = SceneRead::NoPath;
    QString sceneMessage; // a status line when the scene gave no nodes for a reason

    // The window stores base language and game directories whenever the
    // dialog was shown.
    bool SaveSettings() const
    {
        return outcome == CustomiseOutcome::Cancelled || outcome == CustomiseOutcome::Accepted;
    }
};

CustomiseResult CustomiseShip(const CustomiseRequest& request);

// The status line for a scene that gave no nodes for a reason; empty when
// it was read or when none was named.
QString SceneStatusMessage(SceneRead status, const QString& path);
