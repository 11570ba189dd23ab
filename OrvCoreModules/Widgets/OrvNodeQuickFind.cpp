#include "OrvCoreModules/Widgets/OrvNodeQuickFind.h"

#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Object/OrvSettings.h"
#include "OrvCoreModules/Widgets/OrvNodeQuickFindDialog.h"

#include <QtCore/QPointer>

namespace {

const QString LimitKey = QStringLiteral("Node Graph/numberOfLastUsedNodePathsToStore");
const QString LastUsedKey = QStringLiteral("LastUsedNodePaths");
const QString FavouritesKey = QStringLiteral("FavouriteNodePaths");

} // namespace

QString OrvNodeQuickFind::choose(const QString& SettingsGroup, const QPoint& Position, QWidget* pWidget)
{
    OrvSettings Settings;
    const int Limit = qMax(0, Settings.value(LimitKey).toInt());
    Settings.beginGroup(SettingsGroup);
    QStringList LastUsed = Settings.value(LastUsedKey).toStringList();
    // The widget can go while the dialog is open, and takes it along.
    const QPointer<OrvNodeQuickFindDialog> pDialog = new OrvNodeQuickFindDialog(Position,
        OrvLayerUtils::getProceduralLayerGroups(), OrvLayerUtils::getAdjustmentLayerGroups(), LastUsed,
        Settings.value(FavouritesKey).toStringList(), pWidget);
    pDialog->exec();
    if (!pDialog)
        return QString();
    pDialog->deleteLater();
    Settings.setValue(FavouritesKey, pDialog->favourites());
    const QString Path = pDialog->chosenPath();
    if (Path.isEmpty())
        return Path;
    LastUsed.removeAll(Path);
    LastUsed.prepend(Path);
    Settings.setValue(LastUsedKey, QStringList(LastUsed.mid(0, Limit)));
    return Path;
}
