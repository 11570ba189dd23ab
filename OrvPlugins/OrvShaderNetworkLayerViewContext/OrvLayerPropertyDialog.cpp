#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerPropertyDialog.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBakePointNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"
#include "OrvCoreModules/Properties/OrvPropertyView.h"
#include "OrvDdi/Image/OrvChannel.h"
#include "OrvDdi/Image/OrvImageSet.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerShaderInputs.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

const QSize SmallestSize(600, 400);

/// Asks for room for all that it holds; scrolled where the screen has less.
class ContentsArea : public QScrollArea {
public:
    QSize sizeHint() const override
    {
        const int Frame = 2 * frameWidth();
        return widget()->sizeHint() + QSize(Frame, Frame);
    }
};

/// The contents stand at the top of what is scrolled.
QScrollArea* createScrollArea(QVBoxLayout*& pContents)
{
    auto* pArea = new ContentsArea;
    pArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    pArea->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    pArea->setWidgetResizable(true);
    auto* pWidget = new QWidget;
    auto* pLayout = new QVBoxLayout(pWidget);
    pContents = new QVBoxLayout;
    pContents->setSpacing(1);
    pContents->setContentsMargins(1, 1, 1, 1);
    pLayout->addLayout(pContents);
    pLayout->addStretch();
    pArea->setWidget(pWidget);
    return pArea;
}

OrvPropertyView* createView(QObject* pObject, const QMap<QString, QString>& GroupTitles, QWidget* pParent)
{
    auto* pView = new OrvPropertyView(pObject, pParent, GroupTitles, OrvPropertyView::GroupPerClass,
        OrvPropertyView::Editable | OrvPropertyView::FollowChanges, {}, false);
    // The area around it scrolls, so that the view itself need not.
    pView->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    return pView;
}

QLabel* createHeading(const QString& Title)
{
    auto* pHeading = new QLabel(Title);
    QFont Font = pHeading->font();
    Font.setBold(true);
    pHeading->setFont(Font);
    return pHeading;
}

} // namespace

OrvLayerPropertyDialog::OrvLayerPropertyDialog(OrvLayer* pLayer, QWidget* pParent)
    : QDialog(pParent)
    , m_BlendNode(pLayer->blendNode())
    , m_Layer(pLayer)
{
    setWindowTitle(tr("Layer Properties"));
    setMinimumSize(SmallestSize);
    auto* pTabs = new QTabWidget;
    addImageSet(pTabs, tr("Paint"), pLayer->paintImageSet());
    addImageSet(pTabs, tr("Mask"), pLayer->maskImageSet());

    auto* pCloseButton = new QPushButton(tr("Close"));
    connect(pCloseButton, SIGNAL(clicked()), this, SLOT(close()));
    connect(pLayer, SIGNAL(destroyed()), this, SLOT(close()));
    connect(pLayer, SIGNAL(layerStateRefreshed(OrvLayer*)), this, SLOT(updateEnabled()));
    connect(&OrvShaderNetworkManager::instance(), SIGNAL(nodeDeregistered(OrvShaderNetwork*, OrvSnBaseNode*)),
        this, SLOT(onNodeDeregistered(OrvShaderNetwork*, OrvSnBaseNode*)));
    auto* pButtons = new QHBoxLayout;
    pButtons->addStretch();
    pButtons->addWidget(pCloseButton);

    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(pTabs);
    pLayout->addWidget(createLayerProperties(pLayer));
    pLayout->addLayout(pButtons);
    updateEnabled();
}

void OrvLayerPropertyDialog::updateEnabled()
{
    const bool IsModifiable = m_Layer && m_Layer->isModifiable();
    for (OrvPropertyView* pView : findChildren<OrvPropertyView*>())
        pView->setEnabled(IsModifiable);
    if (auto* pInputs = findChild<OrvLayerShaderInputs*>())
        pInputs->setEnabled(IsModifiable);
}

void OrvLayerPropertyDialog::onNodeDeregistered(OrvShaderNetwork*, OrvSnBaseNode* pNode)
{
    if (pNode == m_BlendNode)
        close();
}

void OrvLayerPropertyDialog::addImageSet(QTabWidget* pTabs, const QString& Title, OrvImageSet* pImageSet)
{
    if (!pImageSet)
        return;
    QMap<QString, QString> ChannelNames;
    for (const OrvChannel* pChannel : pImageSet->channels())
        ChannelNames.insert(pChannel->name(), pChannel->name());
    QVBoxLayout* pContents = nullptr;
    QScrollArea* pArea = createScrollArea(pContents);
    OrvPropertyView* pView = createView(pImageSet, ChannelNames, pArea);
    pView->setObjectName(Title);
    pContents->addWidget(pView);
    pTabs->addTab(pArea, pView->objectName());
}

QWidget* OrvLayerPropertyDialog::createLayerProperties(const OrvLayer* pLayer)
{
    QVBoxLayout* pContents = nullptr;
    QScrollArea* pArea = createScrollArea(pContents);
    // Each has a name, and the layer has one: a heading tells them apart.
    const std::pair<OrvSnBaseNode*, QString> Parts[]{{pLayer->blendNode(), tr("Layer")},
        {pLayer->adjustmentNode(), tr("Adjustment")},
        {pLayer->secondaryAdjustmentNode(), tr("Secondary Adjustment")},
        {pLayer->proceduralNode(), tr("Procedural")},
        {pLayer->customProceduralNode(), tr("Custom Procedural")}, {pLayer->graphNode(), tr("Graph")},
        {pLayer->shaderNode(), tr("Shader")}, {pLayer->bakePointNode(), tr("Bake Point")},
        {pLayer->maskCustomProceduralNode(), tr("Mask")}};
    const bool IsOne = std::count_if(std::begin(Parts), std::end(Parts), [](const auto& Part) {
        return Part.first != nullptr;
    }) == 1;
    for (const auto& [pNode, Title] : Parts) {
        if (pNode && !IsOne)
            pContents->addWidget(createHeading(Title));
        if (pNode)
            pContents->addWidget(createView(pNode, {}, pArea));
        if (!pNode || pNode != pLayer->shaderNode())
            continue;
        // The values of a shader are those of its inputs, and those may come from channels.
        auto* pLayerView = qobject_cast<OrvLayerView*>(parentWidget());
        if (QWidget* pInputs = OrvLayerShaderInputs::create(pLayer, pLayerView, pArea))
            pContents->addWidget(pInputs);
    }
    return pArea;
}

#include "moc_OrvLayerPropertyDialog.cpp"
