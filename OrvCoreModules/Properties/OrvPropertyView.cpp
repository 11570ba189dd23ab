#include "OrvCoreModules/Properties/OrvPropertyView.h"

#include "OrvCoreModules/Properties/OrvAttributeBinding.h"
#include "OrvCoreModules/Properties/OrvPropertyBinding.h"
#include "OrvCoreModules/Properties/OrvUserAttributeControletManager.h"
#include "OrvCoreModules/Properties/OrvValueEditor.h"
#include "OrvCoreModules/Widgets/OrvExpandableListWidget.h"
#include "OrvCoreModules/Widgets/OrvFormLayout.h"
#include "OrvCoreModules/Widgets/OrvVerticalScrollArea.h"

#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBaseNode.h"

#include <QtCore/QTimer>
#include <QtWidgets/QVBoxLayout>

namespace {

constexpr int CompactSpacing = 1;
constexpr int WideSpacing = 5;

/// Properties of a class stand below the class that declares them.
const QMetaObject* declaringClass(const QMetaObject* pClass, int PropertyIndex)
{
    while (pClass && PropertyIndex < pClass->propertyOffset())
        pClass = pClass->superClass();
    return pClass;
}

OrvOperationParameter describe(const QMetaProperty& Property, const QVariant& Value)
{
    OrvOperationParameter Description = OrvValueEditor::describe(QLatin1String(Property.name()), Value);
    if (Property.isEnumType() && !Property.isFlagType()) {
        Description.Type = OrvOperationParameter::Enumeration;
        for (int Index = 0; Index < Property.enumerator().keyCount(); ++Index) {
            const QString Key = QLatin1String(Property.enumerator().key(Index));
            Description.Choices.append(Key);
            Description.ChoiceLabels.append(OrvValueEditor::labelFromName(Key));
        }
    }
    return Description;
}

} // namespace

OrvPropertyView::OrvPropertyView(QObject* pObject, QWidget* pParent,
    const QMap<QString, QString>& GroupTitles, int Hint, int DisplayFlags,
    const QStringList& HiddenProperties, bool ReadOnly)
    : QWidget(pParent)
    , m_pObject(pObject)
    , m_GroupTitles(GroupTitles)
    , m_HiddenProperties(HiddenProperties)
    , m_Hint(Hint)
    , m_DisplayFlags(DisplayFlags)
    , m_ReadOnly(ReadOnly || !(DisplayFlags & Editable))
{
    QVBoxLayout* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    rebuild();
    if (!pObject)
        return;
    connect(pObject, &QObject::destroyed, this, &OrvPropertyView::rebuild);
    if (!(DisplayFlags & FollowChanges) || !qobject_cast<OrvSnBaseNode*>(pObject))
        return;
    const auto onAttributes = [this](OrvSnBaseNode* pNode) {
        if (static_cast<QObject*>(pNode) == m_pObject)
            requestRebuild();
    };
    const OrvShaderNetworkManager& Manager = OrvShaderNetworkManager::instance();
    connect(&Manager, &OrvShaderNetworkManager::nodeUserAttributeCreated, this, onAttributes);
    connect(&Manager, &OrvShaderNetworkManager::nodeUserAttributeRemoved, this, onAttributes);
}

void OrvPropertyView::setGroupTitle(const QString& ClassName, const QString& Title)
{
    m_GroupTitles.insert(ClassName, Title);
    const OrvFormLayout* pForm = m_Groups.value(ClassName);
    QWidget* pAround = pForm ? pForm->parentWidget() : nullptr;
    while (pAround && !qobject_cast<OrvExpandableListWidget*>(pAround))
        pAround = pAround != this ? pAround->parentWidget() : nullptr;
    if (pAround)
        static_cast<OrvExpandableListWidget*>(pAround)->setTitle(Title);
}

void OrvPropertyView::requestRebuild()
{
    // Not at once: the attribute may come and go within one edit, and an editor here may be the one that
    // edits.
    if (std::exchange(m_RebuildPending, true))
        return;
    QTimer::singleShot(0, this, &OrvPropertyView::rebuild);
}

void OrvPropertyView::rebuild()
{
    m_RebuildPending = false;
    m_Groups.clear();
    delete m_pContents;
    if (!m_pObject)
        return;
    m_pContents = new QWidget(this);
    QVBoxLayout* pContentsLayout = new QVBoxLayout(m_pContents);
    pContentsLayout->setContentsMargins(0, 0, 0, 0);
    pContentsLayout->setSpacing(m_DisplayFlags & CompactRows ? CompactSpacing : WideSpacing);
    addProperties(pContentsLayout);
    addAttributes(pContentsLayout);
    if (!(m_DisplayFlags & NoScrollArea)) {
        OrvVerticalScrollArea* pArea = new OrvVerticalScrollArea(this);
        pArea->setWidget(m_pContents);
        m_pContents = pArea;
    }
    layout()->addWidget(m_pContents);
}

bool OrvPropertyView::isHidden(const QString& Name) const
{
    return Name.startsWith(QLatin1Char('_'))
        || ((m_DisplayFlags & LeaveOutHidden) && m_HiddenProperties.contains(Name));
}

OrvFormLayout* OrvPropertyView::group(QVBoxLayout* pLayout, const QString& ClassName)
{
    // Classes without a title of their own share one group.
    const QString Key = m_Hint == GroupPerClass && m_GroupTitles.contains(ClassName) ? ClassName : QString();
    OrvFormLayout*& pForm = m_Groups[Key];
    if (pForm)
        return pForm;
    QWidget* pRows = new QWidget(pLayout->parentWidget());
    pForm = new OrvFormLayout(pRows);
    pForm->setVerticalSpacing(m_DisplayFlags & CompactRows ? CompactSpacing : WideSpacing);
    const QString Title = m_GroupTitles.value(Key);
    if (Title.isEmpty() || !(m_DisplayFlags & ShowGroupTitles)) {
        pLayout->addWidget(pRows);
        return pForm;
    }
    OrvExpandableListWidget* pGroup = new OrvExpandableListWidget(Title, pLayout->parentWidget());
    pGroup->addChild(pRows);
    pLayout->addWidget(pGroup);
    return pForm;
}

void OrvPropertyView::addRow(
    OrvFormLayout* pForm, OrvValueBinding* pBinding, const OrvOperationParameter& Description)
{
    if (!(m_DisplayFlags & FollowChanges))
        pBinding->blockSignals(true);
    OrvValueEditor::addRow(pForm, pBinding, Description, m_ReadOnly || !pBinding->isWritable());
}

void OrvPropertyView::addProperties(QVBoxLayout* pLayout)
{
    const QMetaObject* pClass = m_pObject->metaObject();
    for (int Index = QObject::staticMetaObject.propertyCount(); Index < pClass->propertyCount(); ++Index) {
        const QMetaProperty Property = pClass->property(Index);
        if (!Property.isReadable() || !Property.isDesignable(m_pObject)
            || isHidden(QLatin1String(Property.name())))
            continue;
        auto pBinding = std::make_unique<OrvPropertyBinding>(m_pObject, Property, nullptr);
        if (!OrvValueEditor::canShow(pBinding->value()))
            continue;
        const OrvOperationParameter Description = describe(Property, pBinding->value());
        addRow(group(pLayout, QLatin1String(declaringClass(pClass, Index)->className())), pBinding.release(),
            Description);
    }
}

void OrvPropertyView::addAttributes(QVBoxLayout* pLayout)
{
    auto* pObject = qobject_cast<OrvSerializableObject*>(m_pObject.data());
    if (!pObject)
        return;
    for (const OrvCustomAttribute& Attribute : pObject->userAttributes()) {
        if (!Attribute.isVisible() || isHidden(Attribute.name())
            || !OrvValueEditor::canShow(Attribute.value()))
            continue;
        addRow(group(pLayout, QLatin1String(m_pObject->metaObject()->className())),
            new OrvAttributeBinding(pObject, Attribute.name(), nullptr),
            OrvUserAttributeControletManager::describe(Attribute.name(), Attribute.value()));
    }
}

#include "moc_OrvPropertyView.cpp"
