#include "OrvCoreModules/Menus/OrvAction.h"

OrvAction::OrvAction(QObject* pParent)
    : QAction(pParent)
{
    construct();
}

OrvAction::OrvAction(const QString& Text, QObject* pParent)
    : QAction(Text, pParent)
{
    construct();
}

OrvAction::OrvAction(const QIcon& Icon, const QString& Text, QObject* pParent)
    : QAction(Icon, Text, pParent)
{
    construct();
}

void OrvAction::construct()
{
    connect(this, &QAction::triggered, this, [this] { Q_EMIT triggered(this); });
}

#include "moc_OrvAction.cpp"
