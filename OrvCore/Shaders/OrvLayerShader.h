#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>

class OrvShaderInput;
class OrvSnBaseNode;

/// A shader of an object: the view on a node tagged "_shader", whose inputs are fed by channels. One object per node,
/// owned by OrvLayerShaderManager; it stores nothing of the document.
class ORVCORE_EXPORT OrvLayerShader : public QObject {
    Q_OBJECT

public:
    ~OrvLayerShader() override;

    OrvSnBaseNode* node() const { return m_pNode; }
    QString name() const;
    /// In display order.
    QStringList inputNames() const;
    /// The channel that feeds an input, or null.
    OrvShaderInput* inputShaderInput(const QString& InputName) const;
    /// Every channel that feeds an input, each once.
    QList<OrvShaderInput*> inputShaderInputs() const;
    /// Undoable; a null channel disconnects. False, with nothing changed, for an unknown input or a cycle.
    bool setInputShaderInput(const QString& InputName, OrvShaderInput* pShaderInput);

Q_SIGNALS:
    void layerShaderNameChanged(QString Name);

private:
    friend class OrvLayerShaderManager;
    explicit OrvLayerShader(OrvSnBaseNode* pNode);

    OrvSnBaseNode* m_pNode;
};

Q_DECLARE_METATYPE(OrvLayerShader*)
