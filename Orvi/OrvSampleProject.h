#pragma once

#include "OrvDdi/Files/OrvProgress.h"

#include <QtCore/QString>

/// The project that shows what the program can do, built through the document's own operations: channels of
/// several depths, layers of every kind that palettes show, and a shader that lights them. It asks no
/// questions.
namespace OrvSampleProject {

/// Where the user's copy lies.
QString path();
/// Closes what is open and builds the sample in its place, unsaved; the edge of its images in pixels.
void build(int Edge = 2048, const OrvProgress& Progress = {});
/// Opens the user's copy, which is built and saved first when there is none.
bool open(QString& Error, const OrvProgress& Progress = {});

} // namespace OrvSampleProject
