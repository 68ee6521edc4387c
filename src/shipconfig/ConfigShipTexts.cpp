// Base languages and the game's names in DConfigShip's boxes.
#include "shipconfig/DConfigShip.h"

#include "core/ProgramDir.h"
#include "catfs/transfer/GameFile.h"
#include "gamedata/CockpitTable.h"
#include "shipconfig/ConfigNames.h"
#include "shipconfig/ConfigShipText.h"

#include <QApplication>
#include <QFile>

namespace {

constexpr const char* DefaultBaseLanguage = "44";

// Refills a box with `items` and makes `keep` its item again when it has one.
void Refill(QComboBox* box, const QStringList& items, int keep)
{
    box->clear();
    box->addItems(items);
    if (keep >= 0 && keep < box->count())
        box->setCurrentIndex(keep);
}

// A catalog entry extracted for reading, deleted again when this goes.
class ExtractedFile
{
public:
    explicit ExtractedFile(const QString& path)
    {
        if (!path.contains(QLatin1String("::"))) {
            m_path = path;
            return;
        }
        const QString name = path.section(u'\\', -1).section(u'/', -1);
        m_path = ProgramPath("/" + name.left(name.indexOf(u'.')) + ".xml");
        m_owned = GameFileExtract(path, m_path, false, false);
    }
    ~ExtractedFile()
    {
        if (m_owned)
            QFile::remove(m_path);
    }
    ExtractedFile(const ExtractedFile&) = delete;
    ExtractedFile& operator=(const ExtractedFile&) = delete;
    const QString& path() const { return m_path; }

private:
    QString m_path;
    bool m_owned = false;
};

} // namespace

void DConfigShip::LoadLanguagesAndCockpits()
{
    LanguageFiles = GameDir().isEmpty() ? QList<LanguageFile>() : ListLanguageFiles(GameDir());
    ComboLang->clear();
    for (const LanguageFile& file : LanguageFiles)
        ComboLang->addItem(file.Language);
    if (BaseLanguage.isEmpty())
        BaseLanguage = DefaultBaseLanguage;
    // A base language the game has no file for is shown all the same: the
    // boxes stay empty until another one is chosen.
    if (ComboLang->findText(BaseLanguage) < 0)
        ComboLang->addItem(BaseLanguage);
    ComboLang->setCurrentIndex(ComboLang->findText(BaseLanguage));
    LoadShipTexts();
    LoadStdCockpits();
}

void DConfigShip::LoadShipTexts()
{
    const int race = ComboRace->currentIndex();
    const int cargo = ComboCargo->currentIndex();
    const int variation = ComboVariation->currentIndex();
    const int shield = ComboShield->currentIndex();
    const int shipClass = ComboClass->currentIndex();
    for (QComboBox* box : {ComboRace, ComboCargo, ComboVariation, ComboShield, ComboClass})
        box->clear();

    QString path;
    for (const LanguageFile& file : LanguageFiles)
        if (file.Language == ComboLang->currentText())
            path = file.Path;
    if (path.isEmpty())
        return;
    const ExtractedFile file(path);
    static const QList<IdName> none;
    const QList<IdName>& variants = m_variants ? *m_variants : none;
    const QList<IdName>& classes = m_classes ? *m_classes : none;
    const ConfigNames names =
        ReadConfigNames(file.path(), variants, classes, ShieldTable, LaserTable, MissileTable);
    if (!names.Read)
        return;
    RankNames = names.Ranks;

    Refill(ComboRace, RaceItems(names.Races, Text(ConfigShipText::PlayerRace)), race);
    Refill(ComboCargo, CargoItems(names.Cargo), cargo);
    Refill(ComboClass, ClassItems(names.Classes), shipClass);
    Refill(ComboVariation, VariationItems(names.Variants, variants, Text(ConfigShipText::VariationNone)),
           variation);
    Refill(ComboShield, ShieldItems(ShieldTable), shield);

    Slot_UpdateMasks();
    Slot_UpdateTurretWeapons();
    UpdateRanks();
}

void DConfigShip::Slot_BaseLang(const QString& text)
{
    setEnabled(false);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    BaseLanguage = text;
    LoadShipTexts();
    QApplication::restoreOverrideCursor();
    setEnabled(true);
}

void DConfigShip::LoadStdCockpits()
{
    ComboStdCockpit->clear();
    StdCockpits.clear();
    if (GameDir().isEmpty())
        return;
    const CockpitTable table = LoadGameCockpits(GameDir(), ProgramPath("/Tcockpits.txt"));
    StdCockpits = table.lines;
    ComboStdCockpit->addItems(table.names);
}
