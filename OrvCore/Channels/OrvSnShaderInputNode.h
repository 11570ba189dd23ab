#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"

#include "OrvDdi/Image/OrvUdimLayout.h"

class OrvColorSpaceConfig;
class OrvShaderInput;

/// The node of a channel: what is fed into it is the channel's stack. Size, tiles, depth and colour spaces
/// are attributes that every layer of the channel follows.
class ORVCORE_EXPORT OrvSnShaderInputNode : public OrvSnBaseNode {
    Q_OBJECT
    Q_PROPERTY(QString imageSetSize READ imageSetSizeText)
    Q_PROPERTY(QString imageSetDepthString READ imageSetDepthString)
    Q_PROPERTY(QString fileSpace READ fileSpace)
    Q_PROPERTY(QString size READ imageSetSizeText)
    Q_PROPERTY(QString depth READ imageSetDepthString)
    Q_PROPERTY(QString colorSpace READ fileSpace)

public:
    OrvSnShaderInputNode();
    ~OrvSnShaderInputNode() override;

    QString typeName() const override { return QStringLiteral("ShaderInput"); }
    QString typeLabel() const override;

    OrvUdimLayout layout() const;
    void setLayoutOfImages(const OrvUdimLayout& Layout);
    int depth() const;
    void setDepth(int Depth);
    bool isScalar() const;
    void setScalar(bool Scalar);
    QString imageSetSizeText() const;
    QString imageSetDepthString() const;
    QString fileSpace() const;
    /// What one of the two colour space attributes says; the automatic spaces of the depth while it is empty.
    OrvColorSpaceConfig storedConfig(const QString& AttributeName) const;
    /// The names of the spaces in which colours are stored and blended, usable or not.
    QString storedColorSpace() const;
    QString workingColorSpace() const;

    OrvShaderInput* shaderInput() const { return m_pShaderInput; }

    static const QString SizeAttribute, TilesAttribute, DepthAttribute, ColorSpaceAttribute,
        ScalarColorSpaceAttribute, ScalarAttribute;

protected:
    const QVector<OrvCustomAttribute>& attributeDefaults() const override;
    void applyUserAttribute(const OrvCustomAttribute& Attribute) override;
    void applyUserAttributeRemoval(const QString& Name) override;
    std::unique_ptr<OrvEngineNode> createEngineNode() const override;
    QStringList enginePadInputs() const override;
    void describeInputStep(const QString& InputName, OrvInputStep& Step) const override;

private:
    void forgetSettings();

    friend class OrvShaderInputManager;
    OrvShaderInput* m_pShaderInput = nullptr;
    /// What size and tiles say, once somebody has asked: each edit asks every channel.
    mutable OrvUdimLayout m_Layout;
    mutable QString m_StoredColorSpace, m_WorkingColorSpace; ///< likewise; empty until then
};
