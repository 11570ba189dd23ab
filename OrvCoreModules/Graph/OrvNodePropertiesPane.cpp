#include "OrvCoreModules/Graph/OrvNodePropertiesPane.h"

#include "OrvCoreModules/Graph/OrvNodeGraphCommands.h"
#include "OrvCoreModules/Graph/OrvNodeLook.h"
#include "OrvCoreModules/Properties/OrvNodePropertyEditor.h"
#include "OrvCoreModules/Properties/OrvNodePropertyEditors.h"
#include "OrvCoreModules/Properties/OrvUserAttributeControletManager.h"
#include "OrvCoreModules/Widgets/OrvEditLabel.h"

#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"

#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

namespace {

constexpr int EditorOptions = OrvNodePropertyEditor::NoScrollArea | OrvNodePropertyEditor::CompactRows
    | OrvNodePropertyEditor::UserAttributes;
constexpr int BlendLabelWidth = 80, BlendSpacing = 4, BlendLeastWidth = 80, BlendGreatestWidth = 400;

} // namespace

OrvNodePropertiesPane::OrvNodePropertiesPane(QWidget* pParent)
    : OrvVerticalScrollArea(pParent)
{
    setFrameShape(NoFrame);
    auto* pContents = new QWidget;
    m_pLayout = new QVBoxLayout(pContents);
    m_pLayout->setContentsMargins(6, 4, 6, 6);
    m_pLayout->setSpacing(4);
    m_pName = new OrvEditLabel(pContents);
    QFont Bold = m_pName->font();
    Bold.setBold(true);
    m_pName->setFont(Bold);
    m_pKind = new QLabel(pContents);
    m_pKind->setWordWrap(true);
    m_pKind->setEnabled(false);
    m_pLayout->addWidget(m_pName);
    m_pLayout->addWidget(m_pKind);
    m_pLayout->addStretch();
    setWidget(pContents);

    connect(m_pName, &OrvEditLabel::textChanged, this, [this](const QString& Text) {
        if (!m_pNode)
            return;
        OrvNodeGraphCommands::rename(m_pNode, Text);
        m_pName->setText(OrvNodeLook::titleOf(m_pNode));
    });
    const auto* pManager = &OrvShaderNetworkManager::instance();
    connect(pManager, &OrvShaderNetworkManager::nodeDeregistered, this,
        &OrvNodePropertiesPane::onNodeDeregistered);
    connect(pManager, &OrvShaderNetworkManager::nodeNameChanged, this,
        &OrvNodePropertiesPane::onNodeStateChanged);
    connect(pManager, &OrvShaderNetworkManager::nodeLockedChanged, this,
        &OrvNodePropertiesPane::onNodeStateChanged);
    connect(pManager, &OrvShaderNetworkManager::nodeBlockedChanged, this,
        &OrvNodePropertiesPane::onNodeStateChanged);
    connect(pManager, &OrvShaderNetworkManager::nodeCacheActiveChanged, this,
        &OrvNodePropertiesPane::onNodeStateChanged);
    showNode(nullptr, tr("No node is selected"));
}

void OrvNodePropertiesPane::showNode(OrvSnBaseNode* pNode, const QString& Text)
{
    if (pNode && pNode == m_pNode)
        return;
    m_pNode = pNode;
    if (m_pEditors) {
        // One of the editors may be in the middle of its edit.
        m_pEditors->hide();
        m_pLayout->removeWidget(m_pEditors);
        m_pEditors->deleteLater();
        m_pEditors = nullptr;
    }
    m_pName->setVisible(pNode != nullptr);
    m_pKind->setText(pNode ? pNode->typeLabel() : Text);
    if (!pNode)
        return;
    m_pEditors = new QWidget(widget());
    auto* pLayout = new QVBoxLayout(m_pEditors);
    pLayout->setContentsMargins(0, 4, 0, 0);
    pLayout->setSpacing(2);
    addBlending(m_pEditors, pLayout);
    if (QWidget* pEditor = OrvNodePropertyEditors::create(pNode, QString(), EditorOptions, m_pEditors))
        pLayout->addWidget(pEditor);
    m_pLayout->insertWidget(2, m_pEditors);
    m_pEditors->show();
    onNodeStateChanged(pNode);
}

void OrvNodePropertiesPane::addBlending(QWidget* pEditors, QVBoxLayout* pLayout)
{
    if (!qobject_cast<OrvSnMergeNode*>(m_pNode))
        return;
    for (const QString& Attribute : {OrvMergeAttributes::BlendMode, OrvMergeAttributes::Amount}) {
        QWidget* pControlet = OrvUserAttributeControletManager::create(Attribute, m_pNode, pEditors,
            BlendLabelWidth, BlendSpacing, BlendLeastWidth, BlendGreatestWidth, 0);
        if (pControlet)
            pLayout->addWidget(pControlet);
    }
}

void OrvNodePropertiesPane::onNodeDeregistered(OrvShaderNetwork*, OrvSnBaseNode* pNode)
{
    if (pNode == m_pNode)
        showNode(nullptr, tr("No node is selected"));
}

void OrvNodePropertiesPane::onNodeStateChanged(OrvSnBaseNode* pNode)
{
    if (pNode != m_pNode)
        return;
    m_pName->setText(OrvNodeLook::titleOf(pNode));
    if (m_pEditors)
        m_pEditors->setEnabled(!OrvNodeGraphCommands::isFrozen(pNode));
}

#include "moc_OrvNodePropertiesPane.cpp"
