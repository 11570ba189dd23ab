#pragma once

#include "OrvDdi/Color/OrvColorSpaceDefaults.h"
#include "OrvDdi/Image/OrvColor.h"

#include <QtWidgets/QWidget>

class OrvColorSwatch;
class QComboBox;
class QHBoxLayout;

/// The swatches that make a ready channel in one click, with the size and depth that it gets. The Channels
/// palette owns it; it remembers size and depth in the settings and creates nothing itself.
class OrvQuickChannelStrip : public QWidget {
    Q_OBJECT

public:
    explicit OrvQuickChannelStrip(QWidget* pParent = nullptr);

    /// Invalid for an object with its own resolution.
    QSize channelSize() const;
    /// A depth code of the host.
    int channelDepth() const;
    /// An object with its own resolution leaves no choice of size. The stored size stays.
    void setPtex(bool Ptex);
    void savePreferences() const;

Q_SIGNALS:
    void colorChosen(OrvColor Color, OrvColorSpaceDefaults::ColorSpaceTarget Target);
    void preferencesChanged();

private:
    OrvColorSwatch* addSwatch(QHBoxLayout* pLayout, const OrvColor& Color, const QString& ToolTip);
    QComboBox* createCombo(int MinimumLength, const QString& ToolTip);
    void fillSizes(bool Ptex);
    void fillDepths();

    QComboBox* m_QuickChannelSize;
    QComboBox* m_QuickChannelDepth;
};
