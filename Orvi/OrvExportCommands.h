#pragma once

#include "Orvi/OrvLayerImageExport.h"

#include <QtCore/QObject>

class OrvSnBaseNode;

/// The commands that write images, with their dialogs: what channels and layers look like, or the images that
/// layers hold. Owned by OrvImportExport; the writing itself is OrvChannelExport's and OrvLayerImageExport's.
class OrvExportCommands : public QObject {
    Q_OBJECT

public:
    explicit OrvExportCommands(QObject* pParent = nullptr);

    /// Those of all objects but the material channels into a folder that exists; an empty suffix means a type
    /// as deep as the channel. Asks once when that would replace files.
    void exportAllChannelsTo(const QString& Directory, const QString& Suffix);

public Q_SLOTS:
    // All ask for a place and a type, and before files are replaced. What channels and layers look like:
    void exportChannel();
    void exportAllChannels();
    void exportLayer();
    void exportUpToLayer();
    // The images that layers hold:
    void exportChannelLayers();
    void exportAllChannelLayers();
    void exportSelectedLayers();
    void exportSelectedMasks();

private:
    void createActions();
    void exportNode(const OrvSnBaseNode* pNode, const QString& Name);
    void exportSelected(const QString& Title, OrvLayerImageExport::Part What);
    /// What tells which images are written, and how they are called.
    bool askForFolder(const QString& Title, const QString& What, QString& Directory, QString& Suffix);
};
