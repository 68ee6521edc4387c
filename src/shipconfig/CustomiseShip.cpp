#include "shipconfig/CustomiseShip.h"

#include "core/ProgramDir.h"
#include "forms/Prompter.h"
#include "shipconfig/ConfigShipText.h"
#include "shipconfig/CustomCockpits.h"
#include "shipconfig/DConfigShip.h"
#include "shipconfig/GunBodies.h"

#include <QApplication>
#include <QDir>

namespace {

constexpr const char* PackageMarker = "<PACKAGE>/";

// The wait cursor for the time the tables load; lifted while the user is asked.
class WaitCursor
{
public:
    WaitCursor() { Set(); }
    ~WaitCursor() { Lift(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
    void Set()
    {
        if (!m_on)
            QApplication::setOverrideCursor(Qt::WaitCursor);
        m_on = true;
    }
    void Lift()
    {
        if (m_on)
            QApplication::restoreOverrideCursor();
        m_on = false;
    }

private:
    bool m_on = false;
};

} // namespace

QString SceneStatusMessage(SceneRead status, const QString& path)
{
    // The interface texts have no entries for these; they name the file, so
    // the user sees why the scene's nodes are missing.
    switch (status) {
    case SceneRead::Missing:
        return QStringLiteral("Scene file not found or unreadable: %1").arg(path);
    case SceneRead::TooLarge:
        return QStringLiteral("Scene file too large to be a scene: %1").arg(path);
    case SceneRead::NotPacked:
        return QStringLiteral("Scene file is not a packed file: %1").arg(path);
    case SceneRead::Binary:
        return QStringLiteral("Scene file holds binary data, not scene text: %1").arg(path);
    case SceneRead::Read:
    case SceneRead::NoPath:
        break;
    }
    return {};
}

CustomiseResult CustomiseShip(const CustomiseRequest& request)
{
    static const QStringList noTexts;
    const QStringList& texts = request.uiText ? *request.uiText : noTexts;
    CustomiseResult result;
    result.cockpits = request.cockpits;
    result.baseLanguage = request.baseLanguage;
    result.gameDirs = request.gameDirs;
    if (request.shipLine.isEmpty()) {
        if (request.prompter)
            request.prompter->warning(request.parent, texts.value(ConfigShipText::NoShipDataCaption),
                                      texts.value(ConfigShipText::NoShipDataText),
                                      {texts.value(ConfigShipText::ButtonClose)});
        return result;
    }

    WaitCursor cursor;
    DConfigShip dialog(request.uiText, request.gameDirs, request.baseLanguage, request.variants,
                       request.classes, request.parent, request.prompter);
    if (dialog.GameDirs.isEmpty()) {
        cursor.Lift();
        dialog.Slot_GetDirectory();
        if (dialog.GameDirs.isEmpty()) {
            result.outcome = CustomiseOutcome::NoGameDir;
            if (request.parent)
                request.parent->setFocus();
            return result;
        }
        cursor.Set();
    }
    dialog.ComboDir->setCurrentIndex(0);

    dialog.LoadShields();
    dialog.LoadLasers();
    dialog.LoadMissiles();
    dialog.LoadLanguagesAndCockpits();
    for (const CockpitListRow& row : request.cockpits)
        dialog.CustomCockpits.append(row.Line);

    const QString scene = QString(request.sceneFile).replace(PackageMarker, ProgramDir() + "/ShipInstall/");
    result.scene = dialog.LoadScene(scene);
    result.sceneMessage = SceneStatusMessage(result.scene, scene);

    // The package's gun bodies first: a body both name keeps the package's nodes.
    for (const QString& line : request.packageGunLines)
        dialog.AddGunBody(line);
    QDir(ProgramDir()).mkpath("temp");
    for (const QString& line : GameGunLines(dialog.GameDirs.first(), ProgramPath("/temp/Dummies.txt")))
        dialog.AddGunBody(line);

    dialog.LoadShipLine(request.shipLine);
    cursor.Lift();
    const int code = request.run ? request.run(dialog) : dialog.exec();

    if (code == QDialog::Accepted) {
        result.outcome = CustomiseOutcome::Accepted;
        result.shipLine = dialog.BuildShipLine();
        result.cockpits = CockpitRowsInLineWith(request.cockpits, dialog.CustomCockpits);
    } else {
        result.outcome = CustomiseOutcome::Cancelled;
    }
    result.baseLanguage = dialog.BaseLanguage;
    result.gameDirs = dialog.GameDirs;
    return result;
}
