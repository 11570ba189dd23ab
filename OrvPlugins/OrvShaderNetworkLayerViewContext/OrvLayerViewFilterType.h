#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QString>

class OrvLayer;
class QPushButton;
class QWidget;

/// One way to choose layers by, with its controls: the base of the filters of a Layers palette. The palette
/// owns its filters, the filter bar shows one of them at a time. A filter reads layers and changes nothing in
/// the document.
class OrvLayerViewFilterType : public QObject {
    Q_OBJECT

public:
    /// The controls are children of the widget until they find a place in the bar.
    explicit OrvLayerViewFilterType(QWidget* pParent);

    /// Shown to the user.
    virtual QString name() const = 0;
    /// The controls, in the order in which they are shown.
    virtual QList<QWidget*> widgets() const = 0;
    /// Whether the space after the controls takes what is left, and not the controls.
    virtual bool stretchAfterWidgets() const { return true; }
    /// An inactive filter passes every layer.
    virtual bool matches(const OrvLayer* pLayer) const = 0;
    /// The layer's name as rich text, with what made it pass in bold; empty when it does not pass.
    virtual QString highlightedName(const OrvLayer* pLayer) const;
    /// Whether the controls restrict anything as they are set.
    virtual bool isActive() const { return m_Active; }

    static QString bold(const QString& Text);
    /// Plain text that looks the same as rich text.
    static QString escaped(const QString& Text);

Q_SIGNALS:
    /// The user changed the controls.
    void changed();

protected:
    QWidget* widgetParent() const;
    /// Flat, for an icon of the icon directory.
    QPushButton* createFlatButton(const QString& IconFileName, const QString& ToolTip) const;
    /// A flat button to check, of which each change is one of the filter.
    QPushButton* createButton(const QString& IconFileName, const QString& ToolTip);

    bool m_Active = false;
};
