#pragma once

#include <QtCore/QObject>

/// The shader commands of the module, made once at its start. It holds no document data.
class OrvShaderViewActions : public QObject {
    Q_OBJECT

public:
    static OrvShaderViewActions& instance();

private:
    OrvShaderViewActions();
};
