#include "app/FormBinding.h"

#include "forms/CreateShip.h"
#include "gamedata/ShipLine.h"

namespace {

// A picture kept from the package stands in ShipPics below WorkDir.
const QString ScreenShotDir = QStringLiteral("ShipPics/");

} // namespace

bool& FormBinding::FlagRow::In(ShipPackage& record) const
{
    return field ? record.*field : record.Shipyards[shipyard];
}

bool FormBinding::FlagRow::In(const ShipPackage& record) const
{
    return field ? record.*field : record.Shipyards[shipyard];
}

FormBinding::FormBinding(Ui::CreateShip& form, const AppSettings& settings)
    : m_form(form), m_settings(settings)
{
    m_texts = {
        {form.LineName, &ShipPackage::Name},
        {form.LineAuthor, &ShipPackage::Author, &AppSettings::DefAuthor},
        {form.LineVersion, &ShipPackage::Version},
        {form.LineID, &ShipPackage::ID},
        {form.LineWeb, &ShipPackage::Web, &AppSettings::DefWeb},
        {form.LineMirror1, &ShipPackage::Mirror1, &AppSettings::DefMirror1},
        {form.LineMirror2, &ShipPackage::Mirror2, &AppSettings::DefMirror2},
    };
    // The shipyards in the record's order, which puts Split before Teladi.
    m_flags = {
        {form.CheckArgon, nullptr, ShipyardArgon},
        {form.CheckBoron, nullptr, ShipyardBoron},
        {form.CheckParanid, nullptr, ShipyardParanid},
        {form.CheckSplit, nullptr, ShipyardSplit},
        {form.CheckTeladi, nullptr, ShipyardTeladi},
        {form.CheckPirate, nullptr, ShipyardPirates},
        {form.CheckFriend, nullptr, ShipyardFriendly},
        {form.CheckXenon, nullptr, ShipyardXenon},
        {form.CheckLangText, &ShipPackage::LanguageText, -1, false},
        {form.CheckExistingShip, &ShipPackage::ExistingShip, -1, false},
    };
}

QString FormBinding::Cleared(const TextRow& row) const
{
    return row.cleared ? m_settings.*row.cleared : QString();
}

QString FormBinding::ShipLine() const
{
    return m_form.TextRaw->toPlainText();
}

void FormBinding::SetShipLine(const QString& line) const
{
    m_form.TextRaw->setPlainText(line);
}

QString FormBinding::ShipSceneName() const
{
    return m_form.LineShipScene->text();
}

QString FormBinding::CockpitSceneName() const
{
    return m_form.LineCockpitScene->text();
}

QString FormBinding::ShipSceneFile() const
{
    return m_form.LineSceneFile->text();
}

QString FormBinding::CockpitSceneFile() const
{
    return m_form.LineSceneFileCp->text();
}

void FormBinding::ShowSceneNames() const
{
    const QString line = ShipLine();
    m_form.LineShipScene->setText(ShipField(line, ShipLineField::ShipScene));
    m_form.LineCockpitScene->setText(ShipField(line, ShipLineField::CockpitScene));
}

void FormBinding::Show(const ShipPackage& record) const
{
    for (const TextRow& row : m_texts)
        row.edit->setText(record.*row.field);
    for (const FlagRow& row : m_flags)
        row.box->setChecked(row.In(record));
    SetShipLine(record.Data);
    m_form.TextComment->setPlainText(CommentFromRecord(record.Comment));

    if (record.OriginalDesc != 0) {
        m_form.CheckExisting->setChecked(true);
        m_form.SpinOrgDesc->setValue(record.OriginalDesc);
    }
    m_form.SpinOrgDesc->setEnabled(record.OriginalDesc != 0);
    m_form.ListText->setEnabled(record.OriginalDesc == 0);

    if (!record.ScreenShot.isEmpty())
        m_form.LineScreen->setText(PackageToken + ScreenShotDir + record.ScreenShot);
    if (record.SceneFile)
        m_form.LineSceneFile->setText(PackageToken + record.SceneFile->LocalPath);
    if (record.CockpitFile)
        m_form.LineSceneFileCp->setText(PackageToken + record.CockpitFile->LocalPath);
    ShowSceneNames();
}

void FormBinding::Read(ShipPackage& record) const
{
    for (const TextRow& row : m_texts)
        record.*row.field = row.edit->text();
    for (const FlagRow& row : m_flags)
        row.In(record) = row.box->isChecked();
    record.Comment = CommentToRecord(m_form.TextComment->toPlainText());
    record.OriginalDesc = m_form.CheckExisting->isChecked() ? m_form.SpinOrgDesc->value() : 0;
    record.ScreenShot = m_form.LineScreen->text();
}

bool FormBinding::ScreenShotMatches(const ShipPackage& saved) const
{
    const QString screen = m_form.LineScreen->text();
    if (screen.isEmpty())
        return saved.ScreenShot.isEmpty();
    return IsPackagePath(screen); // a new picture was chosen otherwise
}

bool FormBinding::Matches(const ShipPackage& saved) const
{
    const QString line = ShipLine();
    if (line != saved.Data)
        return false;
    for (const TextRow& row : m_texts)
        if (row.edit->text() != saved.*row.field)
            return false;
    for (const FlagRow& row : m_flags)
        if (row.compared && row.box->isChecked() != row.In(saved))
            return false;
    if (CommentToRecord(m_form.TextComment->toPlainText()) != saved.Comment || !ScreenShotMatches(saved))
        return false;
    if (ShipField(line, ShipLineField::ShipScene) != m_form.LineShipScene->text() ||
        ShipField(line, ShipLineField::CockpitScene) != m_form.LineCockpitScene->text())
        return false;
    for (const QLineEdit* scene : {m_form.LineSceneFile, m_form.LineSceneFileCp})
        if (!scene->text().isEmpty() && !IsPackagePath(scene->text()))
            return false;
    return true;
}

void FormBinding::Clear() const
{
    for (const TextRow& row : m_texts)
        row.edit->setText(Cleared(row));
    for (const FlagRow& row : m_flags)
        row.box->setChecked(false);
    m_form.CheckExisting->setChecked(false);
    m_form.SpinOrgDesc->setEnabled(false);
    m_form.SpinOrgDesc->setValue(1);
    m_form.ListText->setEnabled(true);
    SetShipLine(DefaultShipLine);
    for (QLineEdit* line : {m_form.LineShipScene, m_form.LineCockpitScene, m_form.LineSceneFile,
                            m_form.LineSceneFileCp, m_form.LineScreen})
        line->clear();
    m_form.TextComment->clear();
}

bool FormBinding::HasContent() const
{
    // A text that is empty or shows its default holds nothing of the user's.
    for (const TextRow& row : m_texts)
        if (!row.edit->text().isEmpty() && row.edit->text() != Cleared(row))
            return true;
    for (const FlagRow& row : m_flags)
        if (row.box->isChecked())
            return true;
    if (m_form.CheckExisting->isChecked() || ShipLine() != DefaultShipLine)
        return true;
    for (const QLineEdit* line : {m_form.LineShipScene, m_form.LineCockpitScene, m_form.LineSceneFile,
                                  m_form.LineSceneFileCp, m_form.LineScreen})
        if (!line->text().isEmpty())
            return true;
    return !m_form.TextComment->toPlainText().isEmpty();
}
