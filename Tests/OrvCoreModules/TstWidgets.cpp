#include "Tests/OrvCoreModules/WidgetsWindow.h"
#include "Tests/OrvPlugins/SettingsDirectory.h"

#include "OrvCoreModules/Widgets/OrvBasicColorSwatch.h"
#include "OrvCoreModules/Widgets/OrvColorField.h"
#include "OrvCoreModules/Widgets/OrvColorPicker.h"
#include "OrvCoreModules/Widgets/OrvColorSwatch.h"
#include "OrvCoreModules/Widgets/OrvComboBox.h"
#include "OrvCoreModules/Widgets/OrvDeferredTimer.h"
#include "OrvCoreModules/Widgets/OrvDraggablePushButton.h"
#include "OrvCoreModules/Widgets/OrvEditLabel.h"
#include "OrvCoreModules/Widgets/OrvExpandableListWidget.h"
#include "OrvCoreModules/Widgets/OrvFilteredStringSelector.h"
#include "OrvCoreModules/Widgets/OrvFormLayout.h"
#include "OrvCoreModules/Widgets/OrvMoveWidgetToCursor.h"
#include "OrvCoreModules/Widgets/OrvNodeQuickFindDialog.h"
#include "OrvCoreModules/Widgets/OrvRangeSlider.h"
#include "OrvCoreModules/Widgets/OrvSliderSpinBox.h"
#include "OrvCoreModules/Widgets/OrvSwitch.h"
#include "OrvCoreModules/Widgets/OrvVerticalScrollArea.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QMimeData>
#include <QtGui/QScreen>
#include <QtTest/QtTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QVBoxLayout>

namespace {

/// Starts no real drag, which would wait for the window system.
class DraggedButton : public OrvDraggablePushButton {
public:
    bool HasData = true;
    int Drags = 0;
    QMimeData* mimeData() const override { return HasData ? new QMimeData : nullptr; }

protected:
    void runDrag(QMimeData* pData) override
    {
        delete pData;
        ++Drags;
    }
};

/// QTest's mouse moves name no buttons.
void dragMouse(
    QWidget* pWidget, const QPoint& From, const QList<QPoint>& Way, Qt::KeyboardModifiers Keys = {})
{
    QTest::mousePress(pWidget, Qt::LeftButton, Keys, From);
    for (const QPoint& Position : Way) {
        QMouseEvent Move(
            QEvent::MouseMove, Position, pWidget->mapToGlobal(Position), Qt::NoButton, Qt::LeftButton, Keys);
        QApplication::sendEvent(pWidget, &Move);
    }
    QTest::mouseRelease(pWidget, Qt::LeftButton, Keys, Way.last());
}

void turnWheel(QWidget* pWidget, int Steps)
{
    const QPointF Middle = pWidget->rect().center();
    QWheelEvent Wheel(Middle, pWidget->mapToGlobal(Middle.toPoint()), QPoint(), QPoint(0, 120 * Steps),
        Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(pWidget, &Wheel);
}

} // namespace

/// The reusable widgets, driven by mouse and keys.
class TstWidgets : public QObject, protected WidgetsWindow {
    Q_OBJECT

private Q_SLOTS:
    void init() { openWindow(QSize(400, 300)); }
    void cleanup() { closeWindow(); }

    void editLabelTurnsIntoAnEditorAndBack()
    {
        OrvEditLabel* pLabel = shown(new OrvEditLabel(QStringLiteral("Base")));
        QLineEdit* pOther = shown(new QLineEdit);
        pOther->setFocus();
        QSignalSpy Changes(pLabel, SIGNAL(textChanged(QString)));
        QVERIFY(!pLabel->findChild<QLineEdit*>());

        // Return commits and the focus goes back to where it was.
        typeInto(pLabel, QStringLiteral("Dirt"), Qt::Key_Return);
        QCOMPARE(pLabel->text(), QStringLiteral("Dirt"));
        QCOMPARE(Changes.takeFirst().first().toString(), QStringLiteral("Dirt"));
        QVERIFY(!pLabel->findChild<QLineEdit*>());
        QVERIFY(pOther->hasFocus());

        typeInto(pLabel, QStringLiteral("Rust"), Qt::Key_Escape);
        typeInto(pLabel, QStringLiteral("Dirt"), Qt::Key_Return);
        QCOMPARE(pLabel->text(), QStringLiteral("Dirt"));
        pLabel->setText(QStringLiteral("Moss"));
        QVERIFY(Changes.isEmpty());

        // Leaving the editor commits.
        pLabel->edit();
        QTest::keyClicks(pLabel->findChild<QLineEdit*>(), QStringLiteral("Sand"));
        pOther->setFocus();
        QVERIFY(!pLabel->isEditing());
        QCOMPARE(Changes.size(), 1);
        QCOMPARE(pLabel->text(), QStringLiteral("Sand"));

        // A highlighted name is edited as what it is.
        pLabel->setDisplayText(QStringLiteral("<b>Sa</b>nd"), QStringLiteral("Sand"));
        pLabel->edit();
        QCOMPARE(pLabel->findChild<QLineEdit*>()->text(), QStringLiteral("Sand"));
        QTest::keyClick(pLabel->findChild<QLineEdit*>(), Qt::Key_Escape);

        pLabel->setEditable(false);
        QTest::mouseDClick(pLabel, Qt::LeftButton);
        QVERIFY(!pLabel->isEditing());
    }

    void editLabelMayGoWhileItIsEdited()
    {
        OrvEditLabel* pLabel = shown(new OrvEditLabel(QStringLiteral("Base")));
        // A rename that rebuilds the list.
        connect(pLabel, &OrvEditLabel::textChanged, this, [pLabel] { delete pLabel; });
        typeInto(pLabel, QStringLiteral("Dirt"), Qt::Key_Return);

        OrvEditLabel* pEdited = shown(new OrvEditLabel(QStringLiteral("Base")));
        QSignalSpy Changes(pEdited, SIGNAL(textChanged(QString)));
        pEdited->edit();
        QTest::keyClicks(pEdited->findChild<QLineEdit*>(), QStringLiteral("x"));
        delete pEdited;
        QVERIFY(Changes.isEmpty());
    }

    void deferredTimerMergesABurst()
    {
        OrvDeferredTimer Timer(60);
        QSignalSpy Spy(&Timer, SIGNAL(timedOut()));
        QElapsedTimer SinceLast;
        for (int Request = 0; Request < 4; ++Request) {
            Timer.start();
            SinceLast.start();
            QTest::qWait(25);
        }
        QVERIFY(Spy.isEmpty());
        QTRY_COMPARE(Spy.size(), 1);
        QVERIFY(SinceLast.elapsed() >= 55);
        QTest::qWait(100);
        QCOMPARE(Spy.size(), 1);
    }

    void movedWidgetsStayOnTheScreen()
    {
        QWidget Popup(nullptr, Qt::Popup);
        Popup.resize(200, 100);
        const QRect Room = QGuiApplication::primaryScreen()->availableGeometry();
        OrvMoveWidgetToPoint(&Popup, Room.bottomRight());
        QVERIFY(Room.contains(Popup.geometry()));
        OrvMoveWidgetToPoint(&Popup, Room.topLeft() - QPoint(50, 50));
        QCOMPARE(Popup.pos(), Room.topLeft());
        QCursor::setPos(Room.center());
        OrvMoveWidgetToCursor(&Popup, QPoint(7, 9));
        QCOMPARE(Popup.pos(), Room.center() + QPoint(7, 9));
    }

    void swatchEmitsOrPicks()
    {
        OrvColorSwatch* pSwatch = shown(new OrvColorSwatch);
        qRegisterMetaType<OrvColor>("OrvColor");
        qRegisterMetaType<OrvColorSpaceDefaults::ColorSpaceTarget>("OrvColorSpaceDefaults::ColorSpaceTarget");
        QSignalSpy Changes(pSwatch, SIGNAL(colorChanged(OrvColor, OrvColorSpaceDefaults::ColorSpaceTarget)));
        pSwatch->setColor(OrvColor::grey50());
        QVERIFY(Changes.isEmpty());
        pSwatch->setEmitOnClick(true);
        pSwatch->setPickingEnabled(false);
        QTest::mouseClick(pSwatch, Qt::LeftButton);
        QCOMPARE(Changes.size(), 1);
        QCOMPARE(Changes.takeFirst().first().value<OrvColor>(), OrvColor::grey50());
        QVERIFY(!pSwatch->picker());

        // The picker shows what the eye sees; the document gets light.
        pSwatch->setEmitOnClick(false);
        pSwatch->setPickingEnabled(true);
        pSwatch->setColor(OrvColor(0.214041f, 0.214041f, 0.214041f, 1.0f), OrvColorSpaceDefaults::Working);
        QTest::mouseClick(pSwatch, Qt::LeftButton);
        QVERIFY(pSwatch->picker());
        QVERIFY(qAbs(pSwatch->picker()->color().red() - 0.5f) < 1e-3f);
        QLineEdit* pHex = pSwatch->picker()->findChild<QLineEdit*>();
        pHex->selectAll();
        QTest::keyClicks(pHex, QStringLiteral("#ffffff"));
        QTest::keyClick(pHex, Qt::Key_Return);
        QCOMPARE(Changes.size(), 1);
        QVERIFY(qAbs(pSwatch->color().red() - 1.0f) < 1e-3f);
        pSwatch->picker()->close();
        QTRY_VERIFY(!pSwatch->picker());
    }

    /// On a dark ground as well.
    void swatchShowsWhereItsColorEnds()
    {
        OrvColorSwatch* pSwatch = shown(new OrvColorSwatch);
        pSwatch->clearFocus();
        QPalette Dark(QColor(0xdc, 0xdc, 0xdc), QColor(0x35, 0x35, 0x35));
        Dark.setColor(QPalette::Text, QColor(0xdc, 0xdc, 0xdc));
        Dark.setColor(QPalette::Base, QColor(0x2b, 0x2b, 0x2b));
        pSwatch->setPalette(Dark);
        for (const OrvColor& Color : {OrvColor::black(), OrvColor(0.2f, 0.2f, 0.2f)}) {
            pSwatch->setColor(Color);
            const QImage Picture = pSwatch->grab().toImage();
            const QPoint Middle = pSwatch->rect().center();
            const int Frame = qGray(Picture.pixel(0, Middle.y()));
            QVERIFY(Frame - qGray(Picture.pixel(Middle)) > 64);
            QVERIFY(Frame - qGray(Dark.color(QPalette::Window).rgb()) > 64);
        }
    }

    void swatchTakesDroppedColors()
    {
        OrvColorSwatch* pSwatch = shown(new OrvColorSwatch);
        pSwatch->setColor(OrvColor::black(), OrvColorSpaceDefaults::Working);
        QMimeData Data;
        Data.setColorData(QColor(128, 128, 128));
        drop(pSwatch, Data);
        QVERIFY(qAbs(pSwatch->color().red() - 0.2158605f) < 1e-3f);
        QMimeData Broken;
        Broken.setData(QStringLiteral("application/x-orvi-color"), QByteArray("abc"));
        drop(pSwatch, Broken);
        QVERIFY(qAbs(pSwatch->color().red() - 0.2158605f) < 1e-3f);
    }

    void basicSwatchChecksAndPicks()
    {
        OrvBasicColorSwatch* pSwatch = shown(new OrvBasicColorSwatch(4, 1));
        pSwatch->setColor(0, 0, QColor(), QStringLiteral("none"), true, true);
        pSwatch->setColor(1, 0, Qt::red, QStringLiteral("red"), false, false);
        pSwatch->setColor(2, 0, QColor(), QStringLiteral("broken"), false, false);
        pSwatch->setColor(7, 0, Qt::blue, QStringLiteral("outside"), false, false);
        QSignalSpy Checked(pSwatch, SIGNAL(colorChecked(QColor, bool)));
        QSignalSpy Picked(pSwatch, SIGNAL(colorPicked(QColor)));
        const auto click = [pSwatch](int Cell) {
            QTest::mouseClick(pSwatch, Qt::LeftButton, {}, QPoint(12 + 20 * Cell, pSwatch->height() / 2));
        };
        click(0);
        click(1);
        QCOMPARE(pSwatch->checkedColors(), QList<QColor>({QColor(), QColor(Qt::red)}));
        click(1);
        QCOMPARE(pSwatch->checkedColors(), QList<QColor>{QColor()});
        QCOMPARE(Checked.size(), 3);
        QCOMPARE(Picked.size(), 3);
        click(2); // empty cells
        click(3);
        QCOMPARE(Picked.size(), 3);
        QTest::keyClick(pSwatch, Qt::Key_Right); // stops in front of the empty cell
        QTest::keyClick(pSwatch, Qt::Key_Space);
        QCOMPARE(pSwatch->checkedColors().size(), 2);
    }

    void switchAndDraggableButton()
    {
        OrvSwitch* pSwitch = shown(new OrvSwitch);
        QSignalSpy States(pSwitch, SIGNAL(stateChanged(bool)));
        pSwitch->setChecked(false);
        QVERIFY(States.isEmpty());
        QTest::mouseClick(pSwitch, Qt::LeftButton);
        QVERIFY(pSwitch->checked());
        QTest::keyClick(pSwitch, Qt::Key_Space);
        QCOMPARE(States.size(), 2);

        DraggedButton* pButton = shown(new DraggedButton);
        QSignalSpy Clicks(pButton, SIGNAL(clicked()));
        dragMouse(pButton, {5, 5}, {{6, 6}});
        QCOMPARE(pButton->Drags, 0);
        QCOMPARE(Clicks.size(), 1);
        dragMouse(pButton, {5, 5}, {{15, 5}, {25, 5}, {35, 5}});
        QCOMPARE(pButton->Drags, 1);
        QCOMPARE(Clicks.size(), 1);
        pButton->HasData = false;
        dragMouse(pButton, {5, 5}, {{35, 5}});
        QCOMPARE(pButton->Drags, 1);
        QMimeData Data;
        QVERIFY(drop(pButton, Data));
    }

    void groupsFoldAndLabelsAlign()
    {
        OrvExpandableListWidget* pGroup = new OrvExpandableListWidget(QStringLiteral("Dirt & Dust"));
        OrvFormLayout* pFirst = new OrvFormLayout;
        auto *pShort = new QLabel("A"), *pLong = new QLabel("A far longer label");
        pFirst->addRow(pShort, new QLineEdit);
        pGroup->addChild(pFirst, QString(), QString());
        shown(pGroup);
        QWidget* pSecondForm = shown(new QWidget);
        (new OrvFormLayout(pSecondForm))->addRow(pLong, new QLineEdit);
        OrvFormLayout::alignLabels({pGroup, nullptr, pSecondForm});
        QApplication::processEvents();
        QCOMPARE(pShort->width(), pLong->width());

        // Shorter again, they do not stay as wide as they once were.
        const int Before = pShort->width();
        pLong->setText(QStringLiteral("B"));
        OrvFormLayout::alignLabels({pGroup, pSecondForm});
        QTRY_VERIFY(pShort->width() < Before);

        QSignalSpy Spy(pGroup, SIGNAL(expandedChanged(bool)));
        const int Height = pGroup->sizeHint().height();
        QTest::mouseClick(pGroup->findChild<QAbstractButton*>(), Qt::LeftButton);
        QVERIFY(!pGroup->isExpanded());
        QVERIFY(!pShort->isVisible());
        QVERIFY(pGroup->sizeHint().height() < Height);
        pGroup->setExpanded(true);
        QVERIFY(pShort->isVisible());
        QCOMPARE(Spy.size(), 2);
    }

    void scrollAreaIsAsWideAsItsContent()
    {
        OrvVerticalScrollArea* pArea = new OrvVerticalScrollArea;
        QWidget* pContent = new QWidget;
        pContent->setMinimumSize(300, 2000);
        QVBoxLayout* pContentLayout = new QVBoxLayout(pContent);
        pArea->setWidget(pContent);
        shown(pArea);
        QVERIFY(pArea->viewport()->width() >= 300);
        QWidget* pWide = new QWidget;
        pWide->setMinimumWidth(500);
        pContent->setMinimumWidth(0);
        pContentLayout->addWidget(pWide);
        QTRY_VERIFY(pArea->viewport()->width() >= 500);
        QCOMPARE(pArea->horizontalScrollBar()->maximum(), 0);
    }

    void selectorFindsByWords()
    {
        OrvFilteredStringSelector* pSelector = shown(new OrvFilteredStringSelector);
        const QString Cell("Procedural/Noise/Cell Noise"), Box("Filter/Blur/Box Blur"),
            Gauss("Filter/Blur/Gaussian Blur"), Blurred("Filter/Light/Blurred Glow"),
            Unblur("Filter/Sharpen/Unblur");
        pSelector->setStarsShown(true);
        pSelector->setSections({{QStringLiteral("Last Used"), {Gauss}}, {QStringLiteral("Empty"), {}},
            {QStringLiteral("All"), {Cell, Unblur, Box, Gauss, Blurred}}});
        QCOMPARE(pSelector->shownTexts(), QStringList({Gauss, Cell, Unblur, Box, Gauss, Blurred}));
        QCOMPARE(pSelector->currentText(), Gauss);

        QSignalSpy Chosen(pSelector, SIGNAL(chosen(QString)));
        QLineEdit* pFilter = pSelector->findChild<QLineEdit*>();
        QTest::keyClicks(pFilter, QStringLiteral("blur"));
        // Each once: names that begin with it, names with a word that does, names that contain it.
        QCOMPARE(pSelector->shownTexts(), QStringList({Blurred, Gauss, Box, Unblur}));
        QTest::keyClicks(pFilter, QStringLiteral(" fil bo"));
        QCOMPARE(pSelector->shownTexts(), QStringList{Box});
        QTest::keyClicks(pFilter, QStringLiteral("zzz"));
        QVERIFY(pSelector->currentText().isEmpty());
        QTest::keyClick(pFilter, Qt::Key_Return);
        QVERIFY(Chosen.isEmpty());

        // Arrow keys pass over titles and stop at both ends.
        pSelector->setFilter(QString());
        QTest::keyClick(pFilter, Qt::Key_Down);
        QCOMPARE(pSelector->currentText(), Cell);
        QTest::keyClick(pFilter, Qt::Key_PageDown);
        QCOMPARE(pSelector->currentText(), Blurred);
        QTest::keyClick(pFilter, Qt::Key_D, Qt::ControlModifier);
        QCOMPARE(pSelector->starred(), QStringList{Blurred});
        QCOMPARE(pSelector->currentText(), Blurred);
        QTest::keyClick(pFilter, Qt::Key_Return);
        QCOMPARE(Chosen.takeFirst().first().toString(), Blurred);

        // The mouse: on the star, and beside it.
        QListWidget* pList = pSelector->findChild<QListWidget*>();
        const QRect Row = pList->visualItemRect(pList->item(1));
        QTest::mouseClick(pList->viewport(), Qt::LeftButton, {}, QPoint(Row.right() - 8, Row.center().y()));
        QCOMPARE(pSelector->starred(), QStringList({Blurred, Gauss}));
        QVERIFY(Chosen.isEmpty());
        QTest::mouseClick(pList->viewport(), Qt::LeftButton, {}, Row.center());
        QCOMPARE(Chosen.size(), 1);
        QTest::mouseClick(
            pList->viewport(), Qt::LeftButton, {}, pList->visualItemRect(pList->item(0)).center());
        QCOMPARE(Chosen.size(), 1);
    }

    void quickFindAnswersWithAPath()
    {
        const QString Gone = QStringLiteral("Procedural/Gone/Nobody");
        OrvNodeQuickFindDialog Dialog(QPoint(10, 10), {QStringLiteral("Procedural")},
            {QStringLiteral("Filter")}, {Gone}, {Gone}, m_pWindow);
        Dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&Dialog));
        OrvFilteredStringSelector* pSelector = Dialog.findChild<OrvFilteredStringSelector*>();
        QVERIFY(!pSelector->shownTexts().contains(Gone));
        QLineEdit* pFilter = pSelector->findChild<QLineEdit*>();
        QTest::keyClicks(pFilter, QStringLiteral("gaussian"));
        const QString Best = pSelector->currentText();
        QVERIFY(Best.startsWith(QStringLiteral("Filter/")));
        QTest::keyClick(pFilter, Qt::Key_D, Qt::ControlModifier);
        QTest::keyClick(pFilter, Qt::Key_Return);
        QCOMPARE(Dialog.result(), int(QDialog::Accepted));
        QCOMPARE(Dialog.chosenPath(), Best);
        // A favourite that this installation lacks is kept.
        QCOMPARE(Dialog.favourites(), QStringList({Gone, Best}));

        OrvNodeQuickFindDialog Cancelled(QPoint(), {QStringLiteral("Procedural")}, {}, {}, {}, m_pWindow);
        Cancelled.show();
        QVERIFY(!Cancelled.findChild<OrvFilteredStringSelector*>()->shownTexts().contains(Best));
        QTest::keyClick(Cancelled.findChild<QLineEdit*>(), Qt::Key_Escape);
        QVERIFY(!Cancelled.isVisible());
        QVERIFY(Cancelled.chosenPath().isEmpty());
    }

    void sliderScrubsAsOneEdit()
    {
        OrvSliderSpinBox* pSlider = shown(new OrvSliderSpinBox);
        pSlider->setRange(0.0, 100.0);
        pSlider->setUiRange(0.0, 10.0);
        pSlider->setValue(5.0);
        QSignalSpy Begun(pSlider, SIGNAL(editBegun())), Edited(pSlider, SIGNAL(valueEdited(double))),
            Finished(pSlider, SIGNAL(editFinished()));
        const int Tenth = pSlider->width() / 10;
        dragMouse(pSlider, {50, 10}, {{50 + Tenth, 10}, {50 + 2 * Tenth, 10}});
        QVERIFY(qAbs(pSlider->value() - 7.0) < 0.1);
        QCOMPARE(Edited.size(), 2);
        // Dragging ends at the range to drag in; what was typed beyond it stays.
        dragMouse(pSlider, {50, 10}, {{50 + 9 * Tenth, 10}});
        QCOMPARE(pSlider->value(), 10.0);
        pSlider->setValue(60.0);
        dragMouse(pSlider, {50, 10}, {{50 + Tenth, 10}});
        QCOMPARE(pSlider->value(), 60.0);
        dragMouse(pSlider, {50, 10}, {{50 - Tenth, 10}}, Qt::ShiftModifier);
        QVERIFY(qAbs(pSlider->value() - 59.9) < 0.02);
        QCOMPARE(Begun.size(), 4);
        QCOMPARE(Finished.size(), 4);

        // Small values have more room where the range asks for it.
        pSlider->setUiGamma(3.0);
        pSlider->setValue(0.0);
        dragMouse(pSlider, {50, 10}, {{50 + 3 * Tenth, 10}, {50 + 5 * Tenth, 10}});
        QVERIFY(qAbs(pSlider->value() - 10.0 / 8.0) < 0.1);
        pSlider->setUiGamma(1.0);

        // Escape goes back to where the drag began.
        pSlider->setValue(5.0);
        QTest::mousePress(pSlider, Qt::LeftButton, {}, {50, 10});
        QMouseEvent Move(QEvent::MouseMove, QPoint(90, 10), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(pSlider, &Move);
        QVERIFY(pSlider->value() > 5.0);
        QTest::keyClick(pSlider, Qt::Key_Escape);
        QCOMPARE(pSlider->value(), 5.0);
        QTest::mouseRelease(pSlider, Qt::LeftButton, {}, {90, 10});
        QVERIFY(!pSlider->isTyping());
        QCOMPARE(Finished.size(), 6);
    }

    void sliderTakesTypedNumbers()
    {
        OrvSliderSpinBox* pSlider = shown(new OrvSliderSpinBox);
        OrvSliderSpinBox* pNext = shown(new OrvSliderSpinBox);
        pSlider->setRange(0.0, 2.0);
        pSlider->setDisplayFactor(100.0);
        pSlider->setSuffix(QStringLiteral(" %"));
        pSlider->setDecimals(1);
        pSlider->setValue(0.5);
        QSignalSpy Begun(pSlider, SIGNAL(editBegun())), Finished(pSlider, SIGNAL(editFinished()));
        const auto typed = [pSlider](const char* pText, Qt::Key End = Qt::Key_Return) {
            QTest::mouseClick(pSlider, Qt::LeftButton);
            QTest::keyClicks(pSlider->findChild<QLineEdit*>(), QLatin1String(pText));
            QTest::keyClick(pSlider->findChild<QLineEdit*>(), End);
            return pSlider->value();
        };
        QCOMPARE(typed("150 %"), 1.5);
        QCOMPARE(typed("12,5"), 0.125);
        QCOMPARE(typed("900"), 2.0);
        QCOMPARE(Finished.size(), 3);
        for (const char* pNonsense : {"abc", "nan", "inf", ""})
            QCOMPARE(typed(pNonsense), 2.0);
        QCOMPARE(typed("30", Qt::Key_Escape), 2.0);
        QCOMPARE(Begun.size(), 3);

        // A number with more digits than shown survives a look at it.
        pSlider->setValue(0.123456);
        QCOMPARE(typed(""), 0.123456);
        QCOMPARE(Begun.size(), 3);

        // The number shown before does not shine through, and is one word.
        QTest::mouseClick(pSlider, Qt::LeftButton);
        auto* pEdit = pSlider->findChild<QLineEdit*>();
        QTest::mouseDClick(pEdit, Qt::LeftButton, {}, QPoint(pEdit->width() / 2, pEdit->height() / 2));
        QCOMPARE(pEdit->selectedText(), pEdit->text());
        pEdit->clear();
        const QImage Cleared = pSlider->grab().toImage();
        const QRect Middle = Cleared.rect().adjusted(8, 4, -Cleared.width() / 2 - 4, -4);
        QCOMPARE(Cleared.copy(Middle).scaled(1, 1).convertToFormat(QImage::Format_RGB32).pixel(0, 0),
            pSlider->palette().color(QPalette::Base).rgb());
        QTest::keyClick(pEdit, Qt::Key_Escape);

        // A digit begins to type, Tab leads from number to number.
        pSlider->setFocus();
        QTest::keyClick(pSlider, Qt::Key_7);
        QTest::keyClick(pSlider->findChild<QLineEdit*>(), Qt::Key_Tab);
        QCOMPARE(pSlider->value(), 0.07);
        QVERIFY(pNext->hasFocus());
    }

    void sliderStepsInBursts()
    {
        OrvSliderSpinBox* pSlider = shown(new OrvSliderSpinBox);
        QWidget* pOther = shown(new QLineEdit);
        pSlider->setRange(-10.0, 10.0);
        pSlider->setStep(1.0);
        QSignalSpy Begun(pSlider, SIGNAL(editBegun())), Finished(pSlider, SIGNAL(editFinished()));
        pOther->setFocus();
        turnWheel(pSlider, 1);
        QCOMPARE(pSlider->value(), 0.0);
        pSlider->setFocus();
        turnWheel(pSlider, 1);
        turnWheel(pSlider, 2);
        QTest::keyClick(pSlider, Qt::Key_Up);
        QTest::keyClick(pSlider, Qt::Key_PageUp);
        QCOMPARE(pSlider->value(), 10.0);
        QCOMPARE(Begun.size(), 1);
        QVERIFY(Finished.isEmpty());
        QTRY_COMPARE(Finished.size(), 1);
        // Undo finds the history complete.
        QTest::keyClick(pSlider, Qt::Key_Down);
        QKeyEvent Undo(QEvent::ShortcutOverride, Qt::Key_Z, Qt::ControlModifier);
        QApplication::sendEvent(pSlider, &Undo);
        QCOMPARE(Finished.size(), 2);
        QTest::keyClick(pSlider, Qt::Key_Down);
        pOther->setFocus();
        QCOMPARE(Finished.size(), 3);

        // Angles go round.
        pSlider->setRange(0.0, 360.0);
        pSlider->setWrapping(true);
        pSlider->setValue(359.5);
        QTest::keyClick(pSlider, Qt::Key_Up);
        QCOMPARE(pSlider->value(), 0.5);
    }

    void comboLeavesTheWheelUntilFocused()
    {
        OrvComboBox* pCombo = shown(new OrvComboBox);
        pCombo->addItems({QStringLiteral("A"), QStringLiteral("B")});
        shown(new QLineEdit)->setFocus();
        turnWheel(pCombo, -1);
        QCOMPARE(pCombo->currentIndex(), 0);
        pCombo->setFocus();
        turnWheel(pCombo, -1);
        QCOMPARE(pCombo->currentIndex(), 1);
    }

    void rangeHandlesKeepTheirOrder()
    {
        OrvRangeSlider* pSlider = shown(new OrvRangeSlider);
        QSignalSpy Begun(pSlider, SIGNAL(editBegun())), Finished(pSlider, SIGNAL(editFinished()));
        pSlider->setRange({0.9, -1.0, 0.3, 7.0});
        QCOMPARE(pSlider->range(), (OrvRangeSlider::Range{0.0, 0.3, 0.9, 1.0}));

        // A pair moves as one; Alt takes it apart.
        pSlider->setRange({0.0, 0.0, 1.0, 1.0});
        const QPoint Step(pSlider->width() / 4, 0);
        dragMouse(pSlider, pSlider->handlePosition(1), {pSlider->handlePosition(1) + Step});
        QVERIFY(pSlider->range()[1] > 0.2);
        QCOMPARE(pSlider->range()[0], pSlider->range()[1]);
        dragMouse(pSlider, pSlider->handlePosition(1), {pSlider->handlePosition(1) + Step}, Qt::AltModifier);
        QVERIFY(pSlider->range()[1] > pSlider->range()[0] + 0.2);
        // No handle passes another.
        dragMouse(pSlider, pSlider->handlePosition(3), {pSlider->handlePosition(0) - Step});
        QCOMPARE(pSlider->range()[2], pSlider->range()[1]);
        QVERIFY(std::is_sorted(pSlider->range().begin(), pSlider->range().end()));
        QCOMPARE(Begun.size(), 3);
        QCOMPARE(Finished.size(), 3);
        QTest::mouseDClick(pSlider, Qt::LeftButton, {}, pSlider->rect().center());
        QCOMPARE(pSlider->range(), (OrvRangeSlider::Range{0.0, 0.0, 1.0, 1.0}));
    }

    void pickerKeepsWhatAColorCannotSay()
    {
        OrvColorPicker* pPicker = shown(new OrvColorPicker);
        QSignalSpy Begun(pPicker, SIGNAL(editBegun())), Finished(pPicker, SIGNAL(editFinished()));
        OrvColorField *pSquare = nullptr, *pStrip = nullptr;
        for (OrvColorField* pField : pPicker->findChildren<OrvColorField*>())
            (pField->width() < 40 ? pStrip : pSquare) = pField;
        pPicker->setColor(OrvColor(0.0f, 0.0f, 0.5f));
        QVERIFY(qAbs(pSquare->hue() - 2.0 / 3.0) < 1e-3);

        // Through grey and black and back: still blue, in one edit.
        const int Right = pSquare->width() - 2, Bottom = pSquare->height() - 2;
        dragMouse(pSquare, {Right, 1}, {{1, 1}, {1, Bottom}, {Right, 1}});
        QCOMPARE(Begun.size(), 1);
        QCOMPARE(Finished.size(), 1);
        QVERIFY(pPicker->color().blue() > 0.99f && pPicker->color().red() < 0.01f);

        dragMouse(pStrip, {5, pStrip->height() / 3}, {{5, pStrip->height() * 2 / 3}});
        QVERIFY(pPicker->color().green() > 0.9f);

        // Hexadecimal names, and what is none.
        QLineEdit* pHex = pPicker->findChild<QLineEdit*>();
        const auto typed = [pPicker, pHex](const char* pText) {
            pHex->setFocus();
            pHex->selectAll();
            QTest::keyClicks(pHex, QLatin1String(pText));
            QTest::keyClick(pHex, Qt::Key_Return);
            return pPicker->color();
        };
        const OrvColor HalfGreen(0.0f, 1.0f, 0.0f, 128.0f / 255.0f);
        QCOMPARE(typed("f00"), OrvColor(1.0f, 0.0f, 0.0f));
        QCOMPARE(typed("#00ff0080"), HalfGreen);
        QCOMPARE(typed("#00ff"), HalfGreen);
        QCOMPARE(pHex->text(), QStringLiteral("#00ff0080"));

        // Brighter than white: looking at the hexadecimal name loses nothing.
        pPicker->setColor(OrvColor(4.0f, 2.0f, 1.0f));
        pHex->setFocus();
        QTest::keyClick(pHex, Qt::Key_Return);
        QCOMPARE(pPicker->color(), OrvColor(4.0f, 2.0f, 1.0f));
    }

private:
    static void typeInto(OrvEditLabel* pLabel, const QString& Text, Qt::Key End)
    {
        QTest::mouseDClick(pLabel, Qt::LeftButton);
        QLineEdit* pEdit = pLabel->findChild<QLineEdit*>();
        QVERIFY(pEdit && pEdit->isVisible() && pEdit->hasFocus());
        QTest::keyClicks(pEdit, Text);
        QTest::keyClick(pEdit, End);
    }

    static bool drop(QWidget* pWidget, const QMimeData& Data)
    {
        QDragEnterEvent Enter(QPoint(3, 3), Qt::CopyAction, &Data, Qt::LeftButton, {});
        QApplication::sendEvent(pWidget, &Enter);
        if (!Enter.isAccepted())
            return false;
        QDropEvent Drop(QPoint(3, 3), Qt::CopyAction, &Data, Qt::LeftButton, {});
        QApplication::sendEvent(pWidget, &Drop);
        return Drop.isAccepted();
    }

    SettingsDirectory m_Directory;
};

QTEST_MAIN(TstWidgets)
#include "TstWidgets.moc"
