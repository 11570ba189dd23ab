#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtWidgets/QScrollArea>

/// Scrolls only up and down: its content is as wide as the area, and the area never narrower than its
/// content.
class ORVCOREMODULES_EXPORT OrvVerticalScrollArea : public QScrollArea {
    Q_OBJECT

public:
    explicit OrvVerticalScrollArea(QWidget* pParent = nullptr);

    /// As high as the content: a layout with room shows all of it.
    QSize sizeHint() const override;

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
    bool event(QEvent* pEvent) override;

private:
    void followContentWidth();
};
