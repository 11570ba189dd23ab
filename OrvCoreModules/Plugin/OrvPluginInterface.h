#pragma once

#include <QtCore/QtPlugin>

/// What a plug-in module offers to the program: its root object derives from QObject and from this class. The
/// plug-in loader owns that object and calls it on the GUI thread only; a plug-in never calls another one
/// through it.
class OrvPluginInterface {
public:
    /// Called once, when the main window and all managers exist. False leaves the plug-in out: it is
    /// reported, and its second call never comes.
    virtual bool initialize() = 0;
    /// Called once, after every plug-in's initialisation: what others have registered can be found now.
    virtual bool pluginsInitialized() = 0;
    virtual ~OrvPluginInterface() = default;

    // For the log and the list of plug-ins.
    virtual QString name() const = 0;
    virtual QString description() const = 0;
    virtual QString author() const = 0;
    virtual QString vendor() const = 0;
    /// Counts the plug-in's own releases.
    virtual int version() const = 0;

    /// Plug-ins of a greater priority initialise earlier; equal ones in the order of their file names.
    virtual int initializePriority() const { return 0; }
};

#define OrvPluginInterface_iid "org.orvi.pluginterface/1.0"
Q_DECLARE_INTERFACE(OrvPluginInterface, OrvPluginInterface_iid)
