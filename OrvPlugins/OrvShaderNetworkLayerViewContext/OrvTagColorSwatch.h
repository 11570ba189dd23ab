#pragma once

#include <QtCore/Qt>

class OrvBasicColorSwatch;
class QWidget;

/// The colours that layers can be tagged with, as a swatch to pick or to check them in.
namespace OrvTagColorSwatch {

/// One row: "none", which is the invalid colour, then the others in the order of their names.
OrvBasicColorSwatch* create(QWidget* pParent, Qt::WindowFlags Flags = {});

} // namespace OrvTagColorSwatch
