#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>

class OrvGeoEntity;

/// The open document: its objects, which it owns, where it is stored, and which object is current. Opening, saving
/// and closing are OrvProjectManager's.
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
    OrvGeoEntity* addGeoEntity(const QString& Name);
    OrvGeoEntity* currentGeoEntity() const { return m_pCurrent; }
    /// Makes the object and its network current and sends objectMadeCurrent.
    void setCurrentGeoEntity(OrvGeoEntity* pEntity);

private:
    QString m_Name, m_Path, m_CacheName;
    QList<OrvGeoEntity*> m_GeoEntities;
    QPointer<OrvGeoEntity> m_pCurrent;
};
