#include "OrvCoreModules/Properties/OrvNodePropertyEditor.h"

#include "OrvCoreModules/Properties/OrvAttributeBinding.h"
#include "OrvCoreModules/Properties/OrvUserAttributeControletManager.h"
#include "OrvCoreModules/Properties/OrvValueEditor.h"
#include "OrvCoreModules/Widgets/OrvExpandableListWidget.h"
#include "OrvCoreModules/Widgets/OrvFormLayout.h"
#include "OrvCoreModules/Widgets/OrvVerticalScrollArea.h"

#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBaseNode.h"

#include <QtCore/QTimer>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

OrvNodePropertyEditor::OrvNodePropertyEditor(
    OrvSnBaseNode* pNode, const QString& Title, int Options, const Rows& AddRows, QWidget* pParent)
    : QFrame(pParent)
    , m_pNode(pNode)
    , m_Title(Title)
    , m_Options(Options)
    , m_AddRows(AddRows)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    QVBoxLayout* pLayout = new QVBoxLayout(this);
    // The rows stand in the same column with and without a title above them.
    const int Margin = Title.isEmpty() ? 2 : 0;
    pLayout->setContentsMargins(Margin, 0, Margin, Margin);
    if (Options & TitledFrame)
        setFrameShape(StyledPanel);
    rebuild();
    const OrvShaderNetworkManager& Manager = OrvShaderNetworkManager::instance();
    connect(&Manager, &OrvShaderNetworkManager::nodeUserAttributeCreated, this,
        &OrvNodePropertyEditor::onNodeAttributesChanged);
    connect(&Manager, &OrvShaderNetworkManager::nodeUserAttributeRemoved, this,
        &OrvNodePropertyEditor::onNodeAttributesChanged);
    connect(pNode, &QObject::destroyed, this, &OrvNodePropertyEditor::rebuild);
}

OrvSnBaseNode* OrvNodePropertyEditor::node() const
{
    return m_pNode;
}

void OrvNodePropertyEditor::onNodeAttributesChanged(OrvSnBaseNode* pNode, QString)
{
    // Not at once: an editor here may be in the middle of the edit.
    if (pNode == m_pNode && !std::exchange(m_RebuildPending, true))
        QTimer::singleShot(0, this, &OrvNodePropertyEditor::rebuild);
}

void OrvNodePropertyEditor::rebuild()
{
    m_RebuildPending = false;
    delete std::exchange(m_pContents, nullptr);
    if (!m_pNode) {
        hide();
        return;
    }
    QWidget* pRows = new QWidget(this);
    OrvFormLayout* pForm = new OrvFormLayout(pRows);
    if (m_Options & CompactRows)
        pForm->setVerticalSpacing(1);
    const QStringList Shown = m_AddRows ? m_AddRows(m_pNode, pForm) : QStringList();
    if (m_Options & UserAttributes)
        addUserAttributes(pForm, Shown);
    const bool Empty = pForm->rowCount() == 0;
    if (Empty && !m_Title.isEmpty()) {
        QLabel* pNothing = new QLabel(tr("No settings"), pRows);
        pNothing->setEnabled(false);
        pForm->addRow(pNothing);
    }

    m_pContents = pRows;
    if (!(m_Options & NoScrollArea)) {
        OrvVerticalScrollArea* pArea = new OrvVerticalScrollArea(this);
        pArea->setWidget(pRows);
        m_pContents = pArea;
    }
    if (!m_Title.isEmpty()) {
        OrvExpandableListWidget* pGroup = new OrvExpandableListWidget(m_Title, this);
        pGroup->addChild(m_pContents);
        m_pContents = pGroup;
    }
    layout()->addWidget(m_pContents);
    // Without title and rows there is nothing to see, not even a frame.
    const bool WasOutOfSight = std::exchange(m_OutOfSight, Empty && m_Title.isEmpty());
    if (m_OutOfSight)
        hide();
    else if (WasOutOfSight)
        show();
}

void OrvNodePropertyEditor::addUserAttributes(OrvFormLayout* pForm, const QStringList& Shown)
{
    for (const OrvCustomAttribute& Attribute : m_pNode->userAttributes()) {
        const bool Wanted = Attribute.isVisible() && !Attribute.name().startsWith(QLatin1Char('_'))
            && !Shown.contains(Attribute.name()) && OrvValueEditor::canShow(Attribute.value());
        if (!Wanted)
            continue;
        OrvValueEditor::addRow(pForm, new OrvAttributeBinding(m_pNode, Attribute.name(), nullptr),
            OrvUserAttributeControletManager::describe(Attribute.name(), Attribute.value()),
            !Attribute.isTweakable());
    }
}

#include "moc_OrvNodePropertyEditor.cpp"
