#pragma once

#include <QtCore/QObject>
#include <QtCore/QVector>

class OrvLayer;
class OrvLayerViewFilterType;
class OrvSwitch;
class QBoxLayout;
class QComboBox;
class QHBoxLayout;
class QSpacerItem;

/// The line above a layer tree in which the user chooses a filter, sets it and switches filtering on and off.
/// It shows the controls of one filter at a time and asks that one alone; the filters belong to the palette,
/// as does the work of hiding rows.
class OrvLayerViewFilterBar : public QObject {
    Q_OBJECT

public:
    /// Its widgets live in a box of their own at the end of the layout.
    OrvLayerViewFilterBar(QObject* pParent, QBoxLayout* pLayout);

    /// The first filter added is the one shown at first.
    void addFilter(OrvLayerViewFilterType* pFilterType);
    /// Whether rows are to be hidden at all.
    bool filterActive() const;
    /// The layer's name as rich text; empty when the layer does not pass the filter.
    QString filteredName(const OrvLayer* pLayer) const;

Q_SIGNALS:
    void filterChanged();

public Q_SLOTS:
    void setFilterType(int NewIndex);

private:
    void showControls(int Index, bool Shown);

    QHBoxLayout* m_Box;
    QComboBox* m_ComboBox;
    QSpacerItem* m_Spacer;
    OrvSwitch* m_Switch;
    QVector<OrvLayerViewFilterType*> m_FilterTypes;
    int m_Index = 0; ///< of the filter shown
};
