#include "OrvDdi/Color/OrvColorSpaceManager.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Color/OrvColorSpaceConfig.h"

OrvColorSpaceManager& OrvColorSpaceManager::instance()
{
    static OrvColorSpaceManager Manager;
    return Manager;
}

OrvColorSpaceManager::OrvColorSpaceManager()
    : m_Display(OrvColorManager::srgb())
    , m_Picker(OrvColorManager::srgb())
{
}

QString OrvColorSpaceManager::colorSpace(
    OrvColorSpaceDefaults::ColorSpaceTarget Target, const OrvColorSpaceConfig* pConfig) const
{
    static const OrvColorSpaceConfig DefaultConfig;
    const OrvColorSpaceConfig& Config = pConfig ? *pConfig : DefaultConfig;
    switch (Target) {
    case OrvColorSpaceDefaults::None:
        break;
    case OrvColorSpaceDefaults::Display:
        return m_Display;
    case OrvColorSpaceDefaults::Picker:
        return m_Picker;
    case OrvColorSpaceDefaults::Data:
        return Config.colorSpace(OrvColorSpaceConfig::NativeSpace);
    case OrvColorSpaceDefaults::Working:
        return Config.colorSpace(OrvColorSpaceConfig::WorkingSpace);
    }
    return OrvColorManager::raw();
}

bool OrvColorSpaceManager::setDisplayColorSpace(const QString& Name)
{
    if (!OrvColorManager::isColorSpace(Name))
        return false;
    m_Display = Name;
    return true;
}

bool OrvColorSpaceManager::setPickerColorSpace(const QString& Name)
{
    if (!OrvColorManager::isColorSpace(Name))
        return false;
    m_Picker = Name;
    return true;
}
