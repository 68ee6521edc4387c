#include "app/ShipConfigFlow.h"

#include "app/GameTextStore.h"
#include "app/TableListControllers.h"
#include "core/AppSettings.h"

#include <QLineEdit>
#include <QTextEdit>

ShipConfigFlow::ShipConfigFlow(WindowContext context, QTextEdit* shipLine, QLineEdit* sceneFile,
                               DummyListController& dummies, CockpitListController& cockpits,
                               const GameTextStore& gameTexts)
    : m_context(std::move(context)), m_shipLine(shipLine), m_sceneFile(sceneFile), m_dummies(dummies),
      m_cockpits(cockpits), m_gameTexts(gameTexts)
{
}

CustomiseResult ShipConfigFlow::Run()
{
    CustomiseRequest request;
    request.parent = m_context.parent;
    request.prompter = &m_context.prompter;
    request.uiText = &m_context.uiText;
    request.shipLine = m_shipLine->toPlainText();
    request.cockpits = m_cockpits.Rows();
    request.packageGunLines = m_dummies.GunBodies();
    request.sceneFile = m_sceneFile->text();
    request.baseLanguage = m_context.settings.BaseLang;
    request.gameDirs = m_context.settings.GameDirs;
    request.classes = &m_gameTexts.Classes();
    request.variants = &m_gameTexts.Variants();
    request.run = runDialog;
    const CustomiseResult result = CustomiseShip(request);

    if (result.outcome == CustomiseOutcome::Accepted) {
        m_shipLine->setPlainText(result.shipLine); // the form counts as changed through the text's signal
        if (m_cockpits.Rows() != result.cockpits) {
            m_cockpits.Clear();
            m_cockpits.Add(result.cockpits);
            m_context.modified();
        }
    }
    return result;
}
