// Finding the textures a model uses.
//
// A text model (.bod) opens with its materials, one line each, after comment
// lines (starting with "/") and blank lines:
//
//   MATERIAL6: 1; 0x2000000; 23; tex_hull; 1; hull_plates.dds; 0.5;
//
// From the third blank-separated word on, the line is a ";"-separated list;
// every item that has an extension is taken for a file name, and the file
// names (in lower case, without directory) are the textures the model asks
// for. The first line that does not begin with "MATERIAL6:" (in any case)
// ends the materials. A binary model (.bob, .pbb) is turned into text with
// x2bc first.
#pragma once

#include <QString>
#include <QStringList>

// The texture file names of the materials at the head of `modelText`, in
// order, each once.
QStringList MaterialTextureNames(const QString& modelText);

// The models of a mod catalog to scan, and where to work.
struct TextureScanSetup
{
    QString Catalog;  // the mod's .cat
    QString WorkDir;  // an existing directory for the extracted models
    QString X2bcPath; // the x2bc executable; empty: binary models are passed over
    int TimeoutMs = 120 * 1000;
};

// The texture file names that the catalog entries `models` ask for, model
// after model, each once. A model that does not extract, or a binary model
// that x2bc cannot turn into text, names nothing. Each extracted file is
// deleted again.
QStringList ScanModelTextures(const TextureScanSetup& setup, const QStringList& models);
