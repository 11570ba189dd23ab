#include "Orvi/OrvBrushBar.h"

#include "Orvi/OrvBrushStroke.h"
#include "Orvi/OrvBrushTool.h"

#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Widgets/OrvColorSwatch.h"
#include "OrvCoreModules/Widgets/OrvSliderSpinBox.h"
#include "OrvCoreModules/Window/OrvIcon.h"

#include <QtCore/QSignalBlocker>
#include <QtWidgets/QToolButton>

namespace {

constexpr int SwatchEdge = 26;
constexpr double LargestSliderSize = 512.0; // larger ones are typed
constexpr double Percent = 100.0;

void addSpace(QToolBar* pBar, int Width)
{
    QWidget* pSpace = new QWidget(pBar);
    pSpace->setFixedWidth(Width);
    pBar->addWidget(pSpace);
}

} // namespace

OrvBrushBar::OrvBrushBar(OrvBrushTool* pTool, QWidget* pParent)
    : QToolBar(tr("Brush"), pParent)
    , m_pTool(pTool)
    , m_pColor(new OrvColorSwatch(this))
    , m_pNumber(new OrvColorSwatch(this))
{
    setObjectName(QStringLiteral("BrushBar"));
    m_pColor->setFixedSize(SwatchEdge, SwatchEdge);
    m_pColor->setAlphaShown(false);
    addSpace(this, 4);
    addWidget(m_pColor);
    m_pNumber->setFixedSize(SwatchEdge / 2, SwatchEdge);
    m_pNumber->setAlphaShown(false);
    m_pNumber->setPickingEnabled(false);
    m_pNumber->setAcceptsColorDrops(false);
    m_pNumber->setToolTipOverride(
        tr("What is painted: masks and other images of numbers take the color's brightness"));
    m_pNumberPlace = addWidget(m_pNumber);
    addSpace(this, 8);

    m_pSize = addSlider(tr("Size"), tr("Diameter of the brush ([ and ])"), 150);
    m_pSize->setRange(OrvBrush::SmallestSize, OrvBrush::LargestSize);
    m_pSize->setUiRange(OrvBrush::SmallestSize, LargestSliderSize);
    m_pSize->setDecimals(0);
    m_pSize->setStep(1.0);
    m_pSize->setSuffix(tr(" px"));
    m_pPressureSetsSize = addToggle(
        "PressureSetsSize", QStringLiteral("PressureSize.png"), tr("The pressure of a pen sets the size"));
    addSpace(this, 6);
    m_pHardness = addSlider(tr("Hardness"), tr("How sharp the edge of the brush is"), 150);
    m_pOpacity = addSlider(tr("Opacity"), tr("What one stroke covers at most"), 150);
    for (OrvSliderSpinBox* pSlider : {m_pHardness, m_pOpacity}) {
        pSlider->setRange(0.0, 1.0);
        pSlider->setUiRange(0.0, 1.0);
        pSlider->setDisplayFactor(Percent);
        pSlider->setDecimals(0);
        pSlider->setSuffix(tr(" %"));
    }

    m_pPressureSetsOpacity = addToggle("PressureSetsOpacity", QStringLiteral("PressureOpacity.png"),
        tr("The pressure of a pen sets the opacity"));
    addSpace(this, 6);
    m_pEraser = addToggle("Eraser", QStringLiteral("Eraser.png"), tr("Erase instead of painting (E)"));
    connectEditors();
    refresh();
}

OrvSliderSpinBox* OrvBrushBar::addSlider(const QString& Name, const QString& ToolTip, int Width)
{
    OrvSliderSpinBox* pSlider = new OrvSliderSpinBox(this);
    pSlider->setPrefix(Name);
    pSlider->setToolTip(ToolTip);
    pSlider->setFixedWidth(Width);
    addWidget(pSlider);
    addSpace(this, 6);
    return pSlider;
}

QToolButton* OrvBrushBar::addToggle(const char* pName, const QString& IconName, const QString& ToolTip)
{
    QToolButton* pToggle = new QToolButton(this);
    pToggle->setObjectName(QLatin1String(pName));
    pToggle->setIcon(OrvIcon::createIconFromFilename(IconName));
    pToggle->setToolTip(ToolTip);
    pToggle->setCheckable(true);
    pToggle->setAutoRaise(true);
    addWidget(pToggle);
    return pToggle;
}

void OrvBrushBar::connectEditors()
{
    const auto change = [this](const auto& Set) {
        OrvBrush Brush = m_pTool->brush();
        Set(Brush);
        m_pTool->setBrush(Brush);
    };
    connect(m_pTool, &OrvBrushTool::brushChanged, this, &OrvBrushBar::refresh);
    connect(m_pSize, &OrvSliderSpinBox::valueEdited, this,
        [change](double Value) { change([Value](OrvBrush& Brush) { Brush.setSize(Value); }); });
    connect(m_pHardness, &OrvSliderSpinBox::valueEdited, this,
        [change](double Value) { change([Value](OrvBrush& Brush) { Brush.setHardness(Value); }); });
    connect(m_pOpacity, &OrvSliderSpinBox::valueEdited, this,
        [change](double Value) { change([Value](OrvBrush& Brush) { Brush.setOpacity(Value); }); });
    connect(m_pPressureSetsSize, &QToolButton::toggled, this,
        [change](bool On) { change([On](OrvBrush& Brush) { Brush.setPressureSetsSize(On); }); });
    connect(m_pPressureSetsOpacity, &QToolButton::toggled, this,
        [change](bool On) { change([On](OrvBrush& Brush) { Brush.setPressureSetsOpacity(On); }); });
    connect(m_pEraser, &QToolButton::toggled, this,
        [change](bool On) { change([On](OrvBrush& Brush) { Brush.setErases(On); }); });
    const OrvLayerManager* pLayers = &OrvLayerManager::instance();
    connect(pLayers, &OrvLayerManager::currentLayerChanged, this, &OrvBrushBar::refreshNumber);
    connect(pLayers, &OrvLayerManager::currentComponentChanged, this, &OrvBrushBar::refreshNumber);
    connect(&OrvUndoManager::instance(), &OrvUndoManager::editFinished, this, &OrvBrushBar::refreshNumber);
    const auto takeColor = [change](const OrvColor& Color) {
        change([&Color](OrvBrush& Brush) { Brush.setColor(Color.toQColor()); });
    };
    connect(m_pColor, &OrvColorSwatch::colorChanged, this, takeColor);
    connect(m_pColor, &OrvColorSwatch::colorEdited, this, takeColor);
}

void OrvBrushBar::refresh()
{
    const OrvBrush& Brush = m_pTool->brush();
    m_pColor->setColor(OrvColor::fromQColor(Brush.color()));
    m_pSize->setValue(Brush.size());
    m_pHardness->setValue(Brush.hardness());
    m_pOpacity->setValue(Brush.opacity());
    // A value that is shown is not one that was chosen.
    const auto check = [](QToolButton* pToggle, bool On) {
        const QSignalBlocker Blocker(pToggle);
        pToggle->setChecked(On);
    };
    check(m_pPressureSetsSize, Brush.pressureSetsSize());
    check(m_pPressureSetsOpacity, Brush.pressureSetsOpacity());
    check(m_pEraser, Brush.erases());
    refreshNumber();
}

void OrvBrushBar::refreshNumber()
{
    const auto* pTarget
        = qobject_cast<const OrvSnChannelInputNode*>(OrvLayerManager::instance().currentComponent());
    const QColor Color = m_pTool->brush().color();
    const int Grey = qRound(255.0 * OrvBrushStroke::numberFor(Color));
    const QColor Painted(Grey, Grey, Grey);
    m_pNumber->setColor(OrvColor::fromQColor(Painted));
    m_pNumberPlace->setVisible(pTarget && pTarget->imageSet() && Painted.rgb() != Color.rgb()
        && OrvBrushStroke::paintsNumbers(pTarget));
}

#include "moc_OrvBrushBar.cpp"
