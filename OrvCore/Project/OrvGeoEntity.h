#pragma once

#include "OrvCore/Project/OrvEntity.h"
#include "OrvCore/Project/OrvSelectionArea.h"

#include <QtCore/QMap>
#include <QtCore/QSize>
#include <QtCore/QVector>

class OrvShaderNetwork;

/// A painted object: its name, its UDIM tiles or the resolution of its faces, selections that the user has kept, and the
/// network that its channels live in, which it owns.
class ORVCORE_EXPORT OrvGeoEntity : public OrvEntity {
    Q_OBJECT

public:
    explicit OrvGeoEntity(const QString& Name, QObject* pParent = nullptr);
    ~OrvGeoEntity() override;

    /// Undoable; sends OrvProjectManager::geoEntityNameChanged. An empty name changes nothing.
    void setName(const QString& Name);
    OrvShaderNetwork* shaderNetwork() const { return m_pNetwork; }
    /// What the object is shaded with; null when it has none.
    OrvShaderNetwork* shadingContext() const { return m_pNetwork; }
    /// Faces carry their own resolution instead of UDIM tiles. Every channel has one frame of that size.
    bool isPtex() const { return m_Ptex; }
    void setPtex(bool Ptex) { m_Ptex = Ptex; }
    QSize faceResolution() const { return m_FaceResolution; }
    void setFaceResolution(const QSize& Resolution) { m_FaceResolution = Resolution; }
    const QVector<int>& udimTiles() const { return m_UdimTiles; }
    void setUdimTiles(const QVector<int>& Tiles) { m_UdimTiles = Tiles; }

    /// By name.
    using SelectionGroups = QMap<QString, OrvSelectionArea>;
    const SelectionGroups& selectionGroups() const { return m_SelectionGroups; }
    /// All of them at once, as one undo step of that text; sends OrvProjectManager::selectionGroupsChanged.
    void setSelectionGroups(const SelectionGroups& Groups, const QString& UndoText);

private:
    friend class OrvEntityNameEdit;
    friend class OrvSelectionGroupsEdit;
    void applyName(const QString& Name);
    void applySelectionGroups(const SelectionGroups& Groups);

    OrvShaderNetwork* m_pNetwork;
    QVector<int> m_UdimTiles{1001};
    SelectionGroups m_SelectionGroups;
    QSize m_FaceResolution{1024, 1024};
    bool m_Ptex = false;
};
