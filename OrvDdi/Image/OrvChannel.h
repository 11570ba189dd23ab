#pragma once

#include "OrvDdi/OrvDdiExport.h"

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QSize>

/// The part of an image set that holds its images. It gives them the name under which property views show
/// them, is owned by its image set and holds no pixels itself.
class ORVDDI_EXPORT OrvChannel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString name READ name CONSTANT)

public:
    explicit OrvChannel(const QString& Name, QObject* pParent = nullptr);
    ~OrvChannel() override;

    QString name() const { return m_Name; }

    /// Edge lengths of a tile that can be chosen, in menu order.
    static QList<QSize> supportedTextureSizes();

private:
    const QString m_Name;
};
