#include "SettingsDirectory.h"

#include "OrvCore/Object/OrvDebug.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Plugin/OrvPluginInterface.h"
#include "OrvCoreModules/Window/OrvContextHelp.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvPalette.h"
#include "OrvCoreModules/Window/OrvPaletteManager.h"

#include <QtCore/QPluginLoader>
#include <QtTest/QtTest>
#include <QtWidgets/QAction>

/// The module as the host finds it: a file in the plug-in directory.
class TstModule : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_Directory.isValid());
        OrvSetDebugSink([this](const OrvDebugMessage& Message) { m_Messages.append(Message); });
        OrvMenuManager::instance().addMenuSet(QStringLiteral("Panel"));
        const QDir Directory(QString::fromLocal8Bit(qgetenv("ORV_PLUGINS")));
        m_Loader.setFileName(Directory.filePath(QStringLiteral("libOrvShaderNetworkLayerViewContext")));
    }

    void cleanupTestCase() { OrvSetDebugSink({}); }

    void rootObjectIsOne()
    {
        QObject* pRoot = m_Loader.instance();
        QVERIFY2(pRoot, qPrintable(m_Loader.errorString()));
        QCOMPARE(m_Loader.instance(), pRoot);
        QCOMPARE(m_Loader.metaData().value(QStringLiteral("IID")).toString(),
            QStringLiteral(OrvPluginInterface_iid));
        QCOMPARE(m_Loader.metaData().value(QStringLiteral("className")).toString(),
            QStringLiteral("OrvShaderNetworkLayerViewContextPlugin"));
        const auto* pModule = qobject_cast<OrvPluginInterface*>(pRoot);
        QVERIFY(pModule);
        QCOMPARE(pModule->name(), QStringLiteral("Layer View Context"));
        QCOMPARE(pModule->version(), 1);
    }

    void startBringsMenusAndPalettes()
    {
        auto* pModule = qobject_cast<OrvPluginInterface*>(m_Loader.instance());
        QVERIFY(pModule);
        followStart();
        QVERIFY(pModule->initialize());
        QCOMPARE(m_Steps.mid(0, 6).join(QLatin1Char(' ')),
            QStringLiteral("/Orvi/Channels /Orvi/Layers /Orvi/Channels Shaders Channels Layers"));
        QCOMPARE(m_Messages.first().Text, QStringLiteral("[ Plugin ] Shader Network - Layer View Context"));
        QCOMPARE(m_Messages.first().File, QStringLiteral("OrvShaderNetworkLayerViewContextPlugin"));
        QCOMPARE(m_Messages.first().Line, 20);

        const QStringList Names{
            QStringLiteral("Layers"), QStringLiteral("Channels"), QStringLiteral("Shaders")};
        OrvMenuManager& Menus = OrvMenuManager::instance();
        QCOMPARE(Menus.menuSets().mid(Menus.menuSets().indexOf(QStringLiteral("Layers"))), Names);
        QCOMPARE(Menus.rootMenus(QStringLiteral("Panel")), Names);
        QStringList Palettes;
        for (const OrvPalette* pPalette : OrvPaletteManager::instance().palettes())
            Palettes.append(pPalette->objectName());
        QCOMPARE(Palettes,
            QStringList({QStringLiteral("Shaders"), QStringLiteral("Channels"), QStringLiteral("Layers")}));
        for (const OrvPalette* pPalette : OrvPaletteManager::instance().palettes()) {
            QCOMPARE(pPalette->windowTitle(), pPalette->objectName());
            QCOMPARE(pPalette->contextHelpKey(), pPalette->objectName().toLower() + QStringLiteral("_palette"));
            QVERIFY(OrvContextHelp::text(pPalette->contextHelpKey()).contains(pPalette->objectName()));
            QVERIFY(!pPalette->paletteIcon().isNull());
            QVERIFY(pPalette->originalWidget());
        }
        OrvPalette* pLayers = OrvPaletteManager::find(QStringLiteral("Layers"));
        OrvPalette* pChannels = OrvPaletteManager::find(QStringLiteral("Channels"));
        QCOMPARE(pLayers->relatedPalettes(), QList<OrvPalette*>{pChannels});
        QCOMPARE(pChannels->relatedPalettes(), QList<OrvPalette*>{pLayers});
        for (const char* pType :
            {"OrvLayer*", "OrvSnBaseNode*", "OrvLayerCreateFlags", "OrvColor", "QItemSelection"})
            QVERIFY(QMetaType::type(pType) != QMetaType::UnknownType);

        const int MessageCount = m_Messages.size();
        QVERIFY(pModule->pluginsInitialized());
        QCOMPARE(m_Messages.size(), MessageCount);
        QCOMPARE(Menus.rootMenus(QStringLiteral("Panel")), Names);
    }

private:
    /// Notes what is registered from now on: palettes, and the first of each run of the module's actions.
    void followStart()
    {
        connect(&OrvActionTreeManager::instance(), &OrvActionTreeManager::actionRegistered, this,
            [this](const QString& Key) {
                const QString Root = Key.section(QLatin1Char('/'), 0, 2);
                const bool IsOfPalettesMenu = Root == QLatin1String("/Orvi/Palettes");
                if (!IsOfPalettesMenu && (m_Steps.isEmpty() || m_Steps.last() != Root))
                    m_Steps.append(Root);
            });
        connect(&OrvPaletteManager::instance(), &OrvPaletteManager::paletteRegistered, this,
            [this](const OrvPalette* pPalette) {
                m_Steps.append(pPalette->objectName());
                // The menus come last.
                QVERIFY(!OrvMenuManager::instance().menuSets().contains(pPalette->objectName()));
            });
    }

    SettingsDirectory m_Directory;
    QPluginLoader m_Loader;
    QStringList m_Steps;
    QVector<OrvDebugMessage> m_Messages;
};

QTEST_MAIN(TstModule)
#include "TstModule.moc"
