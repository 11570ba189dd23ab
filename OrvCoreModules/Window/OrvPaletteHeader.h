#pragma once

#include <QtWidgets/QWidget>

class OrvPalette;
class QLabel;
class QToolButton;

/// The title bar of a palette: icon, title and the buttons for help, pin, float and close. Owned by its
/// palette, whose state it shows; dragging and double clicks are left to the dock widget.
class OrvPaletteHeader : public QWidget {
    Q_OBJECT

public:
    explicit OrvPaletteHeader(OrvPalette* pPalette);

    QSize minimumSizeHint() const override;
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;

private Q_SLOTS:
    void refresh();
    void toggleFloating();

private:
    QToolButton* createButton(const QString& ToolTip, const QIcon& Icon);
    void elideTitle();

    OrvPalette* m_Palette;
    QLabel* m_IconLabel;
    QLabel* m_TitleLabel;
    QToolButton* m_HelpButton;
    QToolButton* m_PinButton;
    QToolButton* m_FloatButton;
    QToolButton* m_CloseButton;
};
