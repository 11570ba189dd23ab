#include "OrvCore/Network/OrvUpstreamDigest.h"

#include "OrvCore/Network/OrvNodeDescription.h"
#include "OrvCore/Network/OrvSnBakePointNode.h"
#include "OrvCore/Network/OrvSnGraphNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"

#include "OrvDdi/Files/OrvImageBlocks.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QHash>
#include <QtCore/QJsonDocument>

namespace {

/// A hidden layer shows what lies below it.
const OrvSnBaseNode* shown(const OrvSnBaseNode* pNode)
{
    const auto* pMerge = qobject_cast<const OrvSnMergeNode*>(pNode);
    while (pMerge && !pMerge->isShown()) {
        pNode = pMerge->inputNode(OrvSnNames::Base);
        pMerge = qobject_cast<const OrvSnMergeNode*>(pNode);
    }
    return pNode;
}

QVector<OrvCustomAttribute> sharingInPicture(const QVector<OrvCustomAttribute>& Attributes)
{
    static const QStringList Bookkeeping{OrvMergeAttributes::ColorTag, OrvMergeAttributes::LayerCached,
        OrvMergeAttributes::CrossChannelSharing, OrvSnBakePointNode::BakedFromAttribute};
    QVector<OrvCustomAttribute> Shared;
    for (const OrvCustomAttribute& Attribute : Attributes) {
        if (!Attribute.isViewState() && !Bookkeeping.contains(Attribute.name()))
            Shared.append(Attribute);
    }
    return Shared;
}

/// Numbers nodes in the order in which they are met, which connections alone decide.
class Walk {
public:
    int number(const OrvSnBaseNode* pNode)
    {
        if (!pNode)
            return -1;
        const auto Known = m_Numbers.constFind(pNode);
        if (Known != m_Numbers.constEnd())
            return Known.value();
        m_Numbers.insert(pNode, m_Found.size());
        m_Found.append(pNode);
        return m_Found.size() - 1;
    }
    const OrvSnBaseNode* next() { return m_Next < m_Found.size() ? m_Found[m_Next++] : nullptr; }

private:
    QVector<const OrvSnBaseNode*> m_Found;
    QHash<const OrvSnBaseNode*, int> m_Numbers;
    int m_Next = 0;
};

} // namespace

QByteArray OrvUpstreamDigest::of(const OrvSnBaseNode* pNode)
{
    QCryptographicHash Hash(QCryptographicHash::Sha1);
    const auto add = [&Hash](const QByteArray& Text) {
        Hash.addData(Text);
        Hash.addData("\n", 1);
    };
    Walk Upstream;
    add(QByteArray::number(Upstream.number(shown(pNode))));
    while (const OrvSnBaseNode* pNext = Upstream.next()) {
        add(pNext->typeName().toUtf8() + (pNext->enabledAsBool() ? "" : " off") + ' '
            + pNext->tags().join(QLatin1Char(' ')).toUtf8());
        const QVector<OrvCustomAttribute> Attributes = sharingInPicture(pNext->ownUserAttributes());
        if (!Attributes.isEmpty())
            add(QJsonDocument(OrvNodeDescription::attributesToJson(Attributes))
                    .toJson(QJsonDocument::Compact));
        if (OrvImageSet* pImages = pNext->imageSet()) {
            // Pixels hide whatever a node may read besides.
            add(OrvImageBlocks::contentKey(*pImages));
            continue;
        }
        for (const OrvSnBaseNode::Input& Input : pNext->inputs()) {
            const OrvSnBaseNode* pSource = shown(Input.pNode);
            add(Input.Name.toUtf8() + ' ' + QByteArray::number(Upstream.number(pSource)));
        }
        if (const auto* pGraph = qobject_cast<const OrvSnGraphNode*>(pNext))
            add("inside " + QByteArray::number(Upstream.number(pGraph->outputNode())));
    }
    return Hash.result().toHex();
}
