#pragma once

#include <QtWidgets/QWidget>

/// The shaders of the current object. The materials view owns it.
class OrvShaderView : public QWidget {
    Q_OBJECT

public:
    explicit OrvShaderView(QWidget* pParent);
};
