// Qt fonts to and from the LOGFONT record that number files carry.
//
// Faces the machine may lack get installed stand-ins of the same kind:
// "Courier New" falls back to DejaVu Sans Mono or Liberation Mono, "Times"
// and "Times New Roman" to DejaVu Serif or Liberation Serif, "Symbol" to
// DejaVu Sans; any other missing face to the style its pitch and family ask
// for. The record keeps the face asked for, so a file saved here names the
// same face on every machine.
#pragma once

#include <QFont>

#include "io/logfont.h"

// The record's height is in pixels (negative for the character height); a
// height outside 4..400 pixels, zero included, gives the default 10 points.
// dpiY turns a font sized in points into the record's pixels.
QFont FontFromLogFont(const LogFont& f);
LogFont LogFontFromFont(const QFont& font, int dpiY);
