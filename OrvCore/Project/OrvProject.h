#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>

#include <memory>

class OrvGeoEntity;

/// The open document: its objects, which it owns, where it is stored, and which object is current. An object
/// that was removed belongs to the undo history. Opening, saving and closing are OrvProjectManager's.
class ORVCORE_EXPORT OrvProject : public QObject {
    Q_OBJECT

public:
    explicit OrvProject(const QString& Name);
    ~OrvProject() override;

    /// Name as in window titles: the folder's without suffix.
    QString name() const { return m_Name; }
    void setName(const QString& Name) { m_Name = Name; }
    /// The project's folder "Name.orvi"; empty while never saved.
    QString path() const { return m_Path; }
    void setPath(const QString& Path) { m_Path = Path; }
    /// Identity in the cache directory, kept in the project.
    QString cacheName() const { return m_CacheName; }
    void setCacheName(const QString& Name) { m_CacheName = Name; }

    const QList<OrvGeoEntity*>& geoEntities() const { return m_GeoEntities; }
    /// Null when there is none of that name.
    OrvGeoEntity* geoEntity(const QString& Name) const;
    /// A name that no object has: the given one, or the same with a number.
    QString uniqueGeoEntityName(const QString& Base) const;

    /// Undoable. The object comes last, and does not become current.
    OrvGeoEntity* addGeoEntity(std::unique_ptr<OrvGeoEntity> pEntity);
    OrvGeoEntity* addGeoEntity(const QString& Name);
    /// Undoable, with everything in it; its neighbour becomes current when it was. A project keeps its last
    /// object: false, with nothing changed.
    bool removeGeoEntity(OrvGeoEntity* pEntity);

    OrvGeoEntity* currentGeoEntity() const { return m_pCurrent; }
    /// Makes the object and its network current and sends objectMadeCurrent. What is current in it was so
    /// before. Undoable only where that is said: as part of an edit.
    void setCurrentGeoEntity(OrvGeoEntity* pEntity, bool Undoable = false);

private:
    friend class OrvEntityPopulationEdit;
    void applyAddition(std::unique_ptr<OrvGeoEntity> pEntity, int Index);
    std::unique_ptr<OrvGeoEntity> applyRemoval(OrvGeoEntity* pEntity);
    /// The object after this one, or before the last one.
    OrvGeoEntity* neighborOf(const OrvGeoEntity* pEntity) const;

    QString m_Name, m_Path, m_CacheName;
    QList<OrvGeoEntity*> m_GeoEntities;
    QPointer<OrvGeoEntity> m_pCurrent;
};
