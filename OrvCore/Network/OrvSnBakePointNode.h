#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"

/// Shows what feeds it, or, once baked, the pixels that this was at the time; then nothing below is computed
/// any more. It knows whether what feeds it would still give the same pixels, however it came to be as it is:
/// undo makes an outdated result current again. It never bakes by itself.
class ORVCORE_EXPORT OrvSnBakePointNode : public OrvSnBaseNode {
    Q_OBJECT

public:
    OrvSnBakePointNode();
    ~OrvSnBakePointNode() override;

    QString typeName() const override { return QStringLiteral("BakePoint"); }
    QString typeLabel() const override;

    OrvImageSet* imageSet() const override { return m_pBaked.get(); }
    bool hasBakedResult() const { return m_pBaked != nullptr; }
    /// As of the end of the last edit; true looks again now.
    bool isBakedResultUpToDate(bool Refresh) const;

    /// Takes what feeds the node, stored as its channel stores paint. Undoable. False when nothing feeds it,
    /// or the user cancelled.
    bool bake();
    /// Undoable.
    void unbake();
    /// Compares again; true when the answer changed. Whoever listens to edits calls it.
    bool refreshBakedState();

    void describe(OrvNodeDescription& Description) const override;
    void adopt(const OrvNodeDescription& Description) override;

    /// What fed the node when it was baked, as a digest.
    static const QString BakedFromAttribute;

protected:
    const QVector<OrvCustomAttribute>& attributeDefaults() const override;
    bool isEvaluationAlias() const override { return !hasBakedResult(); }
    OrvSnBaseNode* evaluationAlias() const override { return preferredInputNode(); }
    std::unique_ptr<OrvEngineNode> createEngineNode() const override;
    QStringList enginePadInputs() const override { return {}; }
    void updateEngineNode(OrvEngineNode& Node) const override;

private:
    friend class OrvBakeEdit;
    std::unique_ptr<OrvImageSet> exchangeBaked(std::unique_ptr<OrvImageSet> pImages);
    void replaceBaked(std::unique_ptr<OrvImageSet> pImages, const QString& BakedFrom, const QString& Text);
    QString currentDigest() const;

    std::unique_ptr<OrvImageSet> m_pBaked;
    bool m_UpToDate = false;
};
