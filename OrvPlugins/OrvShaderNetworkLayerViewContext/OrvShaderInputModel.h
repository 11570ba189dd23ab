#pragma once

#include <QtGui/QStandardItemModel>

class OrvShaderInput;
class OrvShaderInputView;
class OrvSnBaseNode;

/// The rows of the Channels palette, which owns it: one flat row per channel that carries nothing but the
/// identity of the channel's node. The palette fills it in order; the model answers drags and drops and never
/// sorts by itself.
class OrvShaderInputModel : public QStandardItemModel {
    Q_OBJECT

public:
    /// Identity of the channel's node.
    static constexpr int NodeRole = Qt::UserRole + 1;

    explicit OrvShaderInputModel(OrvShaderInputView* pView);

    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& Indexes) const override;
    /// Alt duplicates dropped channels, Shift shares dropped layers as new channels. Always false: views must
    /// not remove the dragged rows.
    bool dropMimeData(const QMimeData* pMimeData, Qt::DropAction Action, int Row, int Column,
        const QModelIndex& Parent) override;
    Qt::DropActions supportedDropActions() const override;

    /// Null for a row whose node is gone.
    OrvSnBaseNode* nodeFromIndex(const QModelIndex& Index) const;
    /// Invalid for a channel that is not listed.
    QModelIndex indexFromShaderInput(const OrvShaderInput* pShaderInput) const;
};
