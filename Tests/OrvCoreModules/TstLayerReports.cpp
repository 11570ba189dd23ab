#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Layers/OrvLayerRendering.h"
#include "OrvCore/Network/OrvSnBakePointNode.h"

#include "OrvCoreModules/Properties/OrvNodePropertyEditors.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include <QtTest/QtTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

/// What layers refuse, how far long work is, and what becomes of a bake point, as the user learns it.
class TstLayerReports : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void refusalsAreToldOnTheStatusLine()
    {
        OrvStatusManager& Status = OrvStatusManager::instance();
        OrvTestProject Project;
        OrvLayer* pLayer = Project.paint("Paint");
        Status.showMessage(QString());
        QVERIFY(!pLayer->applyMask());
        QVERIFY(Status.text().contains("'Paint'"));
        pLayer->setLocked(true);
        QVERIFY(!pLayer->addMaskImageSetFromAlpha());
        QVERIFY(Status.text().contains("locked"));
    }

    void longWorkIsReportedToItsEnd()
    {
        OrvStatusManager& Status = OrvStatusManager::instance();
        Status.showMessage(QString());
        OrvTestProject Project(QSize(16, 2000));
        Project.paint("Paint", OrvColor::white());
        QStringList Texts;
        const auto Connection = connect(
            &Status, &OrvStatusManager::textChanged, [&Texts](const QString& Text) { Texts.append(Text); });
        for (int Round = 0; Round < 2; ++Round) {
            Texts.clear();
            QVERIFY(!OrvLayerRendering::render(Project.channel()->node(), Project.channel()->layout(),
                Project.channel()->paintFormat(), OrvChannelSpace::storedIn(Project.channel()))
                         .isNull());
            QCOMPARE(Texts.size(), 2); // comes and goes
            QVERIFY(!Texts.first().isEmpty() && Texts.last().isEmpty());
        }
        disconnect(Connection);
    }

    void bakePointsAreBakedFromTheirProperties()
    {
        OrvTestProject Project;
        OrvLayer* pPaint = Project.paint("Paint", OrvColor::white());
        OrvLayer* pBake = Project.channel()->createBakePointLayer(30);
        OrvSnBakePointNode* pNode = pBake->bakePointNode();
        const std::unique_ptr<QWidget> pEditor(
            OrvNodePropertyEditors::create(pNode, QStringLiteral("Bake Point"), 0, nullptr));
        const auto button = [&pEditor](const QString& Text) -> QPushButton* {
            for (QPushButton* pButton : pEditor->findChildren<QPushButton*>()) {
                if (pButton->text() == Text)
                    return pButton;
            }
            return nullptr;
        };
        const auto shows = [&pEditor](const QString& Text) {
            for (const QLabel* pLabel : pEditor->findChildren<QLabel*>()) {
                if (pLabel->text() == Text)
                    return true;
            }
            return false;
        };
        QVERIFY(button("Bake") && button("Unbake") && !button("Unbake")->isEnabled());
        QVERIFY(shows("Not baked"));
        button("Bake")->click();
        QVERIFY(pNode->hasBakedResult() && shows("Up to date") && button("Unbake")->isEnabled());
        pPaint->setVisible(false);
        QVERIFY(shows("Out of date"));
        Project.undo();
        QVERIFY(shows("Up to date"));
        pBake->setLocked(true);
        button("Unbake")->click();
        QVERIFY(pNode->hasBakedResult());
        pBake->setLocked(false);
        button("Unbake")->click();
        QVERIFY(!pNode->hasBakedResult() && shows("Not baked"));
    }
};

QTEST_MAIN(TstLayerReports)
#include "TstLayerReports.moc"
