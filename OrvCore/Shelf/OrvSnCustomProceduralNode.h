#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Shelf/OrvProceduralDescription.h"

/// A custom procedural in the document. The text that describes it is an attribute of the node, so that a
/// project needs no file of the shelf; the network inside is made from the text, never stored, and not for
/// users to edit. The parameters that the procedural shows are user attributes, which drive the nodes inside.
class ORVCORE_EXPORT OrvSnCustomProceduralNode : public OrvSnBaseNode {
    Q_OBJECT

public:
    static const QString ProceduralAttribute;

    OrvSnCustomProceduralNode();
    ~OrvSnCustomProceduralNode() override;

    /// A node of the described procedural, named after it, that covers the given size from the origin. Null,
    /// with the reason, for a text that describes none.
    static std::unique_ptr<OrvSnCustomProceduralNode> create(
        const QByteArray& Text, const QSize& Extent, QString& Error);

    QString typeName() const override { return QStringLiteral("CustomProcedural"); }
    QString typeLabel() const override;

    /// Empty while the node has no text, or a damaged one.
    const OrvProceduralDescription& procedural() const { return *m_pProcedural; }
    /// Nothing in the document provides geometry channels, so all that the procedural needs are missing.
    QStringList missingGeoChannels() const { return m_pProcedural->GeoChannels; }
    const OrvShaderNetwork* inside() const { return m_pInside; }

protected:
    const QVector<OrvCustomAttribute>& attributeDefaults() const override { return m_Defaults; }
    void applyUserAttribute(const OrvCustomAttribute& Attribute) override;
    void applyUserAttributeRemoval(const QString& Name) override;
    /// Switched off, a procedural yields nothing.
    bool isEvaluationAlias() const override { return true; }
    OrvSnBaseNode* evaluationAlias() const override { return enabledAsBool() ? m_pOutput : nullptr; }

private:
    void rebuild(const QByteArray& Text);
    std::unique_ptr<OrvSnBaseNode> makeNode(const OrvProceduralDescription::Node& Node) const;
    void connectInside();
    void drive(const OrvProceduralDescription::Parameter& Parameter);
    void driveAll();
    void passExtentOn();

    std::unique_ptr<OrvProceduralDescription> m_pProcedural;
    QVector<OrvCustomAttribute> m_Defaults;
    OrvShaderNetwork* m_pInside;
    QHash<QString, OrvSnBaseNode*> m_Nodes; ///< those inside, by identifier
    OrvSnBaseNode* m_pOutput = nullptr;
};
