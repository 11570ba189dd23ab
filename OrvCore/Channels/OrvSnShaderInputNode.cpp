#include "OrvCore/Channels/OrvSnShaderInputNode.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Network/OrvInputStep.h"
#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Network/OrvSnNames.h"

#include "OrvDdi/Engine/OrvEngineNode.h"
#include "OrvDdi/Image/OrvImage.h"

#include <QtCore/QSize>

const QString OrvSnShaderInputNode::SizeAttribute = QStringLiteral("ImageSize");
const QString OrvSnShaderInputNode::TilesAttribute = QStringLiteral("ImageTiles");
const QString OrvSnShaderInputNode::DepthAttribute = QStringLiteral("ImageDepth");
const QString OrvSnShaderInputNode::ColorSpaceAttribute = QStringLiteral("ColorSpace");
const QString OrvSnShaderInputNode::ScalarColorSpaceAttribute = QStringLiteral("ScalarColorSpace");
const QString OrvSnShaderInputNode::ScalarAttribute = QStringLiteral("Scalar");

OrvSnShaderInputNode::OrvSnShaderInputNode()
    : OrvSnBaseNode({OrvSnNames::Input}, {OrvSnNames::ShaderInputTag})
{
}

OrvSnShaderInputNode::~OrvSnShaderInputNode()
{
    delete m_pShaderInput;
}

QString OrvSnShaderInputNode::typeLabel() const
{
    return tr("Channel");
}

const QVector<OrvCustomAttribute>& OrvSnShaderInputNode::attributeDefaults() const
{
    static const QVector<OrvCustomAttribute> Defaults = [] {
        QVector<OrvCustomAttribute> All{
            {SizeAttribute, QSize(2048, 2048)},
            {TilesAttribute, QVariantList{1001}},
            {DepthAttribute, int(GL_UNSIGNED_BYTE)},
            {ScalarAttribute, false},
            {ColorSpaceAttribute, QVariantMap()},
            {ScalarColorSpaceAttribute, QVariantMap()},
        };
        // Conversions change them together with the pixels; the node's properties show them.
        for (OrvCustomAttribute& Attribute : All)
            Attribute.setVisible(false);
        return All;
    }();
    return Defaults;
}

OrvUdimLayout OrvSnShaderInputNode::layout() const
{
    if (!m_Layout.isValid()) {
        QVector<int> Tiles;
        for (const QVariant& Tile : userAttribute(TilesAttribute).value().toList())
            Tiles.append(Tile.toInt());
        m_Layout = OrvUdimLayout(userAttribute(SizeAttribute).value().toSize(), Tiles);
    }
    return m_Layout;
}

void OrvSnShaderInputNode::setLayoutOfImages(const OrvUdimLayout& Layout)
{
    QVariantList Tiles;
    for (const int Tile : Layout.tiles())
        Tiles.append(Tile);
    setUserAttributeValue(SizeAttribute, Layout.tileSize());
    setUserAttributeValue(TilesAttribute, Tiles);
}

int OrvSnShaderInputNode::depth() const
{
    return userAttribute(DepthAttribute).value().toInt();
}

void OrvSnShaderInputNode::setDepth(int Depth)
{
    setUserAttributeValue(DepthAttribute, Depth);
}

bool OrvSnShaderInputNode::isScalar() const
{
    return userAttribute(ScalarAttribute).value().toBool();
}

void OrvSnShaderInputNode::setScalar(bool Scalar)
{
    setUserAttributeValue(ScalarAttribute, Scalar);
}

QString OrvSnShaderInputNode::imageSetSizeText() const
{
    const QSize Size = userAttribute(SizeAttribute).value().toSize();
    return tr("%1 x %2").arg(Size.width()).arg(Size.height());
}

QString OrvSnShaderInputNode::imageSetDepthString() const
{
    return OrvImage::depthName(GLenum(depth()));
}

QString OrvSnShaderInputNode::fileSpace() const
{
    return m_pShaderInput ? m_pShaderInput->colorSpaceConfig().dataPrettyName() : QString();
}

OrvColorSpaceConfig OrvSnShaderInputNode::storedConfig(const QString& AttributeName) const
{
    const QVariantMap Stored = userAttribute(AttributeName).value().toMap();
    const bool Scalar = AttributeName == ScalarColorSpaceAttribute || isScalar();
    return Stored.isEmpty() ? OrvColorSpaceConfig(Scalar, GLenum(depth()))
                            : OrvColorSpaceConfig::fromJson(QJsonObject::fromVariantMap(Stored));
}

QString OrvSnShaderInputNode::storedColorSpace() const
{
    if (m_StoredColorSpace.isEmpty())
        m_StoredColorSpace = storedConfig(ColorSpaceAttribute).colorSpace();
    return m_StoredColorSpace;
}

QString OrvSnShaderInputNode::workingColorSpace() const
{
    if (m_WorkingColorSpace.isEmpty())
        m_WorkingColorSpace = storedConfig(ColorSpaceAttribute).colorSpace(OrvColorSpaceConfig::WorkingSpace);
    return m_WorkingColorSpace;
}

void OrvSnShaderInputNode::forgetSettings()
{
    m_Layout = OrvUdimLayout();
    m_StoredColorSpace.clear();
    m_WorkingColorSpace.clear();
}

void OrvSnShaderInputNode::applyUserAttributeRemoval(const QString& Name)
{
    forgetSettings();
    OrvSnBaseNode::applyUserAttributeRemoval(Name);
}

void OrvSnShaderInputNode::applyUserAttribute(const OrvCustomAttribute& Attribute)
{
    forgetSettings();
    OrvSnBaseNode::applyUserAttribute(Attribute);
    if (network()
        && (Attribute.name() == SizeAttribute || Attribute.name() == TilesAttribute
            || Attribute.name() == ColorSpaceAttribute))
        OrvNodeEvaluation::layoutChanged(this);
}

std::unique_ptr<OrvEngineNode> OrvSnShaderInputNode::createEngineNode() const
{
    return OrvEngineNode::createPass();
}

QStringList OrvSnShaderInputNode::enginePadInputs() const
{
    return {OrvSnNames::Input};
}

void OrvSnShaderInputNode::describeInputStep(const QString& InputName, OrvInputStep& Step) const
{
    OrvChannelSpace::describeStep(this, InputName, inputNode(InputName), Step);
}

#include "moc_OrvSnShaderInputNode.cpp"
