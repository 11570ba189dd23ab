#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QVector>
#include <QtGui/QColor>
#include <QtWidgets/QWidget>

/// A grid of named colours to check, as a filter control, or to pick one from, as a popup. The colours are
/// those of tags: plain screen colours without a colour space.
class ORVCOREMODULES_EXPORT OrvBasicColorSwatch : public QWidget {
    Q_OBJECT

public:
    OrvBasicColorSwatch(int CellCount, int RowCount, QWidget* pParent = nullptr, Qt::WindowFlags Flags = {});

    /// Fills a cell of a row. An invalid colour is ignored unless the last flag allows it.
    void setColor(
        int Index, int Row, const QColor& Color, const QString& Name, bool CrossedOut, bool InvalidAllowed);
    /// Colours of the checked cells in the order of the cells.
    QList<QColor> checkedColors() const;
    void setColorChecked(const QColor& Color, bool Checked);
    /// Cells keep their checked state; a popup has none to keep.
    void setCheckable(bool Checkable) { m_Checkable = Checkable; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void colorChecked(QColor Color, bool Checked);
    void colorPicked(QColor Color);

protected:
    bool event(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;

private:
    struct Cell {
        QColor Color;
        QString Name;
        bool Filled = false;
        bool CrossedOut = false;
        bool Checked = false;
    };
    int columnCount() const;
    QRect cellRect(int Index) const;
    int cellAt(const QPoint& Position) const;
    void activate(int Index);
    void setCellChecked(int Index, bool Checked);

    QVector<Cell> m_Cells;
    int m_RowCount;
    int m_Current = -1; ///< of the keyboard
    int m_Hovered = -1;
    bool m_Checkable = true;
};
