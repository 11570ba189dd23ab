#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QHash>
#include <QtCore/QString>

class OrvGeoEntity;
class QJsonObject;

/// What of an object is current: its channel, the layer of each channel, its shader, and which of the user's
/// shaders was chosen last. A value of identities, so that it outlives the nodes: the project file and the
/// undo step that takes an object away keep it. It is no part of the document, and what of it no longer
/// exists is passed over.
class ORVCORE_EXPORT OrvCurrentState {
public:
    static OrvCurrentState of(const OrvGeoEntity* pEntity);
    /// Sends no signal for an object that is not the current one; its turn comes when it is made current.
    void apply(const OrvGeoEntity* pEntity) const;

    /// Into and from the description of an object.
    void write(QJsonObject& Entity) const;
    static OrvCurrentState read(const QJsonObject& Entity);

private:
    QString m_Channel;
    QHash<QString, QString> m_Layers; ///< by channel
    QString m_Shader; ///< a system shader by its kind
    QString m_SelectedShader;
};
