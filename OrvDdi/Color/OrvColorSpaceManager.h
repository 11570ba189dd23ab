#pragma once

#include "OrvDdi/Color/OrvColorSpaceDefaults.h"
#include "OrvDdi/OrvDdiExport.h"

#include <QtCore/QString>

class OrvColorSpaceConfig;

/// The application-wide colour-space settings: how much of colour management editors show, and which spaces
/// the display and the colour editors use. One instance, GUI thread only; whoever owns the settings file
/// fills it.
class ORVDDI_EXPORT OrvColorSpaceManager {
public:
    enum UserInterfaceMode {
        Simple = 0, ///< editors show the space of colour data alone
        Full = 1 ///< editors show every role
    };

    static OrvColorSpaceManager& instance();

    UserInterfaceMode userInterfaceMode() const { return m_UserInterfaceMode; }
    void setUserInterfaceMode(UserInterfaceMode Mode) { m_UserInterfaceMode = Mode; }

    /// The space that a target stands for; without a configuration, that of 8-bit colour data.
    QString colorSpace(
        OrvColorSpaceDefaults::ColorSpaceTarget Target, const OrvColorSpaceConfig* pConfig = nullptr) const;
    /// Unknown names are refused and change nothing.
    bool setDisplayColorSpace(const QString& Name);
    bool setPickerColorSpace(const QString& Name);

private:
    OrvColorSpaceManager();

    UserInterfaceMode m_UserInterfaceMode = Simple;
    QString m_Display, m_Picker;
};
