#pragma once

#include <QtWidgets/QSplitter>

class QVBoxLayout;

/// The two panes of a palette, a list above and properties below; the palette owns it. Until the user moves
/// it, the list has four tenths of the height; where it was left is kept in the settings. Only the lower pane
/// folds away.
class OrvPaletteSplitter : public QSplitter {
    Q_OBJECT

public:
    OrvPaletteSplitter(const QString& SettingsGroup, QWidget* pParent);
    ~OrvPaletteSplitter() override;

    void setPanes(QWidget* pUpper, QWidget* pLower);

    /// The layout of a pane, or of a part of one, whose widgets stand below each other without gaps.
    static QVBoxLayout* createTightLayout(QWidget* pPane);

protected:
    void showEvent(QShowEvent* pEvent) override;

private:
    void shareOutHeight();
    void saveToSettings() const;

    QString m_SettingsGroup;
    bool m_HasSizes = false; ///< worth to be kept: stored ones, or those of a splitter that was seen
};
