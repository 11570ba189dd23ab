#pragma once

#include "OrvCore/OrvCoreExport.h"

#include "OrvDdi/Engine/OrvShadingParameters.h"
#include "OrvDdi/Image/OrvUdimLayout.h"

#include <QtCore/QObject>
#include <QtCore/QTimer>

class OrvEngineNode;
class OrvLayerShader;
class OrvSnBaseNode;

/// How the flat texture is lit where a shader is looked at: one light for all documents, and what each shader
/// yields under it. A state of the view, kept in the user's settings, never in the document and never undone.
class ORVCORE_EXPORT OrvFlatShading : public QObject {
    Q_OBJECT

public:
    using Light = OrvShadingParameters::Light;

    static OrvFlatShading& instance();

    static Light light() { return instance().m_Light; }
    /// Brings numbers into their ranges; every shader's picture follows at once.
    void setLight(const Light& Wanted);
    void resetLight() { setLight(Light()); }

    /// The node whose result is the shader's lit picture; null for a shader that shows something else, or
    /// nothing.
    static OrvSnBaseNode* litNode(const OrvLayerShader* pShader);
    /// The lit picture, null for nothing. Stays valid as OrvNodeEvaluation::result() does.
    static OrvEngineNode* result(const OrvLayerShader* pShader);
    /// That of the largest channel that the shader shows; of the object's first channel when it shows none.
    static OrvUdimLayout layout(const OrvLayerShader* pShader);

Q_SIGNALS:
    void changed();

private:
    OrvFlatShading();
    void load();
    void store();

    Light m_Light;
    QTimer m_Store; ///< a light that is dragged is stored where it comes to rest
};
