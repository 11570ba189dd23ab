#include "LayersFixture.h"
#include "SettingsDirectory.h"

#include "Tests/Support/OrvDebugReports.h"

#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCoreModules/Widgets/OrvBasicColorSwatch.h"
#include "OrvCoreModules/Widgets/OrvEditLabel.h"
#include "OrvCoreModules/Widgets/OrvSwitch.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewFilterBar.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewKindFilter.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewNameFilter.h"

#include <QtTest/QtTest>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include <memory>

using namespace LayersFixture;

/// The filters of the Layers palette: which layers they pass, what the tree then shows, and at what cost.
class TstLayerFilters : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_Directory.isValid()); }
    void init()
    {
        OrvProjectManager::instance().newProject(QStringLiteral("Test"));
        m_Channel = addChannel(QStringLiteral("Diffuse"));
        m_View = std::make_unique<OrvLayerView>(nullptr, 0);
        m_View->resize(400, 700);
        m_View->setLayerStack(m_Channel);
        m_View->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_View.get()));
        m_Reports.Texts.clear();
    }

    void cleanup()
    {
        m_View.reset();
        OrvProjectManager::instance().closeProject();
    }

    void namesAreFoundByWords_data()
    {
        QTest::addColumn<QString>("Text");
        QTest::addColumn<QString>("Name");
        QTest::addColumn<QString>("Shown"); // empty: does not pass
        const auto row = [](const char* pText, const char* pName, const char* pShown) {
            QTest::addRow("'%s' in '%s'", pText, pName) << pText << pName << pShown;
        };
        row("", "Rust", "<b>Rust</b>");
        row("  ", "Rust", "<b>Rust</b>");
        row("us", "Rust", "R<b>us</b>t");
        row("red wall", "Red brick wall", "<b>Red brick wall</b>");
        row(" red   wall ", "My rEd_wall_2", "My <b>rEd_wall</b>_2");
        row("red wall", "wall red", "");
        row("b", "a b a b a", "a <b>b</b> a b a");
        row("a*b", "x ab ab y", "x <b>ab ab</b> y");
        row("a?c", "abc", "<b>abc</b>");
        row("a?c", "xAbCx", "x<b>AbC</b>x");
        row("a?c", "ac", "");
        row("[rd]ust", "Wet dust", "Wet <b>dust</b>");
        row("[rd]ust", "must", "");
        row("a.c", "abc", "");
        row("(1)", "Rust (1)", "Rust <b>(1)</b>");
        // Half a set of characters is none yet.
        row("[old", "Rust [old]", "Rust <b>[old</b>]");
        row("[", "Rust", "");
        row("\\", "Rust", "");
        // Names are plain text, whatever stands in them.
        row("a", "<i>a</i> & b", "&lt;i&gt;<b>a</b>&lt;/i&gt; &amp; b");
        row("&", "A & B", "A <b>&amp;</b> B");
        row("amp", "A & B", "");
        row("x", "a  x", "a &nbsp;<b>x</b>");
    }
    void namesAreFoundByWords()
    {
        QFETCH(QString, Text);
        QFETCH(QString, Name);
        QFETCH(QString, Shown);
        const OrvLayer* pLayer = addLayer(m_Channel, Name);
        QWidget Parent;
        const OrvLayerViewNameFilter Filter(&Parent);
        QSignalSpy Changes(&Filter, SIGNAL(changed()));
        qobject_cast<QLineEdit*>(Filter.widgets().first())->setText(Text);
        QCOMPARE(Changes.size(), Text.isEmpty() ? 0 : 1);
        QCOMPARE(Filter.isActive(), !Text.trimmed().isEmpty());
        QCOMPARE(Filter.matches(pLayer), !Shown.isEmpty());
        QCOMPARE(Filter.highlightedName(pLayer), Shown);
    }

    void typesAndAttributesPassWhatTheyName_data()
    {
        QTest::addColumn<int>("Filter");
        QTest::addColumn<QStringList>("Buttons");
        QTest::addColumn<QString>("Rows");
        const auto row = [](int Filter, const QStringList& Buttons, const char* pRows) {
            QTest::newRow(qPrintable(Buttons.join(QStringLiteral(" + ")))) << Filter << Buttons << pRows;
        };
        const QString All = QStringLiteral("Top Blur Noise Group(Inside)");
        row(Type, {}, qPrintable(All));
        row(Type, {"non-procedural image data"}, "Top Group(Inside)");
        row(Type, {"adjustment layers"}, "Blur");
        row(Type, {"procedural layers"}, "Noise");
        row(Type, {"adjustment layers", "procedural layers"}, "Blur Noise");
        row(Attribute, {"group layers"}, "Group()");
        row(Attribute, {"unlocked layers"}, "Top Blur Group(Inside)");
        row(Attribute, {"locked layers"}, "Noise");
        row(Attribute, {"layers that have masks"}, "Blur");
        row(Attribute, {"layers that have adjustments"}, "Group(Inside)");
        row(Attribute, {"Show visible layers"}, "Blur Noise Group(Inside)");
        row(Attribute, {"invisible layers"}, "Top");
        row(Attribute, {"Show locked layers", "Show unlocked layers"}, "Top Blur Group(Inside)");
        row(Attribute, {"Show unlocked layers", "Show locked layers"}, "Noise");
        row(Attribute, {"Show visible layers", "Show invisible layers"}, "Top");
    }
    void typesAndAttributesPassWhatTheyName()
    {
        QFETCH(int, Filter);
        QFETCH(QStringList, Buttons);
        QFETCH(QString, Rows);
        makeOneOfEachKind();
        choose(Filter);
        for (const QString& Button : Buttons)
            button(Button)->click();
        QCOMPARE(shownRows(), Rows);
        // Each button is one of a pair, and none comes back by itself.
        for (QPushButton* pButton : m_View->findChildren<QPushButton*>()) {
            if (pButton->isCheckable() && pButton->isVisible() && pButton->isChecked())
                pButton->click();
        }
        QCOMPARE(shownRows(), QStringLiteral("Top Blur Noise Group(Inside)"));
    }

    void colorTagsPassTheirLayers()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B", "C"});
        const QColor Red = OrvLayerUtils::validLayerColors().value(QStringLiteral("red"));
        const QColor Blue = OrvLayerUtils::validLayerColors().value(QStringLiteral("blue"));
        Layers[0]->setColor(Red);
        Layers[2]->setColor(Blue);
        m_View->refresh();
        choose(ColorTag);
        auto* pSwatch = m_View->findChild<OrvBasicColorSwatch*>();
        QVERIFY(pSwatch->isVisible());
        QCOMPARE(shownRows(), QStringLiteral("A B C"));
        pSwatch->setColorChecked(QColor(), true);
        QCOMPARE(shownRows(), QStringLiteral("B"));
        pSwatch->setColorChecked(Blue, true);
        QCOMPARE(shownRows(), QStringLiteral("B C"));
        QCOMPARE(nameShown(Layers[2]), QStringLiteral("<b>C</b>"));
        pSwatch->setColorChecked(QColor(), false);
        pSwatch->setColorChecked(Blue, false);
        QCOMPARE(shownRows(), QStringLiteral("A B C"));
    }

    void barShowsOneFilterAndKeepsTheOthers()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"Rust", "Dust", "Paint"});
        Layers[2]->setLocked(true);
        m_View->refresh();
        QCOMPARE(comboBox()->currentText(), QStringLiteral("Name"));
        QVERIFY(nameEdit()->isVisible() && !button("Show locked layers")->isVisible());
        QTest::keyClicks(nameEdit(), QStringLiteral("ust"));
        QCOMPARE(shownRows(), QStringLiteral("Rust Dust"));

        choose(Attribute);
        QVERIFY(!nameEdit()->isVisible() && button("Show locked layers")->isVisible());
        QCOMPARE(shownRows(), QStringLiteral("Rust Dust Paint"));
        QTest::mouseClick(button("Show locked layers"), Qt::LeftButton);
        QCOMPARE(shownRows(), QStringLiteral("Paint"));
        choose(Name);
        QCOMPARE(shownRows(), QStringLiteral("Rust Dust"));
        QCOMPARE(nameShown(Layers[0]), QStringLiteral("R<b>ust</b>"));

        auto* pSwitch = m_View->findChild<OrvSwitch*>();
        QTest::mouseClick(pSwitch, Qt::LeftButton);
        QCOMPARE(shownRows(), QStringLiteral("Rust Dust Paint"));
        QCOMPARE(nameShown(Layers[0]), QString());
        QTest::keyClicks(nameEdit(), QStringLiteral("x"));
        QCOMPARE(shownRows(), QStringLiteral("Rust Dust Paint"));
        QTest::mouseClick(pSwitch, Qt::LeftButton);
        QCOMPARE(shownRows(), QString());
        QTest::mouseClick(button("Clears the entered text"), Qt::LeftButton);
        QCOMPARE(shownRows(), QStringLiteral("Rust Dust Paint"));
        QVERIFY(nameEdit()->text().isEmpty());
    }

    void barRefusesFiltersThatAreNotThere()
    {
        QWidget Panel;
        QVBoxLayout Layout(&Panel);
        OrvLayerViewFilterBar Bar(nullptr, &Layout);
        const OrvLayer* pLayer = addLayer(m_Channel, QStringLiteral("A"));
        QVERIFY(Bar.filterActive());
        QCOMPARE(Bar.filteredName(pLayer), QString());
        QCOMPARE(m_Reports.Texts.takeLast(), QStringLiteral("[ !! ] Filter index 0 is out of range"));
        Bar.addFilter(nullptr);
        QCOMPARE(m_Reports.Texts.takeLast(), QStringLiteral("pFilterType is NULL"));
        OrvLayerViewKindFilter Filter(&Panel);
        Bar.addFilter(&Filter);
        QVERIFY(!Bar.filterActive());
        for (const int Index : {-1, 1}) {
            Bar.setFilterType(Index);
            QCOMPARE(m_Reports.Texts.takeLast(),
                QStringLiteral("[ !! ] Filter index %1 is out of range").arg(Index));
        }
        QCOMPARE(Panel.findChild<QComboBox*>()->currentText(), QStringLiteral("Type"));
        m_View->updateItemTreeFilteredStates(nullptr);
        QCOMPARE(m_Reports.Texts.takeLast(), QStringLiteral("pItem is NULL"));
    }

    void groupsStayForWhatTheyHold()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "Rust", "Dust", "B"});
        OrvLayer* pInner = group(m_Channel, {Layers[1], Layers[2]}, QStringLiteral("Inner"));
        OrvLayer* pOuter = group(m_Channel, {pInner}, QStringLiteral("Rusty things"));
        m_View->refresh();
        QTest::keyClicks(nameEdit(), QStringLiteral("du"));
        QCOMPARE(shownRows(), QStringLiteral("Rusty things(Inner(Dust))"));
        QCOMPARE(nameShown(pInner), QString());
        QCOMPARE(nameShown(Layers[2]), QStringLiteral("<b>Du</b>st"));
        nameEdit()->setText(QStringLiteral("things"));
        QCOMPARE(shownRows(), QStringLiteral("Rusty things()"));
        QCOMPARE(nameShown(pOuter), QStringLiteral("Rusty <b>things</b>"));

        // A tree that shows nothing says why.
        nameEdit()->setText(QStringLiteral("nothing"));
        QCOMPARE(shownRows(), QString());
        const QImage Told = m_View->treeView()->viewport()->grab().toImage();
        m_View->treeView()->setEmptyText(QString());
        QVERIFY(Told != m_View->treeView()->viewport()->grab().toImage());

        // A warning is about no layer, and never hidden.
        Layers[2]->blendNode()->disconnectInput(OrvSnNames::Base);
        m_View->refresh();
        nameEdit()->setText(QStringLiteral("nothing"));
        QCOMPARE(shownRows(), QStringLiteral("Rusty things(Inner(!))"));
    }

    void refreshKeepsTheFilter()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"Rust", "Paint", "Dust", "Wood"});
        m_View->refresh();
        QTest::keyClicks(nameEdit(), QStringLiteral("ust"));
        addLayer(m_Channel, QStringLiteral("Must"));
        addLayer(m_Channel, QStringLiteral("Mast"));
        QTRY_COMPARE(shownRows(), QStringLiteral("Must Rust Dust"));
        OrvLayerStreamUtils::insertLayerAfter(
            Layers[2], m_Channel->layerList().first()->blendNode(), m_Channel);
        OrvLayerStreamUtils::insertLayerAfter(
            Layers[3], m_Channel->layerList().first()->blendNode(), m_Channel);
        QTRY_COMPARE(shownRows(), QStringLiteral("Dust Must Rust"));
        Layers[3]->setName(QStringLiteral("Crust"));
        Layers[0]->setName(QStringLiteral("Rusty"));
        QTRY_COMPARE(shownRows(), QStringLiteral("Crust Dust Must Rusty"));
        QCOMPARE(nameShown(Layers[0]), QStringLiteral("R<b>ust</b>y"));
        group(m_Channel, {Layers[3], Layers[1]}, QStringLiteral("G"));
        QTRY_COMPARE(shownRows(), QStringLiteral("G(Crust) Dust Must Rusty"));
        OrvUndoManager::instance().undo();
        QTRY_COMPARE(shownRows(), QStringLiteral("Crust Dust Must Rusty"));
        nameEdit()->clear();
        QCOMPARE(shownRows(), stackText(m_Channel));
    }

    void changedLayersAreAskedAgain()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"A", "B", "C"});
        m_View->refresh();
        choose(Attribute);
        button("Show visible layers")->click();
        QCOMPARE(shownRows(), QStringLiteral("A B C"));
        Layers[1]->setVisible(false);
        QTRY_COMPARE(shownRows(), QStringLiteral("A C"));
        OrvUndoManager::instance().undo();
        QTRY_COMPARE(shownRows(), QStringLiteral("A B C"));
        button("Show locked layers")->click();
        button("Show visible layers")->click();
        Layers[2]->setLocked(true);
        QTRY_COMPARE(shownRows(), QStringLiteral("C"));
        button("Show locked layers")->click();
        button("layers that have masks")->click();
        Layers[0]->addMaskImageSet();
        QTRY_COMPARE(shownRows(), QStringLiteral("A"));
        choose(ColorTag);
        m_View->findChild<OrvBasicColorSwatch*>()->setColorChecked(QColor(), true);
        Layers[0]->setColor(OrvLayerUtils::validLayerColors().value(QStringLiteral("red")));
        QTRY_COMPARE(shownRows(), QStringLiteral("B C"));
    }

    void rowsOutOfViewStayUnmade()
    {
        {
            const OrvUndoManager::NoRecording NoRecording;
            for (int Index = 0; Index < 300; ++Index)
                addLayer(m_Channel, QStringLiteral("Layer %1").arg(Index));
        }
        m_View->refresh();
        settle(m_View.get());
        const auto rowAt = [this](int Row) { return m_View->rowWidget(m_View->model()->index(Row, 0)); };
        QTest::keyClicks(nameEdit(), QStringLiteral("Layer"));
        settle(m_View.get());
        QVERIFY(rowAt(299)->children().isEmpty());
        m_View->treeView()->scrollToBottom();
        settle(m_View.get());
        QVERIFY(!rowAt(299)->children().isEmpty());
        QCOMPARE(nameShown(m_Channel->layerList().last()), QStringLiteral("<b>Layer</b> 0"));
        QTest::keyClicks(nameEdit(), QStringLiteral(" 7"));
        settle(m_View.get());
        QVERIFY(!rowAt(299)->isVisible());
        QVERIFY(rowAt(299 - 7)->isVisible());
    }

    void hiddenRowsAreLeftOutOfTheSelection()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"Rust", "Paint", "Dust", "Wood", "Must"});
        m_View->refresh();
        network()->selectNone();
        QTest::keyClicks(nameEdit(), QStringLiteral("ust"));
        settle(m_View.get());
        clickRow(Layers[0], Qt::NoModifier);
        clickRow(Layers[4], Qt::ShiftModifier);
        QCOMPARE(selectedNames(), QStringList({"Rust", "Dust", "Must"}));
        clickRow(Layers[0], Qt::NoModifier);
        QTest::keyClick(m_View->treeView(), Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(selectedNames(), QStringList({"Rust", "Dust", "Must"}));
    }

    /// What the filter hides is not acted on unseen; what is current can be removed again without it.
    void whatIsHiddenIsSelectedNoLonger()
    {
        const QList<OrvLayer*> Layers = addLayers(m_Channel, {"Rust", "Paint", "Dust", "Wood"});
        OrvLayer* pShared = m_Channel->shareLayer(Layers[1], OrvLayerCreateFlags());
        pShared->setName(QStringLiteral("Crust"));
        Layers[1]->makeCurrent(false, true);
        network()->selectNone();
        for (OrvLayer* pLayer : {Layers[0], Layers[1], pShared})
            pLayer->setSelected(true);
        m_View->refresh();
        QTest::keyClicks(nameEdit(), QStringLiteral("ust"));
        QCOMPARE(selectedNames(), QStringList({"Rust", "Crust"}));
        QCOMPARE(m_View->treeView()->selectionModel()->selectedRows().size(), 2);
        network()->selectNone({Layers[3]->blendNode()});
        Layers[3]->setSelected(true);
        m_View->refresh();
        QVERIFY(selectedNames().isEmpty());
        m_View->removeLayers();
        QCOMPARE(m_Channel->layerList().size(), 5);
        nameEdit()->clear();
        QCOMPARE(selectedNames(), QStringList("Paint"));
        m_View->removeLayers();
        QCOMPARE(m_Channel->layerList().size(), 4);
    }

private:
    enum FilterIndex { Name, Type, Attribute, ColorTag };

    QComboBox* comboBox() const
    {
        for (QComboBox* pComboBox : m_View->findChildren<QComboBox*>()) {
            if (pComboBox->findText(QStringLiteral("Color Tag")) >= 0)
                return pComboBox;
        }
        return nullptr;
    }
    void choose(int Filter) const { comboBox()->setCurrentIndex(Filter); }
    QLineEdit* nameEdit() const
    {
        for (QLineEdit* pEdit : m_View->findChildren<QLineEdit*>()) {
            if (pEdit->parentWidget() == comboBox()->parentWidget())
                return pEdit;
        }
        return nullptr;
    }
    /// By a part of its tool tip; the whole one wins.
    QPushButton* button(const QString& ToolTip) const
    {
        QPushButton* pFound = nullptr;
        for (QPushButton* pButton : m_View->findChildren<QPushButton*>()) {
            if (pButton->parentWidget() != comboBox()->parentWidget()
                || !pButton->toolTip().contains(ToolTip))
                continue;
            if (!pFound || pButton->toolTip() == QStringLiteral("Show ") + ToolTip)
                pFound = pButton;
        }
        return pFound;
    }

    void makeOneOfEachKind()
    {
        OrvLayer* pInside = addLayer(m_Channel, QStringLiteral("Inside"));
        pInside->addLayerAdjustmentLayerFromKey(anyKey("Filter/"));
        group(m_Channel, {pInside}, QStringLiteral("Group"));
        OrvLayer* pNoise = m_Channel->createProceduralLayer(
            anyKey("Procedural/"), OrvLayerCreateFlags(), nullptr, QStringLiteral("Noise"));
        OrvLayer* pBlur = m_Channel->createAdjustmentLayer(
            anyKey("Filter/"), OrvLayerCreateFlags(), nullptr, QStringLiteral("Blur"));
        OrvLayer* pTop = addLayer(m_Channel, QStringLiteral("Top"));
        QVERIFY(pNoise && pBlur);
        pBlur->addMaskImageSet();
        pNoise->setLocked(true);
        pTop->setVisible(false);
        m_View->refresh();
    }

    /// As LayersFixture::rowText(), of the rows that are not hidden.
    QString shownRows(const QModelIndex& Parent = QModelIndex()) const
    {
        QStringList Texts;
        for (int Row = 0; Row < m_View->model()->rowCount(Parent); ++Row) {
            if (m_View->treeView()->isRowHidden(Row, Parent))
                continue;
            const QModelIndex Index = m_View->model()->index(Row, 0, Parent);
            const OrvLayer* pLayer = m_View->layerFromIndex(Index);
            const QString Name = pLayer ? pLayer->name() : QStringLiteral("!");
            const bool IsGroup = m_View->model()->hasChildren(Index);
            Texts.append(IsGroup ? QStringLiteral("%1(%2)").arg(Name, shownRows(Index)) : Name);
        }
        return Texts.join(QLatin1Char(' '));
    }
    /// The rich text in the row, empty while it shows the plain name.
    QString nameShown(const OrvLayer* pLayer) const
    {
        settle(m_View.get());
        const auto* pLabel = rowOf(m_View.get(), pLayer)->findChild<OrvEditLabel*>();
        return pLabel ? pLabel->displayText() : QStringLiteral("not made");
    }
    void clickRow(const OrvLayer* pLayer, Qt::KeyboardModifiers Modifiers) const
    {
        const QRect Place = m_View->treeView()->visualRect(m_View->model()->indexFromLayer(pLayer));
        QWidget* pViewport = m_View->treeView()->viewport();
        QWidget* pTarget = pViewport->childAt(Place.center());
        QVERIFY(pTarget);
        QTest::mouseClick(pTarget, Qt::LeftButton, Modifiers, pTarget->mapFrom(pViewport, Place.center()));
    }
    QStringList selectedNames() const
    {
        QStringList Names;
        for (const OrvLayer* pLayer : m_Channel->selectedLayers())
            Names.append(pLayer->name());
        return Names;
    }

    SettingsDirectory m_Directory;
    OrvDebugReports m_Reports;
    std::unique_ptr<OrvLayerView> m_View;
    OrvShaderInput* m_Channel = nullptr;
};

QTEST_MAIN(TstLayerFilters)
#include "TstLayerFilters.moc"
