#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtWidgets/QPlainTextEdit>

struct OrvDebugMessage;

/// The debug channel as text, newest last, errors marked: the body of the Log palette. It takes the channel's
/// sink for as long as it lives and keeps the last few thousand messages, whatever thread they come from.
class ORVCOREMODULES_EXPORT OrvLogView : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit OrvLogView(QWidget* pParent = nullptr);
    ~OrvLogView() override;

protected:
    /// It opens at the beginnings of the last lines; those that came while it was hidden moved it to their
    /// ends.
    void showEvent(QShowEvent* pEvent) override;
    void contextMenuEvent(QContextMenuEvent* pEvent) override;

private:
    void append(const OrvDebugMessage& Message);
};
