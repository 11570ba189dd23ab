#include "OrvCoreModules/Window/OrvApplication.h"

#include "OrvCoreModules/Window/OrvCustomFusionStyle.h"

#include <QtGui/QKeyEvent>
#include <QtWidgets/QAbstractItemView>

namespace {

/// Platforms without a screen have nobody in front of them.
bool hasScreen()
{
    const QString Platform = QGuiApplication::platformName();
    return Platform != QLatin1String("offscreen") && Platform != QLatin1String("minimal");
}

/// Such attributes count only before the application object exists, so they are set on the way to its
/// constructor.
int& withDisplayAttributes(int& ArgumentCount)
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    return ArgumentCount;
}

} // namespace

OrvApplication::State::State()
    : m_PopupsAllowed(hasScreen())
{
}

OrvApplication::OrvApplication(int& ArgumentCount, char** ppArguments)
    : QApplication(withDisplayAttributes(ArgumentCount), ppArguments)
{
    setApplicationName(QStringLiteral("orvi"));
    setApplicationDisplayName(QStringLiteral("Orvi"));
    setAttribute(Qt::AA_DontShowIconsInMenus, false);
    setStyle(new OrvCustomFusionStyle);
}

bool OrvApplication::notify(QObject* pReceiver, QEvent* pEvent)
{
    if (pEvent->type() == QEvent::ShortcutOverride && qobject_cast<QAbstractItemView*>(pReceiver)
        && static_cast<QKeyEvent*>(pEvent)->matches(QKeySequence::SelectAll)) {
        pEvent->accept();
        return true;
    }
    return QApplication::notify(pReceiver, pEvent);
}

OrvApplication::State& OrvApplication::appInstance()
{
    static State Current;
    return Current;
}

#include "moc_OrvApplication.cpp"
