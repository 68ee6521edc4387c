// The list of balance profiles. ButCreateNew drives Slot_Create and a double
// click on a row Slot_Edit with that row; the working class gives them their
// behaviour.
#pragma once

#include "ui_ManageProfile.h"

#include <QDialog>

class ManageProfile : public QDialog, public Ui::ManageProfile
{
    Q_OBJECT
public:
    explicit ManageProfile(QWidget* parent = nullptr, const char* name = nullptr, bool modal = false,
                           Qt::WindowFlags flags = {});

public slots:
    // Re-applies every default caption of the form.
    virtual void languageChange();

    // Stubs that the working class overrides.
    virtual void Slot_Create();
    virtual void Slot_Edit(QTreeWidgetItem* item);

private:
    void connectSignals();
};
