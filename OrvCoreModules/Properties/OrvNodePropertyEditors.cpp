#include "OrvCoreModules/Properties/OrvNodePropertyEditors.h"

#include "OrvCoreModules/Properties/OrvAttributeBinding.h"
#include "OrvCoreModules/Properties/OrvBakePointControls.h"
#include "OrvCoreModules/Properties/OrvNodePropertyEditor.h"
#include "OrvCoreModules/Properties/OrvPropertyBinding.h"
#include "OrvCoreModules/Properties/OrvValueEditor.h"
#include "OrvCoreModules/Widgets/OrvFormLayout.h"

#include "OrvCore/Network/OrvSnBakePointNode.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"

#include "OrvDdi/Engine/OrvOperationRegistry.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QHash>

namespace {

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvNodePropertyEditors", pText);
}

void addPropertyRow(OrvFormLayout* pForm, QObject* pObject, const char* pName, bool ReadOnly)
{
    const QMetaObject* pClass = pObject->metaObject();
    const QMetaProperty Property = pClass->property(pClass->indexOfProperty(pName));
    OrvPropertyBinding* pBinding = new OrvPropertyBinding(pObject, Property, nullptr);
    OrvValueEditor::addRow(
        pForm, pBinding, OrvValueEditor::describe(QLatin1String(pName), pBinding->value()), ReadOnly);
}

QStringList addOperationRows(OrvSnBaseNode* pNode, OrvFormLayout* pForm)
{
    QStringList Shown;
    for (const OrvOperationParameter& Parameter :
        static_cast<OrvSnOperationNode*>(pNode)->operation().Parameters) {
        OrvValueEditor::addRow(pForm,
            new OrvAttributeBinding(pNode, Parameter.Name, nullptr, Parameter.Label), Parameter, false);
        Shown.append(Parameter.Name);
    }
    return Shown;
}

QStringList addCustomProceduralRows(OrvSnBaseNode* pNode, OrvFormLayout* pForm)
{
    QStringList Shown;
    for (const OrvProceduralDescription::Parameter& Parameter :
        static_cast<OrvSnCustomProceduralNode*>(pNode)->procedural().Parameters) {
        OrvValueEditor::addRow(pForm,
            new OrvAttributeBinding(pNode, Parameter.Editor.Name, nullptr, Parameter.Editor.Label),
            Parameter.Editor, false);
        Shown.append(Parameter.Editor.Name);
    }
    return Shown;
}

QStringList addImageRows(OrvSnBaseNode* pNode, OrvFormLayout* pForm)
{
    OrvImageSet* pImages = static_cast<OrvSnChannelInputNode*>(pNode)->imageSet();
    if (!pImages)
        return {};
    addPropertyRow(pForm, pImages, "imageSetSize", true);
    addPropertyRow(pForm, pImages, "imageSetDepthString", true);
    addPropertyRow(pForm, pImages, "fileSpace", true);
    addPropertyRow(pForm, pImages, "tileCount", true);
    return {};
}

QStringList addBakePointRows(OrvSnBaseNode* pNode, OrvFormLayout* pForm)
{
    auto* pBakePoint = static_cast<OrvSnBakePointNode*>(pNode);
    pForm->addRow(tr("Result"), new OrvBakePointControls(pBakePoint));
    return {OrvSnBakePointNode::BakedFromAttribute};
}

QStringList addNameRow(OrvSnBaseNode* pNode, OrvFormLayout* pForm)
{
    addPropertyRow(pForm, pNode, "name", false);
    return {};
}

/// A merge node's own attributes have controls in the palettes: only what users added is left.
QStringList addNoRows(OrvSnBaseNode*, OrvFormLayout*)
{
    return {};
}

OrvNodePropertyEditors::Factory rowsFactory(const OrvNodePropertyEditor::Rows& AddRows)
{
    return [AddRows](OrvSnBaseNode* pNode, const QString& Title, int Options, QWidget* pParent) {
        return new OrvNodePropertyEditor(pNode, Title, Options, AddRows, pParent);
    };
}

using FactoryTable = QHash<const QMetaObject*, OrvNodePropertyEditors::Factory>;

FactoryTable& factories()
{
    static FactoryTable Table{
        {&OrvSnBaseNode::staticMetaObject, rowsFactory(addNameRow)},
        {&OrvSnOperationNode::staticMetaObject, rowsFactory(addOperationRows)},
        {&OrvSnCustomProceduralNode::staticMetaObject, rowsFactory(addCustomProceduralRows)},
        {&OrvSnMergeNode::staticMetaObject, rowsFactory(addNoRows)},
        {&OrvSnBakePointNode::staticMetaObject, rowsFactory(addBakePointRows)},
        {&OrvSnChannelInputNode::staticMetaObject, rowsFactory(addImageRows)},
    };
    return Table;
}

} // namespace

void OrvNodePropertyEditors::enter(const QMetaObject& NodeClass, const Factory& Make)
{
    factories().insert(&NodeClass, Make);
}

QWidget* OrvNodePropertyEditors::create(
    OrvSnBaseNode* pNode, const QString& Title, int Options, QWidget* pParent)
{
    if (!pNode) {
        OrvDebug("OrvNodePropertyEditors", __LINE__, QStringLiteral("pNode is NULL"), false, false);
        return nullptr;
    }
    const FactoryTable& Table = factories();
    const QMetaObject* pClass = pNode->metaObject();
    while (!Table.contains(pClass))
        pClass = pClass->superClass();
    QWidget* pEditor = Table.value(pClass)(pNode, Title, Options, pParent);
    if (pEditor)
        pEditor->setObjectName(pNode->name() + QStringLiteral("/Node"));
    return pEditor;
}
