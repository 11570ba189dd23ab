#include "OrvCoreModules/Window/OrvPixmap.h"

#include "OrvCoreModules/Window/OrvFileIconEngine.h"

#include <QtGui/QGuiApplication>

QPixmap OrvPixmap::createQPixmapFromPath(const QString& Path)
{
    OrvFileIconEngine Engine(Path);
    const QSize OwnSize = Engine.availableSizes(QIcon::Normal, QIcon::Off).value(0);
    if (OwnSize.isEmpty())
        return {};
    const qreal Ratio = qGuiApp->devicePixelRatio();
    QPixmap Pixmap = Engine.pixmap(OwnSize * Ratio, QIcon::Normal, QIcon::Off);
    // Without a twin for dense screens the file keeps its size, in larger pixels.
    Pixmap.setDevicePixelRatio(qreal(Pixmap.width()) / OwnSize.width());
    return Pixmap;
}
