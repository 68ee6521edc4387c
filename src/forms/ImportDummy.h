// A check tree of the rows of a Dummies or Components table, from which the
// user picks the rows to import. Used as it is.
#pragma once

#include "ui_ImportDummy.h"

#include <QDialog>

class ImportDummy : public QDialog, public Ui::ImportDummy
{
    Q_OBJECT
public:
    explicit ImportDummy(QWidget* parent = nullptr, const char* name = nullptr, bool modal = false,
                         Qt::WindowFlags flags = {});

public slots:
    // Re-applies every default caption of the form.
    virtual void languageChange();

private:
    void connectSignals();
};
