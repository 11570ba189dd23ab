#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerPropertyDialog.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBakePointNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"
#include "OrvCoreModules/Properties/OrvPropertyView.h"
#include "OrvDdi/Image/OrvChannel.h"
#include "OrvDdi/Image/OrvImageSet.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerShaderInputs.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QVBoxLayout>

namespace {

const QSize SmallestSize(600, 400);

/// The contents stand at the top of what is scrolled.
QScrollArea* createScrollArea(QVBoxLayout*& pContents)
{
    auto* pArea = new QScrollArea;
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
    for (OrvSnBaseNode* pNode : std::initializer_list<OrvSnBaseNode*>{pLayer->blendNode(),
             pLayer->adjustmentNode(), pLayer->secondaryAdjustmentNode(), pLayer->proceduralNode(),
             pLayer->customProceduralNode(), pLayer->graphNode(), pLayer->shaderNode(),
             pLayer->bakePointNode(), pLayer->maskCustomProceduralNode()}) {
        if (pNode)
            pContents->addWidget(createView(pNode, {}, pArea));
        // The values of a shader are those of its inputs, and those may come from channels.
        OrvLayerShader* pShader = pNode && pNode == pLayer->shaderNode()
            ? OrvLayerShaderManager::instance().getLayerShader(pNode)
            : nullptr;
        auto* pLayerView = qobject_cast<OrvLayerView*>(parentWidget());
        if (pShader && pLayerView)
            pContents->addWidget(new OrvLayerShaderInputs(pShader, pLayerView, pArea));
    }
    return pArea;
}

#include "moc_OrvLayerPropertyDialog.cpp"
