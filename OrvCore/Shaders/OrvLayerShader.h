#pragma once

#include "OrvCore/OrvCoreExport.h"

#include "OrvDdi/Image/OrvColor.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>

class OrvShaderInput;
class OrvShadingModel;
class OrvSnBaseNode;

/// A shader of an object: the view on a node tagged "_shader", whose inputs are fed by channels. One object
/// per node, owned by OrvLayerShaderManager; it stores nothing of the document. A system shader has no model
/// and no inputs.
class ORVCORE_EXPORT OrvLayerShader : public QObject {
    Q_OBJECT

public:
    enum InputKind { AllInputs = 0, ChannelInputs = 1, MaterialInputs = 2 };

    ~OrvLayerShader() override;

    OrvSnBaseNode* node() const { return m_pNode; }
    QString name() const;
    /// Null for a shader without a model.
    const OrvShadingModel* shaderModel() const;

    /// In display order.
    QStringList inputNames(int Kind = AllInputs) const;
    bool hasInputTag(const QString& InputName, const QString& Tag) const;
    /// It takes a material channel, and no other.
    bool isInputForMaterialsStacks(const QString& InputName) const;
    /// Channels made for it have one component.
    bool isInputScalar(const QString& InputName) const;

    /// The channel that feeds an input, or null.
    OrvShaderInput* inputShaderInput(const QString& InputName) const;
    /// Every channel that feeds an input, each once.
    QList<OrvShaderInput*> inputShaderInputs() const;
    /// The first input that the channel feeds, or empty.
    QString inputStreamName(const OrvShaderInput* pShaderInput) const;
    /// Undoable; a null channel disconnects. False, with nothing changed, for an unknown input, a channel of
    /// another network, a cycle, and a channel that holds the wrong thing: materials go into material inputs
    /// alone.
    bool setInputShaderInput(const QString& InputName, OrvShaderInput* pShaderInput);
    /// Whether setInputShaderInput() would do it.
    bool canTakeShaderInput(const QString& InputName, const OrvShaderInput* pShaderInput) const;

    /// What an input has where no channel feeds it; a number is grey.
    OrvColor inputValue(const QString& InputName) const;
    bool isInputInverted(const QString& InputName) const;
    /// A disabled input counts as one that is not there, whatever feeds it.
    bool isInputEnabled(const QString& InputName) const;
    // Undoable; within a macro that a gesture holds open they are one step. No effect on an unknown input.
    void setInputValue(const QString& InputName, const OrvColor& Value);
    void setInputInverted(const QString& InputName, bool Inverted);
    void setInputEnabled(const QString& InputName, bool Enabled);

Q_SIGNALS:
    void layerShaderNameChanged(QString Name);

private:
    friend class OrvLayerShaderManager;
    explicit OrvLayerShader(OrvSnBaseNode* pNode);

    OrvSnBaseNode* m_pNode;
};

Q_DECLARE_METATYPE(OrvLayerShader*)
