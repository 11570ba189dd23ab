#pragma once

#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvNodeRowModel.h"

class OrvShaderInput;
class OrvShaderInputView;

/// The rows of the Channels palette, which owns it: one per channel that carries nothing but the identity of
/// the channel's node. The palette fills it in order; the model answers drops and never sorts by itself.
class OrvShaderInputModel : public OrvNodeRowModel {
    Q_OBJECT

public:
    explicit OrvShaderInputModel(OrvShaderInputView* pView);

    /// Alt duplicates dropped channels, Shift shares dropped layers as new channels. Always false: views must
    /// not remove the dragged rows.
    bool dropMimeData(const QMimeData* pMimeData, Qt::DropAction Action, int Row, int Column,
        const QModelIndex& Parent) override;

    /// Invalid for a channel that is not listed.
    QModelIndex indexFromShaderInput(const OrvShaderInput* pShaderInput) const;
};
