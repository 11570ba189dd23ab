#pragma once

#include <QtCore/QObject>

class OrvGeoEntity;
class OrvProject;

/// The Objects menu: adds, renames and removes objects of the project, and goes from one to the next. Owned
/// by the program; the Objects palette calls it for the object in its row.
class OrvObjectCommands : public QObject {
    Q_OBJECT

public:
    explicit OrvObjectCommands(QObject* pParent = nullptr);

    /// Null without a project.
    static OrvProject* project();
    static OrvGeoEntity* currentObject();
    /// "Tiles 1001-1003, 1011" or "Ptex, faces of 1024 x 1024".
    static QString surfaceText(const OrvGeoEntity* pEntity);

    /// Not undoable, as a choice of what to look at.
    static void makeCurrent(OrvGeoEntity* pEntity);
    /// False, with the reason in the status line, for a name that is empty or another object's.
    static bool rename(OrvGeoEntity* pEntity, const QString& Name);
    /// Asks before; the last object stays.
    static void remove(OrvGeoEntity* pEntity);

public Q_SLOTS:
    /// Asks what it is to be like, and makes it current.
    void addObject();
    /// In its row of the palette.
    void renameCurrent();
    void removeCurrent();
    void makeNextCurrent() { step(1); }
    void makePreviousCurrent() { step(-1); }
    void showObjects();

Q_SIGNALS:
    void renameRequested(OrvGeoEntity* pEntity);

private:
    void createActions();
    void updateActionSets();
    /// From the last object on to the first.
    static void step(int Distance);
};
