#pragma once

#include "OrvCore/Layers/OrvSelectionProvider.h"
#include "OrvCore/Project/OrvSelectionArea.h"

#include "OrvDdi/Image/OrvUdimLayout.h"

#include <QtCore/QHash>
#include <QtCore/QObject>

class OrvGeoEntity;
class OrvSelectionCoverage;

/// What is selected on the canvas. Each object keeps its selection for as long as it is open; selecting is no
/// undo step and is not saved, unless it is kept as a group. It also answers the layers' questions about
/// selections, for its lifetime. Nothing selected means that everything may be painted on.
class OrvCanvasSelection : public QObject, public OrvSelectionProvider {
    Q_OBJECT

public:
    explicit OrvCanvasSelection(QObject* pParent = nullptr);
    ~OrvCanvasSelection() override;

    /// Of the current object.
    const OrvSelectionArea& area() const;
    void setArea(const OrvSelectionArea& Area);
    /// What may be painted on.
    OrvSelectionCoverage coverage(const OrvUdimLayout& Layout) const;

    /// Null without a project.
    static OrvGeoEntity* currentEntity();
    /// Of the current channel, or of what the object's first one would be.
    static OrvUdimLayout currentLayout();

    OrvImageBuffer selection(const OrvUdimLayout& Layout) const override;
    QStringList selectionGroups() const override;
    OrvImageBuffer selectionGroup(const QString& Name, const OrvUdimLayout& Layout) const override;
    QString askForSelectionGroup() override;

public Q_SLOTS:
    void selectAll();
    void selectNone();
    void invert();
    /// Takes a group, or combines it with what is selected.
    void load(const QString& GroupName, OrvSelectionArea::Combination How);

Q_SIGNALS:
    /// Another area, be it of another object.
    void changed();

private:
    QHash<const QObject*, OrvSelectionArea> m_Areas; ///< by object; those that have one
};
