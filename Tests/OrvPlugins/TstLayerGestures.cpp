#include "LayersFixture.h"
#include "LayersPaletteFixture.h"
#include "SettingsDirectory.h"

#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCoreModules/Widgets/OrvComboBox.h"
#include "OrvCoreModules/Widgets/OrvEditLabel.h"
#include "OrvCoreModules/Widgets/OrvSliderSpinBox.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerBlendRow.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"

#include <QtTest/QtTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QUndoStack>

using namespace LayersFixture;

/// What one gesture or key in the Layers palette does to several layers at once.
class TstLayerGestures : public QObject {
    Q_OBJECT

    using Row = OrvLayerViewItemRowWidget;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_Directory.isValid());
        m_View = showLayersPalette(QSize(1000, 800));
        QVERIFY(m_View);
    }

    void init()
    {
        OrvProjectManager::instance().newProject(QStringLiteral("Test"));
        m_Channel = addChannel(QStringLiteral("Diffuse"));
        m_View->setLayerStack(m_Channel);
        m_Layers = addLayers(m_Channel, {"A", "B", "C", "D"});
        refresh();
        m_UndoIndex = undoIndex();
    }

    void cleanup()
    {
        OrvProjectManager::instance().closeProject();
        m_View->refresh();
        QTest::qWait(10);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void sweepGivesTheStateOfTheFirst()
    {
        m_Layers[1]->setVisible(false);
        m_UndoIndex = undoIndex();
        QTest::mousePress(eye(m_Layers[0]), Qt::LeftButton);
        QCOMPARE(visible(), QStringLiteral("CD"));
        // Faster than there are events for every row; what was hidden already stays so.
        drag(m_Layers[0], eyeCenter(m_Layers[2]));
        QCOMPARE(visible(), QStringLiteral("D"));
        drag(m_Layers[0], eyeCenter(m_Layers[3]) + QPoint(60, 0));
        release(m_Layers[0], eyeCenter(m_Layers[3]));
        QCOMPARE(visible(), QStringLiteral("D"));
        drag(m_Layers[0], eyeCenter(m_Layers[3]));
        QCOMPARE(visible(), QStringLiteral("D"));
        expectOneStep(QStringLiteral("ACD"), QStringLiteral("D"));
    }

    void sweepFromASelectedRowMovesNothing()
    {
        select({0});
        m_UndoIndex = undoIndex();
        const QString Before = stackText(m_Channel);
        const QPoint First = eyeCenter(m_Layers[0]), Third = eyeCenter(m_Layers[2]);
        QTest::mousePress(eye(m_Layers[0]), Qt::LeftButton);
        for (int Step = 1; Step <= 10; ++Step)
            drag(m_Layers[0], First + (Third - First) * Step / 10);
        drag(m_Layers[0], First); // over the first eye again
        release(m_Layers[0], Third);
        expectOneStep(QStringLiteral("ABCD"), QStringLiteral("D"));
        QCOMPARE(OrvUndoManager::instance().stack()->undoText(), QStringLiteral("Hide Layers"));
        // A button that makes nothing of being pulled leaves the row where it is, too.
        QTest::mousePress(lock(m_Layers[0]), Qt::LeftButton);
        for (int Step = 1; Step <= 10; ++Step) {
            const QPoint At = lock(m_Layers[0])->rect().center() + QPoint(0, 6 * Step);
            QMouseEvent Move(QEvent::MouseMove, At, lock(m_Layers[0])->mapToGlobal(At), Qt::NoButton,
                Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(lock(m_Layers[0]), &Move);
        }
        QTest::mouseRelease(lock(m_Layers[0]), Qt::LeftButton, Qt::NoModifier, QPoint(2, 70));
        QCOMPARE(stackText(m_Channel), Before);
        QCOMPARE(undoIndex(), m_UndoIndex + 1);
        QVERIFY(m_Layers[0]->isSelected() && !m_Layers[1]->isSelected());
    }

    void sweepReachesIntoGroups()
    {
        OrvLayer* pGroup = group(m_Channel, {m_Layers[1], m_Layers[2]}, QStringLiteral("G"));
        refresh();
        m_UndoIndex = undoIndex();
        QTest::mousePress(eye(m_Layers[0]), Qt::LeftButton);
        drag(m_Layers[0], eyeCenter(m_Layers[3]));
        release(m_Layers[0], eyeCenter(m_Layers[3]));
        QVERIFY(!pGroup->isVisible());
        expectOneStep(QStringLiteral("ABCD"), QString());
    }

    void sweepOutlivesItsRow()
    {
        QTest::mousePress(eye(m_Layers[0]), Qt::LeftButton);
        m_View->clearAndRefresh();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_View->treeView()->grab();
        drag(m_Layers[1], eyeCenter(m_Layers[1]));
        release(m_Layers[1], eyeCenter(m_Layers[1]));
        expectOneStep(QStringLiteral("ABCD"), QStringLiteral("CD"));
    }

    void keysDuringASweepFindTheDocumentWhole()
    {
        QTest::mousePress(eye(m_Layers[0]), Qt::LeftButton);
        QTest::keyClick(m_View->treeView(), Qt::Key_Control, Qt::ControlModifier);
        QCOMPARE(undoIndex(), m_UndoIndex + 1);
        drag(m_Layers[0], eyeCenter(m_Layers[2]));
        QCOMPARE(visible(), QStringLiteral("BCD"));
        release(m_Layers[0], eyeCenter(m_Layers[0]));
        QCOMPARE(undoIndex(), m_UndoIndex + 1);
    }

    void altClickShowsALayerAlone()
    {
        m_Layers[3]->setVisible(false);
        m_UndoIndex = undoIndex();
        altClick(m_Layers[1]);
        expectOneStep(QStringLiteral("ABC"), QStringLiteral("B"));
        altClick(m_Layers[1]);
        QCOMPARE(visible(), QStringLiteral("ABC"));
        QCOMPARE(undoIndex(), m_UndoIndex + 2);
        // A hidden layer is hidden again.
        altClick(m_Layers[3]);
        QCOMPARE(visible(), QStringLiteral("D"));
        altClick(m_Layers[0]);
        QCOMPARE(visible(), QStringLiteral("A"));
        altClick(m_Layers[0]);
        QCOMPARE(visible(), QStringLiteral("ABC"));
    }

    void whatWasSurvivesChangesInBetween()
    {
        m_Layers[3]->setVisible(false);
        altClick(m_Layers[1]);
        m_Channel->deleteLayers({m_Layers[2]});
        addLayer(m_Channel, QStringLiteral("E"));
        refresh();
        altClick(m_Layers[1]);
        m_Layers.removeAt(2);
        QCOMPARE(visible(), QStringLiteral("AB"));

        // Undone, it is no longer in effect, and is done anew.
        altClick(m_Layers[0]);
        OrvUndoManager::instance().undo();
        QCOMPARE(visible(), QStringLiteral("AB"));
        altClick(m_Layers[0]);
        QCOMPARE(visible(), QStringLiteral("A"));
        // The user's own clicks weigh more than what is remembered.
        click(eye(m_Layers[1]));
        altClick(m_Layers[0]);
        QCOMPARE(visible(), QStringLiteral("A"));
    }

    /// Back and forth: whatever state undo leads to, what was hidden before is hidden again.
    void undoLeadsBackToWhatWasAlone()
    {
        m_Layers[3]->setVisible(false);
        altClick(m_Layers[1]);
        altClick(m_Layers[2]);
        QCOMPARE(visible(), QStringLiteral("C"));
        OrvUndoManager::instance().undo();
        QCOMPARE(visible(), QStringLiteral("B"));
        altClick(m_Layers[1]);
        QCOMPARE(visible(), QStringLiteral("ABC"));
        OrvUndoManager::instance().undo();
        altClick(m_Layers[1]);
        QCOMPARE(visible(), QStringLiteral("ABC"));
        // The group that holds what is alone stands for it.
        OrvLayer* pGroup = group(m_Channel, {m_Layers[1], m_Layers[2]}, QStringLiteral("G"));
        refresh();
        altClick(m_Layers[1]);
        QCOMPARE(visible(), QStringLiteral("B"));
        altClick(pGroup);
        QCOMPARE(visible(), QStringLiteral("ABC"));
    }

    void layerInAGroupIsAloneInTheWholeStack()
    {
        OrvLayer* pGroup = group(m_Channel, {m_Layers[1], m_Layers[2]}, QStringLiteral("G"));
        pGroup->setVisible(false);
        refresh();
        altClick(m_Layers[1]);
        QCOMPARE(visible(), QStringLiteral("B"));
        QVERIFY(pGroup->isVisible());
        altClick(m_Layers[1]);
        QCOMPARE(visible(), QStringLiteral("ABCD"));
        QVERIFY(!pGroup->isVisible());
    }

    void layerThatIsAloneAlreadyShowsTheOthers()
    {
        for (int Index : {0, 2, 3})
            click(eye(m_Layers[Index]));
        altClick(m_Layers[1]);
        QCOMPARE(visible(), QStringLiteral("ABCD"));
    }

    void eyeAndLockOfTheSelectionGoTogether()
    {
        select({0, 2, 3});
        click(eye(m_Layers[2]));
        expectOneStep(QStringLiteral("ABCD"), QStringLiteral("B"));
        click(eye(m_Layers[1]));
        QCOMPARE(visible(), QString());
        OrvUndoManager::instance().undo();

        click(lock(m_Layers[0]));
        QCOMPARE(locked(), QStringLiteral("ACD"));
        OrvUndoManager::instance().undo();
        QCOMPARE(locked(), QString());
        click(lock(m_Layers[1]));
        QCOMPARE(locked(), QStringLiteral("B"));
    }

    void unlockingTheSelectionAsksOnce_data()
    {
        QTest::addColumn<int>("Button");
        QTest::addColumn<QString>("StillLocked");
        QTest::newRow("yes") << int(QMessageBox::Yes) << QString();
        QTest::newRow("no") << int(QMessageBox::No) << QStringLiteral("ABC");
    }
    void unlockingTheSelectionAsksOnce()
    {
        QFETCH(int, Button);
        QFETCH(QString, StillLocked);
        OrvLayer* pGroup = group(m_Channel, {m_Layers[1], m_Layers[2]}, QStringLiteral("G"));
        for (OrvLayer* pLayer : {m_Layers[0], m_Layers[1], m_Layers[2], pGroup})
            pLayer->setLocked(true);
        refresh();
        select({0, 1, 2});
        m_UndoIndex = undoIndex();
        int Questions = 0;
        QTimer Answers;
        connect(&Answers, &QTimer::timeout, this, [&] {
            if (auto* pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                ++Questions;
                pBox->button(QMessageBox::StandardButton(Button))->click();
            }
        });
        Answers.start(0);
        click(lock(m_Layers[0]));
        QCOMPARE(Questions, 1);
        QCOMPARE(locked(), StillLocked);
        QCOMPARE(pGroup->isLocked(), !StillLocked.isEmpty());
        QCOMPARE(undoIndex(), m_UndoIndex + (StillLocked.isEmpty() ? 1 : 0));
    }

    /// Sharers in a row, the last of them in a locked group: all that keeps one of them closed is opened.
    void unlockingOpensThoseThatShare()
    {
        select({0});
        OrvLayer* pShared = m_Channel->shareLayer(m_Layers[0], OrvLayerCreateFlags());
        QVERIFY(pShared && pShared->getOtherSharers().contains(m_Layers[0]));
        OrvLayer* pInGroup = m_Channel->shareLayer(m_Layers[0], OrvLayerCreateFlags());
        OrvLayer* pGroup = group(m_Channel, {pInGroup}, QStringLiteral("G"));
        // Another mask in common leads on to a layer that the first does not know.
        OrvLayer* pFar = m_Layers[3];
        pFar->addMaskImageSet();
        pInGroup->blendNode()->connectInput(OrvSnNames::Mask, pFar->maskNode());
        QVERIFY(pInGroup->getOtherSharers().contains(pFar) && !pShared->getOtherSharers().contains(pFar));
        const QList<OrvLayer*> Closed{m_Layers[0], pFar, pGroup, pInGroup};
        for (OrvLayer* pLayer : Closed)
            pLayer->setLocked(true);
        refresh();
        m_UndoIndex = undoIndex();
        const auto isShownClosed
            = [this](const OrvLayer* pLayer) { return lock(pLayer)->defaultAction()->isChecked(); };
        QVERIFY(isShownClosed(pShared));
        bool ClosedWhileAsked = false;
        for (const auto Answer : {QMessageBox::No, QMessageBox::Yes}) {
            QTimer::singleShot(20, this, [&, Answer] {
                auto* pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                QVERIFY(pBox);
                ClosedWhileAsked = isShownClosed(pShared);
                pBox->button(Answer)->click();
            });
            click(lock(pShared));
            QVERIFY(ClosedWhileAsked);
            QCOMPARE(isShownClosed(pShared), Answer == QMessageBox::No);
        }
        refresh();
        for (OrvLayer* pLayer : Closed) {
            QVERIFY2(!pLayer->isLocked() && pLayer->isModifiable(), qPrintable(pLayer->name()));
            QVERIFY(!isShownClosed(pLayer));
        }
        QCOMPARE(undoIndex(), m_UndoIndex + 1);
    }

    void undoBringsTheSelectionBackWithTheCurrentLayer()
    {
        m_Layers[1]->makeCurrent(false, true);
        select({1});
        m_View->addNewLayer();
        refresh();
        OrvLayer* pAdded = OrvLayerManager::instance().currentLayer();
        const auto rowIsCurrent = [this](OrvLayer* pLayer) {
            refresh();
            const auto* pTree = m_View->treeView();
            const QModelIndexList Selected = pTree->selectionModel()->selectedRows();
            return OrvLayerManager::instance().currentLayer() == pLayer
                && OrvLayerManager::instance().currentComponent() == pLayer->paintNode()
                && m_View->layerFromIndex(pTree->currentIndex()) == pLayer && Selected.size() == 1
                && m_View->layerFromIndex(Selected.first()) == pLayer && pLayer->isSelected();
        };
        QVERIFY(rowIsCurrent(pAdded));
        m_View->removeLayers();
        OrvLayer* pNext = OrvLayerManager::instance().currentLayer();
        QVERIFY(rowIsCurrent(pNext));
        OrvUndoManager::instance().undo();
        QVERIFY(rowIsCurrent(pAdded));
        OrvUndoManager::instance().redo();
        QVERIFY(rowIsCurrent(pNext));
        OrvUndoManager::instance().undo();
        OrvUndoManager::instance().undo();
        QVERIFY(rowIsCurrent(m_Layers[1]));

        select({0, 2});
        m_View->removeLayers();
        OrvUndoManager::instance().undo();
        refresh();
        QVERIFY(m_Layers[0]->isSelected() && m_Layers[2]->isSelected() && m_Layers[2]->isCurrent());
        QCOMPARE(m_View->treeView()->selectionModel()->selectedRows().size(), 2);
    }

    void hostSelectsWhatTheTreeShows()
    {
        select({0});
        // A menu takes the release of the button that opens it.
        QTest::mousePress(m_View->treeView()->viewport(), Qt::RightButton, Qt::NoModifier, placeOf(1));
        QTest::mouseClick(m_View->treeView()->viewport(), Qt::LeftButton, Qt::ControlModifier, placeOf(3));
        QCOMPARE(selectedRows(), QStringLiteral("BD"));
        QCOMPARE(names(&OrvLayer::isSelected), QStringLiteral("BD"));
        select({1});
        key(Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(selectedRows(), QStringLiteral("BC"));
        QCOMPARE(names(&OrvLayer::isSelected), QStringLiteral("BC"));
    }

    void choosingOneRowLeavesThoseThatShareBehind()
    {
        OrvLayer* pSharing = m_Channel->shareLayer(m_Layers[0], OrvLayerCreateFlags());
        QVERIFY(pSharing);
        m_Layers.append(pSharing);
        pSharing->setName(QStringLiteral("E"));
        refresh();
        select({0});
        key(Qt::Key_Down);
        const QString Chosen = selectedRows();
        QCOMPARE(Chosen.size(), 1);
        QCOMPARE(names(&OrvLayer::isSelected), Chosen);
        select({2, 0});
        select({2}); // one of two: the row is chosen when the button is released
        QCOMPARE(selectedRows(), QStringLiteral("C"));
        QCOMPARE(names(&OrvLayer::isSelected), QStringLiteral("C"));
    }

    /// Whatever else is selected in other stacks or in the node graph.
    void rowThatBecomesCurrentIsSelected()
    {
        OrvLayer* pElsewhere = addLayer(addChannel(QStringLiteral("Bump")), QStringLiteral("Elsewhere"));
        OrvShaderInputManager::instance().makeShaderInputCurrent(m_Channel, true);
        refresh();
        select({1});
        m_Layers[1]->makeCurrent(false, true);
        pElsewhere->setSelected(true);
        network()->setSelected(m_Layers[3]->paintNode(), true);
        for (int Expected : {2, 3}) {
            m_View->removeLayers();
            refresh();
            QVERIFY(m_Layers[Expected]->isCurrent() && m_Layers[Expected]->isSelected());
            QCOMPARE(m_View->treeView()->selectionModel()->selectedRows().size(), 1);
        }
    }

    void refusedCommandsSayWhy()
    {
        m_Layers[1]->setLocked(true);
        m_Layers[2]->setLocked(true);
        QSignalSpy Refused(&OrvLayerManager::instance(), &OrvLayerManager::refused);
        int Told = 0;
        const auto saysOnlyWhy = [&](const char* pWord) {
            return Refused.size() == ++Told && undoIndex() == m_UndoIndex
                && Refused.last().first().toString().contains(QLatin1String(pWord));
        };
        for (const QVector<int>& Locked : {QVector<int>{1}, QVector<int>{1, 2}}) {
            select(Locked);
            m_UndoIndex = undoIndex();
            m_View->removeLayers();
            QVERIFY(saysOnlyWhy("locked"));
        }
        m_View->mergeLayers();
        QVERIFY(saysOnlyWhy("locked"));
        select({0});
        m_UndoIndex = undoIndex();
        m_View->mergeLayers();
        QVERIFY(saysOnlyWhy("two"));
        QCOMPARE(stackText(m_Channel), QStringLiteral("A B C D"));
    }

    void focusIsBackAfterQuickFind_data()
    {
        QTest::addColumn<int>("Key");
        QTest::newRow("chosen") << int(Qt::Key_Return);
        QTest::newRow("cancelled") << int(Qt::Key_Escape);
    }
    void focusIsBackAfterQuickFind()
    {
        QFETCH(int, Key);
        select({1});
        m_View->window()->activateWindow();
        m_View->treeView()->setFocus();
        QTRY_VERIFY(m_View->treeView()->hasFocus());
        QString Title;
        QTimer::singleShot(50, this, [&] {
            QWidget* pDialog = QApplication::activeModalWidget();
            QVERIFY(pDialog);
            Title = pDialog->windowTitle();
            // The dialog covers the tree.
            QEvent Leave(QEvent::Leave);
            QApplication::sendEvent(m_View->treeView(), &Leave);
            QTest::keyClicks(pDialog->findChild<QLineEdit*>(), QStringLiteral("blur"));
            QTest::keyClick(pDialog->findChild<QLineEdit*>(), Qt::Key(Key));
        });
        m_View->quickFind();
        QCOMPARE(Title, QStringLiteral("Quick Find"));
        m_View->window()->activateWindow();
        QTRY_VERIFY(m_View->treeView()->hasFocus());
    }

    void blendModeGoesToAllThatAllowIt()
    {
        m_Layers[2]->setLocked(true);
        select({2, 0, 1});
        m_UndoIndex = undoIndex();
        auto* pCombo = blendEditor<OrvComboBox>();
        const QStringList Before = values(OrvMergeAttributes::BlendMode);
        QTest::keyClick(pCombo, Qt::Key_Down);
        const QStringList After = values(OrvMergeAttributes::BlendMode);
        QVERIFY(After[0] != Before[0]);
        QCOMPARE(After, QStringList({After[0], After[0], Before[2], Before[3]}));
        QCOMPARE(undoIndex(), m_UndoIndex + 1);
        QCOMPARE(OrvUndoManager::instance().stack()->undoText(), QStringLiteral("Set Blend Mode of Layers"));
        OrvUndoManager::instance().undo();
        QCOMPARE(values(OrvMergeAttributes::BlendMode), Before);
        select({1});
        QTest::keyClick(blendEditor<OrvComboBox>(), Qt::Key_Down);
        QCOMPARE(OrvUndoManager::instance().stack()->undoText(), QStringLiteral("Set Blend Mode of 'B'"));
    }

    void amountIsDraggedForAll()
    {
        m_Layers[1]->blendNode()->setUserAttributeValue(OrvMergeAttributes::Amount, 0.25);
        select({0, 1});
        m_UndoIndex = undoIndex();
        auto* pSlider = blendEditor<OrvSliderSpinBox>();
        const QStringList Before = values(OrvMergeAttributes::Amount);
        Q_EMIT pSlider->editBegun();
        Q_EMIT pSlider->valueEdited(0.5);
        QCOMPARE(values(OrvMergeAttributes::Amount).mid(0, 3), QStringList({"0.5", "0.5", Before[2]}));
        Q_EMIT pSlider->valueEdited(Before[1].toDouble());
        Q_EMIT pSlider->editFinished();
        QCOMPARE(values(OrvMergeAttributes::Amount), Before);
        QCOMPARE(undoIndex(), m_UndoIndex);

        Q_EMIT pSlider->editBegun();
        Q_EMIT pSlider->valueEdited(0.5);
        Q_EMIT pSlider->editFinished();
        QCOMPARE(values(OrvMergeAttributes::Amount).mid(0, 3), QStringList({"0.5", "0.5", Before[2]}));
        QCOMPARE(undoIndex(), m_UndoIndex + 1);
        OrvUndoManager::instance().undo();
        QCOMPARE(values(OrvMergeAttributes::Amount), Before);
    }

    void blendingOfACurrentLayerOutsideTheSelectionIsItsOwn()
    {
        select({0, 1});
        m_Layers[3]->makeCurrent(false, false);
        refresh();
        auto* pCombo = blendEditor<OrvComboBox>();
        const QStringList Before = values(OrvMergeAttributes::BlendMode);
        QTest::keyClick(pCombo, Qt::Key_Down);
        const QStringList After = values(OrvMergeAttributes::BlendMode);
        QCOMPARE(After.mid(0, 3), Before.mid(0, 3));
        QVERIFY(After[3] != Before[3]);
    }

    void keysChangeTheSelection()
    {
        select({1, 2});
        key(Qt::Key_Space);
        expectOneStep(QStringLiteral("ABCD"), QStringLiteral("AD"));
        // The key of a tool elsewhere in the window, too.
        key(Qt::Key_L);
        QCOMPARE(locked(), QStringLiteral("BC"));
        key(Qt::Key_L);
        QCOMPARE(locked(), QString());
        key(Qt::Key_F2);
        QVERIFY(row(m_Layers[2])->findChild<OrvEditLabel*>()->isEditing());
    }

    void keysMoveTheSelection_data()
    {
        QTest::addColumn<QVector<int>>("Selected");
        QTest::addColumn<int>("Key");
        QTest::addColumn<QString>("Stack");
        QTest::newRow("up") << QVector<int>{2} << int(Qt::Key_Up) << "A C G(B) D";
        QTest::newRow("up, two") << QVector<int>{2, 3} << int(Qt::Key_Up) << "A C D G(B)";
        QTest::newRow("up, one at the end") << QVector<int>{0, 3} << int(Qt::Key_Up) << "A G(B) D C";
        QTest::newRow("down, two") << QVector<int>{0, 2} << int(Qt::Key_Down) << "G(B) A D C";
        QTest::newRow("down, at the end") << QVector<int>{2, 3} << int(Qt::Key_Down) << "A G(B) C D";
        QTest::newRow("into the group below") << QVector<int>{0} << int(Qt::Key_Right) << "G(A B) C D";
        QTest::newRow("into the group above") << QVector<int>{2, 3} << int(Qt::Key_Right) << "A G(B C D)";
        QTest::newRow("no group there") << QVector<int>{3} << int(Qt::Key_Right) << "A G(B) C D";
        QTest::newRow("no group around") << QVector<int>{3} << int(Qt::Key_Left) << "A G(B) C D";
    }
    void keysMoveTheSelection()
    {
        QFETCH(QVector<int>, Selected);
        QFETCH(int, Key);
        QFETCH(QString, Stack);
        group(m_Channel, {m_Layers[1]}, QStringLiteral("G"));
        refresh();
        select(Selected);
        m_UndoIndex = undoIndex();
        const QString Before = stackText(m_Channel);
        key(Qt::Key(Key), Qt::AltModifier);
        QCOMPARE(stackText(m_Channel), Stack);
        QCOMPARE(undoIndex(), m_UndoIndex + (Stack == Before ? 0 : 1));
        refresh();
        QCOMPARE(rowText(m_View), Stack);
        for (int Index : Selected)
            QVERIFY(m_Layers[Index]->isSelected());
        if (Stack == Before)
            return;
        OrvUndoManager::instance().undo();
        QCOMPARE(stackText(m_Channel), Before);
    }

    void keysMoveOutOfGroupsAndBack()
    {
        OrvLayer* pGroup = group(m_Channel, {m_Layers[1], m_Layers[2]}, QStringLiteral("G"));
        refresh();
        select({1, 2});
        key(Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(stackText(m_Channel), QStringLiteral("A B C G() D"));
        refresh();
        m_View->treeView()->collapse(m_View->model()->indexFromLayer(pGroup));
        key(Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(stackText(m_Channel), QStringLiteral("A G(B C) D"));
        m_View->refresh();
        QVERIFY(m_View->treeView()->isExpanded(m_View->model()->indexFromLayer(pGroup)));
    }

    void lockedLayersAreNotMoved()
    {
        m_Layers[1]->setLocked(true);
        select({1, 2});
        m_UndoIndex = undoIndex();
        key(Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(stackText(m_Channel), QStringLiteral("A B C D"));
        QCOMPARE(undoIndex(), m_UndoIndex);
    }

private:
    static int undoIndex() { return OrvUndoManager::instance().stack()->index(); }

    void refresh() const { showRows(m_View); }
    QPoint placeOf(int Index) const
    {
        return m_View->treeView()->visualRect(m_View->model()->indexFromLayer(m_Layers[Index])).center();
    }
    /// Their names, as in names().
    QString selectedRows() const
    {
        QString Names;
        for (const OrvLayer* pLayer : m_Layers) {
            const QModelIndex Place = m_View->model()->indexFromLayer(pLayer);
            Names += m_View->treeView()->selectionModel()->isSelected(Place) ? pLayer->name() : QString();
        }
        return Names;
    }
    /// The last one becomes current.
    void select(const QVector<int>& Indexes) const
    {
        auto modifier = Qt::KeyboardModifiers(Qt::NoModifier);
        for (int Index : Indexes) {
            QTest::mouseClick(m_View->treeView()->viewport(), Qt::LeftButton, modifier, placeOf(Index));
            modifier = Qt::ControlModifier;
        }
    }
    Row* row(const OrvLayer* pLayer) const { return rowOf(m_View, pLayer); }
    QToolButton* eye(const OrvLayer* pLayer) const
    {
        return row(pLayer)->findChildren<QToolButton*>().first();
    }
    QToolButton* lock(const OrvLayer* pLayer) const
    {
        return row(pLayer)->findChildren<QToolButton*>().last();
    }
    QPoint eyeCenter(const OrvLayer* pLayer) const
    {
        return row(pLayer)->mapToGlobal(row(pLayer)->eyeGeometry().center());
    }
    template <class Editor>
    Editor* blendEditor() const
    {
        // Those of the layer that was current before go a little later.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return m_View->findChild<OrvLayerBlendRow*>()->findChild<Editor*>();
    }
    static void click(QToolButton* pButton) { QTest::mouseClick(pButton, Qt::LeftButton); }
    void altClick(const OrvLayer* pLayer) const
    {
        QTest::mouseClick(eye(pLayer), Qt::LeftButton, Qt::AltModifier);
    }
    void drag(const OrvLayer* pFrom, const QPoint& To) const
    {
        send(pFrom, To, QEvent::MouseMove, Qt::NoButton, Qt::LeftButton);
    }
    void release(const OrvLayer* pFrom, const QPoint& To) const
    {
        send(pFrom, To, QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton);
    }
    /// To the eye that was pressed, which has the mouse.
    void send(const OrvLayer* pFrom, const QPoint& To, QEvent::Type Type, Qt::MouseButton Button,
        Qt::MouseButtons Buttons) const
    {
        QMouseEvent Event(Type, eye(pFrom)->mapFromGlobal(To), To, Button, Buttons, Qt::NoModifier);
        QApplication::sendEvent(eye(pFrom), &Event);
    }
    void key(Qt::Key Key, Qt::KeyboardModifiers Modifiers = Qt::NoModifier) const
    {
        m_View->window()->activateWindow();
        m_View->treeView()->setFocus();
        QTRY_VERIFY(m_View->treeView()->hasFocus());
        QTest::keyClick(m_View->treeView(), Key, Modifiers);
    }
    QString names(bool (OrvLayer::*is)() const) const
    {
        QString Names;
        for (const OrvLayer* pLayer : m_Layers)
            Names += (pLayer->*is)() ? pLayer->name() : QString();
        return Names;
    }
    QString visible() const { return names(&OrvLayer::isVisible); }
    QString locked() const { return names(&OrvLayer::isLocked); }
    QStringList values(const QString& AttributeName) const
    {
        QStringList Values;
        for (const OrvLayer* pLayer : m_Layers)
            Values.append(pLayer->blendNode()->userAttribute(AttributeName).value().toString());
        return Values;
    }
    /// What is visible now took one step from what was before.
    void expectOneStep(const QString& Before, const QString& Now) const
    {
        QCOMPARE(visible(), Now);
        QCOMPARE(undoIndex(), m_UndoIndex + 1);
        OrvUndoManager::instance().undo();
        QCOMPARE(visible(), Before);
        OrvUndoManager::instance().redo();
        QCOMPARE(visible(), Now);
    }

    SettingsDirectory m_Directory;
    OrvLayerView* m_View = nullptr;
    OrvShaderInput* m_Channel = nullptr;
    QList<OrvLayer*> m_Layers;
    int m_UndoIndex = 0;
};

QTEST_MAIN(TstLayerGestures)
#include "TstLayerGestures.moc"
