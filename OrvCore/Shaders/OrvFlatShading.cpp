#include "OrvCore/Shaders/OrvFlatShading.h"

#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Object/OrvSettings.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvSnShaderNode.h"

#include <QtCore/QCoreApplication>

#include <cmath>

namespace {

constexpr int StoreDelay = 500; // ms

/// The numbers of a light under their names in the settings, with their ranges.
struct Number {
    const char* pName;
    float& Value;
    float Least, Most;
};

template <class Function>
void forNumbers(OrvShadingParameters::Light& Light, Function visit)
{
    // Tiles lie in ten columns; above the picture's edge the light still reaches it.
    const Number Numbers[] = {{"U", Light.U, -5.0f, 15.0f}, {"V", Light.V, -5.0f, 905.0f},
        {"Height", Light.Height, 0.02f, 20.0f}, {"Red", Light.Color[0], 0.0f, 10.0f},
        {"Green", Light.Color[1], 0.0f, 10.0f}, {"Blue", Light.Color[2], 0.0f, 10.0f},
        {"Intensity", Light.Intensity, 0.0f, 20.0f}, {"Ambient", Light.Ambient, 0.0f, 5.0f}};
    for (const Number& One : Numbers)
        visit(One);
}

} // namespace

OrvFlatShading::OrvFlatShading()
{
    m_Store.setSingleShot(true);
    m_Store.setInterval(StoreDelay);
    connect(&m_Store, &QTimer::timeout, this, &OrvFlatShading::store);
    if (const QCoreApplication* pApplication = QCoreApplication::instance())
        connect(pApplication, &QCoreApplication::aboutToQuit, this, [this] {
            if (m_Store.isActive())
                store();
        });
    load();
}

OrvFlatShading& OrvFlatShading::instance()
{
    static OrvFlatShading Instance;
    return Instance;
}

void OrvFlatShading::setLight(const Light& Wanted)
{
    Light Light = Wanted;
    forNumbers(Light, [this](const Number& One) {
        One.Value = std::isfinite(One.Value) ? qBound(One.Least, One.Value, One.Most) : One.Least;
    });
    if (Light == m_Light)
        return;
    m_Light = Light;
    m_Store.start();
    Q_EMIT changed();
}

OrvSnBaseNode* OrvFlatShading::litNode(const OrvLayerShader* pShader)
{
    const OrvLayerShaderManager& Shaders = OrvLayerShaderManager::instance();
    if (pShader && pShader->node()->hasTag(OrvLayerShaderManager::nodeTagCurrentMaterialProxyShader()))
        pShader = Shaders.materialShader(pShader->node()->network());
    return pShader && !Shaders.isSystemShader(pShader) ? pShader->node() : nullptr;
}

OrvEngineNode* OrvFlatShading::result(const OrvLayerShader* pShader)
{
    const OrvSnBaseNode* pNode = litNode(pShader);
    return pNode ? OrvNodeEvaluation::result(pNode) : nullptr;
}

OrvUdimLayout OrvFlatShading::layout(const OrvLayerShader* pShader)
{
    const auto* pNode = qobject_cast<const OrvSnShaderNode*>(litNode(pShader));
    return pNode ? pNode->layout() : OrvUdimLayout();
}

void OrvFlatShading::load()
{
    OrvSettings Settings;
    Settings.beginGroup(QStringLiteral("Light"));
    Light Light;
    forNumbers(Light, [&Settings](const Number& One) {
        bool IsNumber = false;
        const float Stored = Settings.value(QLatin1String(One.pName), One.Value).toFloat(&IsNumber);
        if (IsNumber && std::isfinite(Stored))
            One.Value = qBound(One.Least, Stored, One.Most);
    });
    m_Light = Light;
}

void OrvFlatShading::store()
{
    m_Store.stop();
    OrvSettings Settings;
    Settings.beginGroup(QStringLiteral("Light"));
    forNumbers(m_Light,
        [&Settings](const Number& One) { Settings.setValue(QLatin1String(One.pName), double(One.Value)); });
}

#include "moc_OrvFlatShading.cpp"
