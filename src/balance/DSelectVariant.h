// The variants a profile import counts: a check list of the plain ship and
// the first 19 variants, all checked at the start.
#pragma once

#include "forms/SelectVariant.h"

#include <QList>
#include <QStringList>

class DSelectVariant : public SelectVariant
{
    Q_OBJECT
public:
    // `variantNames` holds one name for each variant, variant 1 first.
    DSelectVariant(const QStringList& textTable, const QStringList& variantNames, QWidget* parent = nullptr);

    // The numbers of the checked rows, read from the text before each row's
    // first ":", in the order of the list.
    QList<int> CheckedVariants() const;

    // How many variants the list offers besides the plain ship.
    static constexpr int OfferedVariants = 19;
};
