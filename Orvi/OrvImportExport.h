#pragma once

#include "Orvi/OrvImageImport.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QVariantMap>

class OrvLayer;
class OrvLayerStack;
class OrvProjectCommands;

/// The commands that bring images in, with their dialogs, progress and messages, and what images do when they
/// are dropped: on a layer tree or on the picture they become paint layers, elsewhere in the window channels;
/// a project opens wherever it is dropped. Owned by the program, it owns those that bring images out; the work
/// itself is OrvImageImport's.
class OrvImportExport : public QObject {
    Q_OBJECT

public:
    explicit OrvImportExport(OrvProjectCommands* pProjects, QObject* pParent = nullptr);
    ~OrvImportExport() override;

    /// A new project with one channel for each image, named after the first that opened. Files that cannot be
    /// read are named in one message; the others are there.
    void openImagesAsProject(const QStringList& Paths);
    /// Returns the base name of the first image that opened.
    QString importChannels(const QStringList& Paths);
    void importLayers(const QStringList& Paths, OrvLayerStack* pStack, OrvLayer* pBelow,
        OrvImageImport::Place Where = OrvImageImport::AboveCurrent);
    /// A project opens, images become channels; false when there was neither.
    bool takeFiles(const QStringList& Paths);

    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

public Q_SLOTS:
    void importChannelsFromDialog();
    void importLayersFromDialog();
    void importIntoChannelFromDialog();
    /// Of the current layer; it gets one if it has none.
    void importMaskFromDialog();

private:
    void createActions();
    void registerDrops();
    QStringList askForImages(const QString& Title);
    void takeDrop(const QStringList& Paths, const QVariantMap& Place);

    OrvProjectCommands* m_pProjects;
    QList<int> m_DropHandlers;
};
