#include "OrvCoreModules/Widgets/OrvDialog.h"

OrvDialog::OrvDialog(QWidget* pParent, Qt::WindowFlags Flags)
    : QDialog(pParent, Flags)
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
}

#include "moc_OrvDialog.cpp"
