#include "OrvCore/Network/OrvSnBakePointNode.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Channels/OrvImageSettings.h"
#include "OrvCore/Layers/OrvLayerRendering.h"
#include "OrvCore/Network/OrvNodeDescription.h"
#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvUpstreamDigest.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Engine/OrvEngineNode.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtWidgets/QUndoCommand>

const QString OrvSnBakePointNode::BakedFromAttribute = QStringLiteral("BakedFrom");

/// A node's baked pixels change places with those that the history keeps.
class OrvBakeEdit : public QUndoCommand {
public:
    OrvBakeEdit(OrvSnBakePointNode* pNode, std::unique_ptr<OrvImageSet> pImages)
        : QUndoCommand(OrvSnBakePointNode::tr("Bake '%1'").arg(pNode->name()))
        , m_pNode(pNode)
        , m_pOther(std::move(pImages))
    {
    }
    void undo() override { m_pOther = m_pNode->exchangeBaked(std::move(m_pOther)); }
    void redo() override { undo(); }

private:
    OrvSnBakePointNode* m_pNode;
    std::unique_ptr<OrvImageSet> m_pOther;
};

OrvSnBakePointNode::OrvSnBakePointNode()
    : OrvSnBaseNode({OrvSnNames::Input})
{
}

OrvSnBakePointNode::~OrvSnBakePointNode() = default;

QString OrvSnBakePointNode::typeLabel() const
{
    return tr("Bake Point");
}

const QVector<OrvCustomAttribute>& OrvSnBakePointNode::attributeDefaults() const
{
    static const QVector<OrvCustomAttribute> Defaults = [] {
        OrvCustomAttribute BakedFrom(BakedFromAttribute, QString());
        BakedFrom.setVisible(false);
        return QVector<OrvCustomAttribute>{BakedFrom};
    }();
    return Defaults;
}

bool OrvSnBakePointNode::isBakedResultUpToDate(bool Refresh) const
{
    if (!hasBakedResult())
        return false;
    return Refresh ? userAttribute(BakedFromAttribute).value().toString() == currentDigest() : m_UpToDate;
}

bool OrvSnBakePointNode::refreshBakedState()
{
    const bool Before = std::exchange(m_UpToDate, isBakedResultUpToDate(true));
    return Before != m_UpToDate;
}

QString OrvSnBakePointNode::currentDigest() const
{
    // A result of another size or depth is not what the channel asks for now.
    const OrvImageSettings Wanted = OrvImageSettings::ofLayer(this);
    const QSize Size = Wanted.Layout.extent().size();
    const QString Blended = OrvChannelSpace::around(this);
    return QStringLiteral("%1 %2 x %3 %4 %5%6")
        .arg(QLatin1String(OrvUpstreamDigest::of(preferredInputNode())))
        .arg(Size.width())
        .arg(Size.height())
        .arg(Wanted.Paint.Depth)
        .arg(int(Wanted.Paint.Curve))
        .arg(Blended == OrvColorManager::linear() ? QString() : QLatin1Char(' ') + Blended);
}

bool OrvSnBakePointNode::bake()
{
    const OrvSnBaseNode* pSource = preferredInputNode();
    if (!pSource)
        return false;
    const OrvImageSettings Wanted = OrvImageSettings::ofLayer(this);
    const QString Space = OrvChannelSpace::storedAround(this);
    const OrvImageBuffer Pixels = OrvLayerRendering::render(pSource, Wanted.Layout, Wanted.Paint, Space);
    if (Pixels.isNull())
        return false;
    auto pImages = std::make_unique<OrvImageSet>(Wanted.Layout, Wanted.Paint, OrvColor::clear());
    pImages->replace(Wanted.Layout, Wanted.Paint, OrvColor::clear(), Pixels);
    const OrvUndoManager::AutoMacro Macro(tr("Bake '%1'").arg(name()));
    // Conversions of the channel leave what is baked as it is.
    OrvChannelSpace::keepSpace(this, Space);
    replaceBaked(std::move(pImages), currentDigest(), tr("Bake '%1'").arg(name()));
    return true;
}

void OrvSnBakePointNode::unbake()
{
    if (hasBakedResult())
        replaceBaked(nullptr, QString(), tr("Unbake '%1'").arg(name()));
}

void OrvSnBakePointNode::replaceBaked(
    std::unique_ptr<OrvImageSet> pImages, const QString& BakedFrom, const QString& Text)
{
    const OrvUndoManager::AutoMacro Macro(Text);
    OrvUndoManager::instance().perform(std::make_unique<OrvBakeEdit>(this, std::move(pImages)));
    setUserAttributeValue(BakedFromAttribute, BakedFrom);
}

std::unique_ptr<OrvImageSet> OrvSnBakePointNode::exchangeBaked(std::unique_ptr<OrvImageSet> pImages)
{
    const bool WasBaked = hasBakedResult();
    m_pBaked.swap(pImages);
    if (!network())
        return pImages;
    if (WasBaked && hasBakedResult()) {
        OrvNodeEvaluation::replaced(this);
    } else {
        // Readers read past it, or read it again.
        for (const Consumer& Reader : consumers())
            OrvNodeEvaluation::inputReconnected(Reader.pNode, Reader.InputName);
        OrvNodeEvaluation::removed(this);
    }
    Q_EMIT OrvShaderNetworkManager::instance().nodeRefreshed(this);
    return pImages;
}

void OrvSnBakePointNode::describe(OrvNodeDescription& Description) const
{
    if (m_pBaked)
        Description.setImages(*m_pBaked);
}

void OrvSnBakePointNode::adopt(const OrvNodeDescription& Description)
{
    m_pBaked = Description.makeImages();
}

std::unique_ptr<OrvEngineNode> OrvSnBakePointNode::createEngineNode() const
{
    return OrvEngineNode::createSource();
}

void OrvSnBakePointNode::updateEngineNode(OrvEngineNode& Node) const
{
    if (m_pBaked)
        Node.setBuffer(m_pBaked->buffer());
}

#include "moc_OrvSnBakePointNode.cpp"
