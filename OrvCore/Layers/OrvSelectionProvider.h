#pragma once

#include "OrvCore/OrvCoreExport.h"

#include "OrvDdi/Image/OrvImageBuffer.h"

#include <QtCore/QStringList>

class OrvUdimLayout;

/// Where selections come from. Whoever lets the user select implements it and installs the one instance,
/// which stays its own; layers only ask. Everything is asked on the GUI thread.
class ORVCORE_EXPORT OrvSelectionProvider {
public:
    OrvSelectionProvider() = default;
    virtual ~OrvSelectionProvider();
    OrvSelectionProvider(const OrvSelectionProvider&) = delete;
    OrvSelectionProvider& operator=(const OrvSelectionProvider&) = delete;

    /// What is selected, as one scalar component with the layout's extent, 1 where it is selected fully. Null
    /// when nothing is selected.
    virtual OrvImageBuffer selection(const OrvUdimLayout& Layout) const = 0;
    /// Selections that the user has kept, by name.
    virtual QStringList selectionGroups() const = 0;
    /// Null for an unknown name.
    virtual OrvImageBuffer selectionGroup(const QString& Name, const OrvUdimLayout& Layout) const = 0;
    /// Lets the user pick one of the groups; empty when that was cancelled.
    virtual QString askForSelectionGroup() = 0;

    /// Null takes the present one away.
    static void install(OrvSelectionProvider* pProvider);
    static OrvSelectionProvider* instance();
};
