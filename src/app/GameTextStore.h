// The game's texts that the main window keeps: the texts of pages 17 and
// 2006 in the base language, the ship classes and variations of
// data/classes and data/variant, and their names from those pages.
#pragma once

#include "language/GameText.h"

#include <QList>
#include <QString>
#include <QStringList>

// Reads data/classes or data/variant: "<id>:<name>" lines, "//" comments.
// Lines without a number, and in the classes file lines of id 0, are
// skipped; a variant of id 0 is kept when it has a name.
QList<IdName> ReadIdNameFile(const QString& path, bool isVariantFile);

class GameTextStore
{
public:
    // Reads the class and variant files of the program directory; each list
    // gets as many empty names.
    void LoadClassesAndVariants(const QString& programDir);

    // Reads every language page of `baseLang` in the game's catalogs, from
    // 01.cat up to the first number that is missing, and then, with
    // `readTextDir`, the loose pages in the game's t directory, which win.
    // Logs each step to the debug log. Marks the texts loaded.
    void Load(const QString& gameDir, const QString& baseLang, bool readTextDir);

    // Parses one plain page into the texts and names, then resolves the
    // "{17,<id>}" references among the variant names.
    void ParseFile(const QString& path);

    const QList<GameText>& Texts() const { return m_texts; }
    const QList<IdName>& Classes() const { return m_classes; }
    const QList<IdName>& Variants() const { return m_variants; }
    const QStringList& ClassNames() const { return m_classNames; }
    const QStringList& VariantNames() const { return m_variantNames; }
    bool Loaded() const { return m_loaded; }

private:
    void ReadCatalogs(const QString& gameDir, const QString& baseLang);
    void ReadTextDirectory(const QString& gameDir, const QString& baseLang);

    QList<GameText> m_texts;
    // Where each id of m_texts stands, while Load reads.
    GameTextIndex m_index;
    QList<IdName> m_classes;
    QList<IdName> m_variants;
    QStringList m_classNames;
    QStringList m_variantNames;
    bool m_loaded = false;
};
