// The plug-ins of this test are linked in; moc asks for it before the first include.
#define QT_STATICPLUGIN

#include "OrvCore/Object/OrvDebug.h"
#include "OrvCoreModules/Plugin/OrvPluginInterface.h"
#include "OrvCoreModules/Plugin/OrvPluginLoader.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

namespace {
QStringList s_Calls;
}

/// Notes in which order it is called.
class TestPlugin : public QObject, public OrvPluginInterface {
    Q_OBJECT
    Q_INTERFACES(OrvPluginInterface)

public:
    TestPlugin(const QString& Name, int Priority, bool Succeeds)
        : m_Name(Name)
        , m_Priority(Priority)
        , m_Succeeds(Succeeds)
    {
    }

    bool initialize() override
    {
        s_Calls.append(m_Name);
        return m_Succeeds;
    }
    bool pluginsInitialized() override
    {
        s_Calls.append(m_Name + QStringLiteral(" all"));
        return true;
    }
    QString name() const override { return m_Name; }
    QString description() const override { return {}; }
    QString author() const override { return {}; }
    QString vendor() const override { return {}; }
    int version() const override { return 1; }
    int initializePriority() const override { return m_Priority; }

private:
    QString m_Name;
    int m_Priority;
    bool m_Succeeds;
};

class OrdinaryPlugin : public TestPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID OrvPluginInterface_iid)

public:
    OrdinaryPlugin()
        : TestPlugin(QStringLiteral("ordinary"), 0, true)
    {
    }
};

Q_IMPORT_PLUGIN(OrdinaryPlugin)

/// The loader's order, and its patience with what is broken.
class TstPlugins : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        OrvSetDebugSink([this](const OrvDebugMessage& Message) { m_Log.append(Message.Text); });
        // A source file declares one plug-in; the others borrow its declaration.
        QStaticPlugin LinkedIn = qt_static_plugin_OrdinaryPlugin();
        LinkedIn.instance = [] {
            static TestPlugin Failing(QStringLiteral("failing"), 5, false);
            return static_cast<QObject*>(&Failing);
        };
        qRegisterStaticPluginFunction(LinkedIn);
        LinkedIn.instance = [] {
            static TestPlugin Urgent(QStringLiteral("urgent"), 10, true);
            return static_cast<QObject*>(&Urgent);
        };
        qRegisterStaticPluginFunction(LinkedIn);
    }
    void cleanupTestCase() { OrvSetDebugSink({}); }

    void initialisesByPriorityAndLeavesFailuresOut()
    {
        QTemporaryDir Directory;
        QFile Broken(Directory.filePath(QStringLiteral("libBroken.so")));
        QVERIFY(Broken.open(QIODevice::WriteOnly));
        Broken.write("no library at all");
        Broken.close();
        QFile Note(Directory.filePath(QStringLiteral("ReadMe.txt")));
        QVERIFY(Note.open(QIODevice::WriteOnly));
        Note.close();

        OrvPluginLoader& Loader = OrvPluginLoader::instance();
        const QStringList Directories{Directory.path(), Directory.filePath(QStringLiteral("missing"))};
        QVERIFY(!Loader.loadAll(Directories));
        QCOMPARE(s_Calls, QStringList({"urgent", "failing", "ordinary", "urgent all", "ordinary all"}));
        QCOMPARE(m_Log.filter(QStringLiteral("libBroken.so")).size(), 1);
        QCOMPARE(m_Log.filter(QStringLiteral("'failing' is left out")).size(), 1);
        QVERIFY(m_Log.filter(QStringLiteral("ReadMe")).isEmpty());
        QCOMPARE(Loader.plugins().size(), 4);

        // What was seen stays as it is.
        QVERIFY(Loader.loadAll(Directories));
        QCOMPARE(Loader.plugins().size(), 4);
        QCOMPARE(s_Calls.size(), 5);
    }

    void environmentNamesTheDirectories()
    {
        const QByteArray Old = qgetenv("ORV_PLUGINS");
        qputenv("ORV_PLUGINS", "first" + QString(QDir::listSeparator()).toLatin1() + "second");
        QCOMPARE(OrvPluginLoader::directories(), QStringList({"first", "second"}));
        qputenv("ORV_PLUGINS", Old);
    }

private:
    QStringList m_Log;
};

QTEST_MAIN(TstPlugins)
#include "TstPlugins.moc"
