#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"

#include "OrvCore/Network/OrvSnMergeNode.h"

const QString OrvSnMultiChannelMergeNode::ShaderModelAttribute = QStringLiteral("ShaderModel");

OrvSnMultiChannelMergeNode::OrvSnMultiChannelMergeNode(const QString& ShaderModelKey)
    : OrvSnBaseNode({OrvSnNames::Mask})
{
    if (!ShaderModelKey.isEmpty())
        setUserAttributeValue(ShaderModelAttribute, ShaderModelKey);
}

QString OrvSnMultiChannelMergeNode::typeLabel() const
{
    return tr("Multi-Channel Merge");
}

const QVector<OrvCustomAttribute>& OrvSnMultiChannelMergeNode::attributeDefaults() const
{
    static const QVector<OrvCustomAttribute> Defaults = [] {
        QVector<OrvCustomAttribute> All{
            {OrvMergeAttributes::MaskEnabled, true},
            {OrvMergeAttributes::ColorTag, QString()},
            {ShaderModelAttribute, QString()},
        };
        // The palettes have controls of their own for all of them.
        for (OrvCustomAttribute& Attribute : All)
            Attribute.setVisible(false);
        return All;
    }();
    return Defaults;
}

QString OrvSnMultiChannelMergeNode::shaderModelKey() const
{
    return userAttribute(ShaderModelAttribute).value().toString();
}

QVector<OrvSnMergeNode*> OrvSnMultiChannelMergeNode::mergeNodes() const
{
    QVector<OrvSnMergeNode*> Merges;
    for (const Consumer& Reader : consumers()) {
        auto* pMerge = qobject_cast<OrvSnMergeNode*>(Reader.pNode);
        if (pMerge && Reader.InputName == OrvSnNames::Mask)
            Merges.append(pMerge);
    }
    return Merges;
}

QStringList OrvSnMultiChannelMergeNode::streams() const
{
    QStringList Streams;
    for (const OrvSnMergeNode* pMerge : mergeNodes())
        Streams.append(pMerge->stream());
    return Streams;
}

OrvSnMergeNode* OrvSnMultiChannelMergeNode::mergeNodeForShaderModelInput(const QString& Stream) const
{
    for (OrvSnMergeNode* pMerge : mergeNodes()) {
        if (pMerge->stream() == Stream)
            return pMerge;
    }
    return nullptr;
}

bool OrvSnMultiChannelMergeNode::isRepresentable() const
{
    QStringList Streams = streams();
    const int Count = Streams.size();
    return Count == consumers().size() && Count > 0 && !Streams.contains(QString())
        && Streams.removeDuplicates() == 0;
}

bool OrvSnMultiChannelMergeNode::adopt(OrvSnMergeNode* pMerge, const QString& Stream)
{
    pMerge->setUserAttributeValue(OrvMergeAttributes::Stream, Stream);
    return pMerge->connectInput(OrvSnNames::Mask, this);
}

#include "moc_OrvSnMultiChannelMergeNode.cpp"
